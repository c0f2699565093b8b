// The display of one interface by command id.
#include <gtest/gtest.h>

#include <algorithm>

#include "contract/sample_ports.h"
#include "contract/transceiver/transceiver_images.h"
#include "platform/vlan_manager.h"
#include "pmcli/interface.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

using Events = std::vector<std::string>;

constexpr char kNotSupported[] = "Option not supported\n";
constexpr char kNoStatistics[] = "stats unavailable\n";
constexpr char kNoMembership[] =
    "error: undefined symbol in dlsym for vlan_get_port_trunking_memb_build_mts\n"
    "Couldn't call pm_cli_get_vlan_memb_info\n";

std::string shown(RecordingPlatform& platform, uint32 command, if_index_t if_index) {
  pm_cli_show_eth_port_info(platform.output(), RecordingPlatform::q(), command, if_index);
  return platform.text();
}

// What a command id shows. "Silent" are also the rows that the state of the tests' port does not select.
enum class display {
  detail,
  silent,
  status_row,
  error_row,
  description_row,
  brief_row,
  mac_row,
  if_index_row,
  debounce_row,
  statistics_row,
  transceiver,
  capabilities,
  trunk_detail,
  trunk_brief,
  allowed_vlans,
  forwarding_vlans,
  not_supported
};

struct command_case {
  uint32 command;
  display shows;
};

// Ids that are not here are not supported.
constexpr command_case kCommands[] = {
    {1, display::detail},
    {2, display::status_row},
    {3, display::silent},  // for good
    {4, display::description_row},
    {5, display::brief_row},
    {6, display::transceiver},
    {9, display::transceiver},
    {10, display::transceiver},
    {13, display::capabilities},
    {18, display::statistics_row},  // first error table
    {20, display::statistics_row},  // trunk counters
    {22, display::debounce_row},
    {23, display::statistics_row},  // flow-control row
    {24, display::silent},          // status row of what is administratively down
    {25, display::silent},          // error-status row of what is error-disabled
    {26, display::silent},          // status row of what is inactive
    {27, display::status_row},
    {28, display::status_row},  // of what is up
    {29, display::trunk_detail},
    {30, display::trunk_detail},
    {31, display::trunk_detail},
    {32, display::status_row},
    {33, display::trunk_detail},
    {34, display::statistics_row},  // flow-control row
    {35, display::statistics_row},
    {36, display::mac_row},
    {38, display::trunk_brief},       // trunk brief
    {39, display::allowed_vlans},     // allowed VLANs
    {40, display::forwarding_vlans},  // forwarding VLANs
    {42, display::silent},            // for good
    {43, display::silent},            // for good
    {44, display::statistics_row},    // receive table
    {45, display::statistics_row},
    {46, display::statistics_row},
    {47, display::statistics_row},  // transmit table
    {48, display::statistics_row},
    {49, display::statistics_row},
    {50, display::statistics_row},  // first error table
    {51, display::statistics_row},
    {52, display::statistics_row},  // second error table
    {53, display::statistics_row},
    {54, display::statistics_row},
    {55, display::statistics_row},  // third error table
    {56, display::statistics_row},
    {57, display::statistics_row},
    {58, display::statistics_row},  // detailed counters
    {59, display::silent},          // for good
    {60, display::error_row},
    {104, display::if_index_row},
};

display display_of(uint32 command) {
  for (const command_case& known : kCommands)
    if (known.command == command) return known.shows;
  return display::not_supported;
}

constexpr uint32 kCommandsAround[] = {121, 255, 256, 257, 0x10001, 0x80000001, 0xFFFFFFFF};

std::vector<uint32> all_commands() {
  std::vector<uint32> commands;
  for (uint32 command = 0; command <= 120; ++command) commands.push_back(command);
  commands.insert(commands.end(), std::begin(kCommandsAround), std::end(kCommandsAround));
  return commands;
}

const Events kOneStatisticsFetch = {"open libstatcl.so lazy", "find statcl_get_port_client_stats",
                                    "close libstatcl.so"};
const Events kOneCapabilityFetch = {"open libcrdcfg.so lazy", "find crdcfg_get_port_cap", "close libcrdcfg.so"};

// The row of an Ethernet port that is up and whose card says "SFP"; empty for other displays.
std::string row_text(display shows) {
  switch (shows) {
    case display::status_row: return "Eth1/1         --                 1        11      1000    SFP        \n";
    case display::error_row: return "Eth1/1     --                 1        2\n";
    case display::description_row: return "Ethernet1/1              --\n";
    case display::brief_row: return "Ethernet1/1              1          --                1000     1500  \n";
    case display::mac_row: return "Ethernet1/1                02aa.bbcc.ddee  0210.2030.4050\n";
    case display::if_index_row: return "Eth1/1          134217728  (0x8000000 )\n";
    case display::debounce_row: return "Eth1/1        disable                0\n";
    case display::transceiver: return "Ethernet1/1 error in retrieving sfp information - <system error 40290037>\n";
    case display::not_supported: return kNotSupported;
    default: return "";
  }
}

// The row of a trunk, where neither the VLAN manager's library nor the spanning tree's has what it takes.
std::string trunk_row_text(display shows) {
  switch (shows) {
    case display::trunk_brief: return "Eth1/1     1       trunking      --\n";
    case display::allowed_vlans: return "error: undefined symbol in dlsym for vlan_get_port_trunking_memb_build_mts\n";
    case display::forwarding_vlans: return "Eth1/1     error: couldn't open libstp.so\n--\n";
    default: return row_text(shows);
  }
}

Events loader_events_of(display shows) {
  if (shows == display::statistics_row) return kOneStatisticsFetch;
  return shows == display::status_row ? kOneCapabilityFetch : Events{};
}

Events loader_events_of_trunk(display shows) {
  if (shows == display::allowed_vlans)
    return {"open libvlan_mgr.so lazy", "find vlan_get_port_trunking_memb_build_mts", "close libvlan_mgr.so"};
  if (shows == display::forwarding_vlans) return {"miss libstp.so lazy"};
  return loader_events_of(shows);
}

// ---- The table -----------------------------------------------------------------------------------------------------

TEST(ShowByCommand, EachIdOfAnAccessPortWithoutStatistics) {
  for (const uint32 command : all_commands()) {
    SCOPED_TRACE(command);
    const display expected = display_of(command);
    if (expected == display::detail) continue;  // below
    RecordingPlatform platform;
    platform.ports[kPort] = port_record();
    platform.capabilities[kPort] = port_capabilities("SFP");
    const bool asks_statistics = expected == display::statistics_row;
    EXPECT_EQ(shown(platform, command, kPort), asks_statistics ? kNoStatistics : row_text(expected));
    EXPECT_EQ(platform.terminal(), platform.pieces.empty() ? platform.text() : "");
    EXPECT_EQ(platform.loader_events, loader_events_of(expected));
    EXPECT_EQ(platform.count("pm_cmi_get_port_config"), expected == display::transceiver ? 2U : 1U);
    EXPECT_EQ(platform.sends, 0U);
  }
}

// The row that a record without traffic gives under a statistics id. The names of the traffic rows are cut to 8
// columns.
std::string row_without_traffic(uint32 command) {
  constexpr char kErrors[] = "Eth1/1             0           0           0           0           0           0\n";
  constexpr char kCarrierErrors[] = "Eth1/1             0           0           0           0          0           0\n";
  constexpr char kNoSqeTest[] = "Eth1/1             0          --           0           0           0           0\n";
  constexpr char kTraffic[] = "Ethernet                   0                 0                0                0\n";
  switch (command) {
    case 18:
    case 50:
    case 51: return kErrors;
    case 20: return "Eth1/1                      0               0               0\n";
    case 23:
    case 34:
    case 35: return "Eth1/1     1        0        8        0           0       0      \n";
    case 52:
    case 53:
    case 54: return kCarrierErrors;
    case 55:
    case 56:
    case 57: return kNoSqeTest;
    case 58: return "";  // a list of what is not 0
    default: return command >= 44 && command <= 49 ? kTraffic : "";
  }
}

TEST(ShowByCommand, EachIdOfATrunkWithStatistics) {
  for (const uint32 command : all_commands()) {
    SCOPED_TRACE(command);
    const display expected = display_of(command);
    if (expected == display::detail || expected == display::trunk_detail) continue;  // below
    RecordingPlatform platform;
    platform.ports[kPort] = port_record_in_mode(PM_PORT_MODE_TRUNK);
    platform.capabilities[kPort] = port_capabilities("SFP");
    platform.port_stats[kPort] = {};
    const bool is_statistics = expected == display::statistics_row;
    EXPECT_EQ(shown(platform, command, kPort), is_statistics ? row_without_traffic(command) : trunk_row_text(expected));
    EXPECT_EQ(platform.loader_events, loader_events_of_trunk(expected));
  }
}

// Which row an interface gets whose state and kind a command selects; the first cell tells the row.
enum class selected_row { none, status, error, debounce, if_index };

selected_row row_selected_by(uint32 command, const pm_port_info_t& port, if_index_type_t type) {
  const uint32 reason = port.oper_state_reason;
  const bool is_error_disabled = reason == 5 || reason == 30;  // of the reasons below
  bool is_selected = false;
  switch (command) {
    case 22: return type == 2 ? selected_row::debounce : selected_row::none;
    case 104: return type == 2 ? selected_row::if_index : selected_row::none;
    case 25: return is_error_disabled ? selected_row::error : selected_row::none;
    case 60: return selected_row::error;
    case 24: is_selected = reason == 12; break;
    case 26: is_selected = reason == 11; break;
    case 28: is_selected = port.oper_port_state == 1; break;
    case 2:
    case 27:
    case 32: is_selected = true; break;
    default: break;
  }
  return is_selected ? selected_row::status : selected_row::none;
}

selected_row row_shown(const RecordingPlatform& platform) {
  const Tuples tuples = platform.tuples();
  if (tuples.empty()) return selected_row::none;
  switch (tuples.front().id) {
    case 0x0C2A0612: return selected_row::status;
    case 0x0C2A0619: return selected_row::error;
    case 0x0C2A05E6: return selected_row::debounce;
    case 0x0C2A05E9: return selected_row::if_index;
    default: ADD_FAILURE() << "a row that begins with " << testing::PrintToString(tuples.front());
  }
  return selected_row::none;
}

TEST(ShowByCommand, RowsAreSelectedByStateReasonAndKind) {
  for (const uint32 command : {2U, 22U, 24U, 25U, 26U, 27U, 28U, 32U, 38U, 39U, 40U, 60U, 104U}) {
    for (const uint8 state : {uint8{1}, uint8{2}, uint8{0}}) {
      for (const uint8 reason : {uint8{5}, uint8{11}, uint8{12}, uint8{30}, uint8{7}, uint8{1}}) {
        for (const if_index_t if_index :
             {kPort, kRoutablePort, kChannel, kOldChannel, mgmt(), loopback(0), satellite(100, 1, 1)}) {
          RecordingPlatform platform;
          pm_port_info_t& port = platform.ports[if_index] = port_record();
          port.oper_port_state = state;
          port.oper_state_reason = reason;
          platform.capabilities[if_index] = port_capabilities("SFP");
          if_index_type_t type = IF_TYPE_NONE;
          if_index_get_type(if_index, &type);
          shown(platform, command, if_index);
          const selected_row expected = row_selected_by(command, port, type);
          EXPECT_EQ(row_shown(platform), expected)
              << "id " << command << ", reason " << int{reason} << ", state " << int{state} << ", kind " << int{type};
          EXPECT_EQ(platform.short_rows, expected == selected_row::none ? 0U : 1U);
          EXPECT_EQ(platform.terminal(), "");
          if (expected == selected_row::none) {
            EXPECT_EQ(platform.text(), "");
            EXPECT_THAT(platform.loader_events, IsEmpty());
          }
        }
      }
    }
  }
}

TEST(ShowByCommand, StatisticsRowsFailByTheirFetch) {
  for (const command_case& known : kCommands) {
    if (known.shows != display::statistics_row) continue;
    SCOPED_TRACE(known.command);
    RecordingPlatform platform;
    platform.ports[kPort] = port_record();
    platform.libraries.erase(STATCL_LIBRARY);
    EXPECT_EQ(shown(platform, known.command, kPort), "error: unable to open library libstatcl.so\nstats unavailable\n");
    platform.clear_output();
    platform.libraries[STATCL_LIBRARY] = {};
    EXPECT_EQ(shown(platform, known.command, kPort),
              "error: undefined symbol in dlsym for statcl_get_port_client_stats\nstats unavailable\n");
  }
}

// ---- The port record -----------------------------------------------------------------------------------------------

TEST(PortRecord, IsAskedForOnceAndForThisInterface) {
  RecordingPlatform platform;
  platform.ports[kPort] = port_record();
  shown(platform, 3, kPort);
  expect_one_query(platform, kPort);
}

TEST(PortRecord, TransportFailureEndsEveryDisplay) {
  for (const uint32 command : all_commands()) {
    RecordingPlatform platform;
    platform.ports[kPort] = port_record();
    platform.mts_errno = 104;
    platform.fail_with("pm_cmi_get_port_config", -1);
    EXPECT_EQ(shown(platform, command, kPort), "<transport failure 2 104>\n") << command;
    EXPECT_EQ(platform.mts_errors, (std::vector<std::pair<int32, int32>>{{2, 104}}));
  }
}

TEST(PortRecord, OtherFailuresArePrinted) {
  for (const uint32 command : all_commands()) {
    RecordingPlatform platform;
    platform.ports[kPort] = port_record();
    platform.syserr_texts[0x40290015] = "port belongs to 100% of a channel";
    platform.fail_with("pm_cmi_get_port_config", 0x40290015);
    EXPECT_EQ(shown(platform, command, kPort), "error: port belongs to 100% of a channel\n") << command;
    EXPECT_EQ(platform.terminal(), platform.text());
    EXPECT_THAT(platform.mts_errors, IsEmpty());
  }
}

// ---- 1: the detailed block -----------------------------------------------------------------------------------------

constexpr char kBlock[] =
    "Ethernet1/1 is 1\n"
    "  Hardware: 10/100/1000 Ethernet, address: 0210.2030.4050 (bia 0210.2030.4050)\n"
    "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n"
    "     reliability 0/255, txload 0/255, rxload 0/255\n"
    "  Encapsulation ARPA\n"
    "  Port mode is 524288\n"
    "  11-duplex, 1000\n"
    "  Input flow-control is 8, output flow-control is 1\n"
    "  Switchport monitor is 15 \n";

constexpr char kTracked[] =
    "    Linked to 1 port(s)\n"
    "      Port linked to interface Ethernet1/9\n";

void set_up_port(RecordingPlatform& platform) {
  platform.chassis_type = CHASSIS_UNKNOWN;
  platform.ports[kPort] = port_record();
  platform.capabilities[kPort] = port_capabilities("SFP");
  platform.port_stats[kPort] = {};
  platform.tracked_ports[kPort] = {ethernet(1, 9)};
}

TEST(DetailedView, BlockIsFollowedByTheTrackedPorts) {
  RecordingPlatform platform;
  set_up_port(platform);
  EXPECT_EQ(shown(platform, 1, kPort), std::string(kBlock) + kTracked);
  EXPECT_EQ(platform.sends, 0U);
}

TEST(DetailedView, CountersAreNotShown) {
  RecordingPlatform platform;
  set_up_port(platform);
  platform.port_stats[kPort].mac.errors.input_errors = 1;
  platform.port_stats[kPort].mac.pktflow.ingress_pkts = 1000;
  platform.port_stats[kPort].last_clear = 1;
  EXPECT_EQ(shown(platform, 1, kPort), std::string(kBlock) + kTracked);
}

TEST(DetailedView, WithoutStatisticsThereAreNoTrackedPorts) {
  RecordingPlatform platform;
  set_up_port(platform);
  platform.port_stats.clear();
  EXPECT_EQ(shown(platform, 1, kPort), std::string(kBlock) + kNoStatistics);
  EXPECT_EQ(platform.count("pm_cmi_get_tracked_port_if_list"), 0U);
}

TEST(DetailedView, TrackedPortsBelongToThreeKinds) {
  struct kind_case {
    if_index_t if_index;
    bool has_tracked_ports;
  };
  const kind_case kCases[] = {
      {kPort, true},   {kOldChannel, true},           {kChannel, true},      {kRoutablePort, false},
      {mgmt(), false}, {satellite(100, 1, 1), false}, {vethernet(1), false}, {loopback(0), false},
  };
  for (const kind_case& kind : kCases) {
    RecordingPlatform platform;
    platform.chassis_type = CHASSIS_UNKNOWN;
    platform.ports[kind.if_index] = port_record();
    platform.port_stats[kind.if_index] = {};
    platform.tracked_ports[kind.if_index] = {ethernet(1, 9)};
    EXPECT_THAT(shown(platform, 1, kind.if_index), HasSubstrOnlyIf(kind.has_tracked_ports, kTracked)) << kind.if_index;
    EXPECT_EQ(platform.count("pm_cmi_get_tracked_port_if_list"), kind.has_tracked_ports ? 1U : 0U);
    EXPECT_EQ(platform.count("statcl_get_port_client_stats"), 1U);
  }
}

TEST(DetailedView, TrackedPortsAreNotShownOnEthernetSwitches) {
  RecordingPlatform platform;
  set_up_port(platform);
  platform.chassis_type = CHASSIS_24;
  EXPECT_EQ(shown(platform, 1, kPort), kBlock);
}

TEST(DetailedView, RoutedPortChannelInWhole) {
  RecordingPlatform platform;
  platform.ports[kChannel] = down_port_record();
  platform.layers[kChannel] = IF_LAYER_3;
  platform.addresses[kChannel] = {ipv4_address(192, 0, 2, 1, 31)};
  platform.channel_members[kChannel] = {ethernet(2, 1), ethernet(1, 48)};
  platform.port_stats[kChannel] = {};
  EXPECT_EQ(shown(platform, 1, kChannel),
            "port-channel3 is 2 (7)\n"
            "  Hardware: Port-Channel, address: 02aa.bbcc.ddee (bia 0210.2030.4050)\n"
            "  Internet Address is 192.0.2.1/31\n"
            "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n"
            "     reliability 0/255, txload 0/255, rxload 0/255\n"
            "  Encapsulation ARPA\n"
            "  12-duplex, 1000\n"
            "  Input flow-control is 8, output flow-control is 1\n"
            "  Switchport monitor is 15 \n"
            "  Members in this channel: Eth1/48, Eth2/1\n");
}

TEST(DetailedView, SubInterfaceOfARoutedPortInWhole) {
  const if_index_t sub = sub_interface(kRoutablePort, 100);
  RecordingPlatform platform;
  platform.ports[sub] = port_record();
  platform.ports[sub].admin_si_vlan_id = 100;
  platform.layers[sub] = IF_LAYER_3;
  platform.capabilities[sub] = port_capabilities("SFP", 8);
  platform.port_stats[sub] = {};
  EXPECT_EQ(shown(platform, 1, sub),
            "Ethernet1/2.100 is 1\n"
            "  Hardware: 10000 Ethernet, address: 02aa.bbcc.ddee (bia 0210.2030.4050)\n"
            "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n"
            "     reliability 0/255, txload 0/255, rxload 0/255\n"
            "  Encapsulation 802.1Q Virtual LAN, Vlan ID 100\n");
}

TEST(DetailedView, VirtualEthernetInWhole) {
  RecordingPlatform platform;
  platform.ports[vethernet(7)] = port_record();
  platform.ports[vethernet(7)].bound_ifindex = kPort;
  EXPECT_EQ(shown(platform, 1, vethernet(7)),
            "Vethernet7 is 1\n"
            "    Bound Interface is Ethernet1/1 \n"
            "  Hardware: VEthernet\n"
            "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n"
            "     reliability 0/255, txload 0/255, rxload 0/255\n"
            "  Encapsulation ARPA\n"
            "  Port mode is 524288\n"
            "stats unavailable\n");
}

TEST(DetailedView, OlderPortChannelIsUnknownHardware) {
  RecordingPlatform platform;
  platform.ports[kOldChannel] = port_record();
  EXPECT_EQ(shown(platform, 1, kOldChannel),
            "port-channel4 is 1\n"
            "  Hardware: --\n"
            "  MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec,\n"
            "     reliability 0/255, txload 0/255, rxload 0/255\n"
            "  Encapsulation --\n"
            "stats unavailable\n");
}

// ---- 6, 9, 10: the transceiver -------------------------------------------------------------------------------------

constexpr char kNoState[] = "MTS send failed for xcvr misc info.\n";

TEST(TransceiverView, DiagnosticsFollowTheIdentity) {
  const std::pair<uint32, const char*> kTitles[] = {
      {6, "           SFP Diagnostics Information (internal calibration)\n"},
      {9, "           SFP Calibration Information (internal calibration)\n"},
      {10, "           SFP Detail Diagnostics Information (internal calibration)\n"},
  };
  for (const auto& [command, title] : kTitles) {
    RecordingPlatform platform;
    platform.ports[kPort] = port_record();
    platform.transceivers[kPort] = sfp_record();
    platform.diagnostics[kPort] = healthy_diagnostics();
    platform.on_request = [](const mts_request&) { return mts_reply{misc_info(kPort, state_entry(kGoodState))}; };
    const std::string text = shown(platform, command, kPort);
    EXPECT_THAT(text, HasSubstr("    name is LIGHTWORKS")) << command;
    EXPECT_THAT(text, HasSubstr(title)) << command;
    EXPECT_LT(text.find("    name is LIGHTWORKS"), text.find(title)) << command << "\n" << text;
  }
}

TEST(TransceiverView, NothingFollowsAnIdentityThatFailed) {
  RecordingPlatform platform;
  platform.ports[kPort] = port_record();
  platform.transceivers[kPort] = sfp_record();
  platform.diagnostics[kPort] = healthy_diagnostics();
  platform.fail_with("mts_send");
  EXPECT_THAT(shown(platform, 10, kPort), EndsWith(kNoState));
}

TEST(TransceiverView, ReasonFollowsTheIdentityWhereThereAreNoDiagnostics) {
  for (const uint32 command : {6U, 9U, 10U}) {
    RecordingPlatform platform;
    platform.ports[kPort] = port_record();
    platform.transceivers[kPort] = sfp_record();
    platform.on_request = [](const mts_request&) { return mts_reply{misc_info(kPort, state_entry(kGoodState))}; };
    const std::string text = shown(platform, command, kPort);
    EXPECT_THAT(text, HasSubstr("    name is LIGHTWORKS")) << command;
    EXPECT_THAT(text, EndsWith("    Digital diagnostics feature not supported in SFP\n\n")) << command;
  }
}

// ---- 13: capabilities ----------------------------------------------------------------------------------------------

TEST(CapabilityView, EthernetPortsShowNothing) {
  for (const if_index_t if_index : {kPort, kRoutablePort, satellite(100, 1, 1), kOldChannel, loopback(0)}) {
    RecordingPlatform platform;
    platform.ports[if_index] = port_record();
    platform.capabilities[if_index] = port_capabilities("SFP");
    EXPECT_EQ(shown(platform, 13, if_index), "");
    EXPECT_THAT(platform.loader_events, IsEmpty());
  }
}

TEST(CapabilityView, ManagementPortShowsItsFixedOnes) {
  RecordingPlatform platform;
  platform.ports[mgmt()] = port_record();
  const std::string text = shown(platform, 13, mgmt());
  EXPECT_EQ(text.substr(0, 6), "mgmt0\n");
  EXPECT_THAT(text, HasSubstr("  Type (Non SFP):        --\n"));
  EXPECT_THAT(platform.loader_events, IsEmpty());
}

TEST(CapabilityView, PortChannelShowsWhatItsCardSays) {
  RecordingPlatform platform;
  platform.ports[kChannel] = port_record();
  platform.capabilities[kChannel] = port_capabilities("10Gbase-LR");
  const std::string text = shown(platform, 13, kChannel);
  EXPECT_EQ(text.substr(0, 14), "port-channel3\n");
  EXPECT_THAT(text, HasSubstr("  Type (Non SFP):        10Gbase-LR\n"));
}

TEST(CapabilityView, PortChannelWithoutAnAnswerShowsTheReason) {
  RecordingPlatform platform;
  platform.ports[kChannel] = port_record();
  EXPECT_EQ(shown(platform, 13, kChannel), "crdcfg_get_port_cap failed with <system error 40290037>\n");
  EXPECT_THAT(platform.pieces, IsEmpty());
}

// ---- 29, 30, 31, 33: trunk detail ----------------------------------------------------------------------------------

constexpr uint32 kTrunkDetail[] = {29, 30, 31, 33};
const Events kVlanManagerAsked = {"open libvlan_mgr.so lazy", "close libvlan_mgr.so"};

TEST(TrunkDetail, OtherModesShowNothing) {
  for (const uint32 command : kTrunkDetail) {
    RecordingPlatform platform;
    platform.ports[kPort] = port_record();
    platform.ports[kPort].oper_port_mode = PM_PORT_MODE_TRUNK;
    EXPECT_EQ(shown(platform, command, kPort), "");
    EXPECT_THAT(platform.loader_events, IsEmpty());
  }
}

// The tests' VLAN manager has no functions: the query for the membership fails.
TEST(TrunkDetail, ViewIsFollowedByTrackedPortsAndVlans) {
  for (const uint32 command : kTrunkDetail) {
    RecordingPlatform platform;
    platform.chassis_type = CHASSIS_UNKNOWN;
    platform.ports[kPort] = port_record_in_mode(PM_PORT_MODE_TRUNK);
    platform.tracked_ports[kPort] = {ethernet(1, 9)};
    EXPECT_EQ(shown(platform, command, kPort), std::string("Ethernet1/1 is 1\n") + kTracked + kNoMembership);
    ASSERT_FALSE(platform.loader_events.empty());
    EXPECT_EQ(platform.loader_events.front(), kVlanManagerAsked.front());
    EXPECT_EQ(platform.loader_events.back(), kVlanManagerAsked.back());
  }
}

TEST(TrunkDetail, OnlyTheConfiguredModeCounts) {
  RecordingPlatform platform;
  platform.ports[kPort] = port_record();
  platform.ports[kPort].admin_port_mode = PM_PORT_MODE_TRUNK;
  EXPECT_EQ(shown(platform, 29, kPort), std::string("Ethernet1/1 is 1\n") + kNoMembership);
}

TEST(TrunkDetail, MissingVlanManagerIsPrinted) {
  RecordingPlatform platform;
  platform.libraries.erase(VLAN_MGR_LIBRARY);
  platform.ports[kPort] = port_record_in_mode(PM_PORT_MODE_TRUNK);
  EXPECT_EQ(shown(platform, 30, kPort), "Ethernet1/1 is 1\nlibvlan_mgr.so missing\n");
  EXPECT_EQ(platform.terminal(), "libvlan_mgr.so missing\n");
  EXPECT_EQ(platform.loader_events, (Events{"miss libvlan_mgr.so lazy"}));
}

TEST(TrunkDetail, KindsThatTheViewRefusesShowTheirVlansAllTheSame) {
  struct kind_case {
    if_index_t if_index;
    const char* refusal;
  };
  const kind_case kCases[] = {
      {kRoutablePort, "error: invalid if index type(26)\n"},
      {vethernet(1), "error: invalid if index type(29)\n"},
      {satellite(100, 1, 1), "error: invalid if index type(31)\n"},
  };
  for (const kind_case& kind : kCases) {
    RecordingPlatform platform;
    platform.chassis_type = CHASSIS_UNKNOWN;
    platform.ports[kind.if_index] = port_record_in_mode(PM_PORT_MODE_TRUNK);
    platform.tracked_ports[kind.if_index] = {ethernet(1, 9)};
    EXPECT_EQ(shown(platform, 33, kind.if_index), std::string(kind.refusal) + kNoMembership);
  }
}

TEST(TrunkDetail, PortChannelShowsItsWholeView) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_UNKNOWN;
  platform.ports[kChannel] = port_record_in_mode(PM_PORT_MODE_TRUNK);
  platform.channel_members[kChannel] = {ethernet(1, 2)};
  platform.tracked_ports[kChannel] = {};
  EXPECT_EQ(shown(platform, 29, kChannel), std::string("port-channel3 is 1\n"
                                                       "port-channel3 is 1\n"
                                                       "    Hardware is GigabitEthernet, address is 0210.2030.4050\n"
                                                       "    MTU 1500 bytes, BW 1000000 Kbit, DLY 200 usec\n"
                                                       "    Port mode is 1048576\n"
                                                       "    Speed is 1000\n"
                                                       "    Duplex mode is 11\n"
                                                       "    Receive flow-control is desired, Send flow-control is on\n"
                                                       "    Member[1] : Ethernet1/2\n") +
                                               kNoTraffic + kNoMembership);
}

}  // namespace
}  // namespace pmcli_test
