// Counters of every medium in common terms.
#include <gtest/gtest.h>

#include <cstring>

#include "pmcli/counters.h"

namespace pmcli_test {
namespace {

constexpr uint64 kUntouched = 0xA5A5A5A5A5A5A5A5;
constexpr boolean kUntouchedFlag = 0xA5A5A5A5;

template <typename Record>
Record garbage() {
  Record record;
  std::memset(static_cast<void*>(&record), 0xA5, sizeof record);
  return record;
}

// Error counters that all differ, and differ in both halves.
statscl_portcl_stats_msg_t distinct_errors() {
  statscl_portcl_stats_msg_t stats{};
  auto* const bytes = reinterpret_cast<uint8*>(&stats.mac.errors);
  for (std::size_t i = 0; i < sizeof stats.mac.errors / 8; ++i) {
    const be64 value(0x100000000 * (i + 1) + 1000 + i);
    std::memcpy(bytes + 8 * i, &value, sizeof value);
  }
  return stats;
}

TEST(CommonErrors, OfAnEthernetPort) {
  statscl_portcl_stats_msg_t stats = distinct_errors();
  const statscl_portcl_mac_error_stats_t& errors = stats.mac.errors;
  auto common = garbage<pm_cli_common_error_stat_t>();

  pm_cli_copy_eth_to_common_ctr_err(&common, &stats);

  EXPECT_EQ(common.rx_align, errors.runt + errors.jabber);
  EXPECT_EQ(common.rx_frames, errors.crc);
  EXPECT_EQ(common.tx_errors, errors.output_errors);
  EXPECT_EQ(common.rx_errors, errors.input_errors);
  EXPECT_EQ(common.undersize, errors.shortframe);
  EXPECT_EQ(common.tx_dropped, errors.underrun) << "not the record's own tx_dropped";
  EXPECT_EQ(common.single_coll, errors.single_collision);
  EXPECT_EQ(common.multi_coll, errors.multi_collision);
  EXPECT_EQ(common.late_coll, errors.late_collision);
  EXPECT_EQ(common.excess_coll, errors.excessive_collision);
  EXPECT_EQ(common.carrier, errors.lost_carrier + errors.no_carrier);
  EXPECT_EQ(common.runts, errors.runt);
  EXPECT_EQ(common.giant, errors.giants_rx);
  EXPECT_EQ(common.SQEtest, kUntouched);
  EXPECT_EQ(common.deferred, errors.deferred) << "not the misspelt neighbour";
  EXPECT_EQ(common.rx_int_mac_errors, 0U);
  EXPECT_EQ(common.tx_int_mac_errors, 0U);
  EXPECT_EQ(common.symbol, errors.symbol_err);
}

TEST(CommonErrors, OfAnEthernetPortAreAllPresentButOne) {
  statscl_portcl_stats_msg_t stats{};
  auto common = garbage<pm_cli_common_error_stat_t>();

  pm_cli_copy_eth_to_common_ctr_err(&common, &stats);

  EXPECT_EQ(common.have_SQEtest, 0U);
  for (const boolean present :
       {common.have_rx_align, common.have_rx_frames, common.have_tx_errors, common.have_rx_errors,
        common.have_undersize, common.have_tx_dropped, common.have_single_coll, common.have_multi_coll,
        common.have_late_coll, common.have_excess_coll, common.have_carrier, common.have_runts, common.have_giant,
        common.have_deferred, common.have_rx_int_mac_errors, common.have_tx_int_mac_errors, common.have_symbol})
    EXPECT_EQ(present, 1U);
}

TEST(CommonErrors, CountARuntTwice) {
  statscl_portcl_stats_msg_t stats{};
  stats.mac.errors.runt = 5;
  stats.mac.errors.jabber = 7;
  pm_cli_common_error_stat_t common{};

  pm_cli_copy_eth_to_common_ctr_err(&common, &stats);

  EXPECT_EQ(common.rx_align, 12U);
  EXPECT_EQ(common.runts, 5U);
}

TEST(CommonErrors, CarryFromTheLowHalfToTheHighHalf) {
  statscl_portcl_stats_msg_t stats{};
  stats.mac.errors.runt = 0xFFFFFFFF;
  stats.mac.errors.jabber = 1;
  stats.mac.errors.lost_carrier = 0x1FFFFFFFF;
  stats.mac.errors.no_carrier = 2;
  pm_cli_common_error_stat_t common{};

  pm_cli_copy_eth_to_common_ctr_err(&common, &stats);

  EXPECT_EQ(common.rx_align, 0x100000000U);
  EXPECT_EQ(common.carrier, 0x200000001U);
}

TEST(CommonTrunkCounters, OfAnEthernetPort) {
  statscl_portcl_stats_msg_t stats{};
  stats.mac.pktflow.trunk_rx = 0x100000001;
  stats.mac.pktflow.trunk_tx = 0x200000002;
  stats.mac.errors.bad_encap = 0x300000003;
  auto common = garbage<pm_cli_common_trunk_stat_t>();

  pm_cli_copy_eth_to_common_trunk_ctr(&common, &stats);

  EXPECT_EQ(common.trunk_rx, 0x100000001U);
  EXPECT_EQ(common.trunk_tx, 0x200000002U);
  EXPECT_EQ(common.wrong_encap, 0x300000003U);
  EXPECT_EQ(common.have_trunk_rx, 1U);
  EXPECT_EQ(common.have_trunk_tx, 1U);
  EXPECT_EQ(common.have_wrong_encap, 1U);
}

TEST(CommonErrors, OfAnIpInterface) {
  ip_if_stats stats{};
  stats.in_frames = 0x100000001;
  stats.out_errors = 0x200000002;
  stats.in_errors = 0x300000003;
  stats.out_carrier_errors = 0x400000004;
  auto common = garbage<pm_cli_common_error_stat_t>();

  pm_cli_copy_ip_to_common_ctr_err(&common, &stats);

  EXPECT_EQ(common.rx_frames, 0x100000001U);
  EXPECT_EQ(common.tx_errors, 0x200000002U);
  EXPECT_EQ(common.rx_errors, 0x300000003U);
  EXPECT_EQ(common.carrier, 0x400000004U);
  for (const boolean present :
       {common.have_rx_frames, common.have_tx_errors, common.have_rx_errors, common.have_carrier})
    EXPECT_EQ(present, 1U);
}

TEST(CommonErrors, OfAnIpInterfaceLackWhatIpHasNot) {
  ip_if_stats stats{};
  auto common = garbage<pm_cli_common_error_stat_t>();

  pm_cli_copy_ip_to_common_ctr_err(&common, &stats);

  for (const uint64 absent : {common.rx_align, common.tx_dropped, common.late_coll, common.runts, common.giant})
    EXPECT_EQ(absent, 0U);
  for (const boolean absent :
       {common.have_rx_align, common.have_tx_dropped, common.have_late_coll, common.have_runts, common.have_giant})
    EXPECT_EQ(absent, 0U);
}

TEST(CommonErrors, OfAnIpInterfaceLeaveTheRestToTheCaller) {
  ip_if_stats stats{};
  auto common = garbage<pm_cli_common_error_stat_t>();

  pm_cli_copy_ip_to_common_ctr_err(&common, &stats);

  for (const uint64 left : {common.undersize, common.single_coll, common.multi_coll, common.excess_coll, common.SQEtest,
                            common.deferred, common.rx_int_mac_errors, common.tx_int_mac_errors, common.symbol})
    EXPECT_EQ(left, kUntouched);
  for (const boolean left : {common.have_undersize, common.have_single_coll, common.have_multi_coll,
                             common.have_excess_coll, common.have_SQEtest, common.have_deferred,
                             common.have_rx_int_mac_errors, common.have_tx_int_mac_errors, common.have_symbol})
    EXPECT_EQ(left, kUntouchedFlag);
}

TEST(CommonErrors, OfTheManagementPortAreAllAbsent) {
  pm_if_stat stats{};
  stats.in_pkts = 1000;
  auto common = garbage<pm_cli_common_error_stat_t>();

  pm_cli_copy_mgmt_to_common_ctr_err(&common, &stats);

  for (const boolean absent :
       {common.have_rx_align, common.have_rx_frames, common.have_tx_errors, common.have_rx_errors,
        common.have_undersize, common.have_tx_dropped, common.have_single_coll, common.have_multi_coll,
        common.have_late_coll, common.have_excess_coll, common.have_carrier, common.have_runts, common.have_giant,
        common.have_SQEtest, common.have_deferred, common.have_rx_int_mac_errors, common.have_tx_int_mac_errors,
        common.have_symbol})
    EXPECT_EQ(absent, 0U);
  EXPECT_EQ(common.rx_align, kUntouched) << "no counter is written";
  EXPECT_EQ(common.symbol, kUntouched);
}

}  // namespace
}  // namespace pmcli_test
