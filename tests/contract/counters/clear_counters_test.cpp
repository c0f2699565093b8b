// Clearing counters that the port manager, the port-channel services and the kernel keep.
#include <gtest/gtest.h>

#include "contract/counters/clear_commands.h"
#include "contract/sample_ports.h"
#include "pm/interface_ranges.h"
#include "pmcli/clear.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

const if_index_t kPort1 = ethernet(1, 1);
const if_index_t kPort2 = ethernet(1, 2);
const if_index_t kPort3 = ethernet(1, 3);

using Requests = std::vector<std::vector<if_index_t>>;

if_index_t tunnel(uint32 number) { return numbered(IF_TYPE_FCIP, number); }

// ---- Finding the ranges --------------------------------------------------------------------------------------------

TEST(ClearRanges, AreFoundByTheTypeOrTheTokenOfTheirArgument) {
  for (const uint32 code : {0x40200001U, 0x40200002U}) {
    RecordingPlatform platform;
    clear_command by_type(platform, {only(kPort1)}, code);
    EXPECT_EQ(pm_cli_clear_counters(by_type.param), 0);
    clear_command by_token(platform, {only(kPort2)}, PARAM_TYPE_UINT32);
    by_token.argument->token_id = code;
    EXPECT_EQ(pm_cli_clear_counters(by_token.param), 0);
    EXPECT_EQ(platform.clear_requests, (Requests{{kPort1}, {kPort2}}));
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(ClearRanges, OtherArgumentsAreNone) {
  RecordingPlatform platform;
  clear_command command(platform, {only(kPort1)}, PARAM_TYPE_INT_RANGES);
  command.argument->token_id = TOKEN_CONF_INTERFACES;
  EXPECT_EQ(pm_cli_clear_counters(command.param), 1);
  EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 1);
  pm_cli_loopback_clear_counters(command.param);
  EXPECT_EQ(platform.text(), std::string(kNoRange) + kNoRange + kNoRange);
  EXPECT_EQ(platform.terminal(), platform.text());
  EXPECT_THAT(platform.loader_events, IsEmpty());
  EXPECT_THAT(platform.clear_requests, IsEmpty());
}

TEST(ClearRanges, TheFirstOfTwoCounts) {
  RecordingPlatform platform;
  clear_command command(platform, {only(kPort1)});
  intf_range_t second = command.ranges;
  second.range[0] = only(kPort2);
  platform.add_argument(command.param, PARAM_TYPE_CONF_INTERFACES, &second);
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.clear_requests, (Requests{{kPort1}}));
}

TEST(ClearRanges, AbsentArgumentsArePassedOver) {
  RecordingPlatform platform;
  clear_command command(platform, {only(kPort1)});
  param_arg_t empty = *command.argument;
  empty.arg = nullptr;
  command.param->arg_list[2] = command.param->arg_list[1];
  command.param->arg_list[1] = &empty;
  command.param->arg_list[0] = nullptr;
  command.param->parameter_count = 3;
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.clear_requests, (Requests{{kPort1}}));
}

TEST(ClearRanges, CountsBeyondTheirListsAreNotFollowed) {
  RecordingPlatform platform;
  clear_command command(platform, {only(kPort1)});
  command.param->arg_list[PARAM_MAX_ARGS - 1] = command.argument;
  command.param->arg_list[1] = nullptr;
  command.param->parameter_count = 255;
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.clear_requests.size(), 1U);

  command.param->arg_list[PARAM_MAX_ARGS - 1] = nullptr;
  EXPECT_EQ(pm_cli_clear_counters(command.param), 1);
  EXPECT_EQ(platform.text(), kNoRange);
}

TEST(ClearRanges, BehindTheCountNothingIsFound) {
  RecordingPlatform platform;
  clear_command command(platform, {only(kPort1)});
  command.param->parameter_count = 1;
  EXPECT_EQ(pm_cli_clear_counters(command.param), 1);
  command.param->parameter_count = 0;
  EXPECT_EQ(pm_cli_clear_counters(command.param), 1);
  EXPECT_EQ(platform.text(), std::string(kNoRange) + kNoRange);
}

TEST(ClearRanges, AtMostSixtyFourAreVisited) {
  RecordingPlatform platform;
  clear_command command(platform, std::vector<vsh_intf_mono_range_t>(PARAM_MAX_RANGES, only(kPort1)));
  command.ranges.range_count = 0xFFFFFFFF;
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.clear_requests.size(), 64U);
}

TEST(ClearRanges, AnEmptyListIsNoFailure) {
  RecordingPlatform platform;
  clear_command command(platform, {});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(pm_cli_eth_clear_counters(command.param), 0);
  pm_cli_loopback_clear_counters(command.param);
  EXPECT_EQ(platform.text(), "");
  EXPECT_THAT(platform.loader_events, IsEmpty());
}

TEST(ClearRanges, MissingParameterBlockIsSilent) {
  RecordingPlatform platform;
  EXPECT_EQ(pm_cli_clear_counters(nullptr), 1);
  EXPECT_EQ(pm_cli_eth_clear_counters(nullptr), 1);
  EXPECT_EQ(pm_cli_clear_port_channel_counters(nullptr), 0);
  EXPECT_EQ(pm_cli_clear_all_counters(nullptr), 0);
  pm_cli_loopback_clear_counters(nullptr);
  EXPECT_EQ(platform.text(), "");
  EXPECT_THAT(platform.calls, IsEmpty());
}

// ---- Ranges at the port manager ------------------------------------------------------------------------------------

TEST(ClearAtPortManager, EachRangeIsOneRequest) {
  RecordingPlatform platform;
  clear_command command(platform, {{kPort1, kPort3},
                                   only(fibre_channel(2, 7)),
                                   {port_channel(1), port_channel(2)},
                                   {sub_interface(kPort1, 10), sub_interface(kPort1, 11)}});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.clear_requests, (Requests{{kPort1, kPort2, kPort3},
                                               {fibre_channel(2, 7)},
                                               {port_channel(1), port_channel(2)},
                                               {sub_interface(kPort1, 10), sub_interface(kPort1, 11)}}));
  EXPECT_EQ(platform.text(), "");
}

TEST(ClearAtPortManager, RangesThatCannotBeCountedArePassedOver) {
  RecordingPlatform platform;
  clear_command command(platform, {{loopback(1), loopback(2)},
                                   {kPort3, kPort1},
                                   {ethernet(1, 1), ethernet(2, 1)},
                                   {kPort1, fibre_channel(1, 1)},
                                   only(vethernet(1)),
                                   only(satellite(100, 1, 1)),
                                   only(kPort2)});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.clear_requests, (Requests{{kPort2}}));
  EXPECT_EQ(platform.text(), "");
}

TEST(ClearAtPortManager, ARangeHoldsAtMost65536) {
  RecordingPlatform platform;
  clear_command command(platform, {{tunnel(1), tunnel(65536)}, {tunnel(1), tunnel(65537)}});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  ASSERT_EQ(platform.clear_requests.size(), 1U);
  EXPECT_EQ(platform.clear_requests[0].size(), 65536U);
  EXPECT_EQ(platform.clear_requests[0].front(), tunnel(1));
  EXPECT_EQ(platform.clear_requests[0].back(), tunnel(65536));
}

// Tunnels are counted in any order, so that their count wraps: to 0, and to more than anybody believes.
TEST(ClearAtPortManager, WrappedCountsArePassedOver) {
  RecordingPlatform platform;
  clear_command command(platform, {{tunnel(5), tunnel(4)}, {tunnel(5), tunnel(2)}});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_THAT(platform.clear_requests, IsEmpty());
  EXPECT_EQ(platform.count("malloc"), 0U);
}

// The number of slots is asked for once in the life of the process; tests that count calls have that behind them.
void know_the_slots() {
  RecordingPlatform platform;
  uint32 count = 0;
  pm_get_num_ports_in_if_index_range(kPort1, kPort1, &count);
}

TEST(ClearAtPortManager, InterfacesThatCannotBeNamedAreZero) {
  know_the_slots();
  const std::vector<std::string> calls = [] {
    RecordingPlatform platform;
    clear_command command(platform, {{kPort1, kPort3}});
    pm_cli_clear_counters(command.param);
    return platform.calls;
  }();
  uint32 set_calls = 0;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    if (calls[i] != "if_index_set_port") continue;
    RecordingPlatform platform;
    platform.fail_call(static_cast<uint32>(i) + 1, PM_ERR_GENERAL);
    clear_command command(platform, {{kPort1, kPort3}});
    EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
    std::vector<if_index_t> expected = {kPort1, kPort2, kPort3};
    expected[set_calls++] = 0;
    EXPECT_EQ(platform.clear_requests, (Requests{expected}));
  }
  EXPECT_EQ(set_calls, 3U);
}

TEST(ClearAtPortManager, UnreadableKindStopsTheCommand) {
  know_the_slots();
  RecordingPlatform counting;
  const std::vector<std::string> calls = [&counting] {
    clear_command command(counting, {only(kPort1)});
    pm_cli_clear_counters(command.param);
    return counting.calls;
  }();
  // The kind is asked for while counting, and once more when the range is counted.
  const auto malloc_call = std::find(calls.begin(), calls.end(), "malloc");
  ASSERT_NE(malloc_call, calls.end());
  ASSERT_EQ(*(malloc_call - 1), "if_index_get_type");
  const auto last_kind = static_cast<uint32>(malloc_call - calls.begin());
  counting.clear_output();
  counting.clear_requests.clear();

  counting.fail_call(static_cast<uint32>(calls.size()) + last_kind, PM_ERR_GENERAL);
  clear_command command(counting, {only(kPort1), only(kPort2)});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 1);
  EXPECT_EQ(counting.failed_call(), "if_index_get_type");
  EXPECT_THAT(counting.clear_requests, IsEmpty());
  EXPECT_EQ(counting.text(), "");
}

TEST(ClearAtPortManager, ExhaustedHeapStopsTheCommand) {
  RecordingPlatform platform;
  platform.fail_with("malloc");
  clear_command command(platform, {{kPort1, kPort3}, only(kPort1)});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 1);
  EXPECT_EQ(platform.text(),
            "(Error) Malloc Failure in clear.cpp[2392] for size 12\n"
            "pm_cli_clear_counters: malloc failure, size(12)\n");
  EXPECT_EQ(platform.terminal(), platform.text());
  EXPECT_THAT(platform.clear_requests, IsEmpty());
}

TEST(ClearAtPortManager, ManagementPortIsClearedAtTheKernel) {
  RecordingPlatform platform;
  clear_command command(platform, {only(mgmt(3)), only(kPort1)});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.cleared, (Cleared{"pm_clear_interface_counters mgmt3 eth3"}));
  EXPECT_EQ(platform.clear_requests, (Requests{{kPort1}}));
}

// ---- What the port manager says ------------------------------------------------------------------------------------

TEST(ClearResults, FailedRequestIsToldAndTheNextRangeCleared) {
  RecordingPlatform platform;
  platform.fail_with("pm_clear_port_counters", PM_ERR_GENERAL);
  clear_command command(platform, {only(kPort1), only(kPort2)});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.text(),
            "error: <system error 40290000> clearing counters\n"
            "error: <system error 40290000> clearing counters\n");
  EXPECT_EQ(platform.terminal(), platform.text());
  EXPECT_EQ(platform.clear_requests, (Requests{{kPort1}, {kPort2}}));
}

TEST(ClearResults, TransportFailureIsToldBeforeIt) {
  RecordingPlatform platform;
  platform.fail_with("pm_clear_port_counters");
  platform.syserr_texts[-1] = std::nullopt;
  clear_command command(platform, {only(kPort1)});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.text(), std::string(kTransportFailure) + "error:  clearing counters\n");
}

TEST(ClearResults, EachInterfaceThatFailedIsTold) {
  RecordingPlatform platform;
  platform.clear_errors = {{kPort1, PM_ERR_GENERAL}, {kPort3, -7}};
  clear_command command(platform, {{kPort1, kPort3}});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.text(),
            "error: <system error 40290000> clearing interface Ethernet1/1 counters\n"
            "error: <system error FFFFFFF9> clearing interface Ethernet1/3 counters\n");
}

octets results(uint8 count, const std::vector<std::pair<if_index_t, uint32>>& entries) {
  octets list = {count};
  for (const auto& [if_index, status] : entries) {
    for (int shift = 24; shift >= 0; shift -= 8) list.push_back(static_cast<uint8>(if_index >> shift));
    for (int shift = 24; shift >= 0; shift -= 8) list.push_back(static_cast<uint8>(status >> shift));
  }
  return list;
}

TEST(ClearResults, CountIsBelievedAsFarAsInterfacesWereNamed) {
  RecordingPlatform platform;
  platform.clear_block = results(255, {{kPort1, 0x40290000}, {kPort2, 0}, {kPort3, 0x40290003}});
  clear_command command(platform, {{kPort1, kPort3}});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.text(),
            "error: <system error 40290000> clearing interface Ethernet1/1 counters\n"
            "error: <system error 40290003> clearing interface Ethernet1/3 counters\n");
}

TEST(ClearResults, NoMoreThanTheCountIsRead) {
  RecordingPlatform platform;
  platform.clear_block = results(1, {{kPort1, 0x40290000}});
  clear_command command(platform, {{kPort1, kPort3}});
  pm_cli_clear_counters(command.param);
  EXPECT_EQ(platform.text(), "error: <system error 40290000> clearing interface Ethernet1/1 counters\n");
  platform.clear_output();
  platform.clear_block = results(0, {});
  pm_cli_clear_counters(command.param);
  EXPECT_EQ(platform.text(), "");
}

TEST(ClearResults, MissingListIsAnEmptyOne) {
  RecordingPlatform platform;
  platform.clear_block = octets();
  clear_command command(platform, {{kPort1, kPort3}});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  EXPECT_EQ(platform.text(), "");
}

TEST(ClearResults, OfHundredsOfInterfacesThoseInTheListAreTold) {
  RecordingPlatform platform;
  for (uint32 number = 1; number <= 300; ++number) platform.clear_errors[tunnel(number)] = PM_ERR_GENERAL;
  clear_command command(platform, {{tunnel(1), tunnel(300)}});
  EXPECT_EQ(pm_cli_clear_counters(command.param), 0);
  const std::string text = platform.text();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 255);
}

// ---- Port-channels -------------------------------------------------------------------------------------------------

TEST(ClearPortChannels, EthernetSwitchesHandTheCommandOn) {
  for (uint32 chassis = 0; chassis <= 30; ++chassis) {
    RecordingPlatform platform;
    platform.chassis_type = chassis;
    clear_command command(platform, {only(port_channel(1))});
    EXPECT_EQ(pm_cli_clear_port_channel_counters(command.param), 0);
    const bool is_switch = chassis == 10 || chassis == 11 || chassis == 17 || (chassis >= 19 && chassis <= 24);
    EXPECT_EQ(platform.channel_clearings.size(), is_switch ? 1U : 0U) << chassis;
    EXPECT_EQ(platform.clear_requests.size(), is_switch ? 0U : 1U) << chassis;
    if (is_switch) {
      EXPECT_EQ(platform.channel_clearings[0], command.param);
    }
  }
}

TEST(ClearPortChannels, ResultsAreNotPassedOn) {
  RecordingPlatform platform;
  platform.fail_with("pm_cli_clear_ethernet_channel_counters", PM_ERR_GENERAL);
  clear_command command(platform, {});
  EXPECT_EQ(pm_cli_clear_port_channel_counters(command.param), 0);
  platform.fail_with("pdb_get_chassis_type", PM_ERR_GENERAL);
  command.param->parameter_count = 0;
  EXPECT_EQ(pm_cli_clear_port_channel_counters(command.param), 0);
  EXPECT_EQ(platform.channel_clearings.size(), 1U);
  EXPECT_EQ(platform.text(), kNoRange);
}

TEST(ClearAllPortChannels, EachOfTheMapIsClearedAndFailuresArePrinted) {
  RecordingPlatform platform;
  platform.channel_map = {port_channel(1), port_channel(2), port_channel(7)};
  platform.clear_errors[port_channel(2)] = PM_ERR_GENERAL;
  EXPECT_EQ(pm_clear_all_port_channel_counters(RecordingPlatform::q()), 0);
  EXPECT_EQ(platform.cleared, (Cleared{"dstats_clear_counters port-channel1", "dstats_clear_counters port-channel2",
                                       "dstats_clear_counters port-channel7"}));
  EXPECT_EQ(platform.text(), "error: clearing counters\n");
  EXPECT_EQ(platform.terminal(), platform.text());
  platform.clear_output();
  platform.fail_with("dstats_clear_counters");
  EXPECT_EQ(pm_clear_all_port_channel_counters(RecordingPlatform::q()), 0);
  EXPECT_EQ(platform.cleared.size(), 6U);
  EXPECT_EQ(platform.text(), "error: clearing counters\nerror: clearing counters\nerror: clearing counters\n");
}

TEST(ClearAllPortChannels, StopsAt256) {
  RecordingPlatform platform;
  for (uint32 channel = 1; channel <= 300; ++channel) platform.channel_map.push_back(port_channel(channel));
  EXPECT_EQ(pm_clear_all_port_channel_counters(RecordingPlatform::q()), 0);
  ASSERT_EQ(platform.cleared.size(), 256U);
  EXPECT_EQ(platform.cleared.back(), "dstats_clear_counters port-channel256");
  EXPECT_EQ(platform.count("pcmap_get_next_port_channel"), 256U);
}

TEST(ClearAllPortChannels, StopsWhereTheMapDoesNotAscend) {
  RecordingPlatform platform;
  platform.channel_map = {port_channel(4), port_channel(2), port_channel(9)};
  EXPECT_EQ(pm_clear_all_port_channel_counters(RecordingPlatform::q()), 0);
  EXPECT_EQ(platform.cleared, (Cleared{"dstats_clear_counters port-channel4"}));
  platform.cleared.clear();
  platform.channel_map = {port_channel(4), port_channel(4)};
  EXPECT_EQ(pm_clear_all_port_channel_counters(RecordingPlatform::q()), 0);
  EXPECT_EQ(platform.cleared, (Cleared{"dstats_clear_counters port-channel4"}));
}

TEST(ClearAllPortChannels, EmptyMapClearsNothing) {
  RecordingPlatform platform;
  EXPECT_EQ(pm_clear_all_port_channel_counters(RecordingPlatform::q()), 0);
  EXPECT_THAT(platform.cleared, IsEmpty());
}

// ---- All of a kind -------------------------------------------------------------------------------------------------

int32 clear_kind(if_index_type_t kind) { return pm_cli_clear_all_interface_counters(kind, RecordingPlatform::q()); }

TEST(ClearKind, EachListedInterfaceIsOneRequest) {
  RecordingPlatform platform;
  platform.listings[IF_TYPE_FC] = listing_of({fibre_channel(1, 1), fibre_channel(1, 2)});
  platform.clear_errors[fibre_channel(1, 2)] = PM_ERR_GENERAL;
  EXPECT_EQ(clear_kind(IF_TYPE_FC), 0);
  EXPECT_EQ(platform.clear_requests, (Requests{{fibre_channel(1, 1)}, {fibre_channel(1, 2)}}));
  EXPECT_EQ(platform.text(), "error: <system error 40290000> clearing interface fc1/2 counters\n");
  EXPECT_EQ(platform.drops.size(), 1U);
}

TEST(ClearKind, FailedRequestsAreToldEach) {
  RecordingPlatform platform;
  platform.listings[IF_TYPE_FC] = listing_of({fibre_channel(1, 1), fibre_channel(1, 2)});
  platform.fail_with("pm_clear_port_counters");
  EXPECT_EQ(clear_kind(IF_TYPE_FC), 0);
  const std::string failure = std::string(kTransportFailure) + "error: <system error FFFFFFFF> clearing counters\n";
  EXPECT_EQ(platform.text(), failure + failure);
}

TEST(ClearKind, FailedListingIsToldAndReturned) {
  RecordingPlatform platform;
  EXPECT_EQ(clear_kind(IF_TYPE_LOOPBACK), -1);
  EXPECT_EQ(platform.mts_errors, (std::vector<std::pair<int32, int32>>{{1, 0}}));
  EXPECT_THAT(platform.drops, IsEmpty());
  platform.clear_output();
  platform.fail_with("pm_get_if_index_listing");
  EXPECT_EQ(clear_kind(IF_TYPE_LOOPBACK), -1);
  EXPECT_EQ(platform.text(), kTransportFailure);
}

TEST(ClearKind, FailedDropIsToldAndReturned) {
  RecordingPlatform platform;
  platform.listings[IF_TYPE_FC] = listing_of({fibre_channel(1, 1)});
  platform.fail_with("mts_drop");
  EXPECT_EQ(clear_kind(IF_TYPE_FC), -1);
  EXPECT_EQ(platform.clear_requests, (Requests{{fibre_channel(1, 1)}}));
  EXPECT_EQ(platform.text(), kTransportFailure);
  EXPECT_EQ(platform.drops.size(), 1U);
}

TEST(ClearKind, CountIsBelievedAsFarAsThePayloadReaches) {
  const octets lying = listing_of({fibre_channel(1, 1), fibre_channel(1, 2)}, 0xFFFFFFFF);
  for (std::size_t size = 0; size <= lying.size(); ++size) {
    RecordingPlatform platform;
    platform.listings[IF_TYPE_FC] = octets(lying.begin(), lying.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(clear_kind(IF_TYPE_FC), 0);
    EXPECT_EQ(platform.clear_requests.size(), size < 4 ? 0U : (size - 4) / 4) << size;
    EXPECT_EQ(platform.text(), "");
  }
}

TEST(ClearKind, NoMoreThanTheCountIsCleared) {
  RecordingPlatform platform;
  platform.listings[IF_TYPE_FC] = listing_of({fibre_channel(1, 1), fibre_channel(1, 2)}, 1);
  EXPECT_EQ(clear_kind(IF_TYPE_FC), 0);
  EXPECT_EQ(platform.clear_requests, (Requests{{fibre_channel(1, 1)}}));
}

TEST(ClearAll, LoopbacksComeBeforePortChannels) {
  RecordingPlatform platform;
  platform.listings[IF_TYPE_LOOPBACK] = listing_of({loopback(1), loopback(2)});
  platform.channel_map = {port_channel(1)};
  EXPECT_EQ(pm_cli_clear_all_counters(platform.show_command(0, 0)), 0);
  EXPECT_EQ(platform.cleared, (Cleared{"ip_clear_loopback_counters loopback1", "ip_clear_loopback_counters loopback2",
                                       "dstats_clear_counters port-channel1"}));
  EXPECT_EQ(platform.text(), "");
}

TEST(ClearAll, PortChannelsAreClearedWithoutLoopbacks) {
  RecordingPlatform platform;
  platform.fail_with("pm_get_if_index_listing");
  platform.channel_map = {port_channel(1)};
  EXPECT_EQ(pm_cli_clear_all_counters(platform.show_command(0, 0)), 0);
  EXPECT_EQ(platform.cleared, (Cleared{"dstats_clear_counters port-channel1"}));
  EXPECT_EQ(platform.text(), kTransportFailure);
}

// ---- Single interfaces ---------------------------------------------------------------------------------------------

TEST(ClearInband, RunsOneCommandWhateverItGives) {
  RecordingPlatform platform;
  pm_cli_inband_clear_counters();
  platform.fail_with("system", 256);
  pm_cli_inband_clear_counters();
  EXPECT_EQ(platform.shell_commands,
            (std::vector<std::string>{"echo > /proc/vexa/hw/inband/dicounts", "echo > /proc/vexa/hw/inband/dicounts"}));
  EXPECT_EQ(platform.text(), "");
}

TEST(ClearManagement, DeviceHasTheNumberOfThePort) {
  RecordingPlatform platform;
  platform.chassis_type = CHASSIS_17;
  for (const uint32 port : {0U, 1U, 255U}) pm_cli_mgmt_clear_counters(mgmt(port), RecordingPlatform::q());
  EXPECT_EQ(platform.cleared,
            (Cleared{"pm_clear_interface_counters mgmt0 eth0", "pm_clear_interface_counters mgmt1 eth1",
                     "pm_clear_interface_counters mgmt255 eth255"}));
  EXPECT_EQ(platform.text(), "");
}

TEST(ClearManagement, FailureIsTold) {
  RecordingPlatform platform;
  platform.fail_with("pm_clear_interface_counters");
  pm_cli_mgmt_clear_counters(mgmt(), RecordingPlatform::q());
  EXPECT_EQ(platform.text(),
            "clear mgmt0:\n"
            "error: pm_clear_interface_counters failed\n");
  EXPECT_EQ(platform.terminal(), platform.text());
}

TEST(ClearManagement, UnreadablePortCountsAsTheFirst) {
  RecordingPlatform platform;
  platform.fail_with("if_index_get_port", PM_ERR_GENERAL);
  pm_cli_mgmt_clear_counters(mgmt(2), RecordingPlatform::q());
  EXPECT_EQ(platform.cleared, (Cleared{"pm_clear_interface_counters mgmt2 eth0"}));
}

// ---- Every call failing in its turn --------------------------------------------------------------------------------

TEST(ClearFailures, EachHandlerReleasesWhatItTook) {
  for (const int32 error : {-1, int32{PM_ERR_GENERAL}}) {
    const uint32 of_ranges = walk_failures(
        [](RecordingPlatform& platform) {
          clear_command command(platform, {{kPort1, kPort2}, only(mgmt()), only(kPort3)});
          const int32 result = pm_cli_clear_counters(command.param);
          EXPECT_THAT(result, AnyOf(0, 1));
        },
        {}, error);
    EXPECT_GT(of_ranges, 20U);
    const uint32 of_kinds = walk_failures(
        [](RecordingPlatform& platform) {
          platform.listings[IF_TYPE_FC] = listing_of({fibre_channel(1, 1), fibre_channel(1, 2)});
          const int32 result = clear_kind(IF_TYPE_FC);
          EXPECT_THAT(result, AnyOf(0, -1));
        },
        {}, error);
    EXPECT_EQ(of_kinds, 6U);  // the listing, its payload and size, two requests, the drop
    walk_failures(
        [](RecordingPlatform& platform) {
          platform.listings[IF_TYPE_LOOPBACK] = listing_of({loopback(1)});
          platform.channel_map = {port_channel(1), port_channel(2)};
          EXPECT_EQ(pm_cli_clear_all_counters(platform.show_command(0, 0)), 0);
        },
        {}, error);
    walk_failures(
        [](RecordingPlatform& platform) {
          clear_command command(platform, {only(port_channel(1, IF_TYPE_PORT_CHANNEL))});
          EXPECT_EQ(pm_cli_clear_port_channel_counters(command.param), 0);
        },
        {}, error);
  }
}

}  // namespace
}  // namespace pmcli_test
