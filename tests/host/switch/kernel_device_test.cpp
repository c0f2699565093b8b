// Devices of the kernel: their rows, what is remembered of them, and what is cleared.
#include "switch/kernel_device.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>

#include "host/switch/loopback_device.h"
#include "platform/ip_statistics.h"
#include "service/services.h"
#include "transport/transport.h"

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

std::FILE* open_table(std::string& text) { return fmemopen(text.data(), text.size(), "r"); }

std::optional<device_counters> read_table(const char* device) {
  std::string text = kTable;
  std::FILE* const table = open_table(text);
  const auto found = read_device_counters(table, device);
  std::fclose(table);
  return found;
}

std::string first_of(std::string text) {
  std::FILE* const table = open_table(text);
  const std::string first = first_device_of(table);
  std::fclose(table);
  return first;
}

TEST(KernelDevice, ColumnsGoToTheirCounters) {
  const auto counted = read_table("eth10");

  ASSERT_TRUE(counted);
  EXPECT_EQ(counted->rx_bytes, 31u);
  EXPECT_EQ(counted->rx_packets, 32u);
  EXPECT_EQ(counted->rx_errors, 33u);
  EXPECT_EQ(counted->rx_dropped, 34u);
  EXPECT_EQ(counted->rx_fifo_errors, 35u);
  EXPECT_EQ(counted->rx_frame_errors, 36u);
  EXPECT_EQ(counted->rx_compressed, 37u);
  EXPECT_EQ(counted->rx_multicast, 38u);
  EXPECT_EQ(counted->tx_bytes, 41u);
  EXPECT_EQ(counted->tx_packets, 42u);
  EXPECT_EQ(counted->tx_errors, 43u);
  EXPECT_EQ(counted->tx_dropped, 44u);
  EXPECT_EQ(counted->tx_fifo_errors, 45u);
  EXPECT_EQ(counted->tx_collisions, 46u);
  EXPECT_EQ(counted->tx_carrier_errors, 47u);
  EXPECT_EQ(counted->tx_compressed, 48u);
}

TEST(KernelDevice, NumbersHave64BitsAndMayTouchTheColon) {
  const auto counted = read_table("eth1");

  ASSERT_TRUE(counted);
  EXPECT_EQ(counted->rx_bytes, 4'294'967'297u);
  EXPECT_EQ(counted->rx_packets, 11u);
  EXPECT_EQ(counted->rx_multicast, 17u);
  EXPECT_EQ(counted->tx_bytes, 8'589'934'594u);
}

TEST(KernelDevice, UnknownDevicesAndShortRowsAreNotThere) {
  for (const char* device : {"eth", "eth100", "face", "", "short", "Inter-|"})
    EXPECT_FALSE(read_table(device)) << device;
}

TEST(KernelDevice, FirstDeviceIsNotTheLoopback) {
  EXPECT_EQ(first_of(kTable), "eth1");
  EXPECT_EQ(first_of("Inter-| Receive\n face |bytes\n    lo: 1 2 3\n"), "");
  EXPECT_EQ(first_of("\n"), "");
}

device_counters counters(uint64 rx_bytes, uint64 rx_packets, uint64 tx_bytes, uint64 tx_packets) {
  return {.rx_bytes = rx_bytes, .rx_packets = rx_packets, .tx_bytes = tx_bytes, .tx_packets = tx_packets};
}

TEST(DeviceMemory, CountsFromTheLastClear) {
  device_memory memory;
  memory.look(100, counters(1000, 10, 2000, 20));
  EXPECT_EQ(memory.since_clear(), counters(1000, 10, 2000, 20));

  memory.clear();
  EXPECT_EQ(memory.since_clear(), counters(0, 0, 0, 0));

  memory.look(101, counters(1007, 11, 2000, 23));
  EXPECT_EQ(memory.since_clear(), counters(7, 1, 0, 3));
}

TEST(DeviceMemory, ADeviceThatWasMadeAnewCountsFromItsOwnStart) {
  device_memory memory;
  memory.look(100, counters(1000, 10, 2000, 20));
  memory.clear();

  memory.look(160, counters(1100, 9, 2100, 30));

  EXPECT_EQ(memory.since_clear(), counters(1100, 9, 2100, 30));
  EXPECT_FALSE(memory.rates().rx_bytes.has_value());
}

TEST(DeviceMemory, RatesAreThoseOfTheLastMinute) {
  device_memory memory;
  memory.look(100, counters(0, 0, 0, 0));
  EXPECT_FALSE(memory.rates().rx_bytes.has_value()) << "one look says nothing";

  memory.look(110, counters(5000, 100, 80, 20));
  EXPECT_EQ(memory.rates().rx_bytes, 500u);
  EXPECT_EQ(memory.rates().rx_packets, 10u);
  EXPECT_EQ(memory.rates().tx_bytes, 8u);
  EXPECT_EQ(memory.rates().tx_packets, 2u);

  memory.clear();
  EXPECT_EQ(memory.rates().rx_bytes, 500u) << "rates go on";

  memory.look(170, counters(11'000, 160, 80, 20));
  EXPECT_EQ(memory.rates().rx_bytes, 100u) << "6000 bytes in the 60 seconds since 110";
  EXPECT_EQ(memory.rates().tx_bytes, 0u);
}

TEST(DeviceMemory, AClockThatIsSetBackStartsTheRatesAgain) {
  device_memory memory;
  memory.look(100, counters(0, 0, 0, 0));
  memory.look(110, counters(5000, 0, 0, 0));

  memory.look(50, counters(6000, 0, 0, 0));
  EXPECT_FALSE(memory.rates().rx_bytes.has_value());

  memory.look(60, counters(6500, 0, 0, 0));
  EXPECT_EQ(memory.rates().rx_bytes, 50u);
}

TEST(RunningKernel, IsAsked) {
  transport_register(all_services());
  const uint64 before = kernel_says("rx_bytes");
  clear_kernel_counters("lo");
  pm_proc_net_dev_stats_t stats{};

  ASSERT_EQ(pm_get_proc_net_dev_stats("lo", &stats), 0);

  EXPECT_LE(stats.rx_bytes, kernel_says("rx_bytes") - before);
  EXPECT_NE(pm_get_proc_net_dev_stats("no-such-device", &stats), 0);
  EXPECT_NE(pm_get_proc_net_dev_stats("", &stats), 0);
  EXPECT_NE(pm_get_proc_net_dev_stats(nullptr, &stats), 0);
  EXPECT_NE(pm_get_proc_net_dev_stats("lo", nullptr), 0);
  EXPECT_FALSE(clear_kernel_counters("no-such-device"));
}

// Sends packets through the loopback. False where this machine does not let us.
bool send_packets(int count) {
  const int sender = socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(9);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  bool is_sent = sender >= 0;
  for (int i = 0; i < count && is_sent; ++i) {
    sendto(sender, "0123456789", 10, 0, reinterpret_cast<sockaddr*>(&address), sizeof address);
    is_sent = kernel_says("tx_packets") != 0;
  }
  close(sender);
  return is_sent;
}

TEST(RunningKernel, OnlyThisProcessSeesTheClear) {
  if (!send_packets(1)) GTEST_SKIP() << "the loopback of this machine carries nothing";
  const uint64 packets_before = kernel_says("tx_packets");
  ASSERT_GT(packets_before, 0u);

  transport_register(all_services());
  ASSERT_TRUE(clear_kernel_counters("lo"));
  ASSERT_TRUE(send_packets(5));

  pm_proc_net_dev_stats_t stats{};
  ASSERT_EQ(pm_get_proc_net_dev_stats("lo", &stats), 0);
  const uint64 packets_after = kernel_says("tx_packets");
  EXPECT_GE(packets_after, packets_before + 5) << "the kernel goes on counting";
  EXPECT_GE(stats.tx_packets, 5u);
  EXPECT_LE(stats.tx_packets, packets_after - packets_before);
  EXPECT_GE(stats.tx_bytes, 5u * 38u) << "10 bytes behind 8 of UDP and 20 of IP";
}

}  // namespace
}  // namespace host
