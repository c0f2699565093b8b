// Lines of counters: of a non-zero list, of the management port, of a loopback.
#include <gtest/gtest.h>

#include "pmcli/counters.h"
#include "pmcli/interface.h"
#include "support/both_forms.h"
#include "support/matchers.h"
#include "support/recording_platform.h"

namespace pmcli_test {
namespace {

// ---- A line of a non-zero list ----

TEST(NonZeroLine, PadsTheLabelAndAlignsTheValueRight) {
  RecordingPlatform platform;
  const uint64 value = 42;

  nzero_prt(platform.output(), &value, "Rx Packets:", 0x152A0086);

  EXPECT_EQ(platform.text(), "  Rx Packets:                                          42\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x152A0086, 42}}));
  EXPECT_EQ(platform.terminal(), "");
}

TEST(NonZeroLine, IsLeftOutForZero) {
  RecordingPlatform platform;
  const uint64 wide = 0;
  const uint32 narrow = 0;

  nzero_prt(platform.output(), &wide, "Rx Packets:", 0x152A0086);
  nzero_prt_uint32(platform.output(), &narrow, "Rx Packets:", 0x142A0086);

  EXPECT_THAT(platform.pieces, IsEmpty());
}

TEST(NonZeroLine, CutsALongLabel) {
  RecordingPlatform platform;
  const uint64 value = 7;

  nzero_prt(platform.output(), &value, "1234567890123456789012345678901234567890", 0x152A0086);

  EXPECT_EQ(platform.text(), "  12345678901234567890123456789012345                   7\n");
}

TEST(NonZeroLine, ShowsTheLargestCounter) {
  RecordingPlatform platform;
  const uint64 value = 0xFFFFFFFFFFFFFFFF;

  nzero_prt(platform.output(), &value, "Rx Bytes:", 0x152A0086);

  EXPECT_EQ(platform.text(), "  Rx Bytes:                          18446744073709551615\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x152A0086, 0xFFFFFFFFFFFFFFFF}}));
}

TEST(NonZeroLine, BindsTheLowHalfUnderAnIdOfThirtyTwoBits) {
  RecordingPlatform platform;
  const uint64 value = 0x500000007;

  nzero_prt(platform.output(), &value, "Packets in", 0x142A00A7);

  EXPECT_EQ(platform.text(), "  Packets in                                            7\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x142A00A7, 7}}));
}

TEST(NonZeroLine, IsShownWhenOnlyTheHighHalfIsNotZero) {
  RecordingPlatform platform;
  const uint64 value = 0x500000000;

  nzero_prt(platform.output(), &value, "Packets in", 0x142A00A7);

  EXPECT_EQ(platform.tuples(), (Tuples{{0x142A00A7, 0}}));
}

TEST(NumberedLine, AlignsNumberAndLabelRight) {
  RecordingPlatform platform;
  const uint64 value = 42;

  numlist_prt(platform.output(), &value, "InPackets", 7, 0x152A046C);

  EXPECT_EQ(platform.text(), "   7.                          InPackets = 42\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x152A046C, 42}}));
  EXPECT_EQ(platform.terminal(), "");
}

TEST(NumberedLine, IsShownForZeroToo) {
  RecordingPlatform platform;
  const uint64 wide = 0;
  const uint32 narrow = 0;

  numlist_prt(platform.output(), &wide, "InPackets", 72, 0x152A046C);
  numlist_prt_uint32(platform.output(), &narrow, "InOctets", 9, 0x142A041C);

  EXPECT_EQ(platform.text(),
            "  72.                          InPackets = 0\n"
            "   9.                           InOctets = 0\n");
}

TEST(NumberedLine, LongNumbersAndLabelsAreNotCut) {
  RecordingPlatform platform;
  const uint64 value = 0xFFFFFFFFFFFFFFFF;

  numlist_prt(platform.output(), &value, "1234567890123456789012345678901234567890", 100, 0x152A046C);

  EXPECT_EQ(platform.text(), "  100. 1234567890123456789012345678901234567890 = 18446744073709551615\n");
}

TEST(NumberedLine, OfAThirtyTwoBitCounter) {
  RecordingPlatform platform;
  const uint32 value = 0xFFFFFFFF;

  numlist_prt_uint32(platform.output(), &value, "InPackets", 0, 0x142A041B);
  numlist_prt_uint32(platform.output(), &value, "VDCLevelInPktsPerSec:", 6, 0x152A040F);

  EXPECT_EQ(platform.text(),
            "   0.                          InPackets = 4294967295\n"
            "   6.              VDCLevelInPktsPerSec: = 4294967295\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x142A041B, 0xFFFFFFFFU}, {0x152A040F, 0xFFFFFFFFU}}));
}

TEST(NonZeroLine, OfAThirtyTwoBitCounter) {
  RecordingPlatform platform;
  const uint32 value = 0xFFFFFFFF;

  nzero_prt_uint32(platform.output(), &value, "Rx Packets", 0x142A041B);
  nzero_prt_uint32(platform.output(), &value, "Rx Packets/Sec", 0x152A040F);

  EXPECT_EQ(platform.text(),
            "  Rx Packets                                   4294967295\n"
            "  Rx Packets/Sec                               4294967295\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x142A041B, 0xFFFFFFFFU}, {0x152A040F, 0xFFFFFFFFU}}))
      << "an id of 64 bits takes the widened value";
}

// ---- The management port ----

TEST(ManagementLines, ShowTheKernelCountersEachUnderItsTuple) {
  RecordingPlatform platform;
  pm_proc_net_dev_stats_t stats{};
  stats.rx_packets = 1001;
  stats.tx_packets = 2002;
  stats.rx_bytes = 3003;
  stats.tx_bytes = 4004;
  stats.rx_errors = 5005;
  stats.tx_errors = 6006;
  stats.rx_dropped = 7007;
  stats.tx_dropped = 8008;
  stats.rx_multicast = 9009;
  stats.rx_compressed = 10010;
  stats.tx_compressed = 11011;
  stats.rx_frame_errors = 12012;
  stats.rx_fifo_errors = 13013;
  stats.tx_carrier_errors = 14014;
  stats.tx_fifo_errors = 15015;
  stats.tx_collisions = 4294967295;

  print_eth_port_counters(platform.output(), &stats);

  // Overruns are what the kernel dropped on receipt, underruns what it dropped before sending; compressed packets sent
  // are not shown.
  EXPECT_EQ(platform.text(),
            "    1001 packets input, 3003 bytes\n"
            "    9009 multicast frames, 10010 compressed\n"
            "    5005 input errors, 12012 frame, 7007 overrun, 13013 fifo\n"
            "    2002 packets output, 4004 bytes\n"
            "    8008 underrun, 6006 output errors, 4294967295 collisions\n"
            "    15015 fifo, 14014 carrier errors\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x142A01E4, 1001},
                                       {0x142A01E5, 3003},
                                       {0x142A01E6, 9009},
                                       {0x142A01E7, 10010},
                                       {0x142A01E8, 5005},
                                       {0x142A01E9, 12012},
                                       {0x142A01EA, 7007},
                                       {0x142A01EB, 13013},
                                       {0x142A01EC, 2002},
                                       {0x142A01ED, 4004},
                                       {0x142A01EE, 8008},
                                       {0x142A01EF, 6006},
                                       {0x142A01F0, 4294967295},
                                       {0x142A01F1, 15015},
                                       {0x142A01F2, 14014}}));
  EXPECT_EQ(platform.terminal(), "");
  expect_both_forms_agree(
      platform, {0x142A01E4, 0x142A01E5, 0x142A01E6, 0x142A01E7, 0x142A01E8, 0x142A01E9, 0x142A01EA, 0x142A01EB,
                 0x142A01EC, 0x142A01ED, 0x142A01EE, 0x142A01EF, 0x142A01F0, 0x142A01F1, 0x142A01F2});
}

TEST(ManagementLines, NeedARecord) {
  RecordingPlatform platform;
  print_eth_port_counters(platform.output(), nullptr);
  EXPECT_THAT(platform.pieces, IsEmpty());
  EXPECT_EQ(platform.text(), "");
}

TEST(ManagementLines, ShowZeros) {
  RecordingPlatform platform;
  pm_proc_net_dev_stats_t stats{};

  print_eth_port_counters(platform.output(), &stats);

  EXPECT_EQ(platform.text(),
            "    0 packets input, 0 bytes\n"
            "    0 multicast frames, 0 compressed\n"
            "    0 input errors, 0 frame, 0 overrun, 0 fifo\n"
            "    0 packets output, 0 bytes\n"
            "    0 underrun, 0 output errors, 0 collisions\n"
            "    0 fifo, 0 carrier errors\n");
}

// ---- A loopback ----

ip_if_stats distinct_loopback() {
  ip_if_stats stats{};
  stats.in_pkts = 10000000001;
  stats.in_bytes = 10000000002;
  stats.in_pkts_ucast = 10000000003;
  stats.in_pkts_mcast = 10000000004;
  stats.in_pkts_bcast = 10000000005;
  stats.in_compressed = 10000000006;
  stats.in_errors = 10000000007;
  stats.in_frames = 10000000008;
  stats.in_overrun = 10000000009;
  stats.in_fifo = 10000000010;
  stats.out_pkts = 10000000011;
  stats.out_bytes = 10000000012;
  stats.out_pkts_ucast = 10000000013;
  stats.out_pkts_mcast = 10000000014;
  stats.out_pkts_bcast = 10000000015;
  stats.out_underruns = 10000000016;
  stats.out_errors = 10000000017;
  stats.out_collisions = 10000000018;
  stats.out_fifo = 10000000019;
  stats.out_carrier_errors = 10000000020;
  stats.in_pkts_discard = 10000000021;
  stats.out_pkts_discard = 10000000022;
  stats.unknown_proto_pkts = 10000000023;
  return stats;
}

constexpr char kLoopbackLines[] =
    "    10000000001 packets input 10000000002 bytes\n"
    "    10000000004 multicast frames 10000000006 compressed\n"
    "    10000000007 input errors 10000000008 frame 10000000009 overrun 10000000010 fifo\n"
    "    10000000011 packets output 10000000012 bytes 10000000016 underruns\n"
    "    10000000017 output errors 10000000018 collisions 10000000019 fifo\n"
    "    10000000020 out_carrier_errors\n";

TEST(LoopbackLines, ShowTheIpCountersEachUnderItsTuple) {
  RecordingPlatform platform;
  ip_if_stats stats = distinct_loopback();

  pm_cli_loopback_intf_stats_print(platform.output(), &stats, 0);

  EXPECT_EQ(platform.text(), kLoopbackLines);
  EXPECT_EQ(platform.tuples(), (Tuples{{0x152A023A, 10000000001},
                                       {0x152A023B, 10000000002},
                                       {0x152A023C, 10000000004},
                                       {0x152A023D, 10000000006},
                                       {0x152A023E, 10000000007},
                                       {0x152A023F, 10000000008},
                                       {0x152A0240, 10000000009},
                                       {0x152A0241, 10000000010},
                                       {0x152A0242, 10000000011},
                                       {0x152A0243, 10000000012},
                                       {0x152A0244, 10000000016},
                                       {0x152A0245, 10000000017},
                                       {0x152A0246, 10000000018},
                                       {0x152A0247, 10000000019},
                                       {0x152A0248, 10000000020}}));
  EXPECT_EQ(platform.terminal(), "");
  expect_both_forms_agree(
      platform, {0x152A023A, 0x152A023B, 0x152A023C, 0x152A023D, 0x152A023E, 0x152A023F, 0x152A0240, 0x152A0241,
                 0x152A0242, 0x152A0243, 0x152A0244, 0x152A0245, 0x152A0246, 0x152A0247, 0x152A0248});
}

TEST(LoopbackLines, AreTheSameInDetail) {
  RecordingPlatform platform;
  ip_if_stats stats = distinct_loopback();

  pm_cli_loopback_intf_stats_print(platform.output(), &stats, 1);

  EXPECT_EQ(platform.text(), kLoopbackLines);
}

}  // namespace
}  // namespace pmcli_test
