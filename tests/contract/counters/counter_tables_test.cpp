// Rows of the counter tables.
#include <gtest/gtest.h>

#include "contract/sample_ports.h"
#include "pmcli/counters.h"
#include "support/both_forms.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const if_index_t kTablePort = ethernet(1, 1);
const if_index_t kTableLoopback = loopback(4);
constexpr uint64 kMost = 0xFFFFFFFFFFFFFFFF;

// ---- Errors --------------------------------------------------------------------------------------------------------

using errors_t = pm_cli_common_error_stat_t;
using errors_row = void (*)(cmd_rx_handle_t*, if_index_t, pm_cli_common_error_stat_t*);

struct errors_cell {
  uint64 errors_t::*counter;
  boolean errors_t::*present;
  uint32 tuple;
  const char* shown;  // for the value 1234567890
};

struct errors_table {
  errors_row print;
  errors_cell cells[6];
};

constexpr char kCell[] = "  1234567890";
constexpr char kNoCell[] = "          --";

const errors_table kTables[] = {
    {pm_cli_show_port_1st_counters_errors_table,
     {{&errors_t::rx_align, &errors_t::have_rx_align, 0x152A05C3, kCell},
      {&errors_t::rx_frames, &errors_t::have_rx_frames, 0x152A05C4, kCell},
      {&errors_t::tx_errors, &errors_t::have_tx_errors, 0x152A05C5, kCell},
      {&errors_t::rx_errors, &errors_t::have_rx_errors, 0x152A05C6, kCell},
      {&errors_t::undersize, &errors_t::have_undersize, 0x152A05C7, kCell},
      {&errors_t::tx_dropped, &errors_t::have_tx_dropped, 0x152A05C8, kCell}}},
    {pm_cli_show_port_2nd_counters_errors_table,
     {{&errors_t::single_coll, &errors_t::have_single_coll, 0x152A05C9, kCell},
      {&errors_t::multi_coll, &errors_t::have_multi_coll, 0x152A05CA, kCell},
      {&errors_t::late_coll, &errors_t::have_late_coll, 0x152A05CB, kCell},
      {&errors_t::excess_coll, &errors_t::have_excess_coll, 0x152A05CC, kCell},
      {&errors_t::carrier, &errors_t::have_carrier, 0x152A05CD, " 1234567890"},  // one column less
      {&errors_t::runts, &errors_t::have_runts, 0x152A05CE, kCell}}},
    {pm_cli_show_port_3rd_counters_errors_table,
     {{&errors_t::giant, &errors_t::have_giant, 0x152A05CF, kCell},
      {&errors_t::SQEtest, &errors_t::have_SQEtest, 0x152A05D0, kCell},
      {&errors_t::deferred, &errors_t::have_deferred, 0x152A05D1, kCell},
      {&errors_t::tx_int_mac_errors, &errors_t::have_tx_int_mac_errors, 0x152A05D3, kCell},
      {&errors_t::rx_int_mac_errors, &errors_t::have_rx_int_mac_errors, 0x152A05D2, kCell},
      {&errors_t::symbol, &errors_t::have_symbol, 0x152A05D4, kCell}}},
};

// The members that the rows show, each with a value of its own and present.
errors_t distinct_error_members() {
  errors_t errors{};
  uint64 value = 100;
  for (const errors_table& table : kTables) {
    for (const errors_cell& cell : table.cells) {
      errors.*cell.counter = value++;
      errors.*cell.present = 1;
    }
  }
  return errors;
}

TEST(ErrorsRow, FirstTable) {
  RecordingPlatform platform;
  errors_t errors = distinct_error_members();
  pm_cli_show_port_1st_counters_errors_table(platform.output(), kTablePort, &errors);
  EXPECT_EQ(platform.text(), "Eth1/1           100         101         102         103         104         105\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A05C2, kTablePort},
                                       {0x152A05C3, 100},
                                       {0x152A05C4, 101},
                                       {0x152A05C5, 102},
                                       {0x152A05C6, 103},
                                       {0x152A05C7, 104},
                                       {0x152A05C8, 105}}));
  EXPECT_EQ(platform.short_rows, 1U);
  EXPECT_EQ(platform.terminal(), "");
}

TEST(ErrorsRow, SecondTableIsAColumnShorterAtItsCarrier) {
  RecordingPlatform platform;
  errors_t errors = distinct_error_members();
  pm_cli_show_port_2nd_counters_errors_table(platform.output(), kTablePort, &errors);
  EXPECT_EQ(platform.text(), "Eth1/1           106         107         108         109        110         111\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A05C2, kTablePort},
                                       {0x152A05C9, 106},
                                       {0x152A05CA, 107},
                                       {0x152A05CB, 108},
                                       {0x152A05CC, 109},
                                       {0x152A05CD, 110},
                                       {0x152A05CE, 111}}));
  EXPECT_EQ(platform.short_rows, 1U);
}

TEST(ErrorsRow, ThirdTableShowsTransmitBeforeReceive) {
  RecordingPlatform platform;
  errors_t errors = distinct_error_members();
  errors.tx_int_mac_errors = 7001;
  errors.rx_int_mac_errors = 7002;
  pm_cli_show_port_3rd_counters_errors_table(platform.output(), kTablePort, &errors);
  EXPECT_EQ(platform.text(), "Eth1/1           112         113         114        7001        7002         117\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A05C2, kTablePort},
                                       {0x152A05CF, 112},
                                       {0x152A05D0, 113},
                                       {0x152A05D1, 114},
                                       {0x152A05D3, 7001},
                                       {0x152A05D2, 7002},
                                       {0x152A05D4, 117}}));
  EXPECT_EQ(platform.short_rows, 1U);
}

TEST(ErrorsRow, EachCellDependsOnItsOwnFlag) {
  for (const errors_table& table : kTables) {
    for (const errors_cell& shown : table.cells) {
      RecordingPlatform platform;
      errors_t errors{};
      for (const errors_cell& cell : table.cells) errors.*cell.counter = 1234567890;
      errors.*shown.present = 0x80000000;  // any flag but 0
      table.print(platform.output(), kTablePort, &errors);

      std::string expected = "Eth1/1  ";
      for (const errors_cell& cell : table.cells) expected += &cell == &shown ? shown.shown : kNoCell;
      EXPECT_EQ(platform.text(), expected + "\n");
      EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A05C2, kTablePort}, {shown.tuple, 1234567890}}));
    }
  }
}

TEST(ErrorsRow, LargestCountersAreNotCut) {
  RecordingPlatform platform;
  errors_t errors = distinct_error_members();
  errors.rx_align = kMost;
  pm_cli_show_port_1st_counters_errors_table(platform.output(), kTablePort, &errors);
  EXPECT_THAT(platform.text(), HasSubstr("Eth1/1   18446744073709551615         101"));
}

TEST(ErrorsRow, LongNamesAreCut) {
  RecordingPlatform platform;
  platform.short_names[kTablePort] = "an-interface-with-a-long-name";
  errors_t errors{};
  for (const errors_table& table : kTables) table.print(platform.output(), kTablePort, &errors);
  const std::string row = "an-inter          --          --          --          --          --          --\n";
  EXPECT_EQ(platform.text(), row + row + row);
}

// An Ethernet port has no SQE test counter, and its internal MAC errors are always 0.
TEST(ErrorsRow, OfAnEthernetPort) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats{};
  stats.mac.errors.giants_rx = 5;
  stats.mac.errors.symbol_err = 6;
  stats.mac.ctrl.sqetest = 9;
  errors_t errors{};
  pm_cli_copy_eth_to_common_ctr_err(&errors, &stats);
  pm_cli_show_port_3rd_counters_errors_table(platform.output(), kTablePort, &errors);
  EXPECT_EQ(platform.text(), "Eth1/1             5          --           0           0           0           6\n");
}

TEST(ErrorsRow, OfTheManagementPortHasNoCounter) {
  RecordingPlatform platform;
  pm_if_stat stats{};
  errors_t errors = distinct_error_members();
  pm_cli_copy_mgmt_to_common_ctr_err(&errors, &stats);
  for (const errors_table& table : kTables) table.print(platform.output(), mgmt(), &errors);
  const std::string row = "mgmt0             --          --          --          --          --          --\n";
  EXPECT_EQ(platform.text(), row + row + row);
}

TEST(ErrorsRow, OfALoopback) {
  RecordingPlatform platform;
  ip_if_stats stats{};
  stats.in_frames = 1;
  stats.out_errors = 2;
  stats.in_errors = 3;
  stats.out_carrier_errors = 4;
  errors_t errors{};
  pm_cli_copy_ip_to_common_ctr_err(&errors, &stats);
  for (const errors_table& table : kTables) table.print(platform.output(), kTableLoopback, &errors);
  EXPECT_EQ(platform.text(),
            "Lo4               --           1           2           3          --          --\n"
            "Lo4               --          --          --          --          4          --\n"
            "Lo4               --          --          --          --          --          --\n");
}

// ---- Trunk frames --------------------------------------------------------------------------------------------------

TEST(TrunkRow, SentStandsBeforeReceived) {
  RecordingPlatform platform;
  pm_cli_common_trunk_stat_t trunk{21, 22, 23, 1, 1, 1};
  pm_cli_show_port_counters_trunk(platform.output(), &trunk, kTablePort);
  EXPECT_EQ(platform.text(), "Eth1/1                     22              21              23\n");
  EXPECT_EQ(platform.tuples(),
            (Tuples{{0x0C2A05E2, kTablePort}, {0x152A05E3, 22}, {0x152A05E4, 21}, {0x152A05E5, 23}}));
  EXPECT_EQ(platform.short_rows, 1U);
}

TEST(TrunkRow, AbsentCountersShowDashes) {
  RecordingPlatform platform;
  pm_cli_common_trunk_stat_t trunk{21, 22, 23, 0, 0, 0};
  pm_cli_show_port_counters_trunk(platform.output(), &trunk, kTablePort);
  trunk.have_trunk_rx = 1;
  pm_cli_show_port_counters_trunk(platform.output(), &trunk, kTablePort);
  EXPECT_EQ(platform.text(),
            "Eth1/1                     --              --              --\n"
            "Eth1/1                     --              21              --\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A05E2, kTablePort}, {0x0C2A05E2, kTablePort}, {0x152A05E4, 21}}));
}

TEST(TrunkRow, NamesAndCountersAreCut) {
  RecordingPlatform platform;
  platform.short_names[kTablePort] = "an-interface-with-a-long-name";
  pm_cli_common_trunk_stat_t trunk{kMost, 1, 2, 1, 1, 1};
  pm_cli_show_port_counters_trunk(platform.output(), &trunk, kTablePort);
  EXPECT_EQ(platform.text(), "an-interface-               11844674407370955               2\n");
}

// ---- Traffic -------------------------------------------------------------------------------------------------------

TEST(TrafficRow, OfAnEthernetPort) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats{};
  stats.ifidx = mgmt();  // a name that fits
  stats.mac.pktflow.bytes_pkts = 11;
  stats.mac.pktflow.unicast_pkts = 12;
  stats.mac.pktflow.multicast_pkts = 13;
  stats.mac.pktflow.broadcast_pkts = 14;
  stats.mac.pktflow.bytes_tx = 21;
  stats.mac.pktflow.unicast_pkts_tx = 22;
  stats.mac.pktflow.multicast_pkts_tx = 23;
  stats.mac.pktflow.broadcast_pkts_tx = 24;
  pm_cli_show_eth_port_stats_rx(platform.output(), &stats);
  pm_cli_show_eth_port_stats_tx(platform.output(), &stats);
  EXPECT_EQ(platform.text(),
            "mgmt0                     11                12               13               14\n"
            "mgmt0                     21                22               23               24\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0696, mgmt()},
                                       {0x152A0697, 11},
                                       {0x152A0698, 12},
                                       {0x152A0699, 13},
                                       {0x152A069A, 14},
                                       {0x0C2A0696, mgmt()},
                                       {0x152A069B, 21},
                                       {0x152A069C, 22},
                                       {0x152A069D, 23},
                                       {0x152A069E, 24}}));
  EXPECT_EQ(platform.short_rows, 0U);
}

TEST(TrafficRow, OfTheManagementPort) {
  RecordingPlatform platform;
  pm_if_stat stats{};
  stats.in_bytes = 11;
  stats.in_pkts_ucast = 12;
  stats.in_pkts_mcast = 13;
  stats.in_pkts_bcast = 14;
  stats.out_bytes = 21;
  stats.out_pkts_ucast = 22;
  stats.out_pkts_mcast = 23;
  stats.out_pkts_bcast = 24;
  stats.in_pkts = stats.out_pkts = 99;
  pm_cli_show_mgmt_stats_rx(platform.output(), mgmt(), &stats);
  pm_cli_show_mgmt_stats_tx(platform.output(), mgmt(), &stats);
  EXPECT_EQ(platform.text(),
            "mgmt0                     11                12               13               14\n"
            "mgmt0                     21                22               23               24\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0696, mgmt()},
                                       {0x152A0697, 11},
                                       {0x152A0698, 12},
                                       {0x152A0699, 13},
                                       {0x152A069A, 14},
                                       {0x0C2A0696, mgmt()},
                                       {0x152A069B, 21},
                                       {0x152A069C, 22},
                                       {0x152A069D, 23},
                                       {0x152A069E, 24}}));
}

// The first cell counts packets, though it stands under octets.
TEST(TrafficRow, OfALoopback) {
  RecordingPlatform platform;
  ip_if_stats stats{};
  stats.in_pkts = 11;
  stats.in_pkts_ucast = 12;
  stats.in_pkts_mcast = 13;
  stats.in_pkts_bcast = 14;
  stats.out_pkts = 21;
  stats.out_pkts_ucast = 22;
  stats.out_pkts_mcast = 23;
  stats.out_pkts_bcast = 24;
  stats.in_bytes = stats.out_bytes = 99;
  pm_cli_show_loopback_stats_rx(platform.output(), kTableLoopback, &stats);
  pm_cli_show_loopback_stats_tx(platform.output(), kTableLoopback, &stats);
  EXPECT_EQ(platform.text(),
            "loopback4               11            12            13            14\n"
            "loopback4               21            22            23            24\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0696, kTableLoopback},
                                       {0x152A0697, 11},
                                       {0x152A0698, 12},
                                       {0x152A0699, 13},
                                       {0x152A069A, 14},
                                       {0x0C2A0696, kTableLoopback},
                                       {0x152A069B, 21},
                                       {0x152A069C, 22},
                                       {0x152A069D, 23},
                                       {0x152A069E, 24}}));
}

TEST(TrafficRow, LargestCountersRunTogetherInTheLoopbackRow) {
  RecordingPlatform platform;
  ip_if_stats stats{};
  stats.in_pkts = stats.in_pkts_ucast = kMost;
  pm_cli_show_loopback_stats_rx(platform.output(), kTableLoopback, &stats);
  EXPECT_EQ(platform.text(), "loopback4   1844674407370955161518446744073709551615             0             0\n");
}

// ---- Flow control --------------------------------------------------------------------------------------------------

TEST(FlowControlRow, MasksTheFlagsOfEachSide) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kTablePort, port_record());
  port.admin_port_flow_ctrl = 0xFFF9;  // 1 and 8
  port.oper_port_flow_ctrl = 0xFFF6;   // 4 and 2
  statscl_portcl_stats_msg_t stats{};
  stats.mac.ctrl.rx_pause = 31;
  stats.mac.ctrl.tx_pause = 32;
  pm_cli_show_port_flow_ctrl(platform.output(), &port, &stats);
  EXPECT_EQ(platform.text(), "Eth1/1     1        4        8        2           31      32     \n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0602, kTablePort},
                                       {0x022A0603, 1},
                                       {0x022A0604, 4},
                                       {0x022A0605, 8},
                                       {0x022A0606, 2},
                                       {0x152A0607, 31},
                                       {0x152A0608, 32}}));
  EXPECT_EQ(platform.short_rows, 1U);
}

TEST(FlowControlRow, PauseCountersAreCut) {
  RecordingPlatform platform;
  platform.short_names[kTablePort] = "an-interface-with-a-long-name";
  platform.enum_texts[0x0603][0] = "a-long-text";
  pm_port_info_t port = named(kTablePort, port_record());
  port.admin_port_flow_ctrl = 0;
  statscl_portcl_stats_msg_t stats{};
  stats.mac.ctrl.rx_pause = kMost;
  stats.mac.ctrl.tx_pause = 12345678;
  pm_cli_show_port_flow_ctrl(platform.output(), &port, &stats);
  EXPECT_EQ(platform.text(), "an-interfa a-long-t 0        0        0           1844674 1234567\n");
  EXPECT_EQ(bound_to(platform, 0x152A0607), tuple_value(kMost));
}

// ---- Storm control -------------------------------------------------------------------------------------------------

pm_port_info_t port_with_levels(uint8 broadcast, uint16 broadcast_fraction, uint8 multicast, uint16 multicast_fraction,
                                uint8 unicast, uint16 unicast_fraction) {
  pm_port_info_t port = named(loopback(4), port_record());  // a name that fits
  port.admin_port_storm_control[0] = {1, broadcast, broadcast_fraction};
  port.admin_port_storm_control[1] = {1, multicast, multicast_fraction};
  port.admin_port_storm_control[2] = {1, unicast, unicast_fraction};
  return port;
}

TEST(StormControlRow, ShowsUnicastMulticastBroadcast) {
  RecordingPlatform platform;
  pm_port_info_t port = port_with_levels(10, 5, 20, 50, 30, 99);
  statscl_portcl_stats_msg_t stats{};
  stats.mac.pktflow.storm_supression = 41;
  pm_cli_show_port_storm_ctrl_counters(platform.output(), &port, &stats);
  EXPECT_EQ(platform.text(), "loopback4        30.99           20.50           10.05                    41\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A05D6, loopback(4)},
                                       {0x302A05D9, "30.99"},
                                       {0x302A05D8, "20.50"},
                                       {0x302A05D7, "10.05"},
                                       {0x152A05DA, 41}}));
  EXPECT_EQ(platform.short_rows, 0U);
}

TEST(StormControlRow, LimitsOfTheLevel) {
  RecordingPlatform platform;
  pm_port_info_t port = port_with_levels(0, 0, 100, 0, 255, 65535);
  statscl_portcl_stats_msg_t stats{};
  stats.mac.pktflow.storm_supression = kMost;
  pm_cli_show_port_storm_ctrl_counters(platform.output(), &port, &stats);
  EXPECT_EQ(platform.text(), "loopback4       910.35          100.00            0.00     18446744073709551615\n");
}

// ---- Rates in brief ------------------------------------------------------------------------------------------------

TEST(StructuredBriefRow, ShowsMillionsOfBytesAndPackets) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats{};
  stats.ifidx = kTablePort;
  stats.mac.pktflow.byte_rate_rx = 51'999'999;
  stats.mac.pktflow.pkt_rate_rx = 52;
  stats.mac.pktflow.byte_rate_tx = 53'000'000;
  stats.mac.pktflow.pkt_rate_tx = 54;
  pm_cli_show_common_counters_brief(platform.output(), &stats);
  EXPECT_EQ(platform.text(), "Ethernet1/1            51       52                53       54               \n");
  EXPECT_EQ(platform.tuples(),
            (Tuples{{0x0C2A0217, kTablePort}, {0x152A0218, 51}, {0x152A0219, 52}, {0x152A021A, 53}, {0x152A021B, 54}}));
  EXPECT_EQ(platform.short_rows, 0U);
}

TEST(StructuredBriefRow, RatesBelowAMillionAreZeroAndLargestOnesAreCut) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats{};
  stats.ifidx = kTablePort;
  stats.mac.pktflow.byte_rate_rx = 999'999;
  stats.mac.pktflow.pkt_rate_rx = kMost;
  stats.mac.pktflow.byte_rate_tx = kMost;
  pm_cli_show_common_counters_brief(platform.output(), &stats);
  EXPECT_EQ(platform.text(), "Ethernet1/1            0        18446744073709551 18446744 0                \n");
  EXPECT_EQ(bound_to(platform, 0x152A021A), tuple_value(uint64{18446744073709}));
}

// ---- Both forms ----------------------------------------------------------------------------------------------------

TEST(CounterTables, BothFormsAgree) {
  RecordingPlatform platform;
  errors_t errors = distinct_error_members();
  pm_cli_common_trunk_stat_t trunk{201, 202, 203, 1, 1, 1};
  pm_cli_show_port_1st_counters_errors_table(platform.output(), kTablePort, &errors);
  expect_both_forms_agree(platform,
                          {0x0C2A05C2, 0x152A05C3, 0x152A05C4, 0x152A05C5, 0x152A05C6, 0x152A05C7, 0x152A05C8});
  platform.clear_output();
  pm_cli_show_port_2nd_counters_errors_table(platform.output(), kTablePort, &errors);
  expect_both_forms_agree(platform,
                          {0x0C2A05C2, 0x152A05C9, 0x152A05CA, 0x152A05CB, 0x152A05CC, 0x152A05CD, 0x152A05CE});
  platform.clear_output();
  pm_cli_show_port_3rd_counters_errors_table(platform.output(), kTablePort, &errors);
  expect_both_forms_agree(platform,
                          {0x0C2A05C2, 0x152A05CF, 0x152A05D0, 0x152A05D1, 0x152A05D3, 0x152A05D2, 0x152A05D4});
  platform.clear_output();
  pm_cli_show_port_counters_trunk(platform.output(), &trunk, kTablePort);
  expect_both_forms_agree(platform, {0x0C2A05E2, 0x152A05E3, 0x152A05E4, 0x152A05E5});
}

TEST(TrafficRows, BothFormsAgree) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t port{};
  port.ifidx = mgmt();
  port.mac.pktflow.bytes_pkts = 11;
  port.mac.pktflow.unicast_pkts = 12;
  port.mac.pktflow.multicast_pkts = 13;
  port.mac.pktflow.broadcast_pkts = 14;
  pm_cli_show_eth_port_stats_rx(platform.output(), &port);
  expect_both_forms_agree(platform, {0x0C2A0696, 0x152A0697, 0x152A0698, 0x152A0699, 0x152A069A});
  platform.clear_output();

  pm_if_stat management{};
  management.out_bytes = 21;
  management.out_pkts_ucast = 22;
  management.out_pkts_mcast = 23;
  management.out_pkts_bcast = 24;
  pm_cli_show_mgmt_stats_tx(platform.output(), mgmt(), &management);
  expect_both_forms_agree(platform, {0x0C2A0696, 0x152A069B, 0x152A069C, 0x152A069D, 0x152A069E});
  platform.clear_output();

  ip_if_stats loopback_stats{};
  loopback_stats.out_pkts = 31;
  loopback_stats.out_pkts_ucast = 32;
  loopback_stats.out_pkts_mcast = 33;
  loopback_stats.out_pkts_bcast = 34;
  pm_cli_show_loopback_stats_tx(platform.output(), kTableLoopback, &loopback_stats);
  expect_both_forms_agree(platform, {0x0C2A0696, 0x152A069B, 0x152A069C, 0x152A069D, 0x152A069E});
}

TEST(FlowControlRow, BothFormsAgree) {
  RecordingPlatform platform;
  pm_port_info_t port = named(kTablePort, port_record());
  port.admin_port_flow_ctrl = 0x000C;  // 4 and 8
  port.oper_port_flow_ctrl = 0x0003;   // 1 and 2
  statscl_portcl_stats_msg_t stats{};
  stats.mac.ctrl.rx_pause = 31;
  stats.mac.ctrl.tx_pause = 32;
  pm_cli_show_port_flow_ctrl(platform.output(), &port, &stats);
  expect_both_forms_agree(platform,
                          {0x0C2A0602, 0x022A0603, 0x022A0604, 0x022A0605, 0x022A0606, 0x152A0607, 0x152A0608});
}

TEST(StructuredBriefRow, BothFormsAgree) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats{};
  stats.ifidx = kTablePort;
  stats.mac.pktflow.byte_rate_rx = 51'000'000;
  stats.mac.pktflow.pkt_rate_rx = 52;
  stats.mac.pktflow.byte_rate_tx = 53'000'000;
  stats.mac.pktflow.pkt_rate_tx = 54;
  pm_cli_show_common_counters_brief(platform.output(), &stats);
  expect_both_forms_agree(platform, {0x0C2A0217, 0x152A0218, 0x152A0219, 0x152A021A, 0x152A021B});
}

TEST(StormControlRow, BothFormsAgree) {
  RecordingPlatform platform;
  pm_port_info_t port = port_with_levels(1, 2, 3, 4, 5, 6);
  statscl_portcl_stats_msg_t stats{};
  stats.mac.pktflow.storm_supression = 7;
  pm_cli_show_port_storm_ctrl_counters(platform.output(), &port, &stats);
  expect_both_forms_agree(platform, {0x0C2A05D6, 0x302A05D9, 0x302A05D8, 0x302A05D7, 0x152A05DA});
}

}  // namespace
}  // namespace pmcli_test
