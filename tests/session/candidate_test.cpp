// Settings that are collected in a candidate and committed together.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;

outcome edited(const std::string& lines, std::vector<std::string> options = {}) {
  return run_lines("configure candidate\n" + lines, std::move(options));
}

const std::string kMtu = "interface ethernet 1/1-2\nswitchport mtu 9000\n";
const std::string kShow = "show running-config interface ethernet 1/1-2\n";
const std::string kPlain = "! Settings of lab\nconfigure\nend\n";
const std::string kSet = "! Settings of lab\nconfigure\ninterface ethernet 1/1-2\n  switchport mtu 9000\nend\n";
const std::string kDiscarded = "The changes of the candidate were discarded: they were not committed.\n";
const std::string kDiscardedAtEnd = "pmsh: the changes of the candidate were discarded: they were not committed.\n";

TEST(Candidate, SettingsAreMadeByTheCommit) {
  EXPECT_EQ(edited(kMtu + kShow + "commit\n" + kShow).out, kPlain + "Committed for ethernet 1/1-2.\n" + kSet);
}

TEST(Candidate, RefusalsComeAtOnce) {
  const outcome result = edited("interface ethernet 1/9\nswitchport mtu 9000\nswitchport mtu nine\nshow diff\n");
  EXPECT_EQ(result.exit_code, 3);
  EXPECT_EQ(result.out, "Ethernet1/9: port is locked\nThe candidate is the same as the running configuration.\n");
  EXPECT_EQ(result.err, "pmsh: expected a number from 1 to 65535 for BYTES, not 'nine'.\n");
}

TEST(Candidate, LaterLinesSeeEarlierOnes) {
  const outcome result =
      edited("interface loopback 9\ndescription new\ninterface loopback 9\nno description\nshow diff\n");
  EXPECT_EQ(result.out, "loopback 9\n  + interface loopback 9\n");
  EXPECT_EQ(result.exit_code, 0) << result.err;
}

TEST(Candidate, ItsDifferencesAreCommandsByRange) {
  const outcome result =
      run_lines("configure\ninterface ethernet 1/1\nswitchport mtu 4000\nend\nconfigure candidate\n" + kMtu +
                "interface ethernet 1/3-5\ndescription \"to the lab\"\ninterface loopback 8-9\nno interface loopback "
                "0\nshow diff\n");
  EXPECT_EQ(result.out,
            "ethernet 1/1\n"
            "  - switchport mtu 4000\n"
            "  + switchport mtu 9000\n"
            "ethernet 1/2\n"
            "  + switchport mtu 9000\n"
            "ethernet 1/3-5\n"
            "  + description to the lab\n"
            "loopback 0\n"
            "  - interface loopback 0\n"
            "loopback 8-9\n"
            "  + interface loopback 8-9\n");
}

TEST(Candidate, ItsDifferencesAreRecords) {
  const outcome result = edited(kMtu + "no interface loopback 0\nshow diff | json\n");
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  ASSERT_FALSE(document.HasParseError()) << result.out;
  EXPECT_STREQ(document["display"].GetString(), "diff");
  ASSERT_EQ(document["differences"].Size(), 3U);
  EXPECT_STREQ(document["differences"][1]["interface"].GetString(), "Ethernet1/2");
  EXPECT_TRUE(document["differences"][1]["before"].IsNull());
  EXPECT_STREQ(document["differences"][1]["after"].GetString(), "switchport mtu 9000");
  EXPECT_STREQ(document["differences"][2]["before"].GetString(), "interface loopback 0");
}

TEST(Candidate, CreatedAndDeletedInterfacesArePartOfIt) {
  const outcome result = edited(
      "interface loopback 9\ndescription new\nno interface loopback 0\n"
      "show interface loopback 9 description\nshow interface loopback 0 ifindex | count\n"
      "commit\nshow running-config interface loopback 9\nshow interface loopback 0\n");
  EXPECT_THAT(result.err, HasSubstr("no such interface: loopback 9"));
  EXPECT_THAT(result.out,
              HasSubstr("Committed for loopback 0, loopback 9.\n! Settings of lab\nconfigure\ninterface loopback "
                        "9\n  description new\nend\n"));
  EXPECT_THAT(result.err, HasSubstr("no such interface: loopback 0"));
}

TEST(Candidate, ACommitIsOneUndoStep) {
  const outcome result =
      edited(kMtu + "shutdown\ninterface loopback 9\ncommit\nend\nshow changes | count\nundo\nshow changes\n" + kShow);
  EXPECT_THAT(result.out,
              HasSubstr("Undone for ethernet 1/1-2, loopback 9.\nNothing was changed in this session.\n" + kPlain));
}

TEST(Candidate, AfterACommitItHasNoChangesToShow) {
  const std::string kNone = "The candidate has no changes.\n";
  EXPECT_EQ(edited("show changes\n").out, kNone);
  EXPECT_EQ(edited(kMtu + "commit\nshow changes\n").out, "Committed for ethernet 1/1-2.\n" + kNone);
  const outcome rolled_back = edited(kMtu + "commit confirmed 60\nclock advance 60\nshow changes\n");
  EXPECT_THAT(rolled_back.out,
              HasSubstr("\nThe candidate has the changes of an earlier commit only: 'show diff' lists them.\n"));
}

TEST(Candidate, WithinItSettingsAreTakenBackOneByOne) {
  EXPECT_EQ(edited(kMtu + "shutdown\nundo\nshow diff\nundo 2\n").out,
            "Undone for ethernet 1/1-2.\nethernet 1/1-2\n  + switchport mtu 9000\n");
}

TEST(Candidate, WhatRunsInItStaysAfterTheCommit) {
  EXPECT_EQ(edited(kMtu + "commit\nshow diff\ncommit\nshutdown\nshow diff\n").out,
            "Committed for ethernet 1/1-2.\n"
            "The candidate is the same as the running configuration.\n"
            "There is nothing to commit.\n"
            "ethernet 1/1-2\n  + shutdown\n");
}

TEST(Candidate, DiscardForgetsTheChanges) {
  EXPECT_EQ(edited(kMtu + "discard\nshow diff\nend\n" + kShow).out,
            "The candidate is the same as the running configuration.\n" + kPlain);
  const outcome lost = edited("interface loopback 9\ndiscard\ndescription none\n");
  EXPECT_EQ(lost.exit_code, 1) << "the interface mode is left with its interface";
}

TEST(Candidate, LeavingWithoutACommitDiscardsAndSaysSo) {
  for (const char* const leave : {"end\n", "exit\nexit\n", "quit\n"})
    EXPECT_EQ(edited(kMtu + leave).out, kDiscarded) << leave;
  EXPECT_EQ(edited(kMtu + "end\n" + kShow).out, kDiscarded + kPlain);
  EXPECT_EQ(edited(kMtu).err, kDiscardedAtEnd) << "the end of the input";
  EXPECT_EQ(edited(kMtu + "commit\nend\n").out, "Committed for ethernet 1/1-2.\n");
}

TEST(Candidate, CommandsThatNeedOneSayHowToBegin) {
  for (const char* const line : {"show diff\n", "commit\n", "discard\n"}) {
    const outcome result = run_lines(std::string("configure\n") + line);
    EXPECT_EQ(result.err, "pmsh: there is no candidate. Type 'configure candidate' first.\n");
    EXPECT_EQ(result.exit_code, 1);
  }
}

TEST(Candidate, ACommitHasRecords) {
  const outcome result = edited(kMtu + "commit | json\n");
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  ASSERT_FALSE(document.HasParseError()) << result.out;
  ASSERT_EQ(document["interfaces"].Size(), 2U);
  EXPECT_STREQ(document["interfaces"][1]["setting"].GetString(), "commit");
  EXPECT_STREQ(document["interfaces"][1]["result"].GetString(), "applied");
  EXPECT_STREQ(document["interfaces"][1]["before"].GetString(), "switchport mtu 1500");
  EXPECT_EQ(document["summary"]["applied"].GetUint(), 2U);
}

TEST(Candidate, AFileCanBeReadIntoIt) {
  const std::string file = testing::TempDir() + "pmsh-candidate.cfg";
  std::ofstream(file) << "configure\n" << kMtu << "end\n";
  EXPECT_EQ(edited("copy " + file + " running-config\n" + kShow + "show diff\n")
                .out.substr(("Applied " + file + ".\n").size()),
            kPlain + "ethernet 1/1-2\n  + switchport mtu 9000\n");
  std::ofstream(file) << "configure candidate\n" << kMtu;
  const outcome result = run_lines("copy " + file + " running-config\n" + kShow);
  EXPECT_EQ(result.err, kDiscardedAtEnd) << "one that a file began ends with it";
  std::remove(file.c_str());
}

TEST(Candidate, ADryRunOfACommitChangesNothing) {
  EXPECT_EQ(edited(kMtu + "commit\nend\n", {"--dry-run"}).exit_code, 0);
}

TEST(Candidate, ItsDifferencesHaveNoColoursWhenTheUserSaysSo) {
  setenv("NO_COLOR", "1", 1);
  terminal shell({}, test_file("configuration.yaml"));
  unsetenv("NO_COLOR");
  ASSERT_TRUE(shell.shows_prompt());
  shell.type("configure candidate\rinterface ethernet 1/1\rshutdown\rshow diff\r");
  EXPECT_TRUE(shell.shows("  + shutdown\r\n"));
}

TEST(Candidate, AtATerminalLeavingAsks) {
  terminal shell({}, test_file("configuration.yaml"));
  ASSERT_TRUE(shell.shows_prompt());
  shell.type("configure candidate\r");
  ASSERT_TRUE(shell.shows("lab(config-candidate)# "));
  shell.type("interface ethernet 1/1\r");
  ASSERT_TRUE(shell.shows("lab(config-if-candidate)# "));
  shell.type("shutdown\r");
  ASSERT_TRUE(shell.shows("lab(config-if-candidate)# "));
  shell.type("show diff\r");
  EXPECT_TRUE(shell.shows("  \x1b[32m+ shutdown\x1b[0m"));
  ASSERT_TRUE(shell.shows("lab(config-if-candidate)# "));
  shell.type("end\r");
  ASSERT_TRUE(shell.shows("The candidate has changes that are not committed. Discard them? (y/n) [n] "));
  shell.type("n\r");
  ASSERT_TRUE(shell.shows("lab(config-if-candidate)# "));
  shell.type("end\r");
  ASSERT_TRUE(shell.shows("(y/n) [n] "));
  shell.type("y\r");
  EXPECT_TRUE(shell.shows("were discarded"));
  EXPECT_TRUE(shell.shows("lab# "));
}

}  // namespace
}  // namespace session
