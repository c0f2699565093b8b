// The traffic lines by kind of interface, each from the provider of that kind.
#include <gtest/gtest.h>

#include <algorithm>

#include "contract/sample_ports.h"
#include "pmcli/interface.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const if_index_t kLoopback = loopback(0);

using Events = std::vector<std::string>;

std::string traffic_of(RecordingPlatform& platform, if_index_t if_index, pm_port_info_t port) {
  port.if_index = if_index;
  print_eth_stat_info(platform.output(), RecordingPlatform::q(), &port);
  return platform.text();
}

constexpr char kNoLoopbackTraffic[] =
    "    0 packets input 0 bytes\n"
    "    0 multicast frames 0 compressed\n"
    "    0 input errors 0 frame 0 overrun 0 fifo\n"
    "    0 packets output 0 bytes 0 underruns\n"
    "    0 output errors 0 collisions 0 fifo\n"
    "    0 out_carrier_errors\n";

// ---- Which kinds ---------------------------------------------------------------------------------------------------

TEST(TrafficByKind, KindsWithoutTrafficAreAnError) {
  struct kind_case {
    if_index_t if_index;
    const char* text;
  };
  const kind_case kCases[] = {
      {vethernet(1), "error: invalid if index type(29)\n"},
      {satellite(100, 1, 1), "error: invalid if index type(31)\n"},
      {fibre_channel(1, 1), "error: invalid if index type(1)\n"},
      {0, "error: invalid if index type(0)\n"},
  };
  for (const kind_case& kind : kCases) {
    for (const uint32 mode : {uint32{PM_PORT_MODE_ACCESS}, uint32{PM_PORT_MODE_IPS}}) {
      RecordingPlatform platform;
      EXPECT_EQ(traffic_of(platform, kind.if_index, port_record_in_mode(mode)), kind.text);
      EXPECT_EQ(platform.terminal(), kind.text);
    }
  }
}

TEST(TrafficByKind, ChannelThatCarriesFibreChannelPrintsNothing) {
  RecordingPlatform platform;
  platform.channel_eth_stats[kOldChannel] = {};
  pm_port_info_t port = port_record_in_mode(PM_PORT_MODE_IPS);
  port.phy_port_layer = 1;
  EXPECT_EQ(traffic_of(platform, kOldChannel, port), "");
  EXPECT_EQ(platform.count("pm_port_channel_get_clear_eth_stats"), 0U);
}

TEST(TrafficByKind, PortsAndChannelsWithoutAProviderPrintNothing) {
  for (const if_index_t if_index : {kPort, kChannel, kOldChannel}) {
    RecordingPlatform platform;
    EXPECT_EQ(traffic_of(platform, if_index, port_record()), "");
    EXPECT_THAT(platform.loader_events, IsEmpty());
  }
}

// ---- IPS mode ------------------------------------------------------------------------------------------------------

TEST(IpsTraffic, EveryServedKindShowsThePortManagersLines) {
  for (const if_index_t if_index : {kPort, kRoutablePort, mgmt(), kLoopback}) {
    RecordingPlatform platform;
    platform.eth_stats[if_index] = {};
    EXPECT_EQ(traffic_of(platform, if_index, port_record_in_mode(PM_PORT_MODE_IPS)), kNoTraffic);
    EXPECT_THAT(platform.loader_events, IsEmpty());
  }
}

TEST(IpsTraffic, ChannelsShowTheirMembersBelow) {
  RecordingPlatform platform;
  platform.eth_stats[kChannel] = {};
  platform.channel_members[kChannel] = {ethernet(1, 2), ethernet(1, 1)};
  EXPECT_EQ(traffic_of(platform, kChannel, port_record_in_mode(PM_PORT_MODE_IPS)),
            std::string(kNoTraffic) + "  Members in this channel: Eth1/1, Eth1/2\n");
}

TEST(IpsTraffic, OlderChannelsAskThePortChannelService) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_UNKNOWN;
  platform.channel_eth_stats[kOldChannel] = {};
  platform.channel_members[kOldChannel] = {ethernet(1, 2)};
  EXPECT_EQ(traffic_of(platform, kOldChannel, port_record_in_mode(PM_PORT_MODE_IPS)),
            std::string(kNoTraffic) + "    Member[1] : Ethernet1/2\n");
  EXPECT_EQ(platform.count("pm_get_clear_eth_stats"), 0U);
}

TEST(IpsTraffic, ChannelsOfTenGigabitFibreChannelShowTheirMembersToo) {
  const if_index_t channel = port_channel(5, IF_TYPE_ETH_PORT_CHANNEL, PC_SUBTYPE_XGFC);
  RecordingPlatform platform;
  platform.eth_stats[channel] = {};
  EXPECT_EQ(traffic_of(platform, channel, port_record_in_mode(PM_PORT_MODE_IPS)),
            std::string(kNoTraffic) + "  No members\n");
}

TEST(IpsTraffic, SubInterfacesShowNoMembers) {
  const if_index_t sub = sub_interface(kChannel, 7);
  RecordingPlatform platform;
  platform.eth_stats[sub] = {};
  EXPECT_EQ(traffic_of(platform, sub, port_record_in_mode(PM_PORT_MODE_IPS)), kNoTraffic);
  EXPECT_EQ(platform.count("get_port_channel_members"), 0U);
}

TEST(IpsTraffic, FailedFetchPrintsNothing) {
  for (const if_index_t if_index : {kPort, kChannel, kOldChannel}) {
    RecordingPlatform platform;  // whose services know no statistics
    EXPECT_EQ(traffic_of(platform, if_index, port_record_in_mode(PM_PORT_MODE_IPS)), "");
    EXPECT_EQ(platform.count("get_port_channel_members"), 0U);
  }
}

TEST(IpsTraffic, OnlyTheOperationalModeCounts) {
  RecordingPlatform platform;
  platform.eth_stats[kPort] = {};
  pm_port_info_t port = port_record();
  port.admin_port_mode = PM_PORT_MODE_IPS;
  EXPECT_EQ(traffic_of(platform, kPort, port), "");
}

// ---- Ethernet ports of kind 26 -------------------------------------------------------------------------------------

TEST(EthernetTraffic, ComesFromTheStatisticsClientOnEthernetSwitches) {
  for (uint32 chassis = 0; chassis <= 40; ++chassis) {
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    platform.port_stats[kRoutablePort] = {};
    const bool is_shown = chassis == 10 || chassis == 11 || (chassis >= 19 && chassis <= 24);
    EXPECT_EQ(traffic_of(platform, kRoutablePort, port_record()),
              is_shown ? "<statistics of Ethernet1/2, detail 0>\n" : "")
        << "chassis " << chassis;
    EXPECT_EQ(platform.loader_events,
              is_shown ? (Events{"open libstatcl.so now", "find statcl_get_port_client_stats", "close libstatcl.so"})
                       : Events{});
  }
}

TEST(EthernetTraffic, UnreadableChassisShowsNothing) {
  RecordingPlatform platform;
  platform.port_stats[kRoutablePort] = {};
  platform.fail_with("pdb_get_chassis_type", PM_ERR_GENERAL);
  EXPECT_EQ(traffic_of(platform, kRoutablePort, port_record()), "");
  EXPECT_THAT(platform.loader_events, IsEmpty());
}

TEST(EthernetTraffic, MissingLibraryIsSilent) {
  RecordingPlatform platform;
  platform.libraries.erase(STATCL_LIBRARY);
  EXPECT_EQ(traffic_of(platform, kRoutablePort, port_record()), "");
  EXPECT_EQ(platform.loader_events, (Events{"miss libstatcl.so now"}));
}

TEST(EthernetTraffic, MissingFunctionIsPrinted) {
  RecordingPlatform platform;
  platform.libraries[STATCL_LIBRARY] = {};
  platform.loader_error = "no such 100% symbol";
  EXPECT_EQ(traffic_of(platform, kRoutablePort, port_record()),
            "error: no such 100% symbol in dlsym for statcl_get_port_client_stats\n");
  EXPECT_EQ(platform.terminal(), platform.text());
}

TEST(EthernetTraffic, FunctionThatIsNullWithoutAReasonIsPrinted) {
  RecordingPlatform platform;
  platform.libraries[STATCL_LIBRARY] = {{"statcl_get_port_client_stats", nullptr}};
  EXPECT_EQ(traffic_of(platform, kRoutablePort, port_record()),
            "error: (null) in dlsym for statcl_get_port_client_stats\n");
}

TEST(EthernetTraffic, EarlierErrorOfTheLoaderDoesNotCount) {
  RecordingPlatform platform;
  platform.port_stats[kRoutablePort] = {};
  platform.earlier_loader_error = "something else";
  EXPECT_EQ(traffic_of(platform, kRoutablePort, port_record()), "<statistics of Ethernet1/2, detail 0>\n");
}

TEST(EthernetTraffic, FailedFetchPrintsNothing) {
  for (const int32 result : {-1, 1, int32{PM_ERR_GENERAL}}) {
    RecordingPlatform platform;
    platform.port_stats[kRoutablePort] = {};
    platform.fail_with("statcl_get_port_client_stats", result);
    EXPECT_EQ(traffic_of(platform, kRoutablePort, port_record()), "");
    EXPECT_EQ(platform.loader_events.back(), "close libstatcl.so");
  }
}

// The record is cleared before the provider fills it.
TEST(EthernetTraffic, ProviderGetsAClearedRecord) {
  RecordingPlatform platform;
  platform.libraries[STATCL_LIBRARY] = {
      {"statcl_get_port_client_stats", +[](if_index_t if_index, statscl_portcl_stats_msg_t* stats) -> int32 {
         const auto* const bytes = reinterpret_cast<const uint8*>(stats);
         EXPECT_TRUE(std::all_of(bytes, bytes + sizeof *stats, [](uint8 byte) { return byte == 0; }));
         stats->ifidx = if_index;
         return 0;
       }}};
  EXPECT_EQ(traffic_of(platform, kRoutablePort, port_record()), "<statistics of Ethernet1/2, detail 0>\n");
}

// ---- Loopbacks -----------------------------------------------------------------------------------------------------

ip_if_stats loopback_counters() {
  ip_if_stats stats{};
  stats.in_pkts = 0x100000001;
  stats.in_bytes = 2;
  stats.in_pkts_mcast = 3;
  stats.in_compressed = 4;
  stats.in_errors = 5;
  stats.in_frames = 6;
  stats.in_overrun = 7;
  stats.in_fifo = 8;
  stats.out_pkts = 9;
  stats.out_bytes = 10;
  stats.out_underruns = 11;
  stats.out_errors = 12;
  stats.out_collisions = 13;
  stats.out_fifo = 14;
  stats.out_carrier_errors = ~uint64{0};
  return stats;
}

TEST(LoopbackTraffic, ComesFromTheIpStatistics) {
  RecordingPlatform platform;
  platform.loopback_stats[kLoopback] = loopback_counters();

  EXPECT_EQ(traffic_of(platform, kLoopback, port_record()),
            "    4294967297 packets input 2 bytes\n"
            "    3 multicast frames 4 compressed\n"
            "    5 input errors 6 frame 7 overrun 8 fifo\n"
            "    9 packets output 10 bytes 11 underruns\n"
            "    12 output errors 13 collisions 14 fifo\n"
            "    18446744073709551615 out_carrier_errors\n");
  EXPECT_EQ(platform.loader_events,
            (Events{"open libip_stats.so now", "find ip_get_loopback_counters", "close libip_stats.so"}));
}

TEST(LoopbackTraffic, IsTheSameOnEveryChassis) {
  for (const uint32 chassis : {0U, 10U, 17U, 24U}) {
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    platform.loopback_stats[kLoopback] = {};
    EXPECT_EQ(traffic_of(platform, kLoopback, port_record()), kNoLoopbackTraffic) << chassis;
  }
}

TEST(LoopbackTraffic, MissingLibraryIsPrinted) {
  RecordingPlatform platform;
  platform.libraries.erase(IP_STATS_LIBRARY);
  EXPECT_EQ(traffic_of(platform, kLoopback, port_record()), "error: unable to open library libip_stats.so\n");
  EXPECT_EQ(platform.terminal(), platform.text());
  EXPECT_EQ(platform.loader_events, (Events{"miss libip_stats.so now"}));
}

TEST(LoopbackTraffic, MissingFunctionIsPrinted) {
  RecordingPlatform platform;
  platform.libraries[IP_STATS_LIBRARY] = {};
  EXPECT_EQ(traffic_of(platform, kLoopback, port_record()),
            "error: undefined symbol in dlsym for ip_get_loopback_counters\n");
}

// Nothing is called, and the record of zeros is shown.
TEST(LoopbackTraffic, FunctionThatIsNullWithoutAReasonIsPassedOver) {
  RecordingPlatform platform;
  platform.libraries[IP_STATS_LIBRARY] = {{"ip_get_loopback_counters", nullptr}};
  EXPECT_EQ(traffic_of(platform, kLoopback, port_record()), kNoLoopbackTraffic);
}

TEST(LoopbackTraffic, EarlierErrorOfTheLoaderDoesNotCount) {
  RecordingPlatform platform;
  platform.loopback_stats[kLoopback] = {};
  platform.earlier_loader_error = "something else";
  EXPECT_EQ(traffic_of(platform, kLoopback, port_record()), kNoLoopbackTraffic);
}

// Whether the provider succeeds is not tested: what it left is shown.
TEST(LoopbackTraffic, FailedFetchShowsWhatTheProviderLeft) {
  RecordingPlatform platform;  // which knows no loopbacks
  EXPECT_EQ(traffic_of(platform, kLoopback, port_record()), kNoLoopbackTraffic);

  platform.clear_output();
  platform.libraries[IP_STATS_LIBRARY] = {
      {"ip_get_loopback_counters", +[](mts_q_handle_t, if_index_t, ip_if_stats* stats) -> int32 {
         stats->in_pkts = 77;
         return 0;
       }}};
  EXPECT_THAT(traffic_of(platform, kLoopback, port_record()), HasSubstr("    77 packets input 0 bytes\n"));
}

// ---- The management port -------------------------------------------------------------------------------------------

pm_proc_net_dev_stats_t kernel_counters() {
  pm_proc_net_dev_stats_t stats{};
  stats.rx_packets = 0xFFFFFFFF;
  stats.tx_packets = 2;
  stats.rx_bytes = 3;
  stats.tx_bytes = 4;
  stats.rx_errors = 5;
  stats.tx_errors = 6;
  stats.rx_dropped = 7;
  stats.tx_dropped = 8;
  stats.rx_multicast = 9;
  stats.rx_compressed = 10;
  stats.tx_compressed = 11;
  stats.rx_frame_errors = 12;
  stats.rx_fifo_errors = 13;
  stats.tx_carrier_errors = 14;
  stats.tx_fifo_errors = 15;
  stats.tx_collisions = 16;
  return stats;
}

TEST(ManagementTraffic, ComesFromTheKernelDevice) {
  RecordingPlatform platform;
  platform.kernel_devices["eth1"] = kernel_counters();

  EXPECT_EQ(traffic_of(platform, mgmt(), port_record()),
            "    4294967295 packets input, 3 bytes\n"
            "    9 multicast frames, 10 compressed\n"
            "    5 input errors, 12 frame, 7 overrun, 13 fifo\n"
            "    2 packets output, 4 bytes\n"
            "    8 underrun, 6 output errors, 16 collisions\n"
            "    15 fifo, 14 carrier errors\n");
  EXPECT_EQ(platform.kernel_devices_asked, (std::vector<std::string>{"eth1"}));
}

TEST(ManagementTraffic, MissingDeviceIsPrinted) {
  RecordingPlatform platform;
  EXPECT_EQ(traffic_of(platform, mgmt(), port_record()), "No counters available.\n");
  EXPECT_EQ(platform.terminal(), platform.text());
}

}  // namespace
}  // namespace pmcli_test
