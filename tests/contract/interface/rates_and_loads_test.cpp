// Reliability, loads, elapsed times and five-minute rates.
#include <gtest/gtest.h>

#include <string>

#include "pmcli/interface.h"
#include "support/recording_platform.h"

namespace pmcli_test {
namespace {

constexpr uint32 kGigabitKbps = 1'000'000;
constexpr uint32 kNow = 1'700'000'000;

struct ethernet_case {
  statscl_portcl_stats_msg_t stats{};
  pm_port_info_t port{};
};

pm_cli_common_show_intf_data_t calculate(ethernet_case given) {
  pm_cli_common_show_intf_data_t data{};
  pm_cli_calc_eth_reliability_loads(&given.stats, &given.port, &data);
  return data;
}

// ---- What is missing ----

bool is_untouched(const pm_cli_common_show_intf_data_t& data) {
  return data.reliability == 0 && data.rx_load == 0 && data.tx_load == 0 && data.last_cleared[0] == '\0';
}

TEST(Calculation, OfAnythingThatIsMissingDoesNothing) {
  statscl_portcl_stats_msg_t stats{};
  pm_port_info_t port{};
  pm_proc_net_dev_stats_t device{};
  ip_if_stats addresses{};
  pm_cli_common_show_intf_data_t data{};
  pm_cli_calc_eth_reliability_loads(nullptr, &port, &data);
  pm_cli_calc_eth_reliability_loads(&stats, nullptr, &data);
  pm_cli_calc_eth_reliability_loads(&stats, &port, nullptr);
  pm_cli_calc_mgmt_reliability_loads(nullptr, &data);
  pm_cli_calc_mgmt_reliability_loads(&device, nullptr);
  pm_cli_calc_ip_reliability_loads(nullptr, &data);
  pm_cli_calc_ip_reliability_loads(&addresses, nullptr);
  EXPECT_TRUE(is_untouched(data));

  uint64 rate = 7;
  uint32 frames = 7;
  pm_cli_eth_intf_get_rate_stuff(nullptr, &rate, &rate, &frames, &frames, &rate, &rate);
  EXPECT_EQ(rate, 7U);
  EXPECT_EQ(frames, 7U);
}

// ---- Ethernet: reliability ----

uint16 ethernet_reliability(uint64 in_packets, uint64 out_packets, uint64 in_errors, uint64 out_errors) {
  ethernet_case given;
  given.stats.mac.pktflow.ingress_pkts = in_packets;
  given.stats.mac.pktflow.egress_pkts = out_packets;
  given.stats.mac.errors.input_errors = in_errors;
  given.stats.mac.errors.output_errors = out_errors;
  return calculate(given).reliability;
}

TEST(EthernetReliability, IsFullWithoutPackets) {
  EXPECT_EQ(ethernet_reliability(0, 0, 0, 0), 255);
  EXPECT_EQ(ethernet_reliability(0, 0, 1000, 1000), 255) << "whatever the errors";
}

TEST(EthernetReliability, FallsWithTheShareOfErrors) {
  EXPECT_EQ(ethernet_reliability(600, 400, 0, 0), 255);
  EXPECT_EQ(ethernet_reliability(600, 400, 0, 3), 255) << "3 * 255 / 1000 is rounded down to 0";
  EXPECT_EQ(ethernet_reliability(600, 400, 3, 1), 254);
  EXPECT_EQ(ethernet_reliability(600, 400, 300, 200), 128);
  EXPECT_EQ(ethernet_reliability(600, 400, 1000, 0), 0);
}

TEST(EthernetReliability, IsKeptInSixteenBitsWhenErrorsExceedPackets) {
  EXPECT_EQ(ethernet_reliability(1, 0, 2, 0), 65281) << "255 - 510";
  EXPECT_EQ(ethernet_reliability(1, 0, 0x10001, 0), 0) << "255 - 65537 * 255 is 0 in its low 16 bits";
}

TEST(EthernetReliability, WrapsTheProductAtSixtyFourBits) {
  // 0x8080808080808081 * 255 is 128 * 2^64 + 127: what is left is 127.
  EXPECT_EQ(ethernet_reliability(127, 0, 0x8080808080808081, 0), 254);
}

TEST(EthernetReliability, AddsInSixtyFourBits) {
  EXPECT_EQ(ethernet_reliability(0xFFFFFFFF, 1, 0x80000000, 0), 128) << "2^32 packets, 2^31 errors: 255 - 127";
}

// ---- Ethernet: loads ----

struct loads {
  uint16 rx;
  uint16 tx;
  bool operator==(const loads&) const = default;
};
void PrintTo(const loads& shown, std::ostream* out) { *out << "rx " << shown.rx << ", tx " << shown.tx; }

loads ethernet_loads(uint64 rx_bytes_per_second, uint64 tx_bytes_per_second, uint32 bandwidth_kbps) {
  ethernet_case given;
  given.stats.mac.pktflow.byte_rate_rx = rx_bytes_per_second;
  given.stats.mac.pktflow.byte_rate_tx = tx_bytes_per_second;
  given.port.admin_port_bandwidth = bandwidth_kbps;
  const pm_cli_common_show_intf_data_t data = calculate(given);
  return {data.rx_load, data.tx_load};
}

TEST(EthernetLoads, AreSharesOfTheBandwidth) {
  EXPECT_EQ(ethernet_loads(125'000'000, 62'500'000, kGigabitKbps), (loads{255, 127}));
  EXPECT_EQ(ethernet_loads(12'500'000, 0, kGigabitKbps), (loads{25, 1}));
}

TEST(EthernetLoads, AreNeverZero) {
  EXPECT_EQ(ethernet_loads(0, 1, kGigabitKbps), (loads{1, 1}));
  EXPECT_EQ(ethernet_loads(125'000'000, 125'000'000, 0), (loads{1, 1})) << "without a bandwidth";
}

// With a bandwidth of 2040 kbit/s the quotient is a thousandth of the byte rate.
loads loads_of_quotients(uint64 rx, uint64 tx) { return ethernet_loads(rx * 1000, tx * 1000, 2040); }

TEST(EthernetLoads, AreCutToSixteenBitsBeforeTheyAreClamped) {
  EXPECT_EQ(loads_of_quotients(255, 256), (loads{255, 255}));
  EXPECT_EQ(loads_of_quotients(65535, 65536), (loads{255, 1}));
  EXPECT_EQ(loads_of_quotients(65536 + 255, 65536 + 1), (loads{255, 1}));
  EXPECT_EQ(loads_of_quotients(65536 + 7, 65536 + 256), (loads{7, 255}));
}

TEST(EthernetLoads, ReadTheWidestBandwidth) {
  EXPECT_EQ(ethernet_loads(268'435'455'875, 536'870'911'750, 0xFFFFFFFF), (loads{127, 254}))
      << "half and all of 2^32 - 1 kbit/s, a byte short";
}

TEST(EthernetLoads, WrapTheProductAtSixtyFourBits) {
  // 2^61 * 2040 = 255 * 2^64: nothing is left.
  EXPECT_EQ(ethernet_loads(0x2000000000000000, 1'000'000, 2040), (loads{1, 255}));
}

// ---- Ethernet: elapsed times ----

struct elapsed {
  std::string cleared;
  std::string flapped;
  bool operator==(const elapsed&) const = default;
};
void PrintTo(const elapsed& shown, std::ostream* out) {
  *out << "cleared \"" << shown.cleared << "\", flapped \"" << shown.flapped << '"';
}

elapsed elapsed_since(uint32 cleared, uint32 flapped) {
  RecordingPlatform platform;
  platform.now = kNow;
  ethernet_case given;
  given.stats.last_clear = cleared;
  given.port.link_status_last_change_sec = flapped;
  const pm_cli_common_show_intf_data_t data = calculate(given);
  return {data.last_cleared, data.last_flapped};
}

elapsed elapsed_for(uint32 seconds) { return elapsed_since(kNow - seconds, kNow - seconds); }

TEST(ElapsedTime, OfWhatNeverHappenedIsNever) { EXPECT_EQ(elapsed_since(0, 0), (elapsed{"never", "never"})); }

TEST(ElapsedTime, UpToADayIsAClock) {
  EXPECT_EQ(elapsed_for(0), (elapsed{"00:00:00", "00:00:00"}));
  EXPECT_EQ(elapsed_for(59), (elapsed{"00:00:59", "00:00:59"}));
  EXPECT_EQ(elapsed_for(3 * 3600 + 4 * 60 + 5), (elapsed{"03:04:05", "03:04:05"}));
  EXPECT_EQ(elapsed_for(86400), (elapsed{"24:00:00", "24:00:00"}));
}

TEST(ElapsedTime, UpToAWeekIsDaysAndHours) {
  EXPECT_EQ(elapsed_for(86401), (elapsed{"1d00h", "1d00h"}));
  EXPECT_EQ(elapsed_for(2 * 86400 + 7 * 3600 + 3599), (elapsed{"2d07h", "2d07h"}));
  EXPECT_EQ(elapsed_for(604799), (elapsed{"6d23h", "6d23h"}));
  EXPECT_EQ(elapsed_for(604800), (elapsed{"7d00h", "7d00h"}));
}

TEST(ElapsedTime, AboveAWeekDiffersBetweenCountersAndLink) {
  EXPECT_EQ(elapsed_for(604801), (elapsed{"1w0d", "1week(s) 0day(s)"}));
  EXPECT_EQ(elapsed_for(3 * 604800 + 5 * 86400), (elapsed{"3w5d", "3week(s) 5day(s)"}));
}

TEST(ElapsedTime, FromTheFutureIsAnUnsignedDifferenceOfThirtyTwoBits) {
  // 2^32 - 1 seconds: 7101 weeks and 3 days; the longest text fills its buffer.
  EXPECT_EQ(elapsed_since(kNow + 1, kNow + 1), (elapsed{"7101w3d", "7101week(s) 3day(s)"}));
}

TEST(ElapsedTime, OfCountersAndLinkAreIndependent) {
  EXPECT_EQ(elapsed_since(kNow - 60, 0), (elapsed{"00:01:00", "never"}));
  EXPECT_EQ(elapsed_since(0, kNow - 60), (elapsed{"never", "00:01:00"}));
}

// ---- Management port and loopback ----

TEST(ManagementReliability, ComesFromTheKernelCounters) {
  pm_proc_net_dev_stats_t stats{};
  stats.rx_packets = 600;
  stats.tx_packets = 400;
  stats.rx_errors = 300;
  stats.tx_errors = 200;
  pm_cli_common_show_intf_data_t data{};

  pm_cli_calc_mgmt_reliability_loads(&stats, &data);

  EXPECT_EQ(data.reliability, 128);
  EXPECT_EQ(data.rx_load, 1);
  EXPECT_EQ(data.tx_load, 1);
  EXPECT_STREQ(data.last_cleared, "");
  EXPECT_STREQ(data.last_flapped, "");
}

uint16 management_reliability(uint32 rx_packets, uint32 tx_packets, uint32 rx_errors, uint32 tx_errors) {
  pm_proc_net_dev_stats_t stats{};
  stats.rx_packets = rx_packets;
  stats.tx_packets = tx_packets;
  stats.rx_errors = rx_errors;
  stats.tx_errors = tx_errors;
  pm_cli_common_show_intf_data_t data{};
  pm_cli_calc_mgmt_reliability_loads(&stats, &data);
  return data.reliability;
}

TEST(ManagementReliability, IsFullWithoutPackets) { EXPECT_EQ(management_reliability(0, 0, 5, 5), 255); }

TEST(ManagementReliability, WrapsAtThirtyTwoBits) {
  EXPECT_EQ(management_reliability(0xFFFFFFFF, 1, 1, 0), 255) << "the sum of the packets is 0";
  // 0x01010102 * 255 = 0x1000000FE: the low 32 bits are 254.
  EXPECT_EQ(management_reliability(127, 0, 0x01010102, 0), 253);
}

TEST(LoopbackReliability, ComesFromTheIpCounters) {
  ip_if_stats stats{};
  stats.in_pkts = 0x100000000;
  stats.out_pkts = 0x100000000;
  stats.in_errors = 0x80000000;
  stats.out_errors = 0x80000000;
  pm_cli_common_show_intf_data_t data{};

  pm_cli_calc_ip_reliability_loads(&stats, &data);

  EXPECT_EQ(data.reliability, 128) << "2^33 packets, 2^32 errors";
  EXPECT_EQ(data.rx_load, 1);
  EXPECT_EQ(data.tx_load, 1);
  EXPECT_STREQ(data.last_cleared, "");
  EXPECT_STREQ(data.last_flapped, "");
}

TEST(LoopbackReliability, IsFullWithoutPackets) {
  ip_if_stats stats{};
  stats.in_errors = 7;
  pm_cli_common_show_intf_data_t data{};
  pm_cli_calc_ip_reliability_loads(&stats, &data);
  EXPECT_EQ(data.reliability, 255);
}

// ---- Five-minute rates ----

struct rates {
  uint64 in_bits, out_bits;
  uint32 in_frames, out_frames;
  uint64 in_bytes, out_bytes;
  bool operator==(const rates&) const = default;
};
void PrintTo(const rates& shown, std::ostream* out) {
  *out << "bits " << shown.in_bits << '/' << shown.out_bits << ", frames " << shown.in_frames << '/' << shown.out_frames
       << ", bytes " << shown.in_bytes << '/' << shown.out_bytes;
}

rates rates_of(show_eth_intf_resp_t response) {
  rates shown{};
  pm_cli_eth_intf_get_rate_stuff(&response, &shown.in_bits, &shown.out_bits, &shown.in_frames, &shown.out_frames,
                                 &shown.in_bytes, &shown.out_bytes);
  return shown;
}

void put_sample(show_eth_intf_resp_t& response, uint32 slot, uint64 in_bytes, uint64 out_bytes, uint32 in_frames,
                uint32 out_frames) {
  eth_intf_rate_sample_t& sample = response.rate.stats[slot];
  sample.in_bytes = in_bytes;
  sample.out_bytes = out_bytes;
  sample.in_frames = in_frames;
  sample.out_frames = out_frames;
}

TEST(FiveMinuteRates, SpanTheNewestSampleAndTheOneFiveSlotsOlder) {
  show_eth_intf_resp_t response{};
  for (uint32 slot = 0; slot < 8; ++slot) put_sample(response, slot, 999'999, 999'999, 99'999, 99'999);
  put_sample(response, 6, 901'000, 30'299, 60'599, 899);  // newest
  put_sample(response, 1, 1'000, 0, 599, 0);              // five slots older
  response.rate.index = 7;

  EXPECT_EQ(rates_of(response), (rates{24'000, 800, 200, 2, 3'000, 100})) << "30299 / 300 is 100, and 100 * 8 is 800";
}

TEST(FiveMinuteRates, TakeSlotSevenAsTheNewestWhenSlotZeroIsNext) {
  show_eth_intf_resp_t response{};
  put_sample(response, 7, 600, 900, 300, 1200);
  response.rate.index = 0;

  EXPECT_EQ(rates_of(response), (rates{16, 24, 1, 4, 2, 3}));
}

TEST(FiveMinuteRates, GoRoundTheRing) {
  show_eth_intf_resp_t response{};
  put_sample(response, 1, 1500, 0, 0, 0);  // newest
  put_sample(response, 4, 1200, 0, 0, 0);  // 1, 0, 7, 6, 5, 4: five slots older
  response.rate.index = 2;

  EXPECT_EQ(rates_of(response), (rates{8, 0, 0, 0, 1, 0}));
}

TEST(FiveMinuteRates, StayInTheRingWhateverTheIndexSays) {
  show_eth_intf_resp_t response{};
  put_sample(response, 6, 3000, 0, 0, 0);
  for (const uint32 index : {7U, 15U, 0xFFFFFFFFU}) {
    response.rate.index = index;
    EXPECT_EQ(rates_of(response).in_bytes, 10U) << index;
  }
}

TEST(FiveMinuteRates, AreTakenModuloTheirWidth) {
  show_eth_intf_resp_t response{};
  put_sample(response, 7, 300, 0, 200, 0);
  put_sample(response, 2, 0xFFFFFFFFFFFFFF00, 0, 0xFFFFFF9C, 0);  // 256 and 100 below the wrap
  response.rate.index = 0;

  EXPECT_EQ(rates_of(response), (rates{8, 0, 1, 0, 1, 0}));
}

TEST(FiveMinuteRates, ThatFallAreHuge) {
  show_eth_intf_resp_t response{};
  put_sample(response, 7, 0, 0, 0, 0);
  put_sample(response, 2, 1, 0, 1, 0);
  response.rate.index = 0;

  // 2^64 - 1 and 2^32 - 1, each over 300.
  EXPECT_EQ(rates_of(response), (rates{491913175298921376, 0, 14316557, 0, 61489146912365172, 0}));
}

}  // namespace
}  // namespace pmcli_test
