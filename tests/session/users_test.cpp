// Users who are restricted to some VSANs, on the storage director.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;

outcome run_as(const char* user, const std::string& command) {
  return run_shell_on(shipped_switch("storage.yaml"), {"--user", user, "-c", command});
}

TEST(Users, WithoutANameTheFirstOneIsTaken) {
  const outcome result =
      run_shell_on(shipped_switch("storage.yaml"), {"-c", "show interface port-channel 3 description | include ^port"});
  EXPECT_EQ(result.out, "port-channel3            Prepared for the archive\n");
  EXPECT_EQ(result.exit_code, 0);
}

TEST(Users, UnknownNameListsTheKnownOnes) {
  const outcome result = run_as("nobody", "help");
  EXPECT_EQ(result.err, "pmsh: unknown user 'nobody' in --user. Expected one of admin, storage-a, guest.\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(run_shell({"--user", "admin", "-c", "help"}).err,
            "pmsh: unknown user 'admin' in --user. This switch has no users.\n");
}

// Channel 1 carries VSANs 1, 10 to 12 and 20; channel 2 belongs to VSAN 10, channel 3 to VSAN 30.
TEST(Users, ListingsLeaveOutWhatTheUserMayNotSee) {
  const std::string list = "show interface description | include '^port-channel[1-9] '";
  EXPECT_EQ(run_as("admin", list).out,
            "port-channel1            Fabric B\n"
            "port-channel2            Metro\n"
            "port-channel3            Prepared for the archive\n");
  EXPECT_EQ(run_as("storage-a", list).out,
            "port-channel1            Fabric B\n"
            "port-channel2            Metro\n");
  EXPECT_EQ(run_as("guest", list).out, "");
}

TEST(Users, KindsWithoutVsansAreSeenByAll) {
  const outcome result = run_as("guest", "show interface description | include ^port-channel101");
  EXPECT_EQ(result.out, "port-channel101          Converged uplink\n");
  EXPECT_EQ(run_as("guest", "show interface mgmt 0, ethernet 4/1 status").exit_code, 0);
}

TEST(Users, NamedInterfaceThatTheUserMayNotSeeIsRefused) {
  const outcome result = run_as("storage-a", "show interface port-channel 1-3 description");

  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "pmsh: not permitted: user 'storage-a' may not see port-channel3. "
            "Omit the range to show every interface that this user may see.\n");
  EXPECT_EQ(result.exit_code, 5);
}

TEST(Users, RefusalIsAMessageOfTheStructuredForm) {
  const outcome result = run_as("guest", "show interface fc 1/1 status | json");
  EXPECT_THAT(result.out, HasSubstr("not permitted: user 'guest' may not see fc1/1."));
  EXPECT_EQ(result.exit_code, 5);
}

// fc1/9 belongs to VSAN 20; fc1/21 and fcip2 trunk VSANs 10 and 12; fc2/10 trunks 20 to 29.
TEST(Users, PortsAndTunnelsAreSeenByTheirVsans) {
  const std::pair<const char*, int> ports[] = {{"fc 1/1", 3},  {"fc 1/9", 5}, {"fc 1/21", 3},
                                               {"fc 2/10", 5}, {"fcip 2", 3}, {"fcip 7", 5},
                                               {"bay 1", 3},   {"bay 11", 5}, {"ext 10", 5}};
  for (const auto& [port, exit_code] : ports)
    EXPECT_EQ(run_as("storage-a", std::string("show interface ") + port).exit_code, exit_code) << port;
}

TEST(Users, RefusalOfManyNamesTheFirstEightAndCounts) {
  EXPECT_EQ(run_as("guest", "show interface fc 1/1-24").err,
            "pmsh: not permitted: user 'guest' may not see fc1/1, fc1/2, fc1/3, fc1/4, fc1/5, fc1/6, fc1/7, fc1/8, ... "
            "(24). Omit the range to show every interface that this user may see.\n");
}

TEST(Users, InterfaceThatDoesNotExistIsToldFirst) {
  EXPECT_EQ(run_as("guest", "show interface fc 1/1, fc 9/1").exit_code, 4);
}

}  // namespace
}  // namespace session
