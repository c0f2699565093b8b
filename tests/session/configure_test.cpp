// The configuration: modes, settings, what refused, taking back, and files.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string kConfiguredSwitch = test_file("configuration.yaml");

// The members that the switch file has.
const std::string kSetMembers = "interface ethernet 1/11-12\n  channel-group 7\n";

// Settings of some interfaces, then one command.
outcome configured(const std::string& range, const std::string& settings, const std::string& then = "") {
  return run_lines("configure\ninterface " + range + "\n" + settings + "\nend\n" + then + "\n");
}

std::string running(const std::string& lines) {
  const outcome result = run_lines(lines + "\nshow running-config\n");
  EXPECT_EQ(result.err, "");
  return result.out.substr(result.out.find("! Settings"));
}

// A file that is gone at the end.
struct file_of_test {
  explicit file_of_test(const std::string& text)
      : path(testing::TempDir() + "pmsh-" + std::to_string(getpid()) + ".cfg") {
    std::ofstream(path) << text;
  }
  ~file_of_test() { std::remove(path.c_str()); }
  file_of_test(const file_of_test&) = delete;
  file_of_test& operator=(const file_of_test&) = delete;

  std::string text() const {
    std::ostringstream all;
    all << std::ifstream(path).rdbuf();
    return all.str();
  }

  std::string path;
};

TEST(Configure, WhatWasAppliedIsShown) {
  EXPECT_EQ(configured("ethernet 1/1-2", "shutdown\nswitchport mtu 9000", "show interface ethernet 1/1 brief").out,
            "\n--------------------------------------------------------------------------------\n"
            "Interface                Status     IP Address        Speed    MTU   Port\n"
            "                                                                     Channel\n"
            "--------------------------------------------------------------------------------\n"
            "Ethernet1/1              down       --                --       9000  \n");
}

TEST(Configure, EverySettingWithAWordIsInTheRunningConfig) {
  const std::string ethernet =
      "  description to the lab\n"
      "  no switchport\n"
      "  switchport mode trunk\n"
      "  switchport duplex full\n"
      "  switchport mtu 9000\n"
      "  switchport trunk mode auto\n"
      "  switchport encapsulation eisl\n"
      "  switchport beacon\n"
      "  switchport promiscuous-mode on\n"
      "  switchport monitor ingress learning\n"
      "  port down on link failure\n"
      "  out-of-service\n"
      "  shutdown\n";
  const std::string fibre =
      "  description storage\n"
      "  switchport mode fl\n"
      "  switchport speed auto max 4000\n"
      "  switchport bb-credit 12 mode fx\n"
      "  switchport bb-credit performance-buffers 6\n"
      "  switchport bb-credit extended 300\n"
      "  switchport bb-credit multiplier 5\n"
      "  switchport bb-scn\n"
      "  switchport receive-buffer-size 1024\n"
      "  switchport ignore bit-errors\n";
  EXPECT_EQ(running("configure\ninterface ethernet 2/1-2\n" + ethernet + "interface fc 3/5\n" + fibre + "end"),
            "! Settings of lab\nconfigure\n" + kSetMembers + "interface ethernet 2/1-2\n" + ethernet +
                "interface fc 3/5\n" + fibre + "end\n");
}

// The configuration is for a switch that starts as this one did.
TEST(Configure, AUsualValueIsWrittenWhereTheSwitchStartsWithAnother) {
  const file_of_test desks(
      "switch: {name: desks}\ncards: [{slot: 1}]\ninterfaces:\n"
      "  - {range: ethernet 1/1-2, description: desk, mode: trunk, speed: 100, duplex: half, mtu: 9000}\n");
  const std::string back =
      "no description\nno switchport mode\nno switchport speed\nno switchport duplex\nno switchport mtu\n";
  const outcome result =
      run_shell_on(desks.path, {}, "configure\ninterface ethernet 1/1\n" + back + "end\nshow running-config\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "! Settings of desks\nconfigure\ninterface ethernet 1/1\n"
            "  no description\n"
            "  switchport mode access\n"
            "  switchport speed auto\n"
            "  switchport duplex auto\n"
            "  switchport trunk allowed vlan 1-4094\n"
            "  switchport mtu 1500\n"
            "interface ethernet 1/2\n"
            "  description desk\n"
            "  switchport mode trunk\n"
            "  switchport speed 100\n"
            "  switchport duplex half\n"
            "  switchport mtu 9000\nend\n");
}

TEST(Configure, WhatCannotBeSetIsAComment) {
  const file_of_test tunnel(
      "switch: {name: wan}\ninterfaces:\n  - {range: fcip 1, description: Remote site, mode: e}\n");
  EXPECT_EQ(run_shell_on(tunnel.path, {"-c", "show running-config"}).out,
            "! Settings of wan\nconfigure\ninterface fcip 1\n"
            "  description Remote site\n"
            "  ! cannot be set: switchport mode e\nend\n");
}

// A configuration of lines in a file that loads on the switch that wrote it, and is written the same there.
void expect_to_load(const std::string& switch_file, const std::string& lines) {
  const std::string written = run_shell_on(switch_file, {"--yes"}, lines + "\nshow running-config\n").out;
  const file_of_test file(written);
  const outcome loaded = run_shell_on(switch_file, {"--config", file.path, "-c", "show running-config"});
  EXPECT_EQ(loaded.err, "") << lines;
  EXPECT_EQ(loaded.out, written) << lines;
}

TEST(Configure, WhatFollowsFromOtherSettingsLoadsAsItWas) {
  const std::string campus = PMSH_SWITCHES "/campus.yaml", storage = PMSH_SWITCHES "/storage.yaml";
  expect_to_load(campus, "configure\ninterface ethernet 2/1\nno channel-group\nend");
  expect_to_load(campus, "configure\ninterface ethernet 1/43\nno channel-group\nchannel-group 20\nend");
  expect_to_load(campus, "configure\ninterface port-channel 21\nno switchport mode\nno switchport\nend");
  expect_to_load(storage, "configure\ninterface fc 1/21\nno channel-group\nend");
  expect_to_load(storage,
                 "configure\ninterface port-channel 102\nswitchport mode access\n"
                 "switchport trunk allowed vlan none\nend");
}

TEST(Configure, APortThatRefusesToBeAnEdgeIsNone) {
  const outcome result = run_shell_on(PMSH_SWITCHES "/storage.yaml", {"--yes"},
                                      "configure\ninterface server 1\nswitchport host\nend\n"
                                      "show running-config interface server 1\n");
  EXPECT_NE(result.exit_code, 0);
  EXPECT_THAT(result.out, Not(HasSubstr("  switchport host")));
}

TEST(Configure, EveryModeHasItsWord) {
  for (const char* const mode : {"trunk", "fabric", "private-vlan host", "private-vlan promiscuous", "sd", "tl"}) {
    const std::string line = std::string("  switchport mode ") + mode + "\n";
    EXPECT_EQ(running("configure\ninterface ethernet 1/3\n" + line + "end"),
              "! Settings of lab\nconfigure\ninterface ethernet 1/3\n" + line + kSetMembers + "end\n");
  }
  for (const char* const mode : {"e", "f", "fl", "fx", "np", "st"}) {
    const std::string line = std::string("  switchport mode ") + mode + "\n";
    EXPECT_EQ(running("configure\ninterface fc 3/1\n" + line + "end"),
              "! Settings of lab\nconfigure\n" + kSetMembers + "interface fc 3/1\n" + line + "end\n");
  }
}

TEST(Configure, EverySpeedHasItsWord) {
  for (const char* const speed : {"10", "100", "1000"}) {
    const std::string line = std::string("  switchport speed ") + speed + "\n";
    EXPECT_EQ(running("configure\ninterface ethernet 1/3\n" + line + "end"),
              "! Settings of lab\nconfigure\ninterface ethernet 1/3\n" + line + kSetMembers + "end\n");
  }
  for (const char* const speed : {"2000", "4000", "8000", "auto max 2000"}) {
    const std::string line = std::string("  switchport speed ") + speed + "\n";
    EXPECT_EQ(running("configure\ninterface fc 3/1\n" + line + "end"),
              "! Settings of lab\nconfigure\n" + kSetMembers + "interface fc 3/1\n" + line + "end\n");
  }
}

TEST(Configure, VlansFlowControlAndMembershipAreSettings) {
  const std::string trunk =
      "  switchport mode trunk\n"
      "  switchport access vlan 7\n"
      "  switchport trunk native vlan 10\n"
      "  switchport trunk allowed vlan 5,10,20-24,26-30\n"
      "  flowcontrol receive on\n"
      "  flowcontrol send desired\n";
  EXPECT_EQ(running("configure\ninterface ethernet 2/1\nswitchport mode trunk\nswitchport access vlan 7\n"
                    "switchport trunk native vlan 10\nswitchport trunk allowed vlan 10,20-30\n"
                    "switchport trunk allowed vlan add 5\nswitchport trunk allowed vlan remove 25,4094\n"
                    "flowcontrol receive on\nflowcontrol send desired\n"
                    "interface ethernet 1/11\nno channel-group\ninterface ethernet 1/3\nchannel-group 7\nend"),
            "! Settings of lab\nconfigure\ninterface ethernet 1/3\n  channel-group 7\n"
            "interface ethernet 1/11\n  no channel-group\ninterface ethernet 1/12\n  channel-group 7\n"
            "interface ethernet 2/1\n" +
                trunk + "end\n");
  EXPECT_EQ(running("configure\ninterface ethernet 2/1\nswitchport mode trunk\nno switchport access vlan\n"
                    "no switchport trunk native vlan\nswitchport trunk allowed vlan none\nflowcontrol receive off\n"
                    "interface ethernet 2/2\nswitchport mode trunk\nno switchport trunk allowed vlan\nend"),
            "! Settings of lab\nconfigure\n" + kSetMembers +
                "interface ethernet 2/1\n  switchport mode trunk\n  switchport trunk allowed vlan none\n"
                "interface ethernet 2/2\n  switchport mode trunk\nend\n")
      << "what is as always is left out";
}

TEST(Configure, AListOfVlansMayNeedSeveralLines) {
  std::string list = "2";
  for (int vlan = 4; vlan <= 240; vlan += 2)
    list += (vlan % 120 == 2 ? "\nswitchport trunk allowed vlan add " : ",") + std::to_string(vlan);
  const std::string lines = running(
      "configure\ninterface ethernet 2/1\nswitchport mode trunk\nswitchport trunk allowed vlan " + list + "\nend");
  const file_of_test file(lines);
  EXPECT_THAT(lines, HasSubstr("  switchport trunk allowed vlan add 122,124,"));
  EXPECT_EQ(run_shell_on(kConfiguredSwitch, {"--config", file.path, "-c", "show running-config"}).out, lines);
}

TEST(Configure, MembersTakeOverWhatTheirChannelIsSetTo) {
  const outcome result = configured("port-channel 7", "switchport mtu 9000\ninterface ethernet 1/3\nchannel-group 7",
                                    "show interface ethernet 1/3 brief");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(result.out, HasSubstr("9000  \n"));
}

TEST(Configure, RefusedVlansAndChannelsAreReportedByPort) {
  const outcome none = configured("ethernet 1/1-2", "channel-group 9");
  EXPECT_EQ(none.exit_code, 3);
  EXPECT_EQ(none.out,
            "Command failed for following interfaces:\n"
            "Ethernet1/1 failed for channel-group 9 with no such interface\n"
            "Ethernet1/2 failed for channel-group 9 with no such interface\n\n");
  EXPECT_EQ(configured("ethernet 1/11", "switchport access vlan 9").out,
            "Command failed for following interfaces:\n"
            "Ethernet1/11 failed for switchport access vlan 9 with port belongs to a port-channel\n\n");
  EXPECT_EQ(configured("ethernet 1/1", "switchport access vlan 4095").err,
            "pmsh: expected a number from 1 to 4094 for VLAN, not '4095'.\n");
  const outcome lost = run_shell_on(kConfiguredSwitch, {"--inject-fault", "port-manager=lost"},
                                    "configure\ninterface ethernet 1/1\nflowcontrol send on\n");
  EXPECT_EQ(lost.exit_code, 2);
}

TEST(Configure, TheRunningConfigRebuildsTheState) {
  const std::string lines =
      "configure\ninterface ethernet 1/1-4, ethernet 2/3\nswitchport mode trunk\ndescription \"a | b\"\nshutdown\n"
      "interface ethernet 1/2\nno shutdown\ninterface fc 3/1-8\nswitchport speed 4000\nshutdown\n"
      "interface port-channel 7\nswitchport mtu 9000\ninterface ethernet 1/5\nswitchport host\nend\n";
  const std::string first = running(lines);
  const file_of_test file(first);
  const std::string show = "show interface | exclude rate\nshow interface status\n";
  EXPECT_EQ(
      run_shell_on(kConfiguredSwitch, {"--config", file.path, "-c", "show running-config"})
          .out.substr(
              std::string(" Warning: portfast should only be enabled on ports connected to a single\n host. Connecting "
                          "hubs, concentrators, switches, bridges, etc... to this\n interface  when portfast is "
                          "enabled, can cause temporary bridging loops.\n Use with CAUTION\n\n\n\n")
                  .size()),
      first);
  const std::string before = run_lines(lines + show, {"--clock", "1800000000"}).out;
  const std::string after = run_shell_on(kConfiguredSwitch, {"--clock", "1800000000", "--config", file.path}, show).out;
  EXPECT_EQ(before, after);
}

TEST(Configure, ShippedSwitchesRunFromTheirRunningConfig) {
  for (const char* const name : {"campus.yaml", "storage.yaml"}) {
    const std::string first = run_shell_on(shipped_switch(name), {"-c", "show running-config"}).out;
    const file_of_test file(first);
    const outcome second =
        run_shell_on(shipped_switch(name), {"--yes", "--config", file.path, "-c", "show running-config"});
    EXPECT_EQ(second.err, "") << name;
    EXPECT_EQ(second.out, first) << name;
  }
}

TEST(Configure, RefusalsAreReportedByError) {
  const outcome result = configured("ethernet 1/7-12", "switchport mtu 9000", "show interface ethernet 1/7-12 brief");
  EXPECT_EQ(result.exit_code, 3);
  EXPECT_EQ(result.err, "");
  // Port 10 has a status whose text says all; groups stand in the opposite order of their first port.
  EXPECT_EQ(result.out.substr(0, result.out.find("\n\n")),
            "Ethernet1/11-12: port belongs to a port-channel\n"
            "operation not possible at the moment\n"
            "Ethernet1/9: port is locked");
  EXPECT_THAT(result.out, HasSubstr("Ethernet1/8              up         --                1000     9000"));
  EXPECT_THAT(result.out, HasSubstr("Ethernet1/9              up         --                1000     1500"));
}

constexpr char kOutOfServiceWarning[] =
    "Putting an interface into out-of-service will cause its shared resource configuration to revert to default\n";

// Ethernet 1/x and 2/x are of two kinds.
// How many messages a setting of these interfaces sends.
unsigned messages_of_setting(const std::string& interfaces) {
  const outcome result =
      configured(interfaces, "show transport | include sent\nshutdown\nshow transport | include sent");
  EXPECT_EQ(result.exit_code, 0);
  unsigned before = 0, after = 0;
  EXPECT_EQ(std::sscanf(result.out.c_str(), "Messages sent: %u Messages sent: %u", &before, &after), 2) << result.out;
  return after - before;
}

TEST(Configure, ASettingOfSeveralKindsIsOneRequest) {
  EXPECT_EQ(messages_of_setting("ethernet 2/1, ethernet 1/1, fc 3/1-2"), messages_of_setting("ethernet 2/1"));
}

TEST(Configure, ASettingOfSeveralKindsIsConfirmedOnce) {
  EXPECT_EQ(configured("ethernet 2/1, ethernet 1/1, fc 3/1", "out-of-service").out, kOutOfServiceWarning);
}

TEST(Configure, ASettingOfSeveralKindsIsRefusedAsAWhole) {
  const outcome result = configured("ethernet 1/1, ethernet 2/1", "no switchport", "show running-config");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out,
            "Error: command not supported on interface type\n! Settings of lab\nconfigure\n" + kSetMembers + "end\n");
}

TEST(Configure, PortsOfSeveralKindsThatRefuseAlikeAreOneGroupInTheOrderOfTheUser) {
  const outcome result = configured("ethernet 2/1, ethernet 1/1-2", "switchport bb-credit 12");
  EXPECT_EQ(result.exit_code, 3);
  EXPECT_EQ(result.out, "Ethernet2/1, Ethernet1/1-2: operation not allowed on the interface\n");
  EXPECT_EQ(configured("ethernet 2/1, ethernet 1/1", "channel-group 9").out,
            "Command failed for following interfaces:\n"
            "Ethernet2/1 failed for channel-group 9 with no such interface\n"
            "Ethernet1/1 failed for channel-group 9 with no such interface\n\n");
}

// Channel 2 is of another subtype than those beside it.
TEST(Configure, APortChannelOfAnotherSubtypeBelongsToItsRange) {
  const outcome result = run_shell_on(shipped_switch("storage.yaml"), {},
                                      "configure\ninterface port-channel 1-3\ndescription of the range\nend\n"
                                      "show interface port-channel 1-3 description | include range\n");
  EXPECT_EQ(result.out,
            "port-channel1            of the range\n"
            "port-channel2            of the range\n"
            "port-channel3            of the range\n");
}

// Ranges that do not follow each other, more than an argument of the library holds.
std::string many_ranges() {
  std::string range = "ethernet 1/1";
  for (int i = 0; i < 69; ++i) range += i % 2 == 0 ? ", 1/3" : ", 1/1";
  return range;
}

TEST(Configure, MoreRangesThanAnArgumentHoldsAreRefusedOnce) {
  EXPECT_EQ(configured(many_ranges(), "no switchport").out, "Error: command not supported on interface type\n");
  const outcome set = configured(many_ranges(), "switchport mtu 9000", "show interface ethernet 1/1-3 brief");
  EXPECT_EQ(set.exit_code, 0);
  EXPECT_THAT(set.out, HasSubstr("Ethernet1/2              up         --                1000     1500"));
  EXPECT_THAT(set.out, HasSubstr("Ethernet1/3              up         --                1000     9000"));
}

TEST(Configure, AllRefusedIsAnExitCodeToo) {
  EXPECT_EQ(configured("ethernet 1/9", "shutdown").exit_code, 3);
  EXPECT_EQ(configured("ethernet 1/1", "shutdown").exit_code, 0);
}

TEST(Configure, RefusalsHaveTheirStatusInTheStructuredForm) {
  const outcome result = configured("ethernet 1/8-9, ethernet 1/11", "switchport mtu 9000 | json");
  EXPECT_EQ(result.exit_code, 3);
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  ASSERT_FALSE(document.HasParseError()) << result.out;
  const auto& interfaces = document["interfaces"];
  ASSERT_EQ(interfaces.Size(), 3U) << result.out;
  EXPECT_STREQ(interfaces[0]["interface"].GetString(), "Ethernet1/8");
  EXPECT_EQ(interfaces[0]["status"].GetUint(), 0U);
  EXPECT_TRUE(interfaces[0]["text"].IsNull());
  EXPECT_STREQ(interfaces[1]["interface"].GetString(), "Ethernet1/9");
  EXPECT_EQ(interfaces[1]["status"].GetUint(), 0x40290022U);
  EXPECT_STREQ(interfaces[1]["text"].GetString(), "port is locked");
  EXPECT_STREQ(interfaces[2]["interface"].GetString(), "Ethernet1/11");
  EXPECT_EQ(interfaces[2]["status"].GetUint(), 0x40290015U);
}

TEST(Configure, AFailedRequestIsAnotherExitCode) {
  const outcome result =
      run_lines("configure\ninterface ethernet 1/1\n", {"-f", "-", "--inject-fault", "statistics=lost"});
  EXPECT_EQ(result.exit_code, 0);
  const outcome lost = run_lines("configure\ninterface ethernet 1/1\nshutdown\n",
                                 {"-f", "-", "--inject-fault", "port-manager=interrupt:0"});
  EXPECT_EQ(lost.exit_code, 0) << lost.out;
  EXPECT_EQ(
      run_lines("configure\ninterface ethernet 1/1\nshutdown\n", {"-f", "-", "--inject-fault", "port-manager=reject"})
          .exit_code,
      2);
}

TEST(Configure, WhatIsWrongWithACommandIsSaidBeforeAnythingIsSent) {
  const outcome result = configured("fc 3/1", "switchport receive-buffer-size 2110", "show running-config");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "error: invalid receive buffer size (not a multiple of 4)\n! Settings of lab\nconfigure\n" +
                            kSetMembers + "end\n");
  EXPECT_EQ(configured("ethernet 1/1", "switchport").out, "Error: command not supported on interface type\n");
  EXPECT_EQ(configured("port-channel 7", "switchport beacon").out, "Beacon mode not supported for port channels\n");
  EXPECT_EQ(configured("ethernet 1/1", "no switchport host").out,
            "The 'no' form of this command has no effect on the system\n");
  EXPECT_EQ(configured("ethernet 1/1", "switchport trunk encapsulation dot1q").out,
            "Command - switchport trunk encapsulation dot1q - is not implemented yet\n");
}

TEST(Configure, NamesOfEightyCharactersAreTheLongest) {
  const std::string longest(80, 'n');
  EXPECT_EQ(configured("ethernet 1/1", "description " + longest).exit_code, 0);
  for (const std::size_t length : {81U, 10'000U}) {
    const outcome result = configured("ethernet 1/1", "description " + std::string(length, 'n'));
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(result.out, "error: name too long. max size allowed is 80\n");
  }
  const outcome strange =
      configured("ethernet 1/1", "description %s%n \x1b[31m", "show interface ethernet 1/1 description");
  EXPECT_THAT(strange.out, HasSubstr("%s%n \\x1b[31m"));
}

TEST(Configure, ModeEBelongsToTheFirstPortOfAGroup) {
  const outcome result = configured("fc 3/1-3", "switchport mode e");
  EXPECT_EQ(result.exit_code, 3);
  EXPECT_EQ(result.out,
            "fc3/2: (error) mode E allowed only for interface fc3/1 in group fc3/1-4\n"
            "fc3/3: (error) mode E allowed only for interface fc3/1 in group fc3/1-4\n");
}

TEST(Configure, AUserOfSomeVsansMayNotChangeModes) {
  const outcome result =
      run_lines("configure\ninterface ethernet 1/1\nswitchport mode trunk\n", {"--user", "guest", "-f", "-"});
  EXPECT_EQ(result.exit_code, 5);
  EXPECT_EQ(result.out, "error: port mode configuration not allowed\n");
}

TEST(Configure, OfTheManagementPortOnlyTheConsoleSetsTheSpeedOfSuchCards) {
  EXPECT_EQ(configured("mgmt 0", "switchport duplex half").exit_code, 0);
}

TEST(Configure, HostRunsItsThreeSteps) {
  const outcome result = configured("ethernet 1/11", "switchport host", "show running-config interface ethernet 1/11");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out,
            " Warning: portfast should only be enabled on ports connected to a single\n"
            " host. Connecting hubs, concentrators, switches, bridges, etc... to this\n"
            " interface  when portfast is enabled, can cause temporary bridging loops.\n"
            " Use with CAUTION\n\n\n\n"
            "! Settings of lab\nconfigure\ninterface ethernet 1/11\n  switchport host\n  no channel-group\nend\n");
}

TEST(Configure, HostSaysWhichStepFailedWhere) {
  const outcome result = configured("ethernet 1/8-9", "switchport host");
  EXPECT_EQ(result.exit_code, 3);
  EXPECT_THAT(result.out,
              HasSubstr("Command failed for following interfaces:\n"
                        "Ethernet1/9 failed for removing port from port-channel with port is locked\n\n"
                        "Command failed for following interfaces:\n"
                        "Ethernet1/9 failed for setting port to switchport mode access with port is locked\n\n"
                        "Command failed for following interfaces:\n"
                        "Ethernet1/9 failed for setting stp port type to edge with port is locked\n\n"));
}

TEST(Configure, TheLastChangeIsTakenBack) {
  const outcome result = configured("ethernet 1/1-3, ethernet 2/2", "switchport mtu 9000\nswitchport mtu 4000\nundo",
                                    "show running-config");
  EXPECT_EQ(result.out,
            "Undone for ethernet 1/1-3, ethernet 2/2.\n"
            "! Settings of lab\nconfigure\ninterface ethernet 1/1-3\n  switchport mtu 9000\n" +
                kSetMembers +
                "interface ethernet 2/2\n"
                "  switchport mtu 9000\nend\n");
  EXPECT_EQ(result.err, "");
}

TEST(Configure, TheStandardOutputIsWrittenToUnderAnyName) {
  const std::string expected = run_lines("show running-config\n").out;
  EXPECT_EQ(run_lines("copy running-config -\n").out, expected);
  const outcome result = run_lines("copy running-config /dev/stdout\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, expected + "Written to '/dev/stdout'.\n");
}

TEST(Configure, AFileEndsWithTheFirstFailure) {
  const file_of_test file("! a comment\nconfigure\n\ninterface ethernet 1/1\nswitchport mtu 99999\nshutdown\n");
  const outcome result = run_shell_on(kConfiguredSwitch, {"-f", file.path, "-c", "show running-config"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "pmsh: expected a number from 1 to 65535 for BYTES, not '99999'.\npmsh: " + file.path +
                            ":5: 'switchport mtu 99999' failed; the remaining lines were not run. Use --keep-going to "
                            "continue.\n");
}

TEST(Configure, AFileGoesOnWhenItIsTo) {
  const file_of_test file("configure\ninterface ethernet 1/1\nswitchport mtu 99999\nshutdown\nend\n");
  const outcome result =
      run_shell_on(kConfiguredSwitch, {"--keep-going", "-f", file.path, "-c", "show running-config"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "! Settings of lab\nconfigure\ninterface ethernet 1/1\n  shutdown\n" + kSetMembers + "end\n");
  EXPECT_THAT(result.err, HasSubstr(":3: 'switchport mtu 99999' failed.\n"));
}

TEST(Configure, AFileToBeginWithGoesOnWhenItIsTo) {
  const file_of_test file("configure\ninterface ethernet 1/1\nswitchport mtu 99999\nshutdown\nend\n");
  const outcome ended = run_shell_on(kConfiguredSwitch, {"--config", file.path, "-c", "show running-config"});
  EXPECT_EQ(ended.exit_code, 1);
  EXPECT_EQ(ended.out, "");
  const outcome result =
      run_shell_on(kConfiguredSwitch, {"--keep-going", "--config", file.path, "-c", "show running-config"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "! Settings of lab\nconfigure\ninterface ethernet 1/1\n  shutdown\n" + kSetMembers + "end\n");
}

TEST(Configure, FilesThatCannotBeReadAreNamed) {
  const outcome result = run_shell_on(kConfiguredSwitch, {"-f", "/nowhere/site.cfg"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "pmsh: cannot read '/nowhere/site.cfg': No such file or directory.\n");
}

TEST(Configure, SettingsAreWrittenToFiles) {
  const file_of_test file("what was there before");
  const outcome result = configured("ethernet 1/1", "shutdown", "copy running-config " + file.path);
  EXPECT_EQ(result.out, "Written to '" + file.path + "'.\n");
  EXPECT_EQ(file.text(), "! Settings of lab\nconfigure\ninterface ethernet 1/1\n  shutdown\n" + kSetMembers + "end\n");
  const outcome failed = run_lines("copy running-config /nowhere/site.cfg\n");
  EXPECT_EQ(failed.exit_code, 1);
  EXPECT_EQ(failed.err, "pmsh: cannot write '/nowhere/site.cfg': No such file or directory.\n");
}

TEST(Configure, TheStartupConfigIsKeptUnderTheNameOfTheSwitch) {
  EXPECT_EQ(configured("ethernet 1/1", "shutdown", "copy running-config startup-config").exit_code, 0);
  EXPECT_EQ(run_shell_on(kConfiguredSwitch, {"-c", "show running-config"}).out,
            "! Settings of lab\nconfigure\n" + kSetMembers + "end\n");
  EXPECT_EQ(run_shell_on(kConfiguredSwitch, {"--config", "startup-config", "-c", "show running-config"}).out,
            "! Settings of lab\nconfigure\ninterface ethernet 1/1\n  shutdown\n" + kSetMembers + "end\n");
}

// The last port of each slot, from the names of a table.
std::map<int, int> ports_by_slot(const std::string& table) {
  std::map<int, int> last;
  const std::regex name("Ethernet([0-9]+)/([0-9]+) ");
  for (std::sregex_iterator it(table.begin(), table.end(), name), end; it != end; ++it)
    last[std::stoi((*it)[1])] = std::max(last[std::stoi((*it)[1])], std::stoi((*it)[2]));
  return last;
}

TEST(Configure, TwoThousandPortsInOneCommand) {
  std::string range;
  for (const auto& [slot, port] :
       ports_by_slot(run_program(PMSH_PROGRAM, {"--giant", "2000", "-c", "show interface description"}).out))
    range += (range.empty() ? "" : ", ") + ("ethernet " + std::to_string(slot) + "/1-" + std::to_string(port));
  const outcome result =
      run_program(PMSH_PROGRAM, {"--giant", "2000", "-f", "-"},
                  "configure\ninterface " + range +
                      "\ndescription of two thousand\nend\nshow interface description | include thousand | count\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, "2000\n");
}

TEST(ConfigureAtThePrompt, PromptsNameTheModeAndQuestionsWait) {
  terminal shell({});
  ASSERT_TRUE(shell.shows_prompt()) << shell.unread();
  shell.type("configure terminal\r");
  ASSERT_TRUE(shell.shows("lab(config)# "));
  shell.type("interface mgmt 0\r");
  ASSERT_TRUE(shell.shows("lab(config-if)# "));
  shell.type("shutdown\r");
  ASSERT_TRUE(shell.shows("Shutting down this interface will drop all telnet and SSH sessions."));
  ASSERT_TRUE(shell.shows("Do you wish to continue(y/n)?"));
  shell.type("n\r");
  ASSERT_TRUE(shell.shows("lab(config-if)# "));
  shell.type("nosuchword\r");
  ASSERT_TRUE(shell.shows("unknown word 'nosuchword'"));
  shell.type("exit\r");
  ASSERT_TRUE(shell.shows("lab(config)# "));
  shell.type("end\r");
  ASSERT_TRUE(shell.shows("lab# "));
  shell.type("show running-config interface mgmt 0\r");
  ASSERT_TRUE(shell.shows("interface mgmt 0\r\n  description Out of band\r\nend\r\n")) << shell.unread();
  ASSERT_TRUE(shell.shows_prompt());
  shell.type("exit\r");
  EXPECT_EQ(shell.exit_code(), 0);
}

// The question is asked by the first request; its answer holds for those that follow.
TEST(ConfigureAtThePrompt, ManyRangesAreConfirmedOnce) {
  terminal shell({}, kConfiguredSwitch);
  ASSERT_TRUE(shell.shows_prompt()) << shell.unread();
  shell.type("configure\rinterface " + many_ranges() + "\rout-of-service\r");
  ASSERT_TRUE(shell.shows("Do you wish to continue(y/n)?")) << shell.unread();
  shell.type("n\r");
  ASSERT_TRUE(shell.shows("lab(config-if)# ")) << shell.unread();
  shell.type("out-of-service\r");
  ASSERT_TRUE(shell.shows("Do you wish to continue(y/n)?")) << shell.unread();
  shell.type("y\r");
  ASSERT_TRUE(shell.shows("lab(config-if)# ")) << shell.unread();
  shell.type("show running-config interface ethernet 1/1-3\r");
  ASSERT_TRUE(shell.shows("interface ethernet 1/1\r\n  out-of-service\r\ninterface ethernet 1/3\r\n  out-of-service"))
      << shell.unread();
}

TEST(ConfigureAtThePrompt, YesAnswersQuestions) {
  terminal shell({"--yes"});
  ASSERT_TRUE(shell.shows_prompt()) << shell.unread();
  shell.type("configure\rinterface ethernet 1/1\rout-of-service\r");
  ASSERT_TRUE(shell.shows("revert to default"));
  shell.type("show running-config interface ethernet 1/1\r");
  ASSERT_TRUE(shell.shows("  out-of-service\r\n")) << shell.unread();
}

}  // namespace
}  // namespace session
