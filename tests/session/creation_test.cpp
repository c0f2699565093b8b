// Interfaces that commands create and delete.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// A switch with a routed port (2/1) that has a sub-interface, switched ones (1/1 and 2/3), a member of a port-channel
// (2/2) and a loopback.
class routed_switch {
 public:
  routed_switch() : path_(testing::TempDir() + "pmsh-created-" + std::to_string(getpid()) + ".yaml") {
    std::ofstream(path_) << "switch: {name: lab, chassis-type: 10, slots: 3, base-mac: '02:00:00:00:00:00'}\n"
                            "cards: [{slot: 1, type: 1}, {slot: 2, type: 2}, {slot: 3, type: 3}]\n"
                            "users: [{name: operator}, {name: guest, vsans: 1}]\n"
                            "interfaces:\n"
                            "  - {range: mgmt 0}\n"
                            "  - {range: ethernet 1/1-2}\n"
                            "  - {range: ethernet 2/1, kind: 26, layer: 3}\n"
                            "  - {range: ethernet 2/1.10, kind: 26, layer: 3}\n"
                            "  - {range: ethernet 2/2, kind: 26, layer: 3, channel: 7}\n"
                            "  - {range: ethernet 2/3, kind: 26}\n"
                            "  - {range: port-channel 7, kind: 22}\n"
                            "  - {range: loopback 0}\n"
                            "  - {range: fc 3/1-2, vsan: 2}\n";
  }
  ~routed_switch() { std::remove(path_.c_str()); }
  routed_switch(const routed_switch&) = delete;
  routed_switch& operator=(const routed_switch&) = delete;

  outcome run(const std::string& lines, std::vector<std::string> options = {}) const {
    return run_shell_on(path_, std::move(options), lines);
  }

  // The running configuration after some lines of the configuration, which succeed in silence.
  std::string running(const std::string& lines, std::vector<std::string> options = {}) const {
    const outcome result = run("configure\n" + lines + "end\nshow running-config\n", std::move(options));
    EXPECT_EQ(result.err, "") << lines;
    EXPECT_EQ(result.exit_code, 0) << lines;
    return result.out;
  }

  // The running configuration of a fresh switch that has loaded, twice, the one that these lines lead to.
  std::string rebuilt(const std::string& lines) const {
    const std::string file = path_ + ".cfg";
    std::ofstream(file) << running(lines);
    const outcome result = run("", {"--config", file, "-f", file, "-c", "show running-config"});
    EXPECT_EQ(result.err, "") << lines;
    EXPECT_EQ(result.exit_code, 0) << lines;
    std::remove(file.c_str());
    return result.out;
  }

 private:
  std::string path_;
};

// What stands in a running configuration of interfaces beyond those of the untouched switch.
std::string added(const routed_switch& lab, const std::string& lines) {
  std::string before = lab.running("");
  std::string after = lab.running(lines);
  std::string rest;
  for (std::size_t start = 0; start < after.size(); start = after.find('\n', start) + 1) {
    const std::string line = after.substr(start, after.find('\n', start) + 1 - start);
    const std::size_t known = before.find(line);
    if (known == 0 || (known != std::string::npos && before[known - 1] == '\n'))
      before.erase(known, line.size());
    else
      rest += line;
  }
  EXPECT_EQ(before, "") << "lost lines";
  return rest;
}

TEST(Creation, ALoopbackIsCreatedByItsName) {
  const routed_switch lab;
  const outcome result = lab.run(
      "configure\ninterface loopback 77\ndescription of the lab\nend\nshow interface loopback 77 description | include "
      "lab\n");
  EXPECT_EQ(result.out, "loopback77               of the lab\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exit_code, 0);
}

TEST(Creation, WhatWasCreatedIsInTheRunningConfigurationWithoutSettingsToo) {
  const routed_switch lab;
  EXPECT_EQ(added(lab, "interface loopback 77\n"), "interface loopback 77\n");
  EXPECT_EQ(added(lab, "interface loopback 77-79\ninterface loopback 78\nshutdown\n"),
            "interface loopback 77\ninterface loopback 78\n  shutdown\ninterface loopback 79\n");
  EXPECT_EQ(added(lab, "interface loopback 0\n"), "") << "it was there";
}

TEST(Creation, ARangeIsFilledUp) {
  const routed_switch lab;
  EXPECT_EQ(added(lab, "interface loopback 0-3, loopback 7\n"), "interface loopback 1-3\ninterface loopback 7\n");
}

TEST(Creation, ASubInterfaceIsCreatedOnARoutedPort) {
  const routed_switch lab;
  const std::string text = added(lab, "interface ethernet 2/1.100\ndescription of the lab\n");
  EXPECT_THAT(text, StartsWith("interface ethernet 2/1.100\n  description of the lab\n"));
  const outcome shown = lab.run("configure\ninterface ethernet 2/1.100\nend\nshow interface ethernet 2/1.100 status\n");
  EXPECT_THAT(shown.out, HasSubstr("\nEth2/1.100 "));
}

TEST(Creation, MoreRangesThanAnArgumentHolds) {
  const routed_switch lab;
  std::string range = "loopback 101";
  for (int number = 103; number < 301; number += 2) range += ", loopback " + std::to_string(number);
  const outcome result = lab.run("configure\ninterface " + range + "\nend\nshow interface description\n");
  EXPECT_EQ(result.err, "");
  std::size_t count = 0;
  for (std::size_t at = 0; (at = result.out.find("\nloopback", at)) != std::string::npos; ++at) ++count;
  EXPECT_EQ(count, 101U);
}

constexpr const char* kNotAllowed = "pmsh: the port manager does not allow this command on these interfaces.\n";

struct refusal {
  std::string line;
  std::string out;
  std::string err;
  int exit_code;
};

TEST(Creation, RefusalsAreNamedAndCreateNothing) {
  const routed_switch lab;
  for (const refusal& it : {
           refusal{"interface ethernet 1/1.5", "Sub-interface configuration not allowed on L2 port\n", kNotAllowed, 5},
           refusal{"interface ethernet 2/2.5",
                   "Gigabit Ethernet port belongs to a port-channel\nSub interface creation not allowed\n", kNotAllowed,
                   5},
           refusal{"interface ethernet 2/1.4095", "Sub-interface 4095 is internal and not user-configurable\n",
                   kNotAllowed, 5},
           refusal{"interface ethernet 2/1.100-1200", "Total number of Gigabit Ethernet sub-interfaces exceeds 1000\n",
                   kNotAllowed, 5},
           refusal{"interface loopback 1-2000", "", "pmsh: cannot create loopback 1-2000: invalid interface range.\n",
                   2},
           refusal{"interface ethernet 9/9.5", "",
                   "pmsh: no such interface: ethernet 9/9.5. Type 'show interface ?' for the kinds.\n", 4},
           refusal{"interface port-channel 7.5", "",
                   "pmsh: no such interface: port-channel 7.5. Type 'show interface ?' for the kinds.\n", 4},
           refusal{"interface loopback 77, ethernet 9/9", "",
                   "pmsh: no such interface: ethernet 9/9. Type 'show interface ?' for the kinds.\n", 4},
           refusal{"interface loopback 77, ethernet 1/1.5", "Sub-interface configuration not allowed on L2 port\n",
                   kNotAllowed, 5},
       }) {
    const outcome result = lab.run("configure\n" + it.line + "\n");
    EXPECT_EQ(result.out, it.out) << it.line;
    EXPECT_EQ(result.err, it.err) << it.line;
    EXPECT_EQ(result.exit_code, it.exit_code) << it.line;
    EXPECT_EQ(lab.run("configure\n" + it.line + "\nend\nshow running-config | include interface\n").out,
              it.out + lab.run("show running-config | include interface\n").out)
        << it.line;
  }
}

TEST(Creation, AServiceThatIsLostIsNamed) {
  const routed_switch lab;
  for (const char* const line : {"interface loopback 77", "no interface loopback 0"}) {
    const outcome result = lab.run("configure\n" + std::string(line) + "\n", {"--inject-fault", "port-manager=lost"});
    EXPECT_THAT(result.out, StartsWith("error: no answer to the request: "));
    EXPECT_EQ(result.exit_code, 2) << line;
  }
}

TEST(Creation, AUserSeesTheInterfacesOfItsOwnOnly) {
  const outcome result = routed_switch().run("configure\ninterface loopback 77, fc 3/1\n", {"--user", "guest"});
  EXPECT_EQ(result.err,
            "pmsh: not permitted: user 'guest' may not see fc3/1. Omit the range to show every interface that this "
            "user may see.\n");
  EXPECT_EQ(result.exit_code, 5);
}

TEST(Deletion, WhatWasDeletedIsGone) {
  const routed_switch lab;
  const outcome result = lab.run(
      "configure\nno interface loopback 0, ethernet 2/1.10\nend\nshow interface loopback 0\nshow interface "
      "ethernet 2/1.10\n");
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "pmsh: no such interface: loopback 0. Type 'show interface ?' for the kinds.\n"
            "pmsh: no such interface: ethernet 2/1.10. Type 'show interface ?' for the kinds.\n");
}

TEST(Deletion, OnlyWhatTheSwitchFileHasStaysKnownAsDeleted) {
  const routed_switch lab;
  EXPECT_EQ(added(lab, "no interface loopback 0, ethernet 2/1.10\n"), "no interface loopback 0, ethernet 2/1.10\n");
  EXPECT_EQ(added(lab, "interface loopback 77\nno interface loopback 77\n"), "");
  EXPECT_EQ(added(lab, "no interface loopback 0\ninterface loopback 0\n"),
            "no interface loopback 0\ninterface loopback 0\n");
}

TEST(Deletion, PermanentInterfacesStayAndSoDoesTheRest) {
  const routed_switch lab;
  for (const refusal& it : {
           refusal{"no interface ethernet 1/1", "", kNotAllowed, 5},
           refusal{"no interface mgmt 0", "", kNotAllowed, 5},
           refusal{"no interface port-channel 7", "This configuration is not allowed on the interface\n", kNotAllowed,
                   5},
           refusal{"no interface loopback 0, ethernet 2/1", "", kNotAllowed, 5},
           refusal{"no interface loopback 0, fc 3/1", "", kNotAllowed, 5},
           refusal{"no interface loopback 0, loopback 77", "",
                   "pmsh: no such interface: loopback 77. Type 'show interface ?' for the kinds.\n", 4},
       }) {
    const outcome result =
        lab.run("configure\n" + it.line + "\nend\nshow interface loopback 0 description | include loopback\n");
    EXPECT_EQ(result.out, it.out + "loopback0                --\n") << it.line;
    EXPECT_EQ(result.err, it.err) << it.line;
    EXPECT_EQ(result.exit_code, it.exit_code) << it.line;
  }
}

TEST(Deletion, LeavesTheModeOfTheInterfaces) {
  const outcome result = routed_switch().run("configure\ninterface loopback 0\nno interface loopback 0\nshutdown\n");
  EXPECT_EQ(result.err, "pmsh: 'shutdown' is a setting of interfaces. Type 'interface RANGE' first.\n");
}

TEST(Undo, TakesBackCreationsAndDeletionsTheLastOneFirst) {
  const outcome result = routed_switch().run(
      "configure\ninterface loopback 77-78, ethernet 1/1\nundo\n"
      "interface loopback 0\ndescription of the lab\nno interface loopback 0, ethernet 2/1.10\nundo\nundo\nend\n"
      "show running-config interface loopback 0\nshow running-config | include \"no interface|loopback 7\"\n");
  EXPECT_EQ(result.out,
            "Undone for loopback 77-78.\n"
            "Undone for loopback 0, ethernet 2/1.10.\n"
            "Undone for loopback 0.\n"
            "! Settings of lab\nconfigure\nend\n");
  EXPECT_EQ(result.err, "");
}

TEST(Undo, ChoosingInterfacesKeepsTheLastSetting) {
  const outcome result = routed_switch().run(
      "configure\ninterface ethernet 1/1\ndescription of the lab\ninterface ethernet 1/2, loopback 0\nundo\n");
  EXPECT_EQ(result.out, "Undone for ethernet 1/1.\n");
  EXPECT_EQ(result.err, "");
}

// On a fresh switch, and once more on the same one.
TEST(RunningConfiguration, RebuildsWhatWasCreatedAndDeleted) {
  const routed_switch lab;
  for (const char* const lines : {
           "interface loopback 77-79\ndescription of the lab\ninterface loopback 78\nshutdown\n",
           "interface ethernet 2/1\nswitchport mtu 9000\ninterface ethernet 2/1.100-102\ninterface ethernet 2/1\n"
           "no switchport mtu\n",
           "no interface loopback 0, ethernet 2/1.10\ninterface ethernet 2/1.10\nshutdown\n",
           "no interface loopback 0\n",
           "interface ethernet 2/3\nno switchport\ninterface ethernet 2/3.7\nswitchport mtu 4000\n",
       })
    EXPECT_EQ(lab.rebuilt(lines), lab.running(lines)) << lines;
}

TEST(Creation, ThatIsRefusedLeavesTheInterfacesChosenBefore) {
  const outcome result = run_shell({"--keep-going", "-f", "-"},
                                   "configure\ninterface ethernet 1/1\ninterface ethernet 1/77.5\nshutdown\nend\n"
                                   "show running-config interface ethernet 1/1\n");

  EXPECT_NE(result.exit_code, 0);
  EXPECT_THAT(result.err, HasSubstr("'shutdown' is a setting of interfaces"));
  EXPECT_THAT(result.out, Not(HasSubstr("shutdown")));
}

TEST(Creation, ThatIsTakenBackLeavesItsInterface) {
  const outcome result = run_shell({"--keep-going", "-f", "-"}, "configure\ninterface loopback 700\nundo\nshutdown\n");

  EXPECT_THAT(result.err, HasSubstr("'shutdown' is a setting of interfaces"));
  EXPECT_THAT(result.err, Not(HasSubstr("no such interface")));
}

}  // namespace
}  // namespace session
