// Transceivers, trunks, VLANs and module resources in the shell.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;
using testing::Not;

// The clock stands where the temperature of rooms is even.
outcome run_optics(const std::string& command) {
  return run_shell_on(test_file("optics.yaml"), {"--clock", "1799992800", "-c", command});
}

std::string shown(const std::string& command) {
  const outcome result = run_optics(command);
  EXPECT_EQ(result.exit_code, 0) << command << "\n" << result.out << result.err;
  EXPECT_EQ(result.err, "");
  return result.out;
}

constexpr char kTableRule[] = "  ----------------------------------------------------------------------------\n";
constexpr char kLegend[] = "  Note: ++  high-alarm; +  high-warning; --  low-alarm; -  low-warning\n\n";

const std::string kIdentity =
    "Ethernet1/1 sfp is present \n"
    "    name is LIGHTWORKS      \n"
    "    part number is LW-10G-SR       \n"
    "    revision is A1  \n"
    "    serial number is LW24SR000117    \n"
    "    Nominal bit rate is 10300 MBits/sec\n"
    "    Link length supported for 50/125mm fiber is 80 m(s)\n"
    "    Link length supported for 62.5/125mm fiber is 30 m(s)\n"
    "    tarno extended id is none (0x0)\n"
    "\n"
    "    no tx fault, no rx loss, in sync state, Diag mon type 104\n";

TEST(Optics, IdentityStateAndValues) {
  EXPECT_EQ(shown("show interface ethernet 1/1 transceiver"),
            kIdentity + "           SFP Diagnostics Information (internal calibration)\n" + kTableRule +
                "  Temperature   34.00 C    \n"
                "  Voltage        3.29 V    \n"
                "  Current        6.60 mA    \n"
                "  Tx Power       -2.29 dBm   \n"
                "  Rx Power       -3.76 dBm   \n" +
                kTableRule + kLegend);
}

TEST(Optics, DetailsHaveLimits) {
  const std::string text = shown("show interface ethernet 1/9 transceiver details");
  EXPECT_THAT(text, HasSubstr("  Temperature   76.00 C  ++    75.00 C     -5.00 C     70.00 C        0.00 C\n"));
  EXPECT_THAT(text, HasSubstr("  Rx Power      -12.21 dBm  -"));
}

TEST(Optics, CalibrationsAreExternalConstants) {
  EXPECT_THAT(shown("show interface ethernet 1/10 transceiver calibrations"),
              HasSubstr("  Temperature              256           0\n"));
  EXPECT_THAT(shown("show interface ethernet 1/1 transceiver calibrations"),
              HasSubstr("No external calibration constants"));
}

TEST(Optics, EveryPageIsShown) {
  EXPECT_THAT(shown("show interface ethernet 1/2 transceiver"), HasSubstr("    Base checksum not OK.\n"));
  EXPECT_THAT(shown("show interface ethernet 1/3 transceiver"),
              HasSubstr("    Base checksum not OK.\n    Extended checksum not OK.\n"));
  EXPECT_THAT(shown("show interface ethernet 1/4 transceiver"), HasSubstr("\\xff\\xff"));
  EXPECT_THAT(shown("show interface ethernet 1/6 transceiver"),
              HasSubstr("sfp is present but not supported\n    name is GLASS & SONS"));
  EXPECT_THAT(shown("show interface ethernet 1/7 transceiver"),
              HasSubstr("Digital diagnostics feature not supported in SFP"));
  EXPECT_THAT(shown("show interface ethernet 1/8 transceiver"), HasSubstr("part number is LW-X2-DWDM-21"));
  EXPECT_EQ(shown("show interface ethernet 1/11 transceiver"), "Ethernet1/11 sfp not present\n");
  const outcome initializing = run_optics("show interface ethernet 1/5 transceiver");
  EXPECT_EQ(initializing.out, "error: SFP Ethernet1/5 is inserted and is initializing\n");
  EXPECT_EQ(initializing.exit_code, 0);
}

TEST(Optics, RoutedPortsAreShownByTheSiblingLibrary) {
  const std::string text = shown("show interface ethernet 1/12 transceiver");
  EXPECT_EQ(text.substr(0, text.find("    revision")),
            "Ethernet1/12\n    sfp is present\n    name is LIGHTWORKS      \n    part number is LW-10G-LR       \n");
  EXPECT_THAT(text, HasSubstr("    Link length supported for 9/125um fiber is 10 km(s)\n"));
  EXPECT_THAT(text, HasSubstr("           SFP Detail Diagnostics Information (internal calibration)\n"));
}

TEST(Optics, StructuredFormHasValuesInTheirUnits) {
  rapidjson::Document document;
  document.Parse(shown("show interface ethernet 1/9-10 transceiver details | json").c_str());
  ASSERT_FALSE(document.HasParseError());
  const auto& warm = document["interfaces"][0];
  EXPECT_STREQ(warm["interface"].GetString(), "Ethernet1/9");
  EXPECT_EQ(warm["temperature_c"].GetDouble(), 76.0);
  EXPECT_STREQ(warm["temperature_mark"].GetString(), "high alarm");
  EXPECT_STREQ(warm["rx_power_mark"].GetString(), "low warning");
  EXPECT_TRUE(warm["voltage_mark"].IsNull());
  EXPECT_EQ(warm["temperature_high_alarm_c"].GetDouble(), 75.0);
  const auto& dark = document["interfaces"][1];
  EXPECT_TRUE(dark["rx_power_dbm"].IsNull()) << "no light";
  EXPECT_EQ(document["messages"].Size(), 0U) << "titles and rules are none";
}

TEST(Optics, StructuredFormSaysWhyThereAreNoValues) {
  rapidjson::Document document;
  document.Parse(shown("show interface ethernet 1/7, ethernet 1/11 transceiver | json").c_str());
  ASSERT_FALSE(document.HasParseError());
  EXPECT_TRUE(document["interfaces"][0]["temperature_c"].IsNull());
  ASSERT_EQ(document["messages"].Size(), 1U);
  EXPECT_STREQ(document["messages"][0]["text"].GetString(), "    Digital diagnostics feature not supported in SFP");
  EXPECT_STREQ(document["interfaces"][1]["presence"].GetString(), "not present");
}

TEST(Optics, ViolationsAreTheValuesOutsideTheirLimits) {
  EXPECT_EQ(shown("show interface ethernet 1/1, ethernet 1/9-11 transceiver violations"),
            "Interface     Quantity      Value   Limit  Unit  Mark\n"
            "Ethernet1/9   Temperature   76.00   75.00  C     ++\n"
            "Ethernet1/9   Rx Power     -12.21  -12.00  dBm   -\n"
            "Ethernet1/10  Rx Power         --  -16.02  dBm   --\n")
      << "no column is empty";
  EXPECT_EQ(shown("show interface ethernet 1/1 transceiver violations"), "There are no values outside their limits.\n");
}

TEST(Optics, ViolationsAreRecords) {
  rapidjson::Document document;
  document.Parse(shown("show interface ethernet 1/9-10 transceiver violations | json").c_str());
  ASSERT_FALSE(document.HasParseError());
  ASSERT_EQ(document["violations"].Size(), 3U);
  const auto& warm = document["violations"][0];
  EXPECT_STREQ(warm["interface"].GetString(), "Ethernet1/9");
  EXPECT_TRUE(warm["lane"].IsNull());
  EXPECT_STREQ(warm["quantity"].GetString(), "Temperature");
  EXPECT_EQ(warm["measured_value"].GetDouble(), 76.0);
  EXPECT_EQ(warm["violated_limit"].GetDouble(), 75.0);
  EXPECT_STREQ(warm["value_unit"].GetString(), "C");
  EXPECT_STREQ(warm["violation"].GetString(), "high alarm");
  const auto& dark = document["violations"][2];
  EXPECT_TRUE(dark["measured_value"].IsNull()) << "no light";
  EXPECT_STREQ(dark["violation"].GetString(), "low alarm");
}

TEST(Optics, ListingsShowAllPorts) {
  const outcome all = run_optics("show transceiver");
  EXPECT_THAT(all.out, HasSubstr("fc3/1 sfp is present \n"));
  EXPECT_THAT(all.out, HasSubstr("    FC Transmitter type is short wave laser\n"));
  EXPECT_THAT(all.out, HasSubstr("Ethernet1/1 sfp is present \n"));
  EXPECT_THAT(run_optics("show transceiver details").out, HasSubstr("SFP Detail Diagnostics Information"));
  EXPECT_THAT(run_optics("show transceiver calibrations").out, HasSubstr("SFP Calibration Information"));
}

// The optics of the small switch: layer-2 ports, a routed one, and Fibre Channel.
TEST(Optics, EveryPortIsInBothFormsOfBothCommands) {
  for (const std::string details : {"", " details", " calibrations"}) {
    for (const std::string& command : {"show transceiver" + details, "show interface transceiver" + details}) {
      const outcome text = run_optics(command);
      rapidjson::Document document;
      document.Parse(run_optics(command + " | json").out.c_str());
      ASSERT_FALSE(document.HasParseError()) << command;
      std::string names;
      for (const auto& port : document["interfaces"].GetArray())
        names += port["interface"].GetString() + std::string(" ");
      EXPECT_EQ(names,
                "Ethernet1/1 Ethernet1/2 Ethernet1/3 Ethernet1/4 Ethernet1/5 Ethernet1/6 Ethernet1/7 Ethernet1/8 "
                "Ethernet1/9 Ethernet1/10 Ethernet1/11 Ethernet1/12 Ethernet2/1 Ethernet2/2 Ethernet2/3 fc3/1 fc3/2 ")
          << command;
      for (const char* const port : {"Ethernet1/1 ", "Ethernet1/12\n", "fc3/1", "fc3/2"})
        EXPECT_THAT(text.out, HasSubstr(port)) << command << ": " << port;
    }
  }
}

TEST(Optics, ListingHasTheRecordsOfTheInterfaces) {
  const auto records = [](const std::string& command) {
    const std::string document = run_optics(command + " | json").out;
    return document.substr(std::min(document.find("\"interfaces\""), document.size()));
  };
  const std::string listed = records("show transceiver");
  EXPECT_EQ(listed, records("show interface transceiver"));
  EXPECT_THAT(listed, HasSubstr("\"interface\":\"fc3/1\",\"device\":null,\"ifindex\":null,\"presence\":\"present\""));
}

TEST(Trunks, EachHasItsRows) {
  EXPECT_EQ(shown("show interface trunk | begin Eth"),
            "Eth2/1     10      trunking      --\nEth2/2     99      trnk-bndl     Po5\nPo5        99      trunking    "
            "  --\n");
  EXPECT_EQ(shown("show interface ethernet 2/1-3 trunk allowed | begin Eth"),
            "Eth2/1     1,10-30\nEth2/2     1-4094\n");
  EXPECT_EQ(shown("show interface ethernet 2/1 trunk forwarding | begin Eth"), "Eth2/1     1,10-19,21-29\n");
  EXPECT_EQ(shown("show interface ethernet 2/1-2 trunk errored"),
            "\n--------------------------------------------------------------------------------\n"
            "Port       Vlans Err-disabled on Trunk\n"
            "--------------------------------------------------------------------------------\n"
            "Eth2/1     30\nEth2/2     none\n");
}

TEST(Trunks, VlansShutByAnErrorAreASetInTheRecord) {
  rapidjson::Document document;
  document.Parse(shown("show interface ethernet 2/1-2 trunk errored | json").c_str());
  ASSERT_FALSE(document.HasParseError());
  ASSERT_EQ(document["interfaces"].Size(), 2U);
  EXPECT_STREQ(document["interfaces"][0]["errored_vlans"].GetString(), "30");
  EXPECT_STREQ(document["interfaces"][1]["errored_vlans"].GetString(), "");
}

TEST(Trunks, DetailIsOfSomeVlansOrAModule) {
  EXPECT_THAT(shown("show interface trunk detail native-vlan 1-20,40"), HasSubstr("    Native Vlan: 10\n"));
  EXPECT_THAT(shown("show interface trunk detail native-vlan 10"), Not(HasSubstr("Native Vlan: 99")));
  EXPECT_EQ(shown("show interface trunk detail native-vlan 50"), "");
  EXPECT_THAT(shown("show interface trunk detail module 2"), HasSubstr("    Allowed Vlans: 1,10-30\n"));
  const outcome wrong = run_optics("show interface trunk detail native-vlan 0-5");
  EXPECT_EQ(wrong.exit_code, 1);
  EXPECT_EQ(wrong.err, "pmsh: '0-5' is not a list of VLANs such as 1-10,20.\n");
}

TEST(Trunks, StructuredFormHasTheirFields) {
  rapidjson::Document document;
  document.Parse(shown("show interface ethernet 2/2 trunk | json").c_str());
  ASSERT_FALSE(document.HasParseError());
  EXPECT_EQ(document["interfaces"][0]["native_vlan"].GetUint(), 99U);
  EXPECT_STREQ(document["interfaces"][0]["trunk_status"].GetString(), "trnk-bndl");
}

TEST(Vlans, AreThoseThatAreDescribedOrUsed) {
  EXPECT_EQ(shown("show vlan"),
            "VLAN  Name                              Status   Kind\n"
            "1     default                           active   ordinary\n"
            "10    office                            active   ordinary\n"
            "20    guests                            shut     isolated\n"
            "99    VLAN0099                          active   ordinary\n");
}

TEST(ModuleResources, AreSharedOut) {
  EXPECT_EQ(shown("show module 3 resources"),
            "                          BB_Credit   Performance   Bandwidth   Rate\n"
            "                                      Buffers       (Gbps)      Mode\n"
            "---------------------------------------------------------------------------\n"
            "\n"
            "Total Buffers               2000           144\n"
            "Available Shared Buffers    1968           144\n"
            "  Port-Group 1\n"
            "  Total Bandwidth                                     12.80\n"
            "  Available Bandwidth                                  0.00\n"
            "\n"
            "    Buffer-Group 1\n"
            "    Total Buffers           2000\n"
            "    Available Buffers       1968\n"
            "\n"
            "      fc3/1                   16             0         8.00     dedicated\n"
            "      fc3/2                   16             0         8.00     dedicated\n"
            "\n\n\n");
}

TEST(ModuleResources, AreTypedInTheStructuredForm) {
  rapidjson::Document document;
  document.Parse(shown("show module 3 resources | json").c_str());
  ASSERT_FALSE(document.HasParseError());
  EXPECT_EQ(document["display"], "module_resources");
  EXPECT_EQ(document["messages"].Size(), 0U);
  const auto& resources = document["resources"];
  ASSERT_EQ(resources.Size(), 5U);
  const auto& module = resources[0];
  EXPECT_EQ(module["level"], "module");
  EXPECT_TRUE(module["port"].IsNull());
  EXPECT_TRUE(module["port_group"].IsNull());
  EXPECT_EQ(module["total_buffers"].GetUint64(), 2000U);
  EXPECT_EQ(module["performance_buffers"].GetUint64(), 144U);
  EXPECT_EQ(module["available_buffers"].GetUint64(), 1968U);
  EXPECT_EQ(module["available_performance_buffers"].GetUint64(), 144U);
  EXPECT_TRUE(module["bandwidth_mbps"].IsNull());
  const auto& ports = resources[1];
  EXPECT_EQ(ports["level"], "port group");
  EXPECT_EQ(ports["port_group"].GetUint64(), 1U);
  EXPECT_EQ(ports["bandwidth_mbps"].GetUint64(), 12800U);
  EXPECT_EQ(ports["available_bandwidth_mbps"].GetUint64(), 0U);
  EXPECT_TRUE(ports["total_buffers"].IsNull());
  const auto& buffers = resources[2];
  EXPECT_EQ(buffers["level"], "buffer group");
  EXPECT_EQ(buffers["port_group"].GetUint64(), 1U);
  EXPECT_EQ(buffers["buffer_group"].GetUint64(), 1U);
  EXPECT_EQ(buffers["total_buffers"].GetUint64(), 2000U);
  EXPECT_EQ(buffers["available_buffers"].GetUint64(), 1968U);
  const auto& port = resources[4];
  EXPECT_EQ(port["level"], "port");
  EXPECT_EQ(port["port"], "fc3/2");
  EXPECT_EQ(port["port_group"].GetUint64(), 1U);
  EXPECT_EQ(port["buffer_group"].GetUint64(), 1U);
  EXPECT_EQ(port["bb_credits"].GetUint64(), 16U);
  EXPECT_EQ(port["performance_buffers"].GetUint64(), 0U);
  EXPECT_EQ(port["bandwidth_mbps"].GetUint64(), 8000U);
  EXPECT_EQ(port["rate_mode"], "dedicated");
}

TEST(ModuleResources, AreAnEmptyListWhenTheServiceFails) {
  const outcome cut = run_shell_on(test_file("optics.yaml"),
                                   {"--inject-fault", "port-manager=cut:14", "-c", "show module 3 resources | json"});
  rapidjson::Document document;
  document.Parse(cut.out.c_str());
  ASSERT_FALSE(document.HasParseError());
  EXPECT_EQ(document["resources"].Size(), 0U);
  EXPECT_EQ(document["messages"].Size(), 1U);
  EXPECT_EQ(cut.exit_code, 2);
}

TEST(ModuleResources, OfAnotherModuleAreOneSentence) {
  for (const char* const pipe : {"", " | json"}) {
    const outcome other = run_optics(std::string("show module 1 resources") + pipe);
    EXPECT_EQ(other.err, "pmsh: module 1: 'show module resources' does not apply to this kind of module.\n");
    EXPECT_EQ(other.exit_code, 3);
    const outcome missing = run_optics(std::string("show module 99 resources") + pipe);
    EXPECT_EQ(missing.err, "pmsh: module 99 does not exist; the modules of this switch are 1, 2, 3.\n");
    EXPECT_EQ(missing.exit_code, 4);
  }
}

// What a terminal shows of the temperature of a hot module.
std::string temperature_at_terminal() {
  terminal screen({});
  EXPECT_TRUE(screen.shows_prompt());
  screen.type("show interface ethernet 2/1 transceiver | include Temperature\r");
  EXPECT_TRUE(screen.shows("  Temperature "));
  EXPECT_TRUE(screen.shows("75.00 C"));
  return screen.seen();
}

TEST(Colours, AlarmsAreRedAtATerminal) { EXPECT_THAT(temperature_at_terminal(), HasSubstr(" \x1b[31m++\x1b[0m ")); }

// The command library prints the table of all modules as plain text.
TEST(Colours, ArePartOfPlainTablesToo) {
  terminal screen({}, test_file("optics.yaml"));
  EXPECT_TRUE(screen.shows_prompt());
  for (const char* const command : {"show transceiver", "show transceiver details"}) {
    screen.type(command + std::string(" | include Temperature.*76.00\r"));
    EXPECT_TRUE(screen.shows("  Temperature   76.00 C  \x1b[31m++\x1b[0m")) << command;
  }
}

TEST(Colours, AreLeftOutWhenTheUserSaysSo) {
  setenv("NO_COLOR", "1", 1);
  const std::string text = temperature_at_terminal();
  unsetenv("NO_COLOR");
  EXPECT_THAT(text, HasSubstr(" ++ "));
  EXPECT_THAT(text, Not(HasSubstr("\x1b[31m")));
}

TEST(Colours, AreLeftOutOfAPipe) {
  const std::string text = shown("show interface ethernet 1/9 transceiver");
  EXPECT_THAT(text, HasSubstr(" ++"));
  EXPECT_THAT(text, Not(HasSubstr("\x1b")));
}

}  // namespace
}  // namespace session
