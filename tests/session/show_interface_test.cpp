// "show interface" on the small switch, as text: every kind of interface, and ranges.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kDesk1[] =
    "Ethernet1/1 is up\n"
    "  Hardware: 10/100/1000 Ethernet, address: 0200.0000.0011 (bia 0200.0000.0011)\n"
    "  Description: Desk 1\n"
    "  MTU 1500 bytes, BW 1000000 Kbit, DLY 20 usec,\n"
    "     reliability 0/255, txload 0/255, rxload 0/255\n"
    "  Encapsulation ARPA\n"
    "  Port mode is FA\n"
    "  full-duplex, 1000\n"
    "  Input flow-control is desired, output flow-control is off\n"
    "  Auto-mdix is turned on\n"
    "  Switchport monitor is off \n";

constexpr char kDesk2[] =
    "Ethernet1/2 is down (Administratively down)\n"
    "  Hardware: 10/100/1000 Ethernet, address: 0200.0000.0012 (bia 0200.0000.0012)\n"
    "  Description: Desk 2\n"
    "  MTU 9000 bytes, BW 1000000 Kbit, DLY 10 usec,\n"
    "     reliability 0/255, txload 0/255, rxload 0/255\n"
    "  Encapsulation ARPA\n"
    "  Port mode is FA\n"
    "  auto-duplex, auto\n"
    "  Input flow-control is off, output flow-control is off\n"
    "  Auto-mdix is turned on\n"
    "  Switchport monitor is off \n";

// The names of the interfaces that an output shows, in order.
std::string shown_names(const std::string& text) {
  std::string names;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = text.find('\n', start);
    const std::string line = text.substr(start, end - start);
    if (const std::size_t verb = line.find(" is "); line[0] != ' ' && verb != std::string::npos)
      names += line.substr(0, verb) + " ";
    start = end + 1;
  }
  return names;
}

// The switch of these tests with an in-band interface.
outcome run_on_all_kinds(const std::string& command) {
  std::ifstream small(test_file("lab.yaml"));
  std::filesystem::create_directories(state_directory());
  const std::string file = state_directory() + "/all_kinds.yaml";
  std::ofstream(file) << small.rdbuf() << "  - {range: sup-fc 0}\n";
  return run_shell_on(file, {"-c", command});
}

TEST(ShowInterface, DetailedBlockOfASwitchedPort) {
  const outcome result = run_command("show interface ethernet 1/1");

  EXPECT_EQ(result.out, kDesk1);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exit_code, 0);
}

TEST(ShowInterface, PortThatIsDownSaysWhyAndShowsItsConfiguration) {
  EXPECT_EQ(run_command("show interface ethernet 1/2").out, kDesk2);
}

TEST(ShowInterface, RoutedPortHasAddressRouterMacAndTrafficLines) {
  const std::string text = run_command("show interface ethernet 2/1").out;

  const std::string block =
      "Ethernet2/1 is up\n"
      "  Hardware: 10000 Ethernet, address: 0200.0000.0099 (bia 0200.0000.0021)\n"
      "  Internet Address is 192.0.2.1/30\n"
      "  MTU 1500 bytes, BW 10000000 Kbit, DLY 10 usec,\n"
      "     reliability 0/255, txload 0/255, rxload 0/255\n"
      "  Encapsulation ARPA\n"
      "  full-duplex, 10000, media type is 10Gbase-SR\n"
      "  Input flow-control is off, output flow-control is off\n"
      "  Rate mode is dedicated\n"
      "  Switchport monitor is off \n";
  EXPECT_EQ(text.substr(0, block.size()), block);
  EXPECT_THAT(text, HasSubstr("packets input"));
  EXPECT_THAT(text, HasSubstr("packets output"));
}

TEST(ShowInterface, SubInterfaceHasNoPortLines) {
  const std::string text = run_command("show interface ethernet 2/1.5").out;

  const std::string block =
      "Ethernet2/1.5 is up\n"
      "  Hardware: 10000 Ethernet, address: 0200.0000.0099 (bia 0200.0000.0021)\n"
      "  Internet Address is 192.0.2.9/30\n"
      "  MTU 1500 bytes, BW 10000000 Kbit, DLY 10 usec,\n"
      "     reliability 0/255, txload 0/255, rxload 0/255\n"
      "  Encapsulation 802.1Q Virtual LAN, Vlan ID 5\n";
  EXPECT_EQ(text.substr(0, block.size()), block);
  EXPECT_THAT(text, Not(HasSubstr("duplex")));
}

TEST(ShowInterface, PortChannelListsItsMembers) {
  EXPECT_EQ(run_command("show interface port-channel 7").out,
            "port-channel7 is up\n"
            "  Hardware: Port-Channel, address: 0200.0000.0077 (bia 0200.0000.0077)\n"
            "  Description: Pair\n"
            "  MTU 1500 bytes, BW 2000000 Kbit, DLY 10 usec,\n"
            "     reliability 0/255, txload 0/255, rxload 0/255\n"
            "  Encapsulation ARPA\n"
            "  Port mode is FA\n"
            "  full-duplex, 1000\n"
            "  Input flow-control is off, output flow-control is off\n"
            "  Switchport monitor is off \n"
            "  Members in this channel: Eth1/4, Eth1/5\n");
}

TEST(ShowInterface, VirtualInterfaceNamesWhatItIsBoundTo) {
  EXPECT_EQ(run_command("show interface vethernet 1").out,
            "Vethernet1 is up\n"
            "    Bound Interface is Ethernet1/1 \n"
            "  Hardware: VEthernet\n"
            "  Description: Desktop\n"
            "  MTU 1500 bytes, BW 1000000 Kbit, DLY 10 usec,\n"
            "     reliability 0/255, txload 0/255, rxload 0/255\n"
            "  Encapsulation ARPA\n"
            "  Port mode is FA\n");
}

TEST(ShowInterface, DisplayThatDoesNotApplyIsOneSentenceOfTheShell) {
  const outcome result = run_command("show interface fc 2/9");

  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "pmsh: fc2/9: 'show interface' does not apply to this kind of interface.\n");
  EXPECT_EQ(result.exit_code, 3);
}

TEST(ShowInterface, DisplaysThatDoNotApplyToAKindAreOfOneForm) {
  const std::pair<std::string, std::vector<std::string>> displays_of[] = {
      {"mgmt 0",
       {"counters brief", "counters trunk", "debounce", "flowcontrol", "ifindex", "status module 2", "transceiver",
        "trunk", "trunk detail", "trunk errored"}},
      {"ethernet 2/1", {"brief", "debounce", "ifindex", "trunk detail"}},
      {"ethernet 2/1.5",
       {"brief", "capabilities", "counters", "counters brief", "counters errors", "counters trunk",
        "counters storm-control", "flowcontrol", "flowcontrol module 2", "mac-address", "transceiver",
        "transceiver details", "trunk", "trunk allowed", "trunk errored"}},
      {"port-channel 7", {"debounce", "ifindex", "status module 2", "transceiver", "transceiver calibrations"}},
      {"loopback 0",
       {"capabilities", "counters", "counters brief", "counters errors", "counters trunk", "counters storm-control",
        "flowcontrol", "mac-address", "status err-disabled", "transceiver"}},
      {"vethernet 1", {"brief", "capabilities", "counters brief", "transceiver", "trunk detail"}},
      {"in-band", {"status up", "description", "mac-address", "counters errors", "trunk"}},
      {"fc 2/9", {"status", "counters", "trunk", "flowcontrol module 2"}},
  };
  const auto name_of = [](const std::string& range) {
    std::string name = range == "in-band" ? "sup-fc0" : range;
    if (name.starts_with("ethernet") || name.starts_with("vethernet")) name[0] = static_cast<char>(name[0] - 'a' + 'A');
    std::erase(name, ' ');
    return name;
  };
  for (const auto& [range, displays] : displays_of) {
    for (const std::string& display : displays) {
      const std::string words = display.substr(0, display.find(" 2"));
      const std::string sentence =
          name_of(range) + ": 'show interface " + words + "' does not apply to this kind of interface.";
      for (const char* const pipe : {"", " | json"}) {
        const outcome result = run_on_all_kinds("show interface " + range + " " + display + pipe);
        EXPECT_EQ(result.err, "pmsh: " + sentence + "\n") << range << " " << display << pipe;
        EXPECT_EQ(result.exit_code, 3) << range << " " << display << pipe;
        if (*pipe == 0) EXPECT_EQ(result.out, "");
      }
    }
  }
}

TEST(ShowInterface, AllInterfacesStandInNaturalOrderSubInterfacesBehindTheirPort) {
  const outcome result = run_command("show interface | include \"^(Eth|port|V)\"");

  EXPECT_EQ(shown_names(result.out),
            "Ethernet1/1 Ethernet1/2 Ethernet1/3 Ethernet1/4 Ethernet1/5 Ethernet1/10 Ethernet2/1 Ethernet2/1.5 "
            "port-channel7 Vethernet1 ");
  EXPECT_EQ(result.exit_code, 0);
}

TEST(ShowInterface, RangesAndListsShowWhatExistsInside) {
  EXPECT_EQ(shown_names(run_command("show interface ethernet 1/4-10, 1/1, port-channel 7").out),
            "Ethernet1/4 Ethernet1/5 Ethernet1/10 Ethernet1/1 port-channel7 ");
}

TEST(ShowInterface, UnknownInterfacesAreNamedAndTheOthersAreShown) {
  const outcome result = run_command("show interface ethernet 1/1, ethernet 9/9, loopback 5");

  EXPECT_EQ(shown_names(result.out), "Ethernet1/1 ");
  EXPECT_EQ(result.err, "pmsh: no such interface: ethernet 9/9, loopback 5. The others are shown.\n");
  EXPECT_EQ(result.exit_code, 4);
}

TEST(ShowInterface, NothingIsShownOfARangeOfWhichNothingExists) {
  const outcome result = run_command("show interface ethernet 9/9, loopback 5");

  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "pmsh: no such interface: ethernet 9/9, loopback 5. Type 'show interface ?' for the kinds.\n");
  EXPECT_EQ(result.exit_code, 4);
}

TEST(ShowInterface, ReversedRangeIsAnError) {
  const outcome result = run_command("show interface ethernet 1/4-1");

  EXPECT_THAT(result.err, HasSubstr("reversed range '1/4-1'"));
  EXPECT_EQ(result.exit_code, 1);
}

TEST(ShowInterface, ControlBytesOfADescriptionAreShownAsText) {
  const std::string text = run_command("show interface ethernet 1/3").out;

  EXPECT_THAT(text, HasSubstr("  Description: \\x1b[31mred\\x0a\\x09end\\x7f\\xc2\\x9b\n"));
  for (const char byte : text) EXPECT_TRUE(byte == '\n' || (byte >= ' ' && byte <= '~')) << int{byte};
}

TEST(ShowInterface, AbbreviationsOfEveryWordMeanTheSame) {
  for (const char* const command : {"sh int eth 1/1", "s int e 1/1", "SHOW Interface Ethernet1/1",
                                    "show interface e1/1", " show  interface\tethe 1/1 "})
    EXPECT_EQ(run_command(command).out, kDesk1) << command;
}

TEST(ShowInterface, BothPartsOfASeparatedRangeAreRead) {
  EXPECT_EQ(run_command("show interface ethernet 1/1 - 2").out, std::string(kDesk1) + kDesk2);
  EXPECT_EQ(run_command("show interface ethernet 1/1 , 1/2").out, std::string(kDesk1) + kDesk2);
}

}  // namespace
}  // namespace session
