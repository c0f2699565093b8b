// The tables of "show interface" on a small switch: transcripts, filters, and their structured form.
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>

#include "session/json.h"
#include "session/program.h"

namespace session {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

outcome run(const std::string& command) { return run_shell_on(test_file("tables.yaml"), {"-c", command}); }

std::string text_of(const std::string& command) {
  const outcome result = run(command);
  EXPECT_EQ(result.err, "") << command;
  EXPECT_EQ(result.exit_code, 0) << command;
  return result.out;
}

rapidjson::Document json_of(const std::string& command) {
  rapidjson::Document document;
  document.Parse(text_of(command + " | json").c_str());
  EXPECT_FALSE(document.HasParseError()) << command;
  EXPECT_EQ(document["messages"].Size(), 0U) << command;
  return document;
}

// The names in the first column of a table, below its header.
std::string names_in(const std::string& table) {
  std::string names;
  std::size_t start = table.rfind("---\n");
  for (start = start == std::string::npos ? 0 : start + 4; start < table.size(); start = table.find('\n', start) + 1)
    names += table.substr(start, table.find(' ', start) - start) + " ";
  return names;
}

std::string names_in(const rapidjson::Document& document) {
  std::string names;
  for (const auto& record : document["interfaces"].GetArray())
    names += record["interface"].GetString() + std::string(" ");
  return names;
}

constexpr char kBriefHeader[] =
    "\n"
    "--------------------------------------------------------------------------------\n"
    "Interface                Status     IP Address        Speed    MTU   Port\n"
    "                                                                     Channel\n"
    "--------------------------------------------------------------------------------\n";

constexpr char kStatusHeader[] =
    "\n"
    "--------------------------------------------------------------------------------\n"
    "Port           Name               Status   Vlan      Duplex  Speed   Type\n"
    "--------------------------------------------------------------------------------\n";

// Ports of this kind have no cell below "Vlan".
constexpr char kUp[] = "Eth1/1         A desk with a long up       full    1000    10/100/1000\n";
constexpr char kDown[] = "Eth1/2         --                 down     auto    auto    10/100/1000\n";
constexpr char kInactive[] = "Eth1/4         Printer            down     auto    auto    10/100/1000\n";

TEST(Tables, BriefShowsTheKindsThatHaveARow) {
  EXPECT_EQ(text_of("show interface brief"),
            std::string(kBriefHeader) +
                "Ethernet1/1              up         --                1000     1500  \n"
                "Ethernet1/2              down       --                --       9000  \n"
                "Ethernet1/3              errDisable --                --       1500  \n"
                "Ethernet1/4              down       --                --       1500  \n"
                "Ethernet1/10             notConnect --                --       1500  \n"
                "port-channel7            up         192.0.2.17        1000     9216  \n");
}

TEST(Tables, StatusShowsEveryKind) {
  EXPECT_EQ(text_of("show interface status"),
            std::string(kStatusHeader) + kUp + kDown +
                "Eth1/3         Camera             down     auto    auto    10/100/1000\n" + kInactive +
                "Eth1/10        Last               down     auto    auto    10/100/1000\n"
                "Eth2/1         Uplink             up       routed    full    10000   10Gbase-SR \n"
                "Eth2/1.5       --                 up       routed    full    10000   --         \n"
                "Eth2/2         Server             up       310       full    10000   10Gbase-SR \n"
                "Eth2/3         --                 down     trunk     auto    auto    --         \n"
                "Po7            Pair               up       routed    full    1000    --         \n"
                "Veth1          Desktop            up       1         full    auto    --         \n");
}

TEST(Tables, StatusFiltersKeepTheirInterfaces) {
  EXPECT_EQ(text_of("show interface status down"), std::string(kStatusHeader) + kDown);
  EXPECT_EQ(text_of("show interface status inactive"), std::string(kStatusHeader) + kInactive);
  EXPECT_EQ(names_in(text_of("show interface status up")), "Eth1/1 Eth2/1 Eth2/1.5 Eth2/2 Po7 Veth1 ");
  EXPECT_EQ(text_of("show interface ethernet 1/2, ethernet 1/1 status up"), std::string(kStatusHeader) + kUp);
}

TEST(Tables, ModuleFilterKeepsThePortsOfTheModule) {
  EXPECT_EQ(names_in(text_of("show interface status module 1")), "Eth1/1 Eth1/2 Eth1/3 Eth1/4 Eth1/10 ");
  EXPECT_EQ(names_in(text_of("show interface status module 2")), "Eth2/1 Eth2/1.5 Eth2/2 Eth2/3 ");
  EXPECT_EQ(text_of("show interface ethernet 1/1 status module 2"), kStatusHeader);
  EXPECT_EQ(text_of("show interface ethernet 1/1, ethernet 2/2 status module 1"), std::string(kStatusHeader) + kUp);
}

TEST(Tables, ErrorDisabledPortsShowTheirReason) {
  EXPECT_EQ(text_of("show interface status err-disabled"),
            "\n"
            "--------------------------------------------------------------------------------\n"
            "Port       Name               Status   Reason\n"
            "--------------------------------------------------------------------------------\n"
            "Eth1/3     Camera             down     Error disabled\n");
}

TEST(Tables, DescriptionsStandUnderAShorterRule) {
  EXPECT_EQ(text_of("show interface ethernet 1/2, ethernet 2/1.5, port-channel 7 description"),
            "\n"
            "-------------------------------------------------------------------------------\n"
            "Interface                Description                                            \n"
            "-------------------------------------------------------------------------------\n"
            "Ethernet1/2              --\n"
            "Ethernet2/1.5            --\n"
            "port-channel7            Pair\n");
}

TEST(Tables, MacAddressesAreTheRoutersAndTheBurnedInOne) {
  EXPECT_EQ(text_of("show interface ethernet 1/1, 1/10 mac-address"),
            "\n"
            "--------------------------------------------------------------------------------\n"
            "Interface                  Mac-Address     Burn-in Mac-Address\n"
            "--------------------------------------------------------------------------------\n"
            "Ethernet1/1                0200.0000.0099  0200.0000.0011\n"
            "Ethernet1/10               0200.0000.0099  0200.0000.001a\n");
}

// Kind 2 stands in the upper six bits, the port (from 0) in bits 12 to 19.
TEST(Tables, InterfaceIndexesAreShownTwice) {
  EXPECT_EQ(text_of("show interface ethernet 1/1, 1/10 ifindex"),
            "\n"
            "--------------------------------------------------------------------------------\n"
            "Port             IFMIB Ifindex (hex)\n"
            "--------------------------------------------------------------------------------\n"
            "Eth1/1          134217728  (0x8000000 )\n"
            "Eth1/10         134254592  (0x8009000 )\n");
}

TEST(Tables, DebounceIsShownInMilliseconds) {
  EXPECT_EQ(text_of("show interface ethernet 1/1-2 debounce"),
            "\n"
            "--------------------------------------------------------------------------------\n"
            "Port          Debounce time   Value(ms)\n"
            "--------------------------------------------------------------------------------\n"
            "Eth1/1        enable               100\n"
            "Eth1/2        disable                0\n");
}

TEST(Tables, DisplaysOfOneKindVisitThatKindOnly) {
  EXPECT_EQ(names_in(text_of("show interface ifindex")), "Eth1/1 Eth1/2 Eth1/3 Eth1/4 Eth1/10 ");
  EXPECT_EQ(names_in(text_of("show interface debounce")), "Eth1/1 Eth1/2 Eth1/3 Eth1/4 Eth1/10 ");
}

TEST(Tables, CapabilitiesOfPortsComeFromTheirLineCard) {
  EXPECT_EQ(text_of("show interface ethernet 1/1 capabilities"),
            "Ethernet1/1\n"
            "  Model:                 COPPER\n"
            "  Type (Non SFP):        10/100/1000BaseT\n"
            "  Speed:                 10,100,1000,auto\n"
            "  Duplex:                half/full/auto\n"
            "  Trunk encap. type:     802.1Q\n"
            "  Channel:               yes\n"
            "  Broadcast suppression: percentage(0-100)\n"
            "  Flowcontrol:           rx-(off/on),tx-(off)\n"
            "  Rate mode:             dedicated\n"
            "  QOS scheduling:        rx-(2q4t),tx-(1p3q4t)\n"
            "  CoS rewrite:           yes\n"
            "  ToS rewrite:           yes\n"
            "  SPAN:                  yes\n"
            "  UDLD:                  yes\n"
            "  Link Debounce:         yes\n"
            "  Link Debounce Time:    yes\n"
            "  MDIX:                  yes\n"
            "\n");
}

TEST(Tables, CapabilitiesVisitPortsAndChannels) {
  EXPECT_EQ(names_in(json_of("show interface capabilities")),
            "Ethernet1/1 Ethernet1/2 Ethernet1/3 Ethernet1/4 Ethernet1/10 Ethernet2/1 Ethernet2/2 Ethernet2/3 "
            "port-channel7 ");
}

TEST(Tables, ManagementPortHasCapabilitiesOfItsOwn) {
  const std::string text = run_command("show interface mgmt 0 capabilities").out;
  EXPECT_THAT(text, StartsWith("mgmt0\n  Model:                 --\n  Type (Non SFP):        --\n"));
}

TEST(Tables, HeaderStandsOnceForAGroupOfKinds) {
  const std::string text = run_command("show interface ethernet 1/1, loopback 0, ethernet 1/2, loopback 0 brief").out;
  const std::string loopback_header =
      "\n"
      "--------------------------------------------------------------------------------\n"
      "Interface     Status     Description\n"
      "--------------------------------------------------------------------------------\n";

  EXPECT_THAT(text, StartsWith(std::string(kBriefHeader) +
                               "Ethernet1/1              up         --                1000     1500  \n"
                               "Ethernet1/2              down       --                --       9000  \n" +
                               loopback_header));
  EXPECT_EQ(text.find(loopback_header), text.rfind(loopback_header));
}

TEST(Tables, ColumnHeaderIsLeftOutForSubInterfacesWhereTheirTableHasNone) {
  EXPECT_EQ(names_in(text_of("show interface ethernet 2/1.5 status")), "Eth2/1.5 ");
}

TEST(Tables, NamedInterfaceWithoutTheTableIsNamedAndTheOthersAreShown) {
  const outcome result = run("show interface ethernet 2/1, ethernet 1/1 brief");

  EXPECT_EQ(result.out,
            std::string(kBriefHeader) + "Ethernet1/1              up         --                1000     1500  \n");
  EXPECT_EQ(result.err, "pmsh: Ethernet2/1: 'show interface brief' does not apply to this kind of interface.\n");
  EXPECT_EQ(result.exit_code, 3);
}

TEST(Tables, NamesOfSatellitePortsAreDistinctInEveryTable) {
  for (const char* const display :
       {"status", "counters", "counters errors", "counters trunk", "counters storm-control", "flowcontrol"}) {
    const std::string command = std::string("show interface ethernet 101/1/1, 101/1/10-12 ") + display;
    const outcome result = run_shell_on(shipped_switch("campus.yaml"), {"-c", command});
    for (const char* const port : {"101/1/1 ", "101/1/10 ", "101/1/11 ", "101/1/12 "})
      EXPECT_THAT(result.out, HasSubstr(port)) << display;
  }
}

TEST(Tables, FilterThatPassesNoInterfaceIsAnAnswer) {
  const outcome result = run("show interface ethernet 1/1 status down");

  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.exit_code, 0);
}

TEST(Tables, ModuleThatDoesNotExistIsNamed) {
  for (const std::string command : {"show interface status module ", "show interface ethernet 1/1 flowcontrol module ",
                                    "show interface counters errors module ", "show interface trunk detail module "})
    for (const std::string module : {"9", "0", "99", "99999999999999999999"}) {
      const std::string sentence = "module " + module + " does not exist; the modules of this switch are 1, 2.";
      const outcome text = run(command + module);
      EXPECT_EQ(text.out, "") << command;
      EXPECT_EQ(text.err, "pmsh: " + sentence + "\n") << command;
      EXPECT_EQ(text.exit_code, 4) << command;

      const outcome structured = run(command + module + " | json");
      rapidjson::Document document;
      document.Parse(structured.out.c_str());
      ASSERT_FALSE(document.HasParseError()) << structured.out;
      ASSERT_EQ(document["messages"].Size(), 1U) << command;
      EXPECT_EQ(document["messages"][0]["text"].GetString(), sentence);
      EXPECT_EQ(document["exit_code"].GetInt(), 4) << command;
      EXPECT_EQ(structured.exit_code, 4) << command;
    }
}

TEST(Tables, WordThatIsNoNumberOfAModuleIsAUsageError) {
  EXPECT_EQ(run("show interface status module two").exit_code, 1);
  EXPECT_EQ(run("show interface status module -1 | json").exit_code, 1);
}

TEST(Tables, AbbreviationsMeanTheSame) {
  const std::pair<const char*, const char*> pairs[] = {
      {"show interface brief", "sh int br"},
      {"show interface status", "s int st"},
      {"show interface status up", "sho inter stat u"},
      {"show interface status down", "sh int st d"},
      {"show interface status inactive", "sh int st i"},
      {"show interface status module 2", "sh int st m 2"},
      {"show interface status err-disabled", "sh int st e"},
      {"show interface description", "sh int des"},
      {"show interface mac-address", "sh int ma"},
      {"show interface ifindex", "sh int if"},
      {"show interface debounce", "sh int deb"},
      {"show interface capabilities", "sh int ca"},
      {"show interface ethernet 1/1-4 brief", "sh int e1/1-4 b"},
  };
  for (const auto& [full, abbreviated] : pairs) EXPECT_EQ(text_of(full), text_of(abbreviated)) << abbreviated;
}

TEST(StructuredTables, BriefHasNumbersWithUnits) {
  const auto document = json_of("show interface brief");
  const auto& up = document["interfaces"][0];
  const auto& down = document["interfaces"][4];
  const auto& channel = document["interfaces"][5];

  EXPECT_STREQ(up["interface"].GetString(), "Ethernet1/1");
  EXPECT_STREQ(up["state"].GetString(), "up");
  EXPECT_TRUE(up["state_reason"].IsNull());
  EXPECT_EQ(up["speed_mbps"].GetUint(), 1000U);
  EXPECT_EQ(up["mtu_bytes"].GetUint(), 1500U);
  EXPECT_TRUE(up["ip_address"].IsNull());
  EXPECT_STREQ(down["state"].GetString(), "down");
  EXPECT_STREQ(down["state_reason"].GetString(), "Link failure or not-connected");
  EXPECT_TRUE(down["speed_mbps"].IsNull());
  EXPECT_STREQ(channel["ip_address"].GetString(), "192.0.2.17");
}

TEST(StructuredTables, StatusHasFullNamesAndWholeTexts) {
  const auto document = json_of("show interface ethernet 1/1, ethernet 2/2 status");
  const auto& copper = document["interfaces"][0];
  const auto& fibre = document["interfaces"][1];

  EXPECT_STREQ(copper["interface"].GetString(), "Ethernet1/1");
  EXPECT_STREQ(copper["description"].GetString(), "A desk with a long name");
  EXPECT_STREQ(copper["media_type"].GetString(), "10/100/1000BaseT");
  EXPECT_STREQ(fibre["vlan"]["mode"].GetString(), "access");
  EXPECT_EQ(fibre["vlan"]["access"].GetUint(), 310U);
  EXPECT_STREQ(fibre["duplex"].GetString(), "full");
  EXPECT_EQ(fibre["speed_mbps"].GetUint(), 10000U);
}

TEST(StructuredTables, FilteredInterfacesHaveNoRecord) {
  EXPECT_EQ(names_in(json_of("show interface status down")), "Ethernet1/2 ");
  EXPECT_EQ(names_in(json_of("show interface status module 1")),
            "Ethernet1/1 Ethernet1/2 Ethernet1/3 Ethernet1/4 Ethernet1/10 ");
  EXPECT_EQ(names_in(json_of("show interface ethernet 1/1 status module 2")), "");
}

TEST(StructuredTables, SmallTablesHaveTheirFields) {
  const auto errors = json_of("show interface status err-disabled");
  EXPECT_STREQ(errors["interfaces"][0]["state_reason"].GetString(), "Error disabled");
  EXPECT_STREQ(errors["interfaces"][0]["description"].GetString(), "Camera");

  const auto descriptions = json_of("show interface ethernet 1/1-2 description");
  EXPECT_STREQ(descriptions["interfaces"][0]["description"].GetString(), "A desk with a long name");
  EXPECT_TRUE(descriptions["interfaces"][1]["description"].IsNull());

  const auto addresses = json_of("show interface ethernet 1/10 mac-address");
  EXPECT_STREQ(addresses["interfaces"][0]["address"].GetString(), "0200.0000.0099");
  EXPECT_STREQ(addresses["interfaces"][0]["burned_in_address"].GetString(), "0200.0000.001a");

  const auto indexes = json_of("show interface ethernet 1/1 ifindex");
  EXPECT_EQ(indexes["interfaces"][0]["interface_index"].GetUint(), 134217728U);
  EXPECT_STREQ(indexes["interfaces"][0]["interface_index_hex"].GetString(), "0x8000000");

  const auto debounce = json_of("show interface ethernet 1/1 debounce");
  EXPECT_STREQ(debounce["interfaces"][0]["debounce"].GetString(), "enable");
  EXPECT_EQ(debounce["interfaces"][0]["debounce_msec"].GetUint(), 100U);

  const auto capabilities = json_of("show interface ethernet 1/1 capabilities");
  EXPECT_STREQ(capabilities["interfaces"][0]["model"].GetString(), "COPPER");
  EXPECT_STREQ(capabilities["interfaces"][0]["channel_capable"].GetString(), "yes");
}

}  // namespace
}  // namespace session
