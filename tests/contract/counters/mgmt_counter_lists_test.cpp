// The lists of the counters of the management port and of loopbacks.
#include <gtest/gtest.h>

#include "contract/counters/counter_rows.h"
#include "pmcli/counters.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const if_index_t kListLoopback = loopback(4);

// Of the port manager.
constexpr counter_line kNonzeroVdc[] = {
    {"VDC Level Input Packets:", 0x152A0086, {{24}}},
    {"VDC Level Input Bytes:", 0x152A0087, {{32}}},
    {"VDC Level Input Unicast Packets:", 0x152A0088, {{48}}},
    {"VDC Level Input Multicast Packets:", 0x152A0089, {{56}}},
    {"VDC Level Input Broadcast Packets:", 0x152A008A, {{64}}},
    {"VDC Level Input Bytes Per Second:", 0x152A008B, {{40}}},
    {"VDC Level Input Packets Per Second:", 0x152A008C, {{152, 4}}},
    {"VDC Level Average Input Packets:", 0x152A008D, {{120}}},
    {"VDC Level Average Input Bytes:", 0x152A008E, {{136}}},
    {"VDC Level Output Packets:", 0x152A008F, {{72}}},
    {"VDC Level Output Bytes:", 0x152A0090, {{80}}},
    {"VDC Level Output Unicast Packets:", 0x152A0091, {{96}}},
    {"VDC Level Output Multicast Packets:", 0x152A0092, {{104}}},
    {"VDC Level Output Broadcast Packets:", 0x152A0093, {{112}}},
    {"VDC Level Output Bytes Per Second:", 0x152A0094, {{88}}},
    {"VDC Level Output Packets Per Second:", 0x152A0095, {{156, 4}}},
    {"VDC Level Average Output Packets:", 0x152A0096, {{128}}},
    {"VDC Level Average Output Bytes:", 0x152A0097, {{144}}},
};

// Of the kernel.
constexpr counter_line kNonzeroSystem[] = {
    {"Input Packets:", 0x142A041B, {{0, 4}}},          {"Input Bytes:", 0x142A041C, {{8, 4}}},
    {"Input Multicast:", 0x142A041D, {{32, 4}}},       {"Input Compressed:", 0x142A041E, {{36, 4}}},
    {"Input Errors:", 0x142A041F, {{16, 4}}},          {"Input Frame Errors:", 0x142A0420, {{44, 4}}},
    {"Input Overruns:", 0x142A0421, {{24, 4}}},        {"Input FIFO Errors:", 0x142A0422, {{48, 4}}},
    {"Output Packets:", 0x142A0423, {{4, 4}}},         {"Output Bytes:", 0x142A0424, {{12, 4}}},
    {"Output Underruns:", 0x142A0425, {{28, 4}}},      {"Output Errors:", 0x142A0426, {{20, 4}}},
    {"Output Collisions:", 0x142A0427, {{60, 4}}},     {"Output FIFO Errors:", 0x142A0428, {{56, 4}}},
    {"Output Carrier Errors:", 0x142A0429, {{52, 4}}},
};

constexpr counter_line kAllVdc[] = {
    {"VDCLevelInPackets:", 0x152A0409, {{24}}},        {"VDCLevelInOctets:", 0x152A040A, {{32}}},
    {"VDCLevelInUcastPkts:", 0x152A040B, {{48}}},      {"VDCLevelInMcastPkts:", 0x152A040C, {{56}}},
    {"VDCLevelInBcastPkts:", 0x152A040D, {{64}}},      {"VDCLevelInBytesPerSec:", 0x152A040E, {{40}}},
    {"VDCLevelInPktsPerSec:", 0x152A040F, {{152, 4}}}, {"VDCLevelAvgInPkts:", 0x152A0410, {{120}}},
    {"VDCLevelAvgInOctets:", 0x152A0411, {{136}}},     {"VDCLevelOutPackets:", 0x152A0412, {{72}}},
    {"VDCLevelOutOctets:", 0x152A0413, {{80}}},        {"VDCLevelOutUcastPkts:", 0x152A0414, {{96}}},
    {"VDCLevelOutMcastPkts:", 0x152A0415, {{104}}},    {"VDCLevelOutBcastPkts:", 0x152A0416, {{112}}},
    {"VDCLevelOutBytesPerSec:", 0x152A0417, {{88}}},   {"VDCLevelOutPktsPerSec:", 0x152A0418, {{156, 4}}},
    {"VDCLevelAvgOutPkts:", 0x152A0419, {{128}}},      {"VDCLevelAvgOutOctets:", 0x152A041A, {{144}}},
};

constexpr counter_line kAllSystem[] = {
    {"InPackets", 0x142A041B, {{0, 4}}},      {"InOctets", 0x142A041C, {{8, 4}}},
    {"InMcastPkts", 0x142A041D, {{32, 4}}},   {"OutPackets", 0x142A0423, {{4, 4}}},
    {"OutOctets", 0x142A0424, {{12, 4}}},     {"InErrors", 0x142A041F, {{16, 4}}},
    {"OutErrors", 0x142A0426, {{20, 4}}},     {"InFIFOs", 0x142A0422, {{48, 4}}},
    {"OutFIFOs", 0x142A0428, {{56, 4}}},      {"Compressed", 0x142A041E, {{36, 4}}},
    {"InFrame", 0x142A0420, {{44, 4}}},       {"Overruns", 0x142A0421, {{24, 4}}},
    {"Underruns", 0x142A0425, {{28, 4}}},     {"Collisions", 0x142A0427, {{60, 4}}},
    {"CarrierErrors", 0x142A0429, {{52, 4}}},
};

constexpr counter_line kLoopbackHighCapacity[] = {
    {"rxHCTotalPkts", 0x152A0439, {{16}}},     {"txHCTotalPkts", 0x152A043A, {{96}}},
    {"rxHCMulticastPkts", 0x152A043C, {{40}}}, {"rxHCOctets", 0x152A043E, {{24}}},
    {"txHCOctets", 0x152A0443, {{104}}},
};

constexpr counter_line kLoopbackAll[] = {
    {"InPackets", 0x152A042A, {{16}}},  {"OutPackets", 0x152A0432, {{96}}},  {"InOctets", 0x152A042B, {{24}}},
    {"OutOctets", 0x152A0433, {{104}}}, {"InMcastPkts", 0x152A042C, {{40}}}, {"InErrors", 0x152A042E, {{64}}},
    {"OutErrors", 0x152A0435, {{144}}}, {"Compressed", 0x152A042D, {{56}}},  {"InFrames", 0x152A042F, {{72}}},
    {"InFIFOs", 0x152A0431, {{88}}},    {"OutFIFOs", 0x152A0437, {{160}}},   {"Overruns", 0x152A0430, {{80}}},
    {"Underruns", 0x152A0434, {{136}}}, {"Collisions", 0x152A0436, {{152}}}, {"CarrierErrors", 0x152A0438, {{168}}},
};

// Members of the records that no list shows: times, ordinal and history; what was sent compressed.
constexpr wire_counter kVdcNotShown[] = {{0, 4}, {8}, {16, 4}, {160, 4}, {168}, {248}, {328}, {408}, {488, 4}};
constexpr wire_counter kSystemNotShown[] = {{40, 4}};

pm_if_stat full_vdc() {
  pm_if_stat stats{};
  fill(stats, kNonzeroVdc);
  return stats;
}

pm_proc_net_dev_stats_t full_system() {
  pm_proc_net_dev_stats_t stats{};
  fill(stats, kNonzeroSystem);
  return stats;
}

// ---- Management port: what is not zero -----------------------------------------------------------------------------

TEST(MgmtNonzeroList, BothRecordsStandInTheirOrder) {
  RecordingPlatform platform;
  pm_if_stat stats = full_vdc();
  pm_proc_net_dev_stats_t system = full_system();
  pm_cli_mgmt_counters_detailed(platform.output(), &stats, &system, mgmt());

  EXPECT_EQ(platform.text(), "mgmt0\n" + nonzero_lines(kNonzeroVdc) + nonzero_lines(kNonzeroSystem) + "\n");
  Tuples bound = {{0x0C2A0085, mgmt()}};
  append_tuples(bound, kNonzeroVdc);
  append_tuples(bound, kNonzeroSystem);
  EXPECT_EQ(platform.tuples(), bound);
}

TEST(MgmtNonzeroList, LabelOfThirtySixCharactersLosesItsColon) {
  RecordingPlatform platform;
  pm_if_stat stats{};
  stats.out_pps = 0xFFFFFFFF;
  pm_cli_mgmt_counters_detailed(platform.output(), &stats, nullptr, mgmt());
  EXPECT_EQ(platform.text(),
            "mgmt0\n"
            "  VDC Level Output Packets Per Second          4294967295\n"
            "\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0085, mgmt()}, {0x152A0095, 0xFFFFFFFFU}}));
}

TEST(MgmtNonzeroList, EachCounterAloneShowsTheList) {
  for (const counter_line& line : kNonzeroVdc) {
    RecordingPlatform platform;
    pm_if_stat stats{};
    put_counter(stats, line.counters[0], 7);
    pm_proc_net_dev_stats_t system{};
    pm_cli_mgmt_counters_detailed(platform.output(), &stats, &system, mgmt());
    EXPECT_EQ(platform.text(), "mgmt0\n" + nonzero_line(line.label, 7) + "\n");
  }
  for (const counter_line& line : kNonzeroSystem) {
    RecordingPlatform platform;
    pm_proc_net_dev_stats_t system{};
    put_counter(system, line.counters[0], 7);
    pm_cli_mgmt_counters_detailed(platform.output(), nullptr, &system, mgmt());
    EXPECT_EQ(platform.text(), "mgmt0\n" + nonzero_line(line.label, 7) + "\n");
  }
}

TEST(MgmtNonzeroList, NothingIsShownWhenAllAreZeroOrMissing) {
  RecordingPlatform platform;
  pm_if_stat stats{};
  pm_proc_net_dev_stats_t system{};
  for (const wire_counter& other : kVdcNotShown) put_counter(stats, other, value_at(other));
  for (const wire_counter& other : kSystemNotShown) put_counter(system, other, value_at(other));
  pm_cli_mgmt_counters_detailed(platform.output(), &stats, &system, mgmt());
  pm_cli_mgmt_counters_detailed(platform.output(), &stats, nullptr, mgmt());
  pm_cli_mgmt_counters_detailed(platform.output(), nullptr, &system, mgmt());
  pm_cli_mgmt_counters_detailed(platform.output(), nullptr, nullptr, mgmt());
  EXPECT_THAT(platform.pieces, IsEmpty());
}

// ---- Management port: all ------------------------------------------------------------------------------------------

TEST(MgmtAllList, KernelCountersCountOn) {
  RecordingPlatform platform;
  pm_if_stat stats = full_vdc();
  pm_proc_net_dev_stats_t system = full_system();
  pm_cli_mgmt_counters_detailed_all(platform.output(), &stats, &system, mgmt());

  EXPECT_EQ(platform.text(),
            "mgmt0\n  32 Bit Counters:\n" + numbered_lines(0, kAllVdc) + numbered_lines(18, kAllSystem) + "\n");
  Tuples bound = {{0x0C2A0408, mgmt()}};
  append_tuples(bound, kAllVdc);
  append_tuples(bound, kAllSystem);
  EXPECT_EQ(platform.tuples(), bound);
}

TEST(MgmtAllList, KernelCountersAloneCountFromZero) {
  RecordingPlatform platform;
  pm_proc_net_dev_stats_t system = full_system();
  pm_cli_mgmt_counters_detailed_all(platform.output(), nullptr, &system, mgmt());
  EXPECT_EQ(platform.text(), "mgmt0\n  32 Bit Counters:\n" + numbered_lines(0, kAllSystem) + "\n");
}

TEST(MgmtAllList, PortManagerCountersStandAlone) {
  RecordingPlatform platform;
  pm_if_stat stats = full_vdc();
  pm_cli_mgmt_counters_detailed_all(platform.output(), &stats, nullptr, mgmt());
  EXPECT_EQ(platform.text(), "mgmt0\n  32 Bit Counters:\n" + numbered_lines(0, kAllVdc) + "\n");
}

TEST(MgmtAllList, WithoutRecordsTitleAndEndRemain) {
  RecordingPlatform platform;
  pm_cli_mgmt_counters_detailed_all(platform.output(), nullptr, nullptr, mgmt());
  EXPECT_EQ(platform.text(), "mgmt0\n  32 Bit Counters:\n\n");
}

TEST(MgmtAllList, ZerosAreShown) {
  RecordingPlatform platform;
  pm_if_stat stats{};
  pm_cli_mgmt_counters_detailed_all(platform.output(), &stats, nullptr, mgmt());
  EXPECT_THAT(platform.text(), StartsWith("mgmt0\n"
                                          "  32 Bit Counters:\n"
                                          "   0.                 VDCLevelInPackets: = 0\n"));
  EXPECT_EQ(platform.tuples().size(), 1U + 18U);
}

// ---- Loopbacks -----------------------------------------------------------------------------------------------------

TEST(LoopbackAllList, BothPartsCountFromZero) {
  RecordingPlatform platform;
  ip_if_stats stats{};
  fill(stats, kLoopbackAll);
  pm_cli_show_loopback_counters_detailed_all(platform.output(), &stats, kListLoopback);

  EXPECT_EQ(platform.text(), "loopback4\n  64 bit counters:\n" + numbered_lines(0, kLoopbackHighCapacity) +
                                 "\n  All Port Counters:\n" + numbered_lines(0, kLoopbackAll) + "\n");
  Tuples bound = {{0x0C2A0408, kListLoopback}};
  append_tuples(bound, kLoopbackHighCapacity);
  append_tuples(bound, kLoopbackAll);
  EXPECT_EQ(platform.tuples(), bound);
}

TEST(LoopbackAllList, LargestCountersAreShown) {
  RecordingPlatform platform;
  ip_if_stats stats{};
  stats.out_pkts = 0xFFFFFFFFFFFFFFFF;
  pm_cli_show_loopback_counters_detailed_all(platform.output(), &stats, kListLoopback);
  EXPECT_THAT(platform.text(), HasSubstr("   1.                      txHCTotalPkts = 18446744073709551615\n"));
  EXPECT_THAT(platform.text(), HasSubstr("   1.                         OutPackets = 18446744073709551615\n"));
}

TEST(CounterLists, NothingIsShownWithoutAHandle) {
  RecordingPlatform platform;
  pm_if_stat stats = full_vdc();
  ip_if_stats loopback_stats{};
  pm_cli_mgmt_counters_detailed(nullptr, &stats, nullptr, mgmt());
  pm_cli_mgmt_counters_detailed_all(nullptr, &stats, nullptr, mgmt());
  pm_cli_show_loopback_counters_detailed_all(nullptr, &loopback_stats, kListLoopback);
  pm_cli_show_loopback_counters_detailed_all(platform.output(), nullptr, kListLoopback);
  EXPECT_THAT(platform.pieces, IsEmpty());
}

}  // namespace
}  // namespace pmcli_test
