// Clearing counters of whole switches and of every kind of interface, and what is said of those that keep theirs.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "session/program.h"

namespace session {
namespace {

// A switch with an interface of every kind that shows counters, each with some. Chassis 10 keeps the counters of its
// ports in the statistics client, chassis 5 in the port manager.
class counting_switch {
 public:
  explicit counting_switch(int chassis, const std::string& further = "")
      : path_(testing::TempDir() + "pmsh-" + std::to_string(getpid()) + ".yaml") {
    std::ofstream file(path_);
    file << "switch: {name: lab, chassis-type: " << chassis << ", slots: 2, base-mac: '02:00:00:00:00:00'}\n"
         << "management: {device: none0}\n"
         << "users: [{name: guest}, {name: operator, clear-in-band: yes}, {name: storage, vsans: 1}]\n"
         << "cards: [{slot: 1, type: 1}, {slot: 2, type: 2}]\n"
         << "interfaces:\n";
    for (const char* const range :
         {"mgmt 0", "ethernet 1/1-2", "ethernet 1/2.5", "ethernet 2/1, kind: 26", "ethernet 2/1.5, kind: 26",
          "ethernet 101/1/1", "port-channel 7, kind: 22", "port-channel 7.10, kind: 22", "port-channel 8, kind: 4",
          "vethernet 1", "loopback 3"})
      file << "  - {range: " << range << ", traffic: {in: {bytes: 640, unicast: 10}}}\n";
    file << further;
  }
  ~counting_switch() { std::remove(path_.c_str()); }
  counting_switch(const counting_switch&) = delete;
  counting_switch& operator=(const counting_switch&) = delete;

  outcome run(std::vector<std::string> arguments) const { return run_shell_on(path_, std::move(arguments)); }

  // The interfaces that have counted something, after a command that succeeds in silence.
  std::string counting_after(const std::string& command) const {
    const outcome cleared = run({"-c", command});
    EXPECT_EQ(cleared.out + cleared.err, "") << command;
    EXPECT_EQ(cleared.exit_code, 0) << command;
    return names_with_packets(
        run({"-c", command, "-c", "show interface detailed", "-c", "show interface mgmt 0 counters detailed"}).out);
  }

 private:
  // The names at the start of a line that have a line with packets received behind them.
  static std::string names_with_packets(const std::string& text) {
    std::string names, name;
    for (std::size_t start = 0; start < text.size(); start = text.find('\n', start) + 1) {
      const std::string line = text.substr(start, text.find('\n', start) - start);
      if (!line.empty() && line.front() != ' ') name = line.substr(0, line.find(' '));
      const bool counts = line.starts_with("    10 packets input") || line.starts_with("  VDC Level Input Packets:");
      if (counts) names += name + " ";
    }
    return names;
  }

  std::string path_;
};

constexpr char kEvery[] =
    "Ethernet1/1 Ethernet1/2 Ethernet1/2.5 Ethernet2/1 Ethernet2/1.5 Ethernet101/1/1 port-channel7 port-channel7.10 "
    "port-channel8 loopback3 Vethernet1 mgmt0 ";

class ClearingOnChassis : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Families, ClearingOnChassis, testing::Values(10, 17, 5));

TEST_P(ClearingOnChassis, AllOfThemAreCleared) {
  const counting_switch lab(GetParam());
  ASSERT_EQ(lab.counting_after("help | include nosuchword"), kEvery);
  EXPECT_EQ(lab.counting_after("clear counters"), "");
  EXPECT_EQ(lab.counting_after("clear counters all"), "");
}

TEST_P(ClearingOnChassis, AllOfAKindAreCleared) {
  const counting_switch lab(GetParam());
  EXPECT_EQ(lab.counting_after("clear counters ethernet"),
            "port-channel7 port-channel7.10 port-channel8 loopback3 mgmt0 ");
  EXPECT_EQ(
      lab.counting_after("clear counters port-channel"),
      "Ethernet1/1 Ethernet1/2 Ethernet1/2.5 Ethernet2/1 Ethernet2/1.5 Ethernet101/1/1 loopback3 Vethernet1 mgmt0 ");
}

TEST_P(ClearingOnChassis, NamedInterfacesOfSeveralKindsAreCleared) {
  const counting_switch lab(GetParam());
  EXPECT_EQ(lab.counting_after("clear counters interface ethernet 2/1.5, 1/1, 101/1/1, port-channel 7.10, mgmt 0"),
            "Ethernet1/2 Ethernet1/2.5 Ethernet2/1 port-channel7 port-channel8 loopback3 Vethernet1 ");
}

// The library clears no more than 256 of them at once.
TEST(ClearingAll, PortChannelsBeyondThe256thAreCleared) {
  const counting_switch lab(
      10, "  - {range: port-channel 1001-1300, kind: 22, traffic: {in: {bytes: 640, unicast: 10}}}\n");
  EXPECT_EQ(lab.counting_after("clear counters port-channel").find("port-channel"), std::string::npos);
}

TEST(ClearingAll, TheInBandInterfaceIsClearedByThoseWhoMayOrNamed) {
  const counting_switch lab(10, "  - {range: in-band}\n");
  const outcome guest = lab.run({"-c", "clear counters"});
  EXPECT_EQ(
      guest.out,
      "The in-band interface keeps its counters: the switch file does not grant 'clear-in-band: yes' to the user.\n");
  EXPECT_EQ(guest.exit_code, 0);
  EXPECT_EQ(lab.run({"--user", "operator", "-c", "clear counters"}).out, "");
}

TEST(ClearingFails, AServiceThatRefusesIsNamedWithItsInterfaces) {
  const counting_switch lab(10);
  const outcome one = lab.run({"--inject-fault", "statistics=reject", "-c", "clear counters loopback"});
  EXPECT_EQ(one.out, "error: clearing counters\n");
  EXPECT_EQ(one.err,
            "pmsh: counters of loopback 3 were not cleared: the statistics service failed (general failure).\n"
            "pmsh: the service 'statistics' refused a request.\n");
  EXPECT_EQ(one.exit_code, 2);

  const outcome ports =
      lab.run({"--inject-fault", "statistics=lost", "-c", "clear counters interface ethernet 2/1, 1/1-2"});
  EXPECT_EQ(ports.err,
            "pmsh: counters of ethernet 2/1, ethernet 1/1-2 were not cleared: the statistics service failed (message "
            "transport failed).\n"
            "pmsh: the service 'statistics' is not running.\n");
  EXPECT_EQ(ports.exit_code, 2);
}

TEST(ClearingFails, EachReasonHasItsInterfaces) {
  const outcome result = counting_switch(10).run(
      {"--inject-fault", "statistics=reject", "-c", "clear counters interface mgmt 0, loopback 3"});
  EXPECT_EQ(result.err,
            "pmsh: counters of loopback 3 were not cleared: the statistics service failed (general failure).\n"
            "pmsh: the service 'statistics' refused a request.\n");
  EXPECT_EQ(result.exit_code, 2);
}

TEST(ClearingFails, ThePortManagerThatDoesNotAnswerEndsTheCommand) {
  for (const char* const command :
       {"clear counters", "clear counters ethernet", "clear counters interface loopback 3"}) {
    const outcome result = counting_switch(5).run({"--inject-fault", "port-manager=lost", "-c", command});
    EXPECT_EQ(result.out.find("error: no answer to the request: "), 0U) << command << result.out;
    EXPECT_EQ(result.exit_code, 2) << command;
  }
}

TEST(ClearingFails, AKindThatNobodyClearsIsNamed) {
  const counting_switch lab(5, "  - {range: external 1/1}\n");
  const outcome result = lab.run({"-c", "clear counters interface external 1/1, ethernet 1/1"});
  EXPECT_EQ(
      result.err,
      "pmsh: counters of external 1/1 were not cleared: the command library does not clear interfaces of this kind.\n");
  EXPECT_EQ(result.exit_code, 2);
}

}  // namespace
}  // namespace session
