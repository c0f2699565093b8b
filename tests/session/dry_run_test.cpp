// Dry runs: settings are checked and listed, and nothing is changed.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

outcome tried(const std::string& lines) { return run_lines("configure dry-run\n" + lines); }

const std::string kUnchanged = "! Settings of lab\nconfigure\ninterface ethernet 1/11-12\n  channel-group 7\nend\n";

TEST(DryRun, ListsWhatWouldChangeAndChangesNothing) {
  const outcome result = tried("interface ethernet 1/1\nswitchport mtu 9000\nend\nshow running-config\nundo\n");
  EXPECT_EQ(result.out, "Ethernet1/1: switchport mtu 1500 -> switchport mtu 9000\n" + kUnchanged);
  EXPECT_EQ(result.err, "pmsh: there is no change to undo.\n");
}

TEST(DryRun, PortsWithTheSameChangeAreOneRange) {
  EXPECT_EQ(tried("interface ethernet 1/2\nshutdown\ninterface ethernet 1/1-5, 1/8\nshutdown\n").out,
            "Ethernet1/2: no shutdown -> shutdown\n"
            "Ethernet1/1, Ethernet1/3-5, Ethernet1/8: no shutdown -> shutdown\n"
            "Ethernet1/2: unchanged\n");
}

TEST(DryRun, LaterLinesSeeTheEffectOfEarlierOnes) {
  EXPECT_EQ(tried("interface ethernet 1/1\nswitchport mtu 9000\nno switchport mtu\n"
                  "interface loopback 9\ninterface loopback 9\ndescription new\nno interface loopback 9\n")
                .out,
            "Ethernet1/1: switchport mtu 1500 -> switchport mtu 9000\n"
            "Ethernet1/1: switchport mtu 9000 -> switchport mtu 1500\n"
            "loopback9: created\n"
            "loopback9: no description -> description new\n"
            "loopback9: deleted\n");
}

TEST(DryRun, RefusalsAreThoseOfARealRun) {
  for (const char* const lines : {"interface ethernet 1/8-9\nswitchport mtu 9000\n", "interface ethernet 1/99\n",
                                  "interface ethernet 1/1\nswitchport mtu nine\n", "no interface ethernet 1/1\n",
                                  "interface fc 3/1\nswitchport receive-buffer-size 257\n"}) {
    const outcome real = run_lines(std::string("configure\n") + lines);
    const outcome dry = tried(lines);
    EXPECT_EQ(dry.exit_code, real.exit_code) << lines;
    EXPECT_NE(dry.exit_code, 0) << lines;
    EXPECT_EQ(dry.err, real.err) << lines;
    EXPECT_THAT(dry.out, HasSubstr(real.out));
  }
}

TEST(DryRun, ItsSettingsCanBeTakenBackWithinIt) {
  EXPECT_EQ(tried("interface ethernet 1/1\nswitchport mtu 9000\nundo\nshow changes\n").out,
            "Ethernet1/1: switchport mtu 1500 -> switchport mtu 9000\n"
            "Undone for ethernet 1/1.\n"
            "Ethernet1/1: switchport mtu 9000 -> switchport mtu 1500\n"
            "Nothing was changed in this session.\n");
}

TEST(DryRun, WhatLeavesTheMachineIsSkipped) {
  const std::string file = testing::TempDir() + "pmsh-dry-run.cfg";
  std::remove(file.c_str());
  std::filesystem::remove_all(state_directory());
  const outcome result = tried("copy running-config startup-config\nwrite\ncopy running-config " + file +
                               "\nclear counters\nclock advance 60\nend\nshow startup-config\n");
  EXPECT_EQ(result.out,
            "Skipped in a dry run: 'copy running-config startup-config'.\n"
            "Skipped in a dry run: 'write'.\n"
            "Skipped in a dry run: 'copy running-config " +
                file +
                "'.\n"
                "Skipped in a dry run: 'clear counters'.\n"
                "Skipped in a dry run: 'clock advance 60'.\n");
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(result.exit_code, 4) << "there is no startup-config";
}

TEST(DryRun, TheProgramTriesFilesAndCommands) {
  const std::string file = testing::TempDir() + "pmsh-dry-run.cfg";
  std::ofstream(file) << "configure\ninterface ethernet 1/1\nshutdown\nend\ncopy running-config startup-config\n";
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{"--dry-run", "-f", file, "-c", "show interface ethernet 1/1 description | count"},
        std::vector<std::string>{"--dry-run", "--config", file, "-c",
                                 "show interface ethernet 1/1 description | count"}}) {
    const outcome result = run_lines("", options);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(result.out, StartsWith("Ethernet1/1: no shutdown -> shutdown\nSkipped in a dry run: "
                                       "'copy running-config startup-config'.\n"));
  }
  const outcome seen = run_lines("", {"--dry-run", "-f", file, "-c", "show running-config interface ethernet 1/1"});
  EXPECT_THAT(seen.out, HasSubstr("interface ethernet 1/1\n  shutdown\n")) << "it is the dry run's";
  std::ofstream(file) << "configure\ninterface ethernet 1/1\nshutdwn\n";
  EXPECT_EQ(run_lines("", {"--dry-run", "-f", file}).exit_code, 1);
  std::remove(file.c_str());
}

TEST(DryRun, AFileThatItReadsDoesNotEndIt) {
  const std::string file = testing::TempDir() + "pmsh-dry-run-file.cfg";
  std::ofstream(file) << "configure\ninterface ethernet 1/1\nshutdown\nend\n";
  const outcome result = tried("copy " + file +
                               " running-config\nshow running-config interface ethernet 1/1\nend\n"
                               "show running-config\n");
  EXPECT_EQ(result.out, "Ethernet1/1: no shutdown -> shutdown\nApplied " + file +
                            ".\n"
                            "! Settings of lab\nconfigure\ninterface ethernet 1/1\n  shutdown\nend\n" +
                            kUnchanged);
  std::ofstream(file) << "configure dry-run\ninterface ethernet 1/1\nshutdown\n";
  EXPECT_EQ(
      run_lines("copy " + file + " running-config\nconfigure\ninterface ethernet 1/1\nshutdown\nshow running-config\n")
          .out,
      "Ethernet1/1: no shutdown -> shutdown\nApplied " + file +
          ".\n"
          "! Settings of lab\nconfigure\ninterface ethernet 1/1\n  shutdown\n"
          "interface ethernet 1/11-12\n  channel-group 7\nend\n")
      << "one that a file began ends with it";
  std::remove(file.c_str());
}

TEST(DryRun, IsRefusedWhileThereIsACandidate) {
  const std::string file = testing::TempDir() + "pmsh-dry-run-in-candidate.cfg";
  std::ofstream(file) << "configure dry-run\ninterface ethernet 1/1\ndescription DRY\n";
  const std::string refusal =
      "pmsh: a dry run cannot begin while there is a candidate. Type 'end' to leave the candidate first.\n";
  const outcome copied = run_lines("configure candidate\ninterface ethernet 1/2\nshutdown\ncopy " + file +
                                   " running-config\ncommit\nend\nshow running-config\n");
  EXPECT_EQ(copied.exit_code, 1);
  EXPECT_THAT(copied.err, StartsWith(refusal));
  EXPECT_EQ(copied.out,
            "Committed for ethernet 1/2.\n! Settings of lab\nconfigure\ninterface ethernet 1/2\n  shutdown\n"
            "interface ethernet 1/11-12\n  channel-group 7\nend\n");
  std::remove(file.c_str());
}

TEST(DryRun, HasRecords) {
  const outcome result = tried("interface ethernet 1/1\nswitchport mtu 9000 | json\n");
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  ASSERT_FALSE(document.HasParseError()) << result.out;
  EXPECT_STREQ(document["interfaces"][0]["result"].GetString(), "applied");
  EXPECT_STREQ(document["interfaces"][0]["after"].GetString(), "switchport mtu 9000");
}

TEST(DryRun, IsShownByThePrompt) {
  terminal shell({}, test_file("configuration.yaml"));
  ASSERT_TRUE(shell.shows_prompt());
  shell.type("configure dry-run\r");
  EXPECT_TRUE(shell.shows("lab(config-dry-run)# "));
  shell.type("interface ethernet 1/1\r");
  EXPECT_TRUE(shell.shows("lab(config-if-dry-run)# "));
  shell.type("exit\r");
  EXPECT_TRUE(shell.shows("lab(config-dry-run)# "));
  shell.type("exit\r");
  EXPECT_TRUE(shell.shows("lab# "));
}

}  // namespace
}  // namespace session
