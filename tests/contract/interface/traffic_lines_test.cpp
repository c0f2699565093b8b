// The traffic lines of the port manager's response, and its one-liners.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/sample_ports.h"
#include "pmcli/interface.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

std::string lines_of(const show_eth_intf_resp_t& response, uint32 detail) {
  RecordingPlatform platform;
  show_eth_intf_resp_t copy = response;
  pm_cli_eth_intf_stats_print(platform.output(), &copy, detail);
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_THAT(platform.tuples(), IsEmpty());
  return platform.text();
}

// A response with these totals over the last five minutes.
show_eth_intf_resp_t five_minutes_of(uint64 in_bytes, uint32 in_frames, uint64 out_bytes, uint32 out_frames) {
  show_eth_intf_resp_t response{};
  response.rate.index = 0;  // the newest sample is in slot 7, the one five older in slot 2
  eth_intf_rate_sample_t& newest = response.rate.stats[7];
  newest.in_bytes = in_bytes;
  newest.in_frames = in_frames;
  newest.out_bytes = out_bytes;
  newest.out_frames = out_frames;
  return response;
}

// Each counter with a value of its own.
show_eth_intf_resp_t distinct_counters() {
  show_eth_intf_resp_t response = five_minutes_of(300 * 1000, 300 * 40, 300 * 2000, 300 * 50);
  eth_intf_if_data_t& counters = response.if_data;
  counters.ifi_ibytes = 0x100000001;
  counters.ifi_obytes = 0x200000002;
  counters.ifi_ipackets = 11;
  counters.ifi_opackets = 12;
  counters.ifi_imcasts = 13;
  counters.ifi_omcasts = 14;
  counters.ifi_ibcasts = 15;
  counters.ifi_obcasts = 16;
  counters.ifi_ierrors = 17;
  counters.ifi_oerrors = 18;
  counters.ifi_collisions = 19;
  counters.ifi_iqdrops = 20;
  counters.ifi_oarpdrops = 21;
  counters.ifi_idowndrops = 22;
  counters.ifi_odowndrops = 23;
  counters.ifi_badetype = 24;
  counters.ifi_noproto = 25;
  return response;
}

TEST(TrafficLines, ShortForm) {
  EXPECT_EQ(lines_of(distinct_counters(), 0),
            "    5 minutes input rate 8000 bits/sec, 1000 bytes/sec, 40 frames/sec\n"
            "    5 minutes output rate 16000 bits/sec, 2000 bytes/sec, 50 frames/sec\n"
            "    11 packets input, 4294967297 bytes\n"
            "      13 multicast frames, 0 compressed\n"
            "      17 input errors, 0 frame, 0 overrun 0 fifo\n"
            "    12 packets output, 8589934594 bytes, 0 underruns\n"
            "      18 output errors, 19 collisions, 0 fifo\n"
            "      0 carrier errors\n");
}

TEST(TrafficLines, LongForm) {
  constexpr char kLongForm[] =
      "    5 minutes input rate 8000 bits/sec, 1000 bytes/sec, 40 frames/sec\n"
      "    5 minutes output rate 16000 bits/sec, 2000 bytes/sec, 50 frames/sec\n"
      "    11 packets input, 4294967297 bytes\n"
      "      13 multicast frames, 15 broadcast frames\n"
      "      17 errors, 20 queue drops 22 if-down drops\n"
      "      24 bad ether type drop, 25 bad protocol drops\n"
      "    12 packets output, 8589934594 bytes, 0 underruns\n"
      "      14 multicast, 16 broadcast\n"
      "      18 errors, 19 collisions, 21 arp drops, 23 if-down drops\n";
  EXPECT_EQ(lines_of(distinct_counters(), 1), kLongForm);
  EXPECT_EQ(lines_of(distinct_counters(), 0x80000000), kLongForm);
}

TEST(TrafficLines, EachLineIsOnePiece) {
  RecordingPlatform platform;
  show_eth_intf_resp_t response = distinct_counters();
  pm_cli_eth_intf_stats_print(platform.output(), &response, 0);
  EXPECT_EQ(platform.pieces.size(), 8U);
  platform.clear_output();
  pm_cli_eth_intf_stats_print(platform.output(), &response, 1);
  EXPECT_EQ(platform.pieces.size(), 9U);
}

// The same response as bytes on the wire.
TEST(TrafficLines, ResponseIsReadAtItsWireOffsets) {
  octets wire(320, 0);
  const auto put = [&wire](std::size_t offset, std::initializer_list<int> bytes) {
    for (const int byte : bytes) wire[offset++] = static_cast<uint8>(byte);
  };
  put(32 + 24 * 3, {0, 0, 0, 0, 0, 0x09, 0x27, 0xC0});      // sample 3: 600000 bytes in
  put(32 + 24 * 3 + 8, {0, 0, 0, 0, 0, 0x0D, 0xBB, 0xA0});  // 900000 bytes out
  put(32 + 24 * 3 + 16, {0, 0, 0x02, 0x58});                // 600 frames in
  put(32 + 24 * 3 + 20, {0, 0, 0x03, 0x84});                // 900 frames out
  put(32 + 192, {0, 0, 0, 4});                              // index: slot 4 is written next
  put(232, {0, 0, 0, 1, 0, 0, 0, 0});                       // ifi_ibytes
  put(240, {0, 0, 0, 2, 0, 0, 0, 0});                       // ifi_obytes
  for (int counter = 0; counter < 15; ++counter)            // ifi_ipackets ... ifi_noproto: 101 ... 115
    put(248 + 4 * static_cast<std::size_t>(counter), {0, 0, 0, 101 + counter});
  show_eth_intf_resp_t response;
  ASSERT_EQ(sizeof response, wire.size());
  std::memcpy(&response, wire.data(), wire.size());

  EXPECT_EQ(lines_of(response, 1),
            "    5 minutes input rate 16000 bits/sec, 2000 bytes/sec, 2 frames/sec\n"
            "    5 minutes output rate 24000 bits/sec, 3000 bytes/sec, 3 frames/sec\n"
            "    101 packets input, 4294967296 bytes\n"
            "      103 multicast frames, 105 broadcast frames\n"
            "      107 errors, 110 queue drops 112 if-down drops\n"
            "      114 bad ether type drop, 115 bad protocol drops\n"
            "    102 packets output, 8589934592 bytes, 0 underruns\n"
            "      104 multicast, 106 broadcast\n"
            "      108 errors, 109 collisions, 111 arp drops, 113 if-down drops\n");
}

TEST(TrafficLines, LargestCountersFit) {
  show_eth_intf_resp_t response{};
  std::memset(&response.if_data, 0xFF, sizeof response.if_data);

  EXPECT_EQ(lines_of(response, 0),
            "    5 minutes input rate 0 bits/sec, 0 bytes/sec, 0 frames/sec\n"
            "    5 minutes output rate 0 bits/sec, 0 bytes/sec, 0 frames/sec\n"
            "    4294967295 packets input, 18446744073709551615 bytes\n"
            "      4294967295 multicast frames, 0 compressed\n"
            "      4294967295 input errors, 0 frame, 0 overrun 0 fifo\n"
            "    4294967295 packets output, 18446744073709551615 bytes, 0 underruns\n"
            "      4294967295 output errors, 4294967295 collisions, 0 fifo\n"
            "      0 carrier errors\n");
}

TEST(TrafficLines, LongestLineOfTheLongFormIsCutAt88Characters) {
  show_eth_intf_resp_t response{};
  std::memset(&response.if_data, 0xFF, sizeof response.if_data);
  const std::string text = lines_of(response, 1);
  const std::string last = "      4294967295 errors, 4294967295 collisions, 4294967295 arp drops, 4294967295 if-down";

  ASSERT_EQ(last.size(), 88U);
  EXPECT_EQ(text.substr(text.rfind("      4294967295 errors, 4294967295 col")), last);
}

// A line of 88 characters keeps its end, a longer one loses it and runs into the next.
TEST(TrafficLines, RateLinesAreCutAt88Characters) {
  constexpr uint64 kInBytes = 1234567890123;  // a second; 13 digits, and as many in bits
  constexpr uint64 kOutBytes = 123456789012;  // 12 digits, and as many in bits
  const std::string in = "    5 minutes input rate 9876543120984 bits/sec, 1234567890123 bytes/sec, ";
  const std::string out = "    5 minutes output rate 987654312096 bits/sec, 123456789012 bytes/sec, ";
  struct rate_case {
    uint32 in_frames;
    uint32 out_frames;
    std::string lines;
  };
  const rate_case kCases[] = {
      {9, 99, in + "9 frames/sec\n" + out + "99 frames/sec\n"},      // 87 characters each
      {99, 999, in + "99 frames/sec\n" + out + "999 frames/sec\n"},  // 88
      {100, 1000, in + "100 frames/sec" + out + "1000 frames/sec"},  // 89
      {1000, 10000, in + "1000 frames/se" + out + "10000 frames/se"},
  };
  for (const rate_case& rates : kCases) {
    const show_eth_intf_resp_t response =
        five_minutes_of(300 * kInBytes, 300 * rates.in_frames, 300 * kOutBytes, 300 * rates.out_frames);
    const std::string text = lines_of(response, 0);
    EXPECT_EQ(text.substr(0, text.find("    0 packets input")), rates.lines);
  }
}

TEST(TrafficLines, LargestRates) {
  const show_eth_intf_resp_t response = five_minutes_of(~uint64{0}, 0xFFFFFFFF, ~uint64{0}, 0xFFFFFFFF);
  const std::string text = lines_of(response, 0);

  EXPECT_EQ(text.substr(0, text.find("    0 packets input")),
            "    5 minutes input rate 491913175298921376 bits/sec, 61489146912365172 bytes/sec, 14316"
            "    5 minutes output rate 491913175298921376 bits/sec, 61489146912365172 bytes/sec, 1431");
}

TEST(HardwareLine, BytesAreUnsigned) {
  RecordingPlatform platform;
  show_eth_intf_resp_t response{};
  constexpr uint8 mac[] = {0x02, 0x00, 0xFF, 0x80, 0x7F, 0x0A};
  std::memcpy(response.macaddr, mac, sizeof mac);
  pm_eth_intf_hwinfo_print(&response);
  EXPECT_EQ(platform.terminal(), "    Hardware is GigabitEthernet, address is 0200.ff80.7f0a\n");
  EXPECT_THAT(platform.pieces, IsEmpty());
}

TEST(PrefixLine, HasTwoBlanksBeforeBytes) {
  RecordingPlatform platform;
  show_eth_intf_resp_t response{};
  response.if_mtu = 4294967295U;
  pm_cli_eth_intf_prefix_print(&response);
  response.if_mtu = 0x00002400;
  pm_cli_eth_intf_prefix_print(&response);
  EXPECT_EQ(platform.terminal(), "    MTU 4294967295  bytes\n    MTU 9216  bytes\n");
  EXPECT_THAT(platform.pieces, IsEmpty());
}

}  // namespace
}  // namespace pmcli_test
