// The lists of an Ethernet port's counters, and the layer-3 lists behind them.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/counters/counter_rows.h"
#include "pmcli/counters.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const if_index_t kListPort = ethernet(1, 1);
const if_index_t kSubInterface = sub_interface(kListPort, 100);

constexpr counter_line kNonzero[] = {
    {"Rx Packets:", 0x152A00D0, {{8}}},
    {"Rx Unicast Packets:", 0x152A00D5, {{16}}},
    {"Rx Multicast Packets:", 0x152A00D4, {{24}}},
    {"Rx Broadcast Packets:", 0x152A00D3, {{32}}},
    {"Rx Jumbo Packets:", 0x152A0181, {{40}}},
    {"Rx Bytes:", 0x152A00D1, {{48}}},
    {"Rx Storm Suppression:", 0x152A00DB, {{56}}},
    {"Rx Packets from 0 to 64 bytes:", 0x152A01B5, {{128}}},
    {"Rx Packets from 65 to 127 bytes:", 0x152A01B6, {{136}}},
    {"Rx Packets from 128 to 255 bytes:", 0x152A01B7, {{144}}},
    {"Rx Packets from 256 to 511 bytes:", 0x152A01B8, {{152}}},
    {"Rx Packets from 512 to 1023 bytes:", 0x152A01B9, {{160}}},
    {"Rx Packets from 1024 to 1518 bytes:", 0x152A01BA, {{168}}},
    {"Rx Packets from 1519 to 1548 bytes:", 0x152A01BB, {{176}}},
    {"Rx Trunk Packets:", 0x152A01BC, {{184}}},
    {"Tx Packets:", 0x152A00EC, {{88}}},
    {"Tx Unicast Packets:", 0x152A00E6, {{80}}},
    {"Tx Multicast Packets:", 0x152A00E5, {{96}}},
    {"Tx Broadcast Packets:", 0x152A00E4, {{112}}},
    {"Tx Jumbo Packets:", 0x152A0192, {{104}}},
    {"Tx Bytes:", 0x152A00ED, {{120}}},
    {"Tx Packets from 0 to 64 bytes:", 0x152A01BD, {{192}}},
    {"Tx Packets from 65 to 127 bytes:", 0x152A01BE, {{200}}},
    {"Tx Packets from 128 to 255 bytes:", 0x152A01BF, {{208}}},
    {"Tx Packets from 256 to 511 bytes:", 0x152A01C0, {{216}}},
    {"Tx Packets from 512 to 1023 bytes:", 0x152A01C1, {{224}}},
    {"Tx Packets from 1024 to 1518 bytes:", 0x152A01C2, {{232}}},
    {"Tx Packets from 1519 to 1548 bytes:", 0x152A01C3, {{240}}},
    {"Tx Trunk Packets:", 0x152A01C4, {{248}}},
    {"No Buffer Errors:", 0x152A00D2, {{272}}},
    {"Runt Errors:", 0x152A00D9, {{280}}},
    {"Input CRC Errors:", 0x152A00DE, {{288}}},
    {"ECC Errors:", 0x152A00DF, {{296}}},
    {"Overrun Errors:", 0x152A00E1, {{304}}},
    {"Underrun Errors:", 0x152A00EE, {{312}}},
    {"Ignored Errors:", 0x152A00E2, {{320}}},
    {"Bad Etype Drop Errors:", 0x152A00EA, {{328}}},
    {"Bad Proto Drop Errors:", 0x152A00EB, {{336}}},
    {"If Down Drop Errors:", 0x152A00E9, {{344}}},
    {"Collision Errors:", 0x152A00F2, {{352}}},
    {"Late Collision Errors:", 0x152A00F5, {{360}}},
    {"Lost Carrier Errors:", 0x152A00F7, {{368}}},
    {"No Carrier Errors:", 0x152A00F8, {{376}}},
    {"Babble Errors:", 0x152A00F4, {{384}}},
    {"Watchdog Errors:", 0x152A00E3, {{392}}},
    {"Dribble Errors:", 0x152A00E8, {{400}}},
    {"Input Errors:", 0x152A00DD, {{408}}},
    {"Output Errors:", 0x152A00F1, {{416}}},
    {"Deferred Errors:", 0x152A00F6, {{424}}},
    {"Jabber Errors:", 0x152A0101, {{432}}},
    {"Short Frame Errors:", 0x152A01AE, {{440}}},
    {"Single Collision Errors:", 0x152A00FE, {{448}}},
    {"Multi-Collision Errors:", 0x152A00FF, {{456}}},
    {"Excess Collision Errors:", 0x152A0100, {{464}}},
    {"Input Discard Errors:", 0x152A0102, {{472}}},
    {"Bad Encapsulation Errors:", 0x152A0103, {{480}}},
    {"Output Errors:", 0x152A0104, {{488}}},
    {"Symbol Errors:", 0x152A01B2, {{576}}},
    {"Output Dropped Errors:", 0x152A01B3, {{584}}},
    {"Output BPDU Lost:", 0x152A01C5, {{496}}},
    {"Output COS0 Lost:", 0x152A01C6, {{504}}},
    {"Output COS1 Lost:", 0x152A01C7, {{512}}},
    {"Output COS2 Lost:", 0x152A01C8, {{520}}},
    {"Output COS3 Lost:", 0x152A01C9, {{528}}},
    {"Output COS4 Lost:", 0x152A01CA, {{536}}},
    {"Output COS5 Lost:", 0x152A01CB, {{544}}},
    {"Output COS6 Lost:", 0x152A01CC, {{552}}},
    {"Output COS7 Lost:", 0x152A01CD, {{560}}},
    {"Rx Pause:", 0x152A00E7, {{600}}},
    {"Tx Pause:", 0x152A00F9, {{608}}},
    {"Resets:", 0x152A00F3, {{616}}},
    {"SQETest", 0x152A01B4, {{624}}},
    {"Layer 2 Unicast:", 0x152A00BA, {{632}}},
    {"Layer 2 Multicast:", 0x152A00BE, {{648}}},
    {"Layer 2 Broadcast:", 0x152A00BC, {{640}}},
    {"Layer 3 Unicast:", 0x152A00C0, {{656}}},
    {"Layer 3 Multicast:", 0x152A00C2, {{672}}},
    {"Layer 3 Broadcast:", 0x152A00C4, {{664}}},
};

constexpr counter_line kNonzeroL3[] = {
    {"Layer 3 Routed Input Packets", 0x152A00CC, {{20}}},      {"Layer 3 Routed Input Bytes", 0x152A00CD, {{12}}},
    {"Layer 3 Routed Output Packets", 0x152A00CE, {{132}}},    {"Layer 3 Routed Output Bytes", 0x152A00CF, {{124}}},
    {"Layer 3 Unicast Input Packets", 0x152A00C0, {{100}}},    {"Layer 3 Unicast Input Bytes", 0x152A00C1, {{92}}},
    {"Layer 3 Multicast Input Packets", 0x152A00C2, {{116}}},  {"Layer 3 Multicast Input Bytes", 0x152A00C3, {{108}}},
    {"Layer 3 Unicast Output Packets", 0x152A00C6, {{212}}},   {"Layer 3 Unicast Output Bytes", 0x152A00C7, {{204}}},
    {"Layer 3 Multicast Output Packets", 0x152A00C8, {{228}}}, {"Layer 3 Multicast Output Bytes", 0x152A00C9, {{220}}},
    {"InLayer3AveragePackets", 0x152A0178, {{244}}},           {"InLayer3AverageOctets", 0x152A0177, {{236}}},
    {"OutLayer3AveragePackets", 0x152A017A, {{260}}},          {"OutLayer3AverageOctets", 0x152A0179, {{252}}},
};

constexpr counter_line kHighCapacity[] = {
    {"rxHCTotalPkts", 0x152A0439, {{8}}},
    {"txHCTotalPks", 0x152A043A, {{88}}},
    {"rxHCUnicastPkts", 0x152A043B, {{16}}},
    {"txHCUnicastPkts", 0x152A0440, {{80}}},
    {"rxHCMulticastPkts", 0x152A043C, {{24}}},
    {"txHCMulticastPkts", 0x152A0441, {{96}}},
    {"rxHCBroadcastPkts", 0x152A043D, {{32}}},
    {"txHCBroadcastPkts", 0x152A0442, {{112}}},
    {"rxHCOctets", 0x152A043E, {{48}}},
    {"txHCOctets", 0x152A0443, {{120}}},
    {"rxTxHCPkts64Octets", 0x152A0444, {{128}, {192}}},
    {"rxTxHCpkts65to127Octets", 0x152A0445, {{136}, {200}}},
    {"rxTxHCpkts128to255Octets", 0x152A0446, {{144}, {208}}},
    {"rxTxHCpkts256to511Octets", 0x152A0447, {{152}, {216}}},
    {"rxTxHCpkts512to1023Octets", 0x152A0448, {{160}, {224}}},
    {"rxTxHCpkts1024to1518Octets", 0x152A0449, {{168}, {232}}},
    {"rxTxHCpkts1519to1548Octets", 0x152A044A, {{176}, {240}}},
    {"rxHCTrunkFrames", 0x152A044B, {{184}}},
    {"txHCTrunkFrames", 0x152A043F, {{248}}},
    {"rxHCDropEvents", 0x152A044C, {{328}, {336}, {344}}},
};

constexpr counter_line kAll[] = {
    {"InPackets", 0x152A046C, {{8}}},
    {"InOctets", 0x152A046D, {{48}}},
    {"InUcastPkts", 0x152A0471, {{16}}},
    {"InMcastPkts", 0x152A0470, {{24}}},
    {"InBcastPkts", 0x152A046F, {{32}}},
    {"InJumboPkts", 0x152A0472, {{40}}},
    {"StormSuppressPkts", 0x152A0477, {{56}}},
    {"OutPackets", 0x152A0489, {{88}}},
    {"OutOctets", 0x152A048A, {{120}}},
    {"OutUcastPkts", 0x152A0482, {{80}}},
    {"OutMcastPkts", 0x152A0481, {{96}}},
    {"OutBcastPkts", 0x152A0480, {{112}}},
    {"OutJumboPkts", 0x152A0483, {{104}}},
    {"rxHCPkts64Octets", 0x152A04A6, {{128}}},
    {"rxHCPkts65to127Octets", 0x152A04A7, {{136}}},
    {"rxHCPkts128to255Octets", 0x152A04A8, {{144}}},
    {"rxHCPkts256to511Octets", 0x152A04A9, {{152}}},
    {"rxHCpkts512to1023Octets", 0x152A04AA, {{160}}},
    {"rxHCpkts1024to1518Octets", 0x152A04AB, {{168}}},
    {"rxHCpkts1519to1548Octets", 0x152A04AC, {{176}}},
    {"txHCPkts64Octets", 0x152A04AE, {{192}}},
    {"txHCPkts65to127Octets", 0x152A04AF, {{200}}},
    {"txHCPkts128to255Octets", 0x152A04B0, {{208}}},
    {"txHCPkts256to511Octets", 0x152A04B1, {{216}}},
    {"txHCpkts512to1023Octets", 0x152A04B2, {{224}}},
    {"txHCpkts1024to1518Octets", 0x152A04B3, {{232}}},
    {"txHCpkts1519to1548Octets", 0x152A04B4, {{240}}},
    {"ShortFrames", 0x152A049F, {{440}}},
    {"Collisions", 0x152A048F, {{352}}},
    {"SingleCol", 0x152A049B, {{448}}},
    {"MultiCol", 0x152A049C, {{456}}},
    {"LateCol", 0x152A0492, {{360}}},
    {"ExcessiveCol", 0x152A049D, {{464}}},
    {"LostCarrier", 0x152A0494, {{368}}},
    {"NoCarrier", 0x152A0495, {{376}}},
    {"Runts", 0x152A0476, {{280}}},
    {"Giants", 0x152A044D, {{568}}},
    {"InErrors", 0x152A0479, {{408}}},
    {"OutErrors", 0x152A048E, {{416}}},
    {"InputDiscards", 0x152A04A0, {{472}}},
    {"BadEtypeDrops", 0x152A0487, {{328}}},
    {"IfDownDrops", 0x152A0486, {{344}}},
    {"InUnknownProtos", 0x152A0488, {{336}}},
    {"txErrors", 0x152A04A2, {{488}}},
    {"rxCRC", 0x152A047A, {{288}}},
    {"Symbol", 0x152A04A3, {{576}}},
    {"txDropped", 0x152A04A4, {{584}}},
    {"TrunkFramesTx", 0x152A04B5, {{248}}},
    {"TrunkFramesRx", 0x152A04AD, {{184}}},
    {"WrongEncap", 0x152A04A1, {{480}}},
    {"Babbles", 0x152A0491, {{384}}},
    {"Watchdogs", 0x152A047F, {{392}}},
    {"ECC", 0x152A047B, {{296}}},
    {"Overruns", 0x152A047D, {{304}}},
    {"Underruns", 0x152A048B, {{312}}},
    {"Dribbles", 0x152A0485, {{400}}},
    {"Deferred", 0x152A0493, {{424}}},
    {"Jabbers", 0x152A049E, {{432}}},
    {"NoBuffer", 0x152A046E, {{272}}},
    {"Ignored", 0x152A047E, {{320}}},
    {"bpduOutLost", 0x152A04B6, {{496}}},
    {"cos0OutLost", 0x152A04B7, {{504}}},
    {"cos1OutLost", 0x152A04B8, {{512}}},
    {"cos2OutLost", 0x152A04B9, {{520}}},
    {"cos3OutLost", 0x152A04BA, {{528}}},
    {"cos4OutLost", 0x152A04BB, {{536}}},
    {"cos5OutLost", 0x152A04BC, {{544}}},
    {"cos6OutLost", 0x152A04BD, {{552}}},
    {"cos7OutLost", 0x152A04BE, {{560}}},
    {"RxPause", 0x152A0484, {{600}}},
    {"TxPause", 0x152A0496, {{608}}},
    {"Resets", 0x152A0490, {{616}}},
    {"SQETest", 0x152A04A5, {{624}}},
};

constexpr counter_line kAllL3[] = {
    {"InLayer3Routed", 0x152A0464, {{20}}},          {"InLayer3RoutedOctets", 0x152A0465, {{12}}},
    {"OutLayer3Routed", 0x152A0466, {{132}}},        {"OutLayer3RoutedOctets", 0x152A0467, {{124}}},
    {"OutLayer3Unicast", 0x152A045E, {{212}}},       {"OutLayer3UnicastOctets", 0x152A045F, {{204}}},
    {"OutLayer3Multicast", 0x152A0460, {{228}}},     {"OutLayer3MulticastOctets", 0x152A0461, {{220}}},
    {"InLayer3Unicast", 0x152A0458, {{100}}},        {"InLayer3UnicastOctets", 0x152A0459, {{92}}},
    {"InLayer3Multicast", 0x152A045A, {{116}}},      {"InLayer3MulticastOctets", 0x152A045B, {{108}}},
    {"InLayer3AverageOctets", 0x152A0468, {{236}}},  {"InLayer3AveragePackets", 0x152A0469, {{244}}},
    {"OutLayer3AverageOctets", 0x152A046A, {{252}}}, {"OutLayer3AveragePackets", 0x152A046B, {{260}}},
};

// Members of the record that no line of the non-zero list shows.
constexpr wire_counter kNotShown[] = {
    {4, 4},   // time of the last clearing
    {64},     // rates
    {72},     //
    {256},    //
    {264},    //
    {568},    // giants
    {592},    // deferred, in its other spelling
    {680, 4}  // status of the provider
};

// Members of the layer-3 counters that no list shows.
constexpr wire_counter kLayer3NotShown[] = {{28}, {36}, {44},  {52},     {60},  {68},
                                            {76}, {84}, {140}, {268, 4}, {272}, {280}};

statscl_portcl_stats_msg_t record_of(if_index_t if_index) {
  statscl_portcl_stats_msg_t stats{};
  stats.ifidx = if_index;
  return stats;
}

statscl_portcl_stats_msg_t full_record(if_index_t if_index, std::span<const counter_line> lines) {
  statscl_portcl_stats_msg_t stats = record_of(if_index);
  fill(stats, lines);
  return stats;
}

pfstat_key_cntrs_t key_of(uint32 flags) {
  pfstat_key_cntrs_t pfstats;
  std::memset(&pfstats, 0, sizeof pfstats);
  pfstats.key.key_flags = flags;
  return pfstats;
}

pfstat_key_cntrs_t full_layer3(uint32 flags) {
  pfstat_key_cntrs_t pfstats = key_of(flags);
  fill(pfstats, kNonzeroL3);
  return pfstats;
}

constexpr uint32 kOtherFlags[] = {0, 4, 0x10002, 0xFFFFFFFF};  // neither a layer alone nor both

// ---- What is not zero ----------------------------------------------------------------------------------------------

TEST(EthNonzeroList, AllCountersStandInTheirOrder) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = full_record(kListPort, kNonzero);
  pm_cli_show_common_eth_counters_detailed(platform.output(), nullptr, &stats);

  EXPECT_EQ(platform.text(), "Ethernet1/1\n" + nonzero_lines(kNonzero) + "\n");
  Tuples bound = {{0x0C2A0085, kListPort}};
  append_tuples(bound, kNonzero);
  EXPECT_EQ(platform.tuples(), bound);
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_EQ(platform.short_rows, 0U);
  EXPECT_EQ(platform.sends, 0U);
}

TEST(EthNonzeroList, CrcOfWhatWasSentIsASecondLineOfOutputErrors) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = record_of(kListPort);
  stats.mac.errors.crc_tx = 9;
  pm_cli_show_common_eth_counters_detailed(platform.output(), nullptr, &stats);

  EXPECT_EQ(platform.text(),
            "Ethernet1/1\n"
            "  Output Errors:                                        9\n"
            "\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0085, kListPort}, {0x152A0104, 9}}));
}

TEST(EthNonzeroList, EachCounterAloneShowsTheList) {
  for (const counter_line& line : kNonzero) {
    RecordingPlatform platform;
    statscl_portcl_stats_msg_t stats = record_of(kListPort);
    put_counter(stats, line.counters[0], 0xFFFFFFFFFFFFFFFF);
    pm_cli_show_common_eth_counters_detailed(platform.output(), nullptr, &stats);
    EXPECT_EQ(platform.text(), "Ethernet1/1\n" + nonzero_line(line.label, 0xFFFFFFFFFFFFFFFF) + "\n");
    EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0085, kListPort}, {line.tuple, 0xFFFFFFFFFFFFFFFF}}));
  }
}

TEST(EthNonzeroList, HighHalvesCount) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = record_of(kListPort);
  stats.mac.ctrl.sqetest = 0x100000000;
  pm_cli_show_common_eth_counters_detailed(platform.output(), nullptr, &stats);
  EXPECT_EQ(platform.text(),
            "Ethernet1/1\n"
            "  SQETest                                      4294967296\n"
            "\n");
}

TEST(EthNonzeroList, NothingIsShownWhenAllAreZero) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = record_of(kListPort);
  for (const wire_counter& other : kNotShown) put_counter(stats, other, value_at(other));
  pm_cli_show_common_eth_counters_detailed(platform.output(), nullptr, &stats);
  EXPECT_THAT(platform.pieces, IsEmpty());
}

TEST(EthNonzeroList, NothingIsShownWithoutARecordOrAHandle) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = full_record(kListPort, kNonzero);
  pfstat_key_cntrs_t pfstats = full_layer3(2);
  pm_cli_show_common_eth_counters_detailed(platform.output(), &pfstats, nullptr);
  pm_cli_show_common_eth_counters_detailed(nullptr, &pfstats, &stats);
  pm_cli_show_eth_counters_detailed_all(platform.output(), &pfstats, nullptr);
  pm_cli_show_eth_counters_detailed_all(nullptr, &pfstats, &stats);
  pm_cli_show_L3_eth_counters_detailed(platform.output(), nullptr);
  pm_cli_show_eth_L3_counters_detailed_all(platform.output(), 3, nullptr);
  pm_cli_show_L3_eth_counters_detailed(nullptr, &pfstats);
  pm_cli_show_eth_L3_counters_detailed_all(nullptr, 3, &pfstats);
  EXPECT_THAT(platform.pieces, IsEmpty());
}

// ---- Layer 3 behind what is not zero -------------------------------------------------------------------------------

TEST(EthNonzeroList, Layer3AloneShowsTheListForTwoKeys) {
  for (const uint32 flags : {2U, 3U}) {
    RecordingPlatform platform;
    statscl_portcl_stats_msg_t stats = record_of(kListPort);
    pfstat_key_cntrs_t pfstats = full_layer3(flags);
    pm_cli_show_common_eth_counters_detailed(platform.output(), &pfstats, &stats);
    EXPECT_EQ(platform.text(), "Ethernet1/1\n" + nonzero_lines(kNonzeroL3) + "\n");
  }
}

TEST(EthNonzeroList, Layer3AloneShowsNothingForOtherKeys) {
  for (const uint32 flags : {0U, 1U, 4U, 0x10002U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    statscl_portcl_stats_msg_t stats = record_of(kListPort);
    pfstat_key_cntrs_t pfstats = full_layer3(flags);
    pm_cli_show_common_eth_counters_detailed(platform.output(), &pfstats, &stats);
    EXPECT_EQ(platform.text(), "") << flags;
  }
}

TEST(EthNonzeroList, Layer3FollowsForEveryKeyButLayer2Alone) {
  for (const uint32 flags : {0U, 2U, 3U, 4U, 0xFFFFFFFFU}) {
    RecordingPlatform platform;
    statscl_portcl_stats_msg_t stats = full_record(kListPort, kNonzero);
    pfstat_key_cntrs_t pfstats = full_layer3(flags);
    pm_cli_show_common_eth_counters_detailed(platform.output(), &pfstats, &stats);
    EXPECT_EQ(platform.text(), "Ethernet1/1\n" + nonzero_lines(kNonzero) + nonzero_lines(kNonzeroL3) + "\n") << flags;
    Tuples bound = {{0x0C2A0085, kListPort}};
    append_tuples(bound, kNonzero);
    append_tuples(bound, kNonzeroL3);
    EXPECT_EQ(platform.tuples(), bound);
  }
}

TEST(EthNonzeroList, Layer3DoesNotFollowForLayer2Alone) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = full_record(kListPort, kNonzero);
  pfstat_key_cntrs_t pfstats = full_layer3(1);
  pm_cli_show_common_eth_counters_detailed(platform.output(), &pfstats, &stats);
  EXPECT_EQ(platform.text(), "Ethernet1/1\n" + nonzero_lines(kNonzero) + "\n");
}

TEST(EthNonzeroList, SubInterfaceShowsLayer3Only) {
  for (const uint32 flags : {2U, 3U}) {
    RecordingPlatform platform;
    statscl_portcl_stats_msg_t stats = full_record(kSubInterface, kNonzero);
    pfstat_key_cntrs_t pfstats = full_layer3(flags);
    pm_cli_show_common_eth_counters_detailed(platform.output(), &pfstats, &stats);
    EXPECT_EQ(platform.text(), "Ethernet1/1.100\n" + nonzero_lines(kNonzeroL3) + "\n");
    EXPECT_EQ(platform.tuples()[0], (bound_tuple{0x0C2A0085, kSubInterface}));
  }
}

TEST(EthNonzeroList, SubInterfaceShowsNothingForOtherKeys) {
  for (const uint32 flags : kOtherFlags) {
    RecordingPlatform platform;
    statscl_portcl_stats_msg_t stats = full_record(kSubInterface, kNonzero);
    pfstat_key_cntrs_t pfstats = full_layer3(flags);
    pm_cli_show_common_eth_counters_detailed(platform.output(), &pfstats, &stats);
    EXPECT_EQ(platform.text(), "") << flags;
  }
}

TEST(EthNonzeroList, SubInterfaceShowsNothingWithoutLayer3) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = full_record(kSubInterface, kNonzero);
  pfstat_key_cntrs_t layer2 = full_layer3(1);
  pfstat_key_cntrs_t zeros = key_of(3);
  for (pfstat_key_cntrs_t* const pfstats : {static_cast<pfstat_key_cntrs_t*>(nullptr), &layer2, &zeros})
    pm_cli_show_common_eth_counters_detailed(platform.output(), pfstats, &stats);
  EXPECT_EQ(platform.text(), "");
}

TEST(Layer3List, HasNoTitle) {
  RecordingPlatform platform;
  pfstat_key_cntrs_t pfstats = full_layer3(0);
  pm_cli_show_L3_eth_counters_detailed(platform.output(), &pfstats);
  EXPECT_EQ(platform.text(), nonzero_lines(kNonzeroL3));
}

TEST(Layer3List, ShowsWhatIsNotZero) {
  RecordingPlatform platform;
  pfstat_key_cntrs_t pfstats = key_of(2);
  pfstats.cntrs.l3_cntrs.l3_average_output_bytes = 12;
  pm_cli_show_L3_eth_counters_detailed(platform.output(), &pfstats);
  EXPECT_EQ(platform.text(), "  OutLayer3AverageOctets                               12\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x152A0179, 12}}));
}

TEST(Layer3Presence, EachListedCounterAloneIsEnoughWhateverTheKey) {
  for (const counter_line& line : kNonzeroL3) {
    for (const uint32 flags : {0U, 1U, 2U, 3U}) {
      pfstat_key_cntrs_t pfstats = key_of(flags);
      put_counter(pfstats, line.counters[0], uint64{1} << 63);
      EXPECT_EQ(pm_cli_is_nonzero_pfstats(&pfstats), 1U) << line.label;
    }
  }
}

TEST(Layer3Presence, OtherCountersDoNotCount) {
  pfstat_key_cntrs_t pfstats = key_of(3);
  pfstats.status = 7;
  for (const wire_counter& other : kLayer3NotShown) put_counter(pfstats, other, value_at(other));
  EXPECT_EQ(pm_cli_is_nonzero_pfstats(&pfstats), 0U);
  EXPECT_EQ(pm_cli_is_nonzero_pfstats(nullptr), 0U);
}

// ---- All counters --------------------------------------------------------------------------------------------------

TEST(EthAllList, NumbersStartAgainInTheSecondPart) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = full_record(kListPort, kAll);
  pm_cli_show_eth_counters_detailed_all(platform.output(), nullptr, &stats);

  EXPECT_EQ(platform.text(), "Ethernet1/1\n  64 bit counters:\n" + numbered_lines(0, kHighCapacity) +
                                 "\n  All Port Counters:\n" + numbered_lines(0, kAll) + "\n");
  Tuples bound = {{0x0C2A0408, kListPort}};
  append_tuples(bound, kHighCapacity);
  append_tuples(bound, kAll);
  EXPECT_EQ(platform.tuples(), bound);
}

TEST(EthAllList, ZerosAreShown) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = record_of(kListPort);
  pm_cli_show_eth_counters_detailed_all(platform.output(), nullptr, &stats);
  EXPECT_THAT(platform.text(), StartsWith("Ethernet1/1\n"
                                          "  64 bit counters:\n"
                                          "   0.                      rxHCTotalPkts = 0\n"
                                          "   1.                       txHCTotalPks = 0\n"));
  EXPECT_EQ(platform.tuples().size(), 1U + 20U + 73U);
}

TEST(EthAllList, SumsCarryAndWrap) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = record_of(kListPort);
  stats.mac.pktflow.b64_rx = 0xFFFFFFFF;
  stats.mac.pktflow.b64_tx = 1;
  stats.mac.errors.bad_etype_drop = 0xFFFFFFFFFFFFFFFF;
  stats.mac.errors.bad_proto_drop = 3;
  stats.mac.errors.if_down_drop = 4;
  pm_cli_show_eth_counters_detailed_all(platform.output(), nullptr, &stats);
  EXPECT_EQ(platform.tuples()[1 + 10], (bound_tuple{0x152A0444, 0x100000000}));
  EXPECT_EQ(platform.tuples()[1 + 19], (bound_tuple{0x152A044C, 6}));
}

TEST(EthAllList, Layer3CountsOnForEveryKeyButLayer2Alone) {
  for (const uint32 flags : kOtherFlags) {
    RecordingPlatform platform;
    statscl_portcl_stats_msg_t stats = full_record(kListPort, kAll);
    pfstat_key_cntrs_t pfstats = full_layer3(flags);
    pm_cli_show_eth_counters_detailed_all(platform.output(), &pfstats, &stats);
    EXPECT_EQ(platform.text(), "Ethernet1/1\n  64 bit counters:\n" + numbered_lines(0, kHighCapacity) +
                                   "\n  All Port Counters:\n" + numbered_lines(0, kAll) + numbered_lines(73, kAllL3) +
                                   "\n");
  }
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = full_record(kListPort, kAll);
  pfstat_key_cntrs_t pfstats = full_layer3(1);
  pm_cli_show_eth_counters_detailed_all(platform.output(), &pfstats, &stats);
  EXPECT_EQ(platform.tuples().size(), 1U + 20U + 73U);
}

TEST(EthAllList, SubInterfaceShowsLayer3FromZeroWhateverTheKey) {
  for (const uint32 flags : {0U, 1U, 2U, 3U}) {
    RecordingPlatform platform;
    statscl_portcl_stats_msg_t stats = full_record(kSubInterface, kAll);
    pfstat_key_cntrs_t pfstats = full_layer3(flags);
    pm_cli_show_eth_counters_detailed_all(platform.output(), &pfstats, &stats);
    EXPECT_EQ(platform.text(),
              "Ethernet1/1.100\n  All Sub-Interface Port counters:\n" + numbered_lines(0, kAllL3) + "\n");
    EXPECT_EQ(platform.tuples()[0], (bound_tuple{0x0C2A0408, kSubInterface}));
  }
}

TEST(EthAllList, SubInterfaceWithoutLayer3IsShownAsAPort) {
  RecordingPlatform platform;
  statscl_portcl_stats_msg_t stats = full_record(kSubInterface, kAll);
  pm_cli_show_eth_counters_detailed_all(platform.output(), nullptr, &stats);
  EXPECT_EQ(platform.text(), "Ethernet1/1.100\n  64 bit counters:\n" + numbered_lines(0, kHighCapacity) +
                                 "\n  All Port Counters:\n" + numbered_lines(0, kAll) + "\n");
}

TEST(Layer3AllList, CountsFromAnyNumberAndBindsItsIds) {
  for (const int first : {0, 73, 95, 1000}) {
    RecordingPlatform platform;
    pfstat_key_cntrs_t pfstats = full_layer3(1);
    pm_cli_show_eth_L3_counters_detailed_all(platform.output(), first, &pfstats);
    EXPECT_EQ(platform.text(), numbered_lines(first, kAllL3));
    Tuples bound;
    append_tuples(bound, kAllL3);
    EXPECT_EQ(platform.tuples(), bound);
  }
}

}  // namespace
}  // namespace pmcli_test
