// Both forms of each display: what is bound for a program stands in the text for a person.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/sample_ports.h"
#include "pmcli/command.h"
#include "pmcli/interface.h"
#include "support/both_forms.h"

namespace pmcli_test {
namespace {

// A port record in which no two fields share a value.
pm_port_info_t distinct_record(if_index_t if_index) {
  pm_port_info_t port = named(if_index, port_record());
  set_description(port, "uplink to core");
  port.oper_port_state = 30;
  port.oper_state_reason = 31;
  port.oper_port_duplex = 32;
  port.admin_port_duplex = 33;
  port.oper_port_speed = 10000;
  port.oper_port_mode = 34;
  port.admin_port_mode = 35;
  port.admin_rxbufsize = 9216;
  port.admin_port_bandwidth = 4000000;
  port.admin_port_delay = 36;      // shown as 360
  port.admin_port_flow_ctrl = 12;  // shown as 8 and 4
  port.admin_port_rate_mode = 37;
  port.span_mode = 38;
  port.bound_ifindex = ethernet(7, 7);
  port.is_part_of_bundle = 1;
  port.bundle_if_index = port_channel(77);
  return port;
}

// Every line that data can switch on, for a routed interface, whose two addresses differ.
pm_cli_common_show_intf_data_t distinct_data() {
  pm_cli_common_show_intf_data_t data{};
  std::strcpy(data.hardware, "1000/10000 Ethernet");
  std::strcpy(data.type, "10Gbase-SR");
  std::strcpy(data.encap, "ARPA");
  data.inet_addr = ipv4_address(192, 0, 2, 1, 29);
  data.fcot_supported = data.physical = data.mdix_supported = data.span_supported = data.flowcontrol_supported = 1;
  data.reliability = 201;
  data.tx_load = 202;
  data.rx_load = 203;
  std::strcpy(data.last_flapped, "2week(s) 3day(s)");
  std::strcpy(data.last_cleared, "4w5d");
  return data;
}

TEST(BothForms, DetailedBlockOfARoutedPort) {
  RecordingPlatform platform;
  pm_port_info_t port = distinct_record(ethernet(1, 1));
  pm_cli_common_show_intf_data_t data = distinct_data();
  pm_cli_show_port_info(platform.output(), &port, &data);

  expect_both_forms_agree(platform, {0x0C2A01D8, 0x022A01D9, 0x022A01DB, 0x302A0273, 0x0F2A0274, 0x0F2A0275, 0x302A01DC,
                                     0x1E2A0276, 0x142A0277, 0x142A0278, 0x142A0279, 0x142A027B, 0x302A027C, 0x302A027D,
                                     0x302A027E, 0x022A0281, 0x022A0282, 0x302A0287, 0x022A0288, 0x022A0289, 0x022A028A,
                                     0x022A0284, 0x022A028B, 0x302A0293, 0x302A0292});
}

TEST(BothForms, DetailedBlockOfASwitchedVirtualEthernet) {
  RecordingPlatform platform;
  pm_port_info_t port = distinct_record(vethernet(1));
  pm_cli_common_show_intf_data_t data{};
  std::strcpy(data.hardware, "VEthernet");
  data.layer2 = 1;
  pm_cli_show_port_info(platform.output(), &port, &data);

  const std::vector<uint32> bound = {0x0C2A01D8, 0x022A01D9, 0x022A01DB, 0x0C2A0239, 0x302A0273, 0x302A01DC, 0x142A0278,
                                     0x142A0279, 0x142A027B, 0x302A027C, 0x302A027D, 0x302A027E, 0x022A0283};
  expect_values_in_text(platform);
  expect_distinct_fields(platform, {0x0C2A01D8, 0x022A01D9, 0x022A01DB, 0x0C2A0239, 0x302A0273, 0x302A01DC, 0x142A0278,
                                    0x142A0279, 0x142A027B, 0x022A0283});
  EXPECT_EQ(platform.tuples().size(), bound.size());
}

TEST(BothForms, DetailedBlockOfAPortChannel) {
  RecordingPlatform platform;
  platform.multi_chassis_status[port_channel(3)] = "(status of both chassis)";
  platform.channel_members[port_channel(3)] = {ethernet(4, 1), ethernet(4, 2)};
  pm_port_info_t port = distinct_record(port_channel(3));
  pm_cli_common_show_intf_data_t data = distinct_data();
  data.physical = 0;
  data.port_channel = 1;
  pm_cli_show_port_info(platform.output(), &port, &data);

  expect_values_in_text(platform);
  expect_distinct_fields(platform, {0x0C2A01D8, 0x302A0272, 0x302A0273, 0x0F2A0274, 0x0F2A0275, 0x022A0281});
}

TEST(BothForms, ResetCounter) {
  RecordingPlatform platform;
  pm_port_info_t port = distinct_record(ethernet(1, 1));
  pm_cli_show_port_reset_cntr(platform.output(), &port, nullptr);
  expect_both_forms_agree(platform, {0x142A029C});
}

TEST(BothForms, CommonLines) {
  RecordingPlatform platform;
  pm_port_info_t port = distinct_record(ethernet(1, 1));
  print_eth_port_common_info(platform.output(), &port);
  print_eth_mtu_bw_dly(platform.output(), &port, 0);
  expect_both_forms_agree(
      platform, {0x0C2A01D8, 0x022A01D9, 0x022A01DB, 0x302A01DC, 0x142A0271, 0x142A0278, 0x142A0279, 0x142A027B});
}

TEST(BothForms, SwitchportView) {
  RecordingPlatform platform;
  pm_port_info_t port = distinct_record(port_channel(3));
  print_eth_port_info(platform.output(), RecordingPlatform::q(), &port);

  // The status line stands there twice.
  expect_values_in_text(platform);
  expect_distinct_fields(platform, {0x302A01DC, 0x142A0271, 0x0F2A0274, 0x142A0278, 0x142A0279, 0x142A027B, 0x022A0283,
                                    0x022A0282, 0x022A0281});
  EXPECT_EQ(platform.tuples().size(), 3U + 3U + 9U);
}

TEST(BothForms, KernelCounters) {
  RecordingPlatform platform;
  pm_proc_net_dev_stats_t stats{};
  be32* const counters = &stats.rx_packets;
  for (uint32 i = 0; i < sizeof stats / sizeof(be32); ++i) counters[i] = 1000 + i;
  print_eth_port_counters(platform.output(), &stats);
  expect_both_forms_agree(
      platform, {0x142A01E4, 0x142A01E5, 0x142A01E6, 0x142A01E7, 0x142A01E8, 0x142A01E9, 0x142A01EA, 0x142A01EB,
                 0x142A01EC, 0x142A01ED, 0x142A01EE, 0x142A01EF, 0x142A01F0, 0x142A01F1, 0x142A01F2});
}

constexpr be64 ip_if_stats::*kLoopbackCounters[] = {
    &ip_if_stats::in_pkts,        &ip_if_stats::in_bytes,      &ip_if_stats::in_pkts_mcast,
    &ip_if_stats::in_compressed,  &ip_if_stats::in_errors,     &ip_if_stats::in_frames,
    &ip_if_stats::in_overrun,     &ip_if_stats::in_fifo,       &ip_if_stats::out_pkts,
    &ip_if_stats::out_bytes,      &ip_if_stats::out_underruns, &ip_if_stats::out_errors,
    &ip_if_stats::out_collisions, &ip_if_stats::out_fifo,      &ip_if_stats::out_carrier_errors,
};

ip_if_stats distinct_loopback_counters(uint64 first) {
  ip_if_stats stats{};
  for (be64 ip_if_stats::*const counter : kLoopbackCounters) stats.*counter = first++;
  return stats;
}

TEST(BothForms, LoopbackCounters) {
  for (const uint32 detail : {0U, 1U}) {
    RecordingPlatform platform;
    ip_if_stats stats = distinct_loopback_counters(0x100000000);
    pm_cli_loopback_intf_stats_print(platform.output(), &stats, detail);
    expect_both_forms_agree(
        platform, {0x152A023A, 0x152A023B, 0x152A023C, 0x152A023D, 0x152A023E, 0x152A023F, 0x152A0240, 0x152A0241,
                   0x152A0242, 0x152A0243, 0x152A0244, 0x152A0245, 0x152A0246, 0x152A0247, 0x152A0248});
  }
}

TEST(BothForms, LoopbackCountersThatAreNotZero) {
  RecordingPlatform platform;
  platform.loopback_stats[loopback(1)] = distinct_loopback_counters(4000000000);
  pm_cli_show_loopback_config(platform.show_command(58, loopback(1)));
  expect_both_forms_agree(
      platform, {0x0C2A0085, 0x142A00A7, 0x142A00A8, 0x142A00A9, 0x142A00AA, 0x142A00AB, 0x142A00AC, 0x142A00AD,
                 0x142A00AE, 0x142A00AF, 0x142A00B0, 0x142A00B1, 0x142A00B2, 0x142A00B3});
}

}  // namespace
}  // namespace pmcli_test
