// Commits of a simulated switch that are rolled back unless they are confirmed.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;
using testing::Not;

outcome committed(const std::string& lines, std::vector<std::string> options = {}) {
  options.insert(options.end(), {"--clock", "1800000000"});
  return run_shell_on(test_file("configuration.yaml"), std::move(options),
                      "configure candidate\ninterface ethernet 1/1\nswitchport mtu 9000\n" + lines);
}

const std::string kShowPort = "show running-config interface ethernet 1/1\n";
const std::string kCommitted = "Committed for ethernet 1/1. Type 'confirm', or it is rolled back in 60 seconds.\n";
const std::string kUnset = "! Settings of lab\nconfigure\nend\n";
const std::string kPortSet = "! Settings of lab\nconfigure\ninterface ethernet 1/1\n  switchport mtu 9000\nend\n";
const std::string kTooLate = "pmsh: the commit was not confirmed in time: it was rolled back for ethernet 1/1.\n";

TEST(CommitConfirmed, StaysWhenItIsConfirmed) {
  const outcome result = committed("commit confirmed 60\nclock advance 59\nconfirm\nclock advance 3600\n" + kShowPort);
  EXPECT_EQ(result.out, kCommitted + "Confirmed for ethernet 1/1.\n" + kPortSet);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exit_code, 0);
}

TEST(CommitConfirmed, IsRolledBackWhenItsTimeIsOver) {
  const outcome result =
      committed("commit confirmed 60\n" + kShowPort + "clock advance 60\n" + kShowPort + "undo\nconfirm\n");
  EXPECT_EQ(result.out, kCommitted + kPortSet + kUnset);
  EXPECT_EQ(result.err.substr(0, kTooLate.size()), kTooLate);
  EXPECT_THAT(result.err, HasSubstr("pmsh: no commit is waiting for confirmation.\n"));
}

TEST(CommitConfirmed, WhatWasRolledBackIsInTheCandidateAgain) {
  const outcome result =
      committed("commit confirmed 60\nclock advance 60\ninterface ethernet 1/2\nshutdown\nshow diff\n");
  EXPECT_EQ(result.out, kCommitted + "ethernet 1/1\n  + switchport mtu 9000\nethernet 1/2\n  + shutdown\n");
}

TEST(CommitConfirmed, WhatWasDiscardedMeanwhileIsNotInTheCandidateAgain) {
  for (const char* const lines : {"discard\n", "end\nconfigure candidate\n"})
    EXPECT_EQ(committed("commit confirmed 60\n" + std::string(lines) + "clock advance 60\nshow diff\n").out,
              kCommitted + "The candidate is the same as the running configuration.\n")
        << lines;
}

TEST(CommitConfirmed, NothingElseIsChangedMeanwhile) {
  for (const char* const lines : {"shutdown\ncommit\n", "shutdown\ncommit confirmed 5\n", "discard\nend\nundo\n",
                                  "end\nconfigure\ninterface loopback 9\n", "end\nconfigure\nno interface loopback 0\n",
                                  "end\nconfigure dry-run\n"}) {
    const outcome result =
        committed("commit confirmed 60\nclock advance 18\n" + std::string(lines) + "show running-config\n");
    EXPECT_THAT(
        result.err,
        HasSubstr("pmsh: nothing was changed: a commit waits for 'confirm' and is rolled back in 42 seconds.\n"))
        << lines;
    EXPECT_THAT(result.out, Not(HasSubstr("  shutdown"))) << lines;
    EXPECT_THAT(result.out, HasSubstr("  switchport mtu 9000")) << lines;
  }
}

TEST(CommitConfirmed, ItIsNotStoredMeanwhile) {
  for (const char* const line : {"write\n", "copy running-config startup-config\n"}) {
    std::filesystem::remove_all(state_directory());
    const outcome refused = committed("commit confirmed 60\n" + std::string(line) + "show startup-config\nconfirm\n");
    EXPECT_EQ(refused.err.substr(0, 90),
              "pmsh: nothing was changed: a commit waits for 'confirm' and is rolled back in 60 seconds.\n")
        << line;
    EXPECT_EQ(refused.exit_code, 1);
    EXPECT_THAT(refused.err, HasSubstr("pmsh: there is no startup-config yet."));
    const outcome stored = committed("commit confirmed 60\nconfirm\n" + std::string(line) + "show startup-config\n");
    EXPECT_THAT(stored.out, HasSubstr("  switchport mtu 9000"));
    EXPECT_EQ(stored.exit_code, 0) << stored.err;
  }
}

TEST(CommitConfirmed, TheEndOfTheShellRollsItBack) {
  for (const char* const end : {"", "quit\n", "end\nexit\n"}) {
    const outcome result = committed("commit confirmed 60\n" + std::string(end));
    EXPECT_EQ(result.err, "pmsh: the commit was not confirmed: it was rolled back for ethernet 1/1.\n") << end;
    EXPECT_EQ(result.exit_code, 1) << end;
  }
  EXPECT_EQ(committed("show interface loopback 5 ifindex\ncommit confirmed 60\n").exit_code, 4) << "the first one";
}

TEST(CommitConfirmed, WithoutChangesItWaitsForNothing) {
  EXPECT_EQ(committed("discard\ncommit confirmed 60\nconfirm\n").err, "pmsh: no commit is waiting for confirmation.\n");
  EXPECT_EQ(committed("commit confirmed 86401\n").err.substr(0, 54),
            "pmsh: 'commit confirmed' takes 1 to 86400 seconds.\npms");
}

TEST(CommitConfirmed, CreatedAndDeletedInterfacesAreRolledBack) {
  const outcome result = committed(
      "interface loopback 9\nno interface loopback 0\ncommit confirmed 60\nclock advance 60\n"
      "show running-config\nshow interface loopback 0 ifindex | include loopback\n");
  EXPECT_THAT(result.err, HasSubstr("rolled back for ethernet 1/1, loopback 0, loopback 9."));
  EXPECT_THAT(result.out,
              HasSubstr("! Settings of lab\nconfigure\ninterface ethernet 1/11-12\n  channel-group 7\nend\n"));
}

TEST(CommitConfirmed, InADryRunNothingWaits) {
  EXPECT_EQ(committed("commit confirmed 60\nconfirm\n", {"--dry-run"}).exit_code, 1);
}

}  // namespace
}  // namespace session
