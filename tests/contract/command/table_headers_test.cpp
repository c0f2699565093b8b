// The headers of tabular displays: which one a command id prints, and its exact text.
#include <gtest/gtest.h>

#include "contract/command/interface_command.h"
#include "pmcli/headers.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

constexpr uint32 kLastCommand = 120;

constexpr char kHandleFailure[] = "cmd_paraminfo_to_rxhandle failed \n";

std::string framed(const std::string& columns) {
  const std::string rule = std::string(80, '-') + "\n";
  return "\n" + rule + columns + rule;
}

std::string in_short_form(const std::string& columns) {
  const std::string rule = std::string(79, '-') + "\n";
  return "\n" + rule + columns + rule;
}

const std::string kEthBrief = framed(
    "Interface                Status     IP Address        Speed    MTU   Port\n"
    "                                                                     Channel\n");
const std::string kChannelBrief = framed(
    "Port-channel VLAN  Type Mode   Status  Reason                    Speed  Protocol\n"
    "Interface                                                                \n");
const std::string kErrDisabled = framed("Port       Name               Status   Reason\n");
const std::string kErroredVlan = framed("Port       Name               Err-Vlans  Status\n");
const std::string kTrunkCounters = framed("Port            TrunkFramesTx   TrunkFramesRx      WrongEncap\n");
const std::string kMgmtBrief =
    framed("Port   VRF          Status IP Address                              Speed    MTU\n");
const std::string kLoopbackBrief = framed("Interface     Status     Description\n");
const std::string kStatus = framed("Port           Name               Status   Vlan      Duplex  Speed   Type\n");
const std::string kMacAddress = framed("Interface                  Mac-Address     Burn-in Mac-Address\n");
const std::string kStormControl =
    framed("Port       UcastSupp %      McastSupp %      BcastSupp %      TotalSuppDiscards\n");
const std::string kTrunkStatus = framed(
    "Port       Native  Status        Port\n"
    "           Vlan                  Channel\n");
const std::string kErrors1 =
    framed("Port       Align-Err     FCS-Err    Xmit-Err     Rcv-Err   UnderSize OutDiscards\n");
const std::string kErrors2 =
    framed("Port      Single-Col   Multi-Col    Late-Col   Exces-Col   Carri-Sen       Runts\n");
const std::string kErrors3 =
    framed("Port          Giants SQETest-Err Deferred-Tx IntMacTx-Er IntMacRx-Er  Symbol-Err\n");
const std::string kReceived =
    framed("Port                InOctets       InUcastPkts      InMcastPkts      InBcastPkts\n");
const std::string kSent = framed("Port               OutOctets      OutUcastPkts     OutMcastPkts     OutBcastPkts\n");
const std::string kTrunkHeader = framed("Port       Vlans Allowed on Trunk\n");
const std::string kForwarding = framed("Port       STP Forwarding\n");
const std::string kErrored = framed("Port       Vlans Err-disabled on Trunk\n");
const std::string kDebounce = framed("Port          Debounce time   Value(ms)\n");
const std::string kFlowControl = framed(
    "Port       Send FlowControl  Receive FlowControl  RxPause TxPause\n"
    "           admin    oper     admin    oper\n");
const std::string kIfIndex = framed("Port             IFMIB Ifindex (hex)\n");
const std::string kCountersBrief = in_short_form(
    "Interface              Input (rate is 1 min avg)  Output (rate is 1 min avg)\n"
    "                       -------------------------  -----------------------------\n"
    "                       Rate     Total             Rate     Total\n"
    "                       MB/s     Frames            MB/s     Frames\n");
const std::string kDescription =
    in_short_form("Interface                Description                                            \n");
const std::string kInbandBrief =
    "-------------------------------------------------------------------------------\n"
    "Interface                Status                            Speed\n"
    "                                                           (Gbps)\n"
    "-------------------------------------------------------------------------------\n";

// ---- The printers --------------------------------------------------------------------------------------------------

TEST(HeaderPrinter, EachPrintsItsTextWithoutValues) {
  struct printer_case {
    void (*print)(cmd_rx_handle_t*);
    const std::string& text;
    uint32 sends;
  };
  const printer_case kPrinters[] = {
      {pm_cli_print_eth_brief_header, kEthBrief, 0},
      {pm_pcm_cli_print_eth_brief_header, kChannelBrief, 0},
      {pm_cli_print_eth_err_disabled_status_header, kErrDisabled, 0},
      {pm_cli_print_eth_errored_vlan_status_header, kErroredVlan, 0},
      {pm_cli_show_port_counters_trunk_header, kTrunkCounters, 0},
      {pm_cli_print_mgmt_brief_header_for_lumar, kMgmtBrief, 0},
      {pm_cli_print_loop_brief_header, kLoopbackBrief, 0},
      {pm_cli_print_status_header, kStatus, 0},
      {pm_cli_print_eth_mac_address_header, kMacAddress, 0},
      {pm_cli_print_ethernet_storm_ctrl_header, kStormControl, 0},
      {pm_cli_print_trunk_brief_status_header, kTrunkStatus, 0},
      {pm_cli_print_eth_port_counters_brief_header, kCountersBrief, 0},
      {pm_cli_print_description_header, kDescription, 1},
  };
  for (const printer_case& printer : kPrinters) {
    RecordingPlatform platform;
    printer.print(platform.output());
    EXPECT_EQ(platform.text(), printer.text);
    EXPECT_EQ(platform.terminal(), "");
    EXPECT_THAT(platform.tuples(), IsEmpty());
    EXPECT_EQ(platform.short_rows, 0U);
    EXPECT_EQ(platform.sends, printer.sends);
  }
}

TEST(HeaderPrinter, OfTheInbandTablePrintsOnTheTerminal) {
  RecordingPlatform platform;
  pm_cli_print_inband_brief_header();
  EXPECT_EQ(platform.text(), kInbandBrief);
  EXPECT_EQ(platform.terminal(), kInbandBrief);
  EXPECT_THAT(platform.pieces, IsEmpty());
  EXPECT_EQ(platform.sends, 0U);
}

// ---- The handlers --------------------------------------------------------------------------------------------------

using header_handler = uint32 (*)(paraminfo_t*);

// Consecutive ids with one header. `for_sub_interfaces`: printed also when the first interface is one.
struct header_ids {
  uint32 first;
  uint32 last;
  const std::string& text;
  bool for_sub_interfaces;
};

struct header_case {
  header_handler handler;
  std::vector<header_ids> headers;  // ids that are not here have none
};

const std::vector<header_case>& handlers() {
  static const std::vector<header_case> kHeaderHandlers = {
      {pm_cli_show_common_header,
       {
           {2, 2, kStatus, true},          {7, 7, kCountersBrief, false},  {18, 18, kErrors1, false},
           {19, 19, kStormControl, false}, {22, 22, kDebounce, false},     {23, 23, kFlowControl, false},
           {24, 24, kStatus, true},        {25, 25, kErrDisabled, true},   {26, 28, kStatus, true},
           {32, 32, kStatus, true},        {34, 35, kFlowControl, false},  {36, 36, kMacAddress, false},
           {37, 38, kTrunkStatus, false},  {39, 39, kTrunkHeader, false},  {40, 40, kForwarding, false},
           {44, 46, kReceived, false},     {47, 49, kSent, false},         {50, 51, kErrors1, false},
           {52, 54, kErrors2, false},      {55, 57, kErrors3, false},      {60, 60, kErrDisabled, true},
           {67, 69, kErrors1, false},      {70, 72, kErrors2, false},      {73, 75, kErrors3, false},
           {76, 78, kReceived, false},     {79, 81, kSent, false},         {83, 84, kStormControl, false},
           {85, 85, kTrunkStatus, false},  {86, 86, kTrunkHeader, false},  {87, 87, kForwarding, false},
           {88, 88, kTrunkStatus, false},  {89, 89, kTrunkHeader, false},  {90, 90, kForwarding, false},
           {91, 91, kTrunkStatus, false},  {92, 92, kTrunkHeader, false},  {93, 93, kForwarding, false},
           {94, 94, kTrunkStatus, false},  {95, 95, kTrunkHeader, false},  {96, 96, kForwarding, false},
           {97, 100, kErrored, false},     {101, 102, kErroredVlan, true}, {104, 104, kIfIndex, true},
       }},
      {pm_cli_show_eth_header,
       {
           {5, 5, kEthBrief, true},
           {7, 7, kCountersBrief, false},
           {20, 20, kTrunkCounters, false},
           {60, 60, kErrDisabled, true},
       }},
      {pm_pcm_cli_show_header,
       {
           {4, 4, kDescription, true},
           {5, 5, kChannelBrief, true},
           {7, 7, kCountersBrief, false},
           {20, 20, kTrunkCounters, false},
           {102, 102, kErroredVlan, true},
       }},
      {pm_cli_show_loopback_header, {{4, 4, kDescription, true}, {5, 5, kLoopbackBrief, true}}},
      {pm_cli_show_mgmt_header, {{4, 4, kDescription, true}, {5, 5, kMgmtBrief, true}}},
  };
  return kHeaderHandlers;
}

std::string header_text(const header_case& shown, uint32 command, bool is_sub_interface) {
  std::string text;
  uint32 matches = 0;
  for (const header_ids& row : shown.headers) {
    if (command < row.first || command > row.last) continue;
    if (row.for_sub_interfaces || !is_sub_interface) text = row.text;
    ++matches;
  }
  EXPECT_LE(matches, 1U) << "the table of the test names id " << command << " twice";
  return text;
}

// The description header flushes by itself, and its handler once more.
uint32 flushes(const std::string& text) { return text == kDescription ? 2 : 1; }

void expect_header(const header_case& shown, uint32 command, if_index_t first, bool is_sub_interface) {
  RecordingPlatform platform;
  intf_range_t ranges = interface_ranges({{first, first}});
  EXPECT_EQ(shown.handler(interface_command(platform, command, 2, &ranges)), 0U);
  const std::string expected = header_text(shown, command, is_sub_interface);
  EXPECT_EQ(platform.text(), expected);
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_THAT(platform.tuples(), IsEmpty());
  EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), 1U);
  EXPECT_EQ(platform.sends, flushes(expected));
}

std::vector<uint32> all_commands() {
  std::vector<uint32> commands;
  for (uint32 command = 0; command <= kLastCommand; ++command) commands.push_back(command);
  commands.insert(commands.end(), {255, 256, 258, 260, 261, 263, 0x10002, 0x80000005, 0xFFFFFFFF});
  return commands;
}

TEST(HeaderHandler, EachIdPrintsItsHeaderAndFlushes) {
  for (const header_case& shown : handlers())
    for (const uint32 command : all_commands()) {
      SCOPED_TRACE(command);
      expect_header(shown, command, ethernet(1, 1), false);
    }
}

TEST(HeaderHandler, SomeHeadersAreSkippedForSubInterfacesAndTheHandleIsFlushedAllTheSame) {
  for (const header_case& shown : handlers())
    for (const uint32 command : all_commands())
      for (const if_index_t parent : {ethernet(1, 1), port_channel(3)}) {
        SCOPED_TRACE(command);
        expect_header(shown, command, sub_interface(parent, 100), true);
      }
}

TEST(HeaderHandler, OnlyTheLowEndOfTheFirstPairDecides) {
  const if_index_t plain = ethernet(1, 1);
  const if_index_t sub = sub_interface(plain, 1);
  RecordingPlatform platform;
  intf_range_t ranges = interface_ranges({{plain, sub}, {sub, sub}});
  pm_cli_show_common_header(interface_command(platform, 36, 2, &ranges));
  EXPECT_EQ(platform.text(), kMacAddress);

  platform.clear_output();
  ranges = interface_ranges({{sub, plain}, {plain, plain}});
  pm_cli_show_common_header(interface_command(platform, 36, 2, &ranges));
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.sends, 1U);
}

TEST(HeaderHandler, CountOfRangesDecidesNothing) {
  for (const uint32 count : {0U, 64U, 65U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    intf_range_t ranges = interface_ranges({{sub_interface(ethernet(1, 1), 1), ethernet(1, 1)}});
    ranges.range_count = count;
    pm_cli_show_common_header(interface_command(platform, 36, 2, &ranges));
    EXPECT_EQ(platform.text(), "");
    EXPECT_EQ(platform.sends, 1U);
  }
}

// Where no interface is named, none is a sub-interface.
TEST(HeaderHandler, WithoutAnInterfaceEveryHeaderIsPrinted) {
  const if_index_t sub = sub_interface(ethernet(1, 1), 1);
  for (const header_case& shown : handlers()) {
    for (const uint32 command : all_commands()) {
      const std::string expected = header_text(shown, command, false);
      SCOPED_TRACE(command);
      RecordingPlatform platform;
      intf_range_t ranges = interface_ranges({{sub, sub}});
      paraminfo_t* const without_parameters = interface_command(platform, command, 2, &ranges);
      without_parameters->parameter_count = 0;
      EXPECT_EQ(shown.handler(without_parameters), 0U);
      EXPECT_EQ(platform.text(), expected);

      platform.clear_output();
      paraminfo_t* const without_entry = interface_command(platform, command, 2, &ranges);
      without_entry->arg_list[0] = nullptr;
      shown.handler(without_entry);
      EXPECT_EQ(platform.text(), expected);

      platform.clear_output();
      shown.handler(interface_command(platform, command, 2, nullptr));
      EXPECT_EQ(platform.text(), expected);

      platform.clear_output();
      ranges = interface_ranges({});
      shown.handler(interface_command(platform, command, 2, &ranges));
      EXPECT_EQ(platform.text(), expected);
      EXPECT_EQ(platform.sends, flushes(expected));
    }
  }
}

TEST(HeaderHandler, StandbySupervisorPrintsHeaders) {
  RecordingPlatform platform;
  intf_range_t ranges = interface_ranges({{ethernet(1, 1), ethernet(1, 1)}});
  paraminfo_t* const param = interface_command(platform, 2, 2, &ranges);
  param->sup_state = SYSMGR_SUPSTATE_STANDBY;
  pm_cli_show_common_header(param);
  EXPECT_EQ(platform.text(), kStatus);
}

TEST(HeaderHandler, MissingHandleIsToldForEveryId) {
  for (const header_case& shown : handlers()) {
    for (const uint32 command : all_commands()) {
      RecordingPlatform platform;
      platform.fail_with("cmd_paraminfo_to_rxhandle");
      intf_range_t ranges = interface_ranges({{ethernet(1, 1), ethernet(1, 1)}});
      EXPECT_EQ(shown.handler(interface_command(platform, command, 2, &ranges)), 0U);
      EXPECT_EQ(platform.text(), kHandleFailure) << command;
      EXPECT_EQ(platform.terminal(), kHandleFailure);
      EXPECT_EQ(platform.sends, 0U);
    }
  }
}

TEST(HeaderHandler, WithoutAParameterBlockNothingIsPrinted) {
  RecordingPlatform platform;
  for (const header_case& shown : handlers()) EXPECT_EQ(shown.handler(nullptr), 0U);
  EXPECT_EQ(pm_cli_show_inband_header(nullptr), 0U);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.sends, 0U);
}

TEST(HeaderHandler, OfTheInbandInterfaceTakesNoHandle) {
  for (const uint32 command : all_commands()) {
    RecordingPlatform platform;
    platform.fail_with("cmd_paraminfo_to_rxhandle");
    intf_range_t ranges = interface_ranges({{sub_interface(ethernet(1, 1), 1), 0}});
    EXPECT_EQ(pm_cli_show_inband_header(interface_command(platform, command, 0x800, &ranges)), 0U);
    EXPECT_EQ(platform.text(), command == 5 ? kInbandBrief : "") << command;
    EXPECT_EQ(platform.terminal(), platform.text());
    EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), 0U);
    EXPECT_EQ(platform.sends, 0U);
  }
}

}  // namespace
}  // namespace pmcli_test
