// Rates in brief as plain text, the blocks of counters of one interface, and the management port's counter displays.
#include <gtest/gtest.h>

#include "contract/sample_ports.h"
#include "pmcli/counters.h"
#include "support/both_forms.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const if_index_t kPort = ethernet(1, 1);
const if_index_t kRoutablePort = ethernet(1, 2, IF_TYPE_ETHERNET_L3);
const if_index_t kChannel = port_channel(3);
const if_index_t kOldChannel = port_channel(4, IF_TYPE_PORT_CHANNEL);
const if_index_t kLoopback = loopback(4);

constexpr vsh_user_mode_state_t kOrdinaryUser = 0;
constexpr vsh_user_mode_state_t kRestrictedUser = 2;

// Rates over five minutes: the newest sample stands in slot 7, the one that counts as its begin in slot 2.
show_eth_intf_resp_t with_rates(uint64 in_bytes, uint64 out_bytes, uint32 in_frames, uint32 out_frames) {
  show_eth_intf_resp_t response{};
  auto& newest = response.rate.stats[7];
  newest.in_bytes = in_bytes * 300;
  newest.out_bytes = out_bytes * 300;
  newest.in_frames = in_frames * 300;
  newest.out_frames = out_frames * 300;
  return response;
}

std::string brief_of(RecordingPlatform& platform, if_index_t if_index, vsh_user_mode_state_t user = kOrdinaryUser) {
  pm_cli_show_eth_port_counters_brief(platform.output(), RecordingPlatform::q(), if_index, user);
  return platform.text();
}

// ---- Rates in brief ------------------------------------------------------------------------------------------------

TEST(PlainBriefRow, ShowsMillionsOfBitsAndFramesAtTheirColumns) {
  RecordingPlatform platform;
  platform.eth_stats[kPort] = with_rates(2'500'000, 5'000'000, 41, 42);
  EXPECT_EQ(brief_of(platform, kPort), "Ethernet1/1            20       41                40       42\n");
  ASSERT_EQ(platform.pieces.size(), 1U);
  EXPECT_EQ(platform.pieces[0].format, "%s");
  EXPECT_EQ(platform.tuples(), (Tuples{{0, platform.text()}}));
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_EQ(platform.short_rows, 0U);
}

TEST(PlainBriefRow, RatesAreRoundedDown) {
  RecordingPlatform platform;
  platform.eth_stats[kPort] = with_rates(124'999, 125'000, 0, 0);
  EXPECT_EQ(brief_of(platform, kPort), "Ethernet1/1            0        0                 1        0\n");
}

TEST(PlainBriefRow, OlderChannelsAskThePortChannelService) {
  RecordingPlatform platform;
  platform.channel_eth_stats[kOldChannel] = with_rates(1'000'000, 0, 1, 2);
  platform.eth_stats[kChannel] = with_rates(2'000'000, 0, 3, 4);
  EXPECT_EQ(brief_of(platform, kOldChannel), "port-channel4          8        1                 0        2\n");
  platform.clear_output();
  EXPECT_EQ(brief_of(platform, kChannel), "port-channel3          16       3                 0        4\n");
  EXPECT_EQ(platform.count("pm_port_channel_get_clear_eth_stats"), 1U);
  EXPECT_EQ(platform.count("pm_get_clear_eth_stats"), 1U);
}

TEST(PlainBriefRow, OtherKindsShowNothingToAnybody) {
  for (const if_index_t if_index : {kRoutablePort, mgmt(), kLoopback, vethernet(1), satellite(100, 1, 1),
                                    fibre_channel(1, 1), numbered(IF_TYPE_INBAND, 0)}) {
    for (const vsh_user_mode_state_t user : {kOrdinaryUser, kRestrictedUser}) {
      RecordingPlatform platform;
      EXPECT_EQ(brief_of(platform, if_index, user), "");
      EXPECT_EQ(platform.count("pm_get_clear_eth_stats"), 0U);
    }
  }
}

TEST(PlainBriefRow, RestrictedUsersSeeNoCounters) {
  for (const if_index_t if_index : {kPort, kChannel, kOldChannel}) {
    RecordingPlatform platform;
    EXPECT_EQ(brief_of(platform, if_index, kRestrictedUser), "    Counters not available\n");
    EXPECT_EQ(platform.terminal(), platform.text());
    EXPECT_EQ(platform.count("pm_get_clear_eth_stats"), 0U);
    EXPECT_EQ(platform.count("pm_port_channel_get_clear_eth_stats"), 0U);
  }
}

TEST(PlainBriefRow, OtherUserModesSeeThem) {
  for (const vsh_user_mode_state_t user : {1U, 3U, 0x10002U}) {
    RecordingPlatform platform;
    platform.eth_stats[kPort] = {};
    EXPECT_EQ(brief_of(platform, kPort, user), "Ethernet1/1            0        0                 0        0\n");
  }
}

TEST(PlainBriefRow, FailedFetchShowsNothing) {
  for (const if_index_t if_index : {kPort, kChannel, kOldChannel}) {
    RecordingPlatform platform;
    EXPECT_EQ(brief_of(platform, if_index), "");
  }
}

TEST(PlainBriefRow, AnEmptyNameLeavesItsColumnBlank) {
  RecordingPlatform platform;
  platform.names[kPort] = "";
  platform.eth_stats[kPort] = with_rates(2'500'000, 5'000'000, 41, 42);
  EXPECT_EQ(brief_of(platform, kPort), "                       20       41                40       42\n");
}

TEST(PlainBriefRow, LongFieldsPushTheirFollowers) {
  RecordingPlatform platform;
  platform.names[kPort] = "interface-of-23-columns";
  platform.eth_stats[kPort] = with_rates(250'000'000'000'000, 0, 14'316'557, 0);
  // 2000000000 millions of bits begin at column 23 and leave 33 columns behind them.
  EXPECT_EQ(brief_of(platform, kPort), "interface-of-23-columns200000000014316557         0        0\n");
}

TEST(PlainBriefRow, ALineEndsAtItsBuffer) {
  RecordingPlatform platform;
  platform.names[kPort] = "a-name-of-seventy-nine-characters-that-no-shell-would-give-to-an-interface-8901";
  ASSERT_EQ(platform.names[kPort].size(), 79U);
  platform.eth_stats[kPort] = with_rates(61'489'146'912'365'172, 61'489'146'912'365'172, 14'316'557, 14'316'557);
  const std::string text = brief_of(platform, kPort);
  EXPECT_EQ(text.size(), 99U);
  EXPECT_EQ(text, platform.names[kPort] + "491913175298" + "14316557");
}

// ---- The block of a port or a channel ------------------------------------------------------------------------------

std::string block_of(RecordingPlatform& platform, if_index_t if_index) {
  pm_cli_show_eth_port_counters(platform.output(), RecordingPlatform::q(), if_index);
  return platform.text();
}

TEST(PortBlock, IsTheNameAnEmptyLineAndTheLongerTrafficLines) {
  RecordingPlatform platform;
  show_eth_intf_resp_t response{};
  response.if_data.ifi_ipackets = 31;
  response.if_data.ifi_iqdrops = 32;
  pm_cli_show_eth_port_stats(platform.output(), &response, kPort);
  EXPECT_EQ(platform.text(),
            "Ethernet1/1\n"
            "\n"
            "    5 minutes input rate 0 bits/sec, 0 bytes/sec, 0 frames/sec\n"
            "    5 minutes output rate 0 bits/sec, 0 bytes/sec, 0 frames/sec\n"
            "    31 packets input, 0 bytes\n"
            "      0 multicast frames, 0 broadcast frames\n"
            "      0 errors, 32 queue drops 0 if-down drops\n"
            "      0 bad ether type drop, 0 bad protocol drops\n"
            "    0 packets output, 0 bytes, 0 underruns\n"
            "      0 multicast, 0 broadcast\n"
            "      0 errors, 0 collisions, 0 arp drops, 0 if-down drops\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A01D8, kPort}}));
  EXPECT_EQ(platform.pieces.at(0).format, "%s\n\n");
}

TEST(PortBlock, EachServiceIsAskedForItsKind) {
  RecordingPlatform platform;
  platform.eth_stats[kPort] = {};
  EXPECT_THAT(block_of(platform, kPort), StartsWith("Ethernet1/1\n\n"));
  platform.clear_output();
  platform.channel_eth_stats[kOldChannel] = {};
  EXPECT_THAT(block_of(platform, kOldChannel), StartsWith("port-channel4\n\n"));
  EXPECT_EQ(platform.count("pm_get_clear_eth_stats"), 1U);
  EXPECT_EQ(platform.count("pm_port_channel_get_clear_eth_stats"), 1U);
}

TEST(PortBlock, FailedFetchIsToldOfChannelsOnly) {
  RecordingPlatform platform;
  EXPECT_EQ(block_of(platform, kPort), "");
  EXPECT_EQ(block_of(platform, kOldChannel), "No counters available.\n");
  EXPECT_EQ(platform.terminal(), platform.text());
}

TEST(PortBlock, OtherKindsShowNothing) {
  for (const if_index_t if_index : {kChannel, kRoutablePort, kLoopback, vethernet(1), fibre_channel(1, 1)}) {
    RecordingPlatform platform;
    platform.eth_stats[if_index] = {};
    EXPECT_EQ(block_of(platform, if_index), "");
    EXPECT_EQ(platform.count("pm_get_clear_eth_stats"), 0U);
  }
}

TEST(PortBlock, UnreadableKindShowsNothing) {
  RecordingPlatform platform;
  platform.fail_with("if_index_get_type", PM_ERR_NO_SUCH_INTERFACE);
  platform.eth_stats[kPort] = {};
  EXPECT_EQ(block_of(platform, kPort), "");
  EXPECT_EQ(brief_of(platform, kPort, kRestrictedUser), "");
}

// ---- The block of the management port ------------------------------------------------------------------------------

constexpr char kNoKernelTraffic[] =
    "    0 packets input, 0 bytes\n"
    "    0 multicast frames, 0 compressed\n"
    "    0 input errors, 0 frame, 0 overrun, 0 fifo\n"
    "    0 packets output, 0 bytes\n"
    "    0 underrun, 0 output errors, 0 collisions\n"
    "    0 fifo, 0 carrier errors\n";

TEST(ManagementBlock, ShowsTheCountersOfItsKernelDevice) {
  RecordingPlatform platform;
  platform.kernel_devices["eth1"] = {};
  EXPECT_EQ(block_of(platform, mgmt()), std::string("mgmt0\n") + kNoKernelTraffic);
  EXPECT_EQ(platform.tuples().at(0), (bound_tuple{0x0C2A01D8, mgmt()}));
  EXPECT_EQ(platform.kernel_devices_asked, (std::vector<std::string>{"eth1"}));
}

TEST(ManagementBlock, MissingDeviceIsTold) {
  RecordingPlatform platform;
  EXPECT_EQ(block_of(platform, mgmt()), "mgmt0\nNo counters available.\n");
  EXPECT_EQ(platform.terminal(), "No counters available.\n");
}

// ---- The block of a loopback ---------------------------------------------------------------------------------------

constexpr char kNoLoopbackTraffic[] =
    "loopback4\n"
    "    0 packets input 0 bytes\n"
    "    0 multicast frames 0 compressed\n"
    "    0 input errors 0 frame 0 overrun 0 fifo\n"
    "    0 packets output 0 bytes 0 underruns\n"
    "    0 output errors 0 collisions 0 fifo\n"
    "    0 out_carrier_errors\n";

std::string loopback_block(RecordingPlatform& platform) {
  pm_cli_show_loopback_port_counters(platform.output(), RecordingPlatform::q(), kLoopback);
  return platform.text();
}

TEST(LoopbackBlock, ShowsNameAndCounters) {
  RecordingPlatform platform;
  platform.loopback_stats[kLoopback].in_pkts = 0x100000001;
  const std::string text = loopback_block(platform);
  EXPECT_THAT(text, StartsWith("loopback4\n    4294967297 packets input 0 bytes\n"));
  EXPECT_EQ(platform.tuples().at(0), (bound_tuple{0x0C2A01D8, kLoopback}));
}

TEST(LoopbackBlock, FailedFetchShowsZeros) {
  RecordingPlatform platform;
  EXPECT_EQ(loopback_block(platform), kNoLoopbackTraffic);
  platform.clear_output();
  platform.libraries.erase(IP_STATS_LIBRARY);
  EXPECT_EQ(loopback_block(platform),
            std::string("error: unable to open library libip_stats.so\n") + kNoLoopbackTraffic);
}

TEST(LoopbackBlock, WhatAFailedFetchLeftIsShown) {
  RecordingPlatform platform;
  platform.libraries[IP_STATS_LIBRARY] = {
      {"ip_get_loopback_counters", +[](mts_q_handle_t, if_index_t, ip_if_stats* stats) -> int32 {
         stats->in_pkts = 77;
         return 0;
       }}};
  EXPECT_THAT(loopback_block(platform), HasSubstr("    77 packets input 0 bytes\n"));
}

// ---- Every call failing in its turn --------------------------------------------------------------------------------

using text_of_call = std::map<std::string, std::string>;

text_of_call walked(const walk_scenario& scenario) {
  text_of_call texts;
  walk_failures(scenario, [&](const walk_run& run) { texts[run.platform.failed_call()] = run.platform.text(); });
  return texts;
}

TEST(BlockFailures, OfAPort) {
  const text_of_call brief = walked([](RecordingPlatform& platform) {
    platform.eth_stats[kPort] = {};
    brief_of(platform, kPort);
  });
  EXPECT_EQ(brief, (text_of_call{{"", "Ethernet1/1            0        0                 0        0\n"},
                                 {"if_index_get_type", ""},
                                 {"pm_get_clear_eth_stats", ""}}));
  const text_of_call block = walked([](RecordingPlatform& platform) { block_of(platform, kOldChannel); });
  EXPECT_EQ(block, (text_of_call{{"", "No counters available.\n"},
                                 {"if_index_get_type", ""},
                                 {"pm_port_channel_get_clear_eth_stats", "No counters available.\n"}}));
}

TEST(BlockFailures, OfALoopback) {
  text_of_call block = walked([](RecordingPlatform& platform) {
    platform.loopback_stats[kLoopback] = {};
    loopback_block(platform);
  });
  EXPECT_EQ(block[""], kNoLoopbackTraffic);
  EXPECT_EQ(block["ip_get_loopback_counters"], kNoLoopbackTraffic);
  EXPECT_EQ(block["dlopen"], std::string("error: unable to open library libip_stats.so\n") + kNoLoopbackTraffic);
  EXPECT_EQ(block["dlsym"],
            std::string("error: undefined symbol in dlsym for ip_get_loopback_counters\n") + kNoLoopbackTraffic);
}

// ---- The management port's counter displays ------------------------------------------------------------------------

constexpr char kStatsFailed[] = "error: pm_get_interface_counters failed\n";
constexpr char kErrorsOfNone[] = "mgmt0             --          --          --          --          --          --\n";

std::string mgmt_display(RecordingPlatform& platform, uint32 command) {
  EXPECT_EQ(pm_cli_show_mgmt_counters(platform.output(), RecordingPlatform::q(), command, mgmt()), 0);
  EXPECT_EQ(platform.sends, 1U) << "command " << command;
  return platform.text();
}

pm_if_stat some_mgmt_counters() {
  pm_if_stat stats{};
  stats.in_pkts = 61;
  stats.in_bytes = 62;
  stats.in_pkts_ucast = 63;
  stats.in_pkts_mcast = 64;
  stats.in_pkts_bcast = 65;
  stats.out_bytes = 72;
  stats.out_pkts_ucast = 73;
  stats.out_pkts_mcast = 74;
  stats.out_pkts_bcast = 75;
  return stats;
}

pm_proc_net_dev_stats_t some_kernel_counters() {
  pm_proc_net_dev_stats_t stats{};
  stats.rx_packets = 81;
  stats.tx_carrier_errors = 82;
  return stats;
}

TEST(ManagementCounters, BlockShowsTheKernelsCounters) {
  RecordingPlatform platform;
  platform.kernel_devices["eth1"] = {};
  EXPECT_EQ(mgmt_display(platform, 3), std::string("mgmt0\n") + kNoKernelTraffic);
  EXPECT_EQ(platform.count("pm_get_interface_counters"), 0U);
}

TEST(ManagementCounters, BlockTellsWhenThereAreNone) {
  RecordingPlatform platform;
  EXPECT_EQ(mgmt_display(platform, 3), "mgmt0\nNo counters available.\n");
}

TEST(ManagementCounters, ErrorTablesFetchNothing) {
  for (const uint32 command : {18U, 52U, 55U}) {
    RecordingPlatform platform;
    platform.interface_counters[mgmt()] = some_mgmt_counters();
    EXPECT_EQ(mgmt_display(platform, command), kErrorsOfNone);
    EXPECT_EQ(platform.short_rows, 1U);
    EXPECT_THAT(platform.calls, IsEmpty());
  }
}

TEST(ManagementCounters, TrafficTables) {
  RecordingPlatform platform;
  platform.interface_counters[mgmt()] = some_mgmt_counters();
  EXPECT_EQ(mgmt_display(platform, 44),
            "mgmt0                     62                63               64               65\n");
  platform.clear_output();
  EXPECT_EQ(mgmt_display(platform, 47),
            "mgmt0                     72                73               74               75\n");
}

TEST(ManagementCounters, TrafficTablesTellAFailedFetchAndShowNoRow) {
  for (const uint32 command : {44U, 47U}) {
    RecordingPlatform platform;
    EXPECT_EQ(mgmt_display(platform, command), kStatsFailed);
    EXPECT_EQ(platform.terminal(), kStatsFailed);
    EXPECT_THAT(platform.pieces, IsEmpty());
  }
}

TEST(ManagementCounters, ListOfWhatIsNotZero) {
  RecordingPlatform platform;
  pm_if_stat stats{};
  stats.in_pkts = 61;
  platform.interface_counters[mgmt()] = stats;
  platform.kernel_devices["eth1"] = some_kernel_counters();
  EXPECT_EQ(mgmt_display(platform, 58),
            "mgmt0\n"
            "  VDC Level Input Packets:                             61\n"
            "  Input Packets:                                       81\n"
            "  Output Carrier Errors:                               82\n"
            "\n");
  EXPECT_EQ(platform.kernel_devices_asked, (std::vector<std::string>{"eth1"}));
}

TEST(ManagementCounters, ListsLeaveOutWhatCannotBeHad) {
  RecordingPlatform platform;
  platform.kernel_devices["eth1"] = some_kernel_counters();
  EXPECT_EQ(mgmt_display(platform, 58), std::string(kStatsFailed) +
                                            "mgmt0\n"
                                            "  Input Packets:                                       81\n"
                                            "  Output Carrier Errors:                               82\n"
                                            "\n");
  platform.clear_output();
  EXPECT_THAT(mgmt_display(platform, 59),
              StartsWith(std::string(kStatsFailed) + "mgmt0\n"
                                                     "  32 Bit Counters:\n"
                                                     "   0.                          InPackets = 81\n"));
  EXPECT_EQ(platform.tuples().size(), 1U + 15U);

  platform.clear_output();
  platform.kernel_devices.clear();
  platform.interface_counters[mgmt()] = some_mgmt_counters();
  EXPECT_THAT(mgmt_display(platform, 59), StartsWith("mgmt0\n  32 Bit Counters:\n   0."));
  EXPECT_EQ(platform.terminal(), "");
  EXPECT_EQ(platform.tuples().size(), 1U + 18U);
}

TEST(ManagementCounters, ListsWithoutAnyCounterSaySo) {
  for (const uint32 command : {58U, 59U}) {
    RecordingPlatform platform;
    EXPECT_EQ(mgmt_display(platform, command), "No counters available.\n");
    EXPECT_EQ(platform.terminal(), platform.text());
  }
}

TEST(ManagementCounters, ListOfAllCountsOn) {
  RecordingPlatform platform;
  platform.interface_counters[mgmt()] = some_mgmt_counters();
  platform.kernel_devices["eth1"] = some_kernel_counters();
  const std::string text = mgmt_display(platform, 59);
  EXPECT_THAT(text, HasSubstr("\n  17.              VDCLevelAvgOutOctets: = 0\n"
                              "  18.                          InPackets = 81\n"));
  EXPECT_THAT(text, HasSubstr("\n  32.                      CarrierErrors = 82\n\n"));
}

// A provider that stores something and then fails has not served.
TEST(ManagementCounters, PartlyFilledRecordsAreNotShown) {
  walk_failures(
      [](RecordingPlatform& platform) {
        platform.interface_counters[mgmt()] = some_mgmt_counters();
        platform.kernel_devices["eth1"] = some_kernel_counters();
        pm_cli_show_mgmt_counters(platform.output(), RecordingPlatform::q(), 58, mgmt());
      },
      [](const walk_run& run) {
        const std::string& failed = run.platform.failed_call();
        EXPECT_THAT(run.platform.text(), HasSubstrOnlyIf(failed != "pm_get_interface_counters", "VDC Level")) << failed;
        EXPECT_THAT(run.platform.text(), HasSubstrOnlyIf(failed != "pm_get_proc_net_dev_stats", "  Input Packets:"))
            << failed;
        EXPECT_EQ(run.platform.sends, 1U);
      });
}

TEST(ManagementCounters, OtherIdsFlushOnly) {
  for (uint32 command = 0; command <= 120; ++command) {
    switch (command) {
      case 3:
      case 18:
      case 44:
      case 47:
      case 52:
      case 55:
      case 58:
      case 59: continue;
      default: break;
    }
    RecordingPlatform platform;
    EXPECT_EQ(mgmt_display(platform, command), "");
    EXPECT_THAT(platform.calls, IsEmpty());
  }
}

}  // namespace
}  // namespace pmcli_test
