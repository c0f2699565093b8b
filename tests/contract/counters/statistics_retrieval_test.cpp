// Fetching statistics from their providers.
#include <gtest/gtest.h>

#include <cstring>

#include "pmcli/counters.h"
#include "support/failure_walk.h"
#include "support/matchers.h"
#include "support/recording_platform.h"

namespace pmcli_test {
namespace {

using events = std::vector<std::string>;

statscl_portcl_stats_msg_t port_stats(uint64 packets) {
  statscl_portcl_stats_msg_t stats{};
  stats.mac.pktflow.ingress_pkts = packets;
  return stats;
}

// A record in which a byte that nobody wrote is seen.
template <typename Record>
Record garbage() {
  Record record;
  std::memset(static_cast<void*>(&record), 0xA5, sizeof record);
  return record;
}

template <typename Record>
bool is_zero(const Record& record) {
  const Record zero{};
  return std::memcmp(&record, &zero, sizeof record) == 0;
}

template <typename Record>
bool is_garbage(const Record& record) {
  const Record before = garbage<Record>();
  return std::memcmp(&record, &before, sizeof record) == 0;
}

// ---- Ethernet ports ----

TEST(PortStatistics, ComeFromTheStatisticsClient) {
  RecordingPlatform platform;
  platform.port_stats[ethernet(1, 2)] = port_stats(77);
  auto stats = garbage<statscl_portcl_stats_msg_t>();

  EXPECT_EQ(pm_cli_get_eth_stat_info(ethernet(1, 2), &stats), 0);

  EXPECT_EQ(stats.ifidx, ethernet(1, 2));
  EXPECT_EQ(stats.mac.pktflow.ingress_pkts, 77U);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.loader_events,
            (events{"open libstatcl.so lazy", "find statcl_get_port_client_stats", "close libstatcl.so"}));
}

TEST(PortStatistics, OfSnmpComeFromTheirOwnFunction) {
  RecordingPlatform platform;
  platform.port_stats[ethernet(1, 2)] = port_stats(77);
  platform.snmp_port_stats[ethernet(1, 2)] = port_stats(88);
  auto stats = garbage<statscl_portcl_stats_msg_t>();

  EXPECT_EQ(pm_cli_get_snmp_eth_stat_info(ethernet(1, 2), &stats), 0);

  EXPECT_EQ(stats.mac.pktflow.ingress_pkts, 88U);
  EXPECT_EQ(platform.loader_events,
            (events{"open libstatcl.so lazy", "find statcl_get_port_client_snmp_stats", "close libstatcl.so"}));
}

uint64 packets_by_flag(boolean snmp_values) {
  RecordingPlatform platform;
  platform.port_stats[ethernet(1, 2)] = port_stats(77);
  platform.snmp_port_stats[ethernet(1, 2)] = port_stats(88);
  statscl_portcl_stats_msg_t stats{};
  EXPECT_EQ(pm_cli_get_common_eth_stat_info(ethernet(1, 2), &stats, snmp_values), 0);
  return stats.mac.pktflow.ingress_pkts;
}

TEST(PortStatistics, AreThoseOfSnmpOnlyForExactlyOne) {
  EXPECT_EQ(packets_by_flag(1), 88U);
  EXPECT_EQ(packets_by_flag(0), 77U);
  EXPECT_EQ(packets_by_flag(2), 77U);
  EXPECT_EQ(packets_by_flag(0xFFFFFFFF), 77U);
}

TEST(PortStatistics, ReportAMissingLibrary) {
  RecordingPlatform platform;
  platform.libraries.erase("libstatcl.so");
  auto stats = garbage<statscl_portcl_stats_msg_t>();

  EXPECT_EQ(pm_cli_get_eth_stat_info(ethernet(1, 2), &stats), -1);

  EXPECT_EQ(platform.terminal(), "error: unable to open library libstatcl.so\n");
  EXPECT_TRUE(is_zero(stats)) << "the record is zeroed first";
}

TEST(PortStatistics, ReportAMissingFunctionWithTheLoadersText) {
  RecordingPlatform platform;
  platform.libraries["libstatcl.so"] = {};
  platform.loader_error = "libstatcl.so: undefined symbol: 100%s";
  auto stats = garbage<statscl_portcl_stats_msg_t>();

  EXPECT_EQ(pm_cli_get_eth_stat_info(ethernet(1, 2), &stats), -1);

  EXPECT_EQ(platform.terminal(),
            "error: libstatcl.so: undefined symbol: 100%s in dlsym for statcl_get_port_client_stats\n");
  EXPECT_EQ(platform.loader_events.back(), "close libstatcl.so");
  EXPECT_TRUE(is_zero(stats));
}

TEST(PortStatistics, ReportAFunctionThatIsNullWithoutALoaderError) {
  RecordingPlatform platform;
  platform.libraries["libstatcl.so"]["statcl_get_port_client_snmp_stats"] = nullptr;
  statscl_portcl_stats_msg_t stats{};

  EXPECT_EQ(pm_cli_get_snmp_eth_stat_info(ethernet(1, 2), &stats), -1);

  EXPECT_EQ(platform.terminal(), "error: (null) in dlsym for statcl_get_port_client_snmp_stats\n");
}

TEST(PortStatistics, AreNotMistakenByAnEarlierLoaderError) {
  RecordingPlatform platform;
  platform.earlier_loader_error = "something else";
  platform.port_stats[ethernet(1, 2)] = port_stats(77);
  statscl_portcl_stats_msg_t stats{};

  EXPECT_EQ(pm_cli_get_eth_stat_info(ethernet(1, 2), &stats), 0);

  EXPECT_EQ(platform.text(), "");
}

TEST(PortStatistics, FailSilentlyWhenTheProviderFails) {
  for (const int32 result : {-1, 1, 0x40290037}) {
    RecordingPlatform platform;
    platform.fail_with("statcl_get_port_client_stats", result);
    auto stats = garbage<statscl_portcl_stats_msg_t>();

    EXPECT_EQ(pm_cli_get_eth_stat_info(ethernet(1, 2), &stats), -1) << result;

    EXPECT_EQ(platform.text(), "");
    EXPECT_TRUE(is_zero(stats));
    EXPECT_EQ(platform.loader_events.back(), "close libstatcl.so");
  }
}

TEST(PortStatistics, FailAtEveryStepAndCloseTheLibrary) {
  const uint32 failed = walk_failures([](RecordingPlatform& platform) {
    platform.port_stats[ethernet(1, 2)] = port_stats(77);
    statscl_portcl_stats_msg_t stats{};
    const syserr_t result = pm_cli_get_eth_stat_info(ethernet(1, 2), &stats);
    EXPECT_EQ(result, platform.failed_call().empty() ? 0 : -1);
  });
  EXPECT_EQ(failed, 3U) << "open, find, call";
}

// ---- Loopbacks ----

ip_if_stats loopback_stats(uint64 packets) {
  ip_if_stats stats{};
  stats.in_pkts = packets;
  return stats;
}

TEST(LoopbackStatistics, ComeFromTheIpStatisticsLibraryBoundAtOnce) {
  RecordingPlatform platform;
  platform.loopback_stats[loopback(3)] = loopback_stats(99);
  ip_if_stats stats{};

  EXPECT_EQ(pm_cli_get_loopback_counters(loopback(3), platform.q(), &stats), 0);

  EXPECT_EQ(stats.in_pkts, 99U);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.loader_events,
            (events{"open libip_stats.so now", "find ip_get_loopback_counters", "close libip_stats.so"}));
}

int32 provider_result = 0;
int32 provide_with_result(mts_q_handle_t, if_index_t, ip_if_stats* stats) {
  stats->in_pkts = 5;
  return provider_result;
}

TEST(LoopbackStatistics, SucceedOnlyWhenTheProviderSaysExactlyOne) {
  for (const int32 result : {0, -1, 2, 256, 1}) {
    RecordingPlatform platform;
    platform.libraries["libip_stats.so"]["ip_get_loopback_counters"] = provide_with_result;
    provider_result = result;
    ip_if_stats stats{};

    EXPECT_EQ(pm_cli_get_loopback_counters(loopback(3), platform.q(), &stats), result == 1 ? 0 : -1) << result;

    EXPECT_EQ(stats.in_pkts, 5U) << "what the provider wrote stays";
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(LoopbackStatistics, ReportAMissingLibraryAndLeaveTheRecord) {
  RecordingPlatform platform;
  platform.libraries.erase("libip_stats.so");
  auto stats = garbage<ip_if_stats>();

  EXPECT_EQ(pm_cli_get_loopback_counters(loopback(3), platform.q(), &stats), -1);

  EXPECT_EQ(platform.terminal(), "error: unable to open library libip_stats.so\n");
  EXPECT_TRUE(is_garbage(stats));
}

TEST(LoopbackStatistics, ReportAMissingFunction) {
  RecordingPlatform platform;
  platform.libraries["libip_stats.so"] = {};
  platform.loader_error = "libip_stats.so: undefined symbol: ip_get_loopback_counters";
  auto stats = garbage<ip_if_stats>();

  EXPECT_EQ(pm_cli_get_loopback_counters(loopback(3), platform.q(), &stats), -1);

  EXPECT_EQ(
      platform.terminal(),
      "error: libip_stats.so: undefined symbol: ip_get_loopback_counters in dlsym for ip_get_loopback_counters\n");
  EXPECT_EQ(platform.loader_events.back(), "close libip_stats.so");
  EXPECT_TRUE(is_garbage(stats));
}

TEST(LoopbackStatistics, FailSilentlyWithAFunctionThatIsNullWithoutALoaderError) {
  RecordingPlatform platform;
  platform.libraries["libip_stats.so"]["ip_get_loopback_counters"] = nullptr;
  auto stats = garbage<ip_if_stats>();

  EXPECT_EQ(pm_cli_get_loopback_counters(loopback(3), platform.q(), &stats), -1);

  EXPECT_EQ(platform.text(), "");
  EXPECT_TRUE(is_garbage(stats));
}

TEST(LoopbackStatistics, FailAtEveryStepAndCloseTheLibrary) {
  const uint32 failed = walk_failures([](RecordingPlatform& platform) {
    platform.loopback_stats[loopback(3)] = loopback_stats(99);
    ip_if_stats stats{};
    const syserr_t result = pm_cli_get_loopback_counters(loopback(3), platform.q(), &stats);
    EXPECT_EQ(result, platform.failed_call().empty() ? 0 : -1);
  });
  EXPECT_EQ(failed, 3U) << "open, find, call";
}

// ---- Forwarding statistics ----

TEST(ForwardingStatistics, AreZeroButForTheLastTwelveBytes) {
  RecordingPlatform platform;
  for (const boolean snmp_values : {0U, 1U}) {
    auto stats = garbage<pfstat_key_cntrs_t>();

    EXPECT_EQ(pm_cli_get_pfstat_counters(ethernet(1, 1), platform.q(), &stats, snmp_values), 0);

    const auto* const bytes = reinterpret_cast<const uint8*>(&stats);
    for (std::size_t i = 0; i < 276; ++i) ASSERT_EQ(bytes[i], 0) << i;
    for (std::size_t i = 276; i < 288; ++i) ASSERT_EQ(bytes[i], 0xA5) << i;
  }
  EXPECT_EQ(platform.text(), "");
  EXPECT_THAT(platform.calls, IsEmpty()) << "no provider is asked";
}

}  // namespace
}  // namespace pmcli_test
