#include "client/kernel_counters.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace host {
namespace {

constexpr const char* kTable =
    "Inter-|   Receive                                                |  Transmit\n"
    " face |bytes    packets errs drop fifo frame compressed multicast|bytes    packets errs drop fifo colls carrier "
    "compressed\n"
    "    lo:     100       2    0    0    0     0          0         0      100       2    0    0    0     0       0 "
    "         0\n"
    "  eth1:4294967297 11 12 13 14 15 16 17 8589934594 21 22 23 24 25 26 27\n"
    "eth10: 31 32 33 34 35 36 37 38 41 42 43 44 45 46 47 48\n"
    " short: 1 2 3\n";

bool read_table(const char* device, pm_proc_net_dev_stats_t* stats) {
  std::string text = kTable;
  std::FILE* const table = fmemopen(text.data(), text.size(), "r");
  const bool found = read_device_counters(table, device, stats);
  std::fclose(table);
  return found;
}

TEST(KernelCounters, ColumnsGoToTheirMembers) {
  pm_proc_net_dev_stats_t stats{};

  ASSERT_TRUE(read_table("eth10", &stats));

  EXPECT_EQ(stats.rx_bytes, 31u);
  EXPECT_EQ(stats.rx_packets, 32u);
  EXPECT_EQ(stats.rx_errors, 33u);
  EXPECT_EQ(stats.rx_dropped, 34u);
  EXPECT_EQ(stats.rx_fifo_errors, 35u);
  EXPECT_EQ(stats.rx_frame_errors, 36u);
  EXPECT_EQ(stats.rx_compressed, 37u);
  EXPECT_EQ(stats.rx_multicast, 38u);
  EXPECT_EQ(stats.tx_bytes, 41u);
  EXPECT_EQ(stats.tx_packets, 42u);
  EXPECT_EQ(stats.tx_errors, 43u);
  EXPECT_EQ(stats.tx_dropped, 44u);
  EXPECT_EQ(stats.tx_fifo_errors, 45u);
  EXPECT_EQ(stats.tx_collisions, 46u);
  EXPECT_EQ(stats.tx_carrier_errors, 47u);
  EXPECT_EQ(stats.tx_compressed, 48u);
}

TEST(KernelCounters, NumbersKeepTheirLow32BitsAndMayTouchTheColon) {
  pm_proc_net_dev_stats_t stats{};

  ASSERT_TRUE(read_table("eth1", &stats));

  EXPECT_EQ(stats.rx_bytes, 1u);
  EXPECT_EQ(stats.rx_packets, 11u);
  EXPECT_EQ(stats.tx_bytes, 2u);
}

TEST(KernelCounters, UnknownDevicesAndShortRowsAreFailures) {
  pm_proc_net_dev_stats_t stats{};

  for (const char* device : {"eth", "eth100", "face", "", "short", "Inter-|"}) EXPECT_FALSE(read_table(device, &stats));

  EXPECT_EQ(stats.rx_bytes, 0u);
}

uint64 kernel_says(const std::string& counter) {
  std::ifstream file("/sys/class/net/lo/statistics/" + counter);
  uint64 value = 0;
  file >> value;
  return value;
}

TEST(KernelCounters, RunningKernelIsAsked) {
  const uint64 before = kernel_says("rx_bytes");
  pm_proc_net_dev_stats_t stats{};

  ASSERT_EQ(pm_get_proc_net_dev_stats("lo", &stats), 0);

  const uint64 after = kernel_says("rx_bytes");
  EXPECT_LE(static_cast<uint32>(stats.rx_bytes - before), static_cast<uint32>(after - before));
  EXPECT_NE(pm_get_proc_net_dev_stats("no-such-device", &stats), 0);
  EXPECT_NE(pm_get_proc_net_dev_stats(nullptr, &stats), 0);
}

}  // namespace
}  // namespace host
