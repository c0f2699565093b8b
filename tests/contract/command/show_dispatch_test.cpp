// The show handlers: what each command id selects, and the frame around it.
#include <gtest/gtest.h>

#include <cstring>

#include "contract/sample_ports.h"
#include "pmcli/command.h"
#include "pmcli/counters.h"
#include "support/matchers.h"
#include "support/vlan_libraries.h"

namespace pmcli_test {
namespace {

constexpr uint32 kMostCommand = 120;

const if_index_t kPortInModule3 = ethernet(3, 1);  // whose slot counts as 2
const if_index_t kLoopback = loopback(4);

using Events = std::vector<std::string>;
using show_handler = uint32 (*)(paraminfo_t*);

constexpr char kOnStandby[] = "This command is not enabled on Standby SUP.\n";
constexpr char kNoHandle[] = "cmd_paraminfo_to_rxhandle failed \n";
constexpr char kNotSupported[] = "Option not supported\n";

// A table of command ids: consecutive ones that do the same.
template <typename Display>
struct ids {
  uint32 first;
  uint32 last;
  Display display;
};

template <typename Display, std::size_t Rows>
Display expected(const ids<Display> (&table)[Rows], uint32 command, Display otherwise) {
  Display found = otherwise;
  uint32 matches = 0;
  for (const ids<Display>& row : table)
    if (command >= row.first && command <= row.last) {
      found = row.display;
      ++matches;
    }
  EXPECT_LE(matches, 1U) << "the table of the test names id " << command << " twice";
  return found;
}

// ---- Ethernet ------------------------------------------------------------------------------------------------------

enum class eth_display { info, unsupported, module_filter, vlan_filter, counters_brief, nothing };

// Ids that are not here go to the port's display, too, and it does not know them: "Option not supported".
constexpr ids<eth_display> kEthDisplays[] = {
    {1, 6, eth_display::info},
    {7, 7, eth_display::counters_brief},
    {8, 8, eth_display::nothing},
    {9, 10, eth_display::info},
    {13, 13, eth_display::info},
    {14, 15, eth_display::nothing},
    {18, 18, eth_display::info},
    {20, 20, eth_display::info},
    {22, 26, eth_display::info},
    {27, 27, eth_display::module_filter},
    {28, 29, eth_display::info},
    {30, 30, eth_display::module_filter},
    {31, 31, eth_display::vlan_filter},
    {32, 35, eth_display::module_filter},
    {36, 36, eth_display::info},
    {38, 40, eth_display::info},
    {42, 43, eth_display::module_filter},
    {44, 49, eth_display::info},
    {50, 51, eth_display::module_filter},
    {52, 60, eth_display::info},
    {82, 82, eth_display::nothing},
    {104, 104, eth_display::info},
    {105, 106, eth_display::nothing},
};

eth_display eth_display_of(uint32 command) { return expected(kEthDisplays, command, eth_display::unsupported); }

// An unknown port, so that a display that asks for its record says so.
constexpr char kUnknownPort[] = "error: <system error 40290037>\n";

TEST(EthernetHandler, EachIdRunsItsDisplayAndFlushesOnce) {
  for (uint32 command = 0; command <= kMostCommand; ++command) {
    SCOPED_TRACE(command);
    const eth_display display = eth_display_of(command);
    const bool asks = display == eth_display::info || display == eth_display::unsupported;
    RecordingPlatform platform;
    EXPECT_EQ(pm_cli_show_eth_port_config(platform.show_command(command, kPortInModule3)), 0U);
    EXPECT_EQ(platform.text(), asks ? kUnknownPort : "");
    EXPECT_EQ(platform.port_queries.size(), asks ? 1U : 0U);
    EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), 1U);
    EXPECT_EQ(platform.sends, 1U);
  }
}

TEST(EthernetHandler, IdsWithoutADisplayAreNotSupported) {
  for (uint32 command = 0; command <= kMostCommand; ++command) {
    RecordingPlatform platform;
    platform.ports[kPortInModule3] = port_record();
    pm_cli_show_eth_port_config(platform.show_command(command, kPortInModule3));
    EXPECT_THAT(platform.text(), HasSubstrOnlyIf(eth_display_of(command) == eth_display::unsupported, kNotSupported))
        << command;
  }
}

TEST(EthernetHandler, CommandIdIsPassedOn) {
  RecordingPlatform platform;
  platform.ports[kPortInModule3] = port_record();
  pm_cli_show_eth_port_config(platform.show_command(0xFFFFFFFF, kPortInModule3));
  EXPECT_EQ(platform.text(), kNotSupported);
}

TEST(EthernetHandler, PortManagerIsAskedOnTheQueueOfTheCommand) {
  RecordingPlatform platform;
  paraminfo_t* const command = platform.show_command(3, kPortInModule3);
  command->q = 99;
  pm_cli_show_eth_port_config(command);
  ASSERT_EQ(platform.port_queries.size(), 1U);
  EXPECT_EQ(platform.port_queries[0].q, 99);
  EXPECT_EQ(platform.port_queries[0].range.low, kPortInModule3);
  EXPECT_EQ(platform.port_queries[0].range.high, kPortInModule3);
}

// ---- Sub-interfaces ------------------------------------------------------------------------------------------------

// 0: the display does not apply to sub-interfaces.
constexpr ids<int32> kNotForSubInterfaces[] = {
    {3, 3, 0},   {6, 10, 0},  {13, 15, 0}, {18, 20, 0}, {22, 23, 0}, {29, 31, 0},
    {33, 36, 0}, {38, 40, 0}, {42, 57, 0}, {61, 61, 0}, {64, 84, 0}, {105, 106, 0},
};

TEST(SubInterfaces, SomeDisplaysDoNotApplyToThem) {
  for (uint32 command = 0; command <= kMostCommand; ++command)
    EXPECT_EQ(pm_cli_subinterface_supported(command), expected(kNotForSubInterfaces, command, 1)) << command;
  EXPECT_EQ(pm_cli_subinterface_supported(0xFFFFFFFF), 1);
}

TEST(SubInterfaces, DisplayThatDoesNotApplyTakesNoHandle) {
  for (uint32 command = 0; command <= kMostCommand; ++command) {
    SCOPED_TRACE(command);
    const bool applies = expected(kNotForSubInterfaces, command, 1) == 1;
    for (const if_index_t parent : {kPortInModule3, port_channel(3)}) {
      RecordingPlatform platform;
      EXPECT_EQ(pm_cli_show_eth_port_config(platform.show_command(command, sub_interface(parent, 100))), 0U);
      EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), applies ? 1U : 0U);
      EXPECT_EQ(platform.sends, applies ? 1U : 0U);
      if (!applies) {
        EXPECT_EQ(platform.text(), "");
        EXPECT_THAT(platform.port_queries, IsEmpty());
      }
    }
  }
}

TEST(SubInterfaces, DetailedViewIsShown) {
  RecordingPlatform platform;
  pm_cli_show_eth_port_config(platform.show_command(1, sub_interface(kPortInModule3, 100)));
  EXPECT_EQ(platform.text(), kUnknownPort);
}

// ---- Management port -----------------------------------------------------------------------------------------------

enum class mgmt_display { info, counters, ethernet, nothing };

constexpr ids<mgmt_display> kMgmtDisplays[] = {
    {1, 1, mgmt_display::info},       {3, 3, mgmt_display::counters},   {5, 5, mgmt_display::info},
    {6, 6, mgmt_display::nothing},    {8, 11, mgmt_display::nothing},   {14, 14, mgmt_display::nothing},
    {18, 18, mgmt_display::counters}, {19, 20, mgmt_display::nothing},  {22, 23, mgmt_display::nothing},
    {27, 27, mgmt_display::nothing},  {29, 35, mgmt_display::nothing},  {38, 40, mgmt_display::nothing},
    {42, 43, mgmt_display::nothing},  {44, 44, mgmt_display::counters}, {45, 46, mgmt_display::nothing},
    {47, 47, mgmt_display::counters}, {48, 51, mgmt_display::nothing},  {52, 52, mgmt_display::counters},
    {53, 54, mgmt_display::nothing},  {55, 55, mgmt_display::counters}, {56, 57, mgmt_display::nothing},
    {58, 59, mgmt_display::counters}, {62, 102, mgmt_display::nothing}, {104, 104, mgmt_display::nothing},
};

// What is printed of a port without a record and without counters.
std::string text_of_unknown_port(mgmt_display display, uint32 command) {
  switch (display) {
    case mgmt_display::info: return kUnknownPort;
    case mgmt_display::ethernet: {
      const eth_display by_ethernet = eth_display_of(command);
      return by_ethernet == eth_display::info || by_ethernet == eth_display::unsupported ? kUnknownPort : "";
    }
    case mgmt_display::counters: break;
    case mgmt_display::nothing: return "";
  }
  switch (command) {
    case 3: return "mgmt0\nNo counters available.\n";
    case 44:
    case 47: return "error: pm_get_interface_counters failed\n";
    case 58:
    case 59: return "No counters available.\n";
    default: return "mgmt0             --          --          --          --          --          --\n";  // errors
  }
}

TEST(ManagementHandler, EachIdRunsItsDisplay) {
  for (uint32 command = 0; command <= kMostCommand; ++command) {
    SCOPED_TRACE(command);
    const mgmt_display display = expected(kMgmtDisplays, command, mgmt_display::ethernet);
    RecordingPlatform platform;
    EXPECT_EQ(pm_cli_show_mgmt_port_config(platform.show_command(command, mgmt())),
              display == mgmt_display::info ? 1U : 0U);
    EXPECT_EQ(platform.text(), text_of_unknown_port(display, command));
    EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), display == mgmt_display::ethernet ? 2U : 1U);
    EXPECT_EQ(platform.sends, display == mgmt_display::nothing ? 0U : 1U);
  }
}

TEST(ManagementHandler, TheWholeCommandIsPassedOn) {
  RecordingPlatform platform;
  platform.ports[mgmt()] = port_record();
  pm_cli_show_mgmt_port_config(platform.show_command(13, mgmt()));
  EXPECT_THAT(platform.text(), HasSubstr("mgmt0\n"));
  EXPECT_THAT(platform.text(), HasSubstr("10,100,1000,auto\n"));
  EXPECT_EQ(platform.sends, 1U);
}

// ---- Loopbacks -----------------------------------------------------------------------------------------------------

enum class loopback_display { info, not_available, brief, nonzero, all, nothing };

constexpr ids<loopback_display> kLoopbackDisplays[] = {
    {3, 3, loopback_display::not_available},   {6, 6, loopback_display::nothing},
    {7, 7, loopback_display::brief},           {8, 10, loopback_display::nothing},
    {13, 14, loopback_display::nothing},       {18, 19, loopback_display::nothing},
    {22, 23, loopback_display::nothing},       {25, 25, loopback_display::nothing},
    {27, 27, loopback_display::nothing},       {29, 36, loopback_display::nothing},
    {38, 40, loopback_display::nothing},       {42, 57, loopback_display::nothing},
    {58, 58, loopback_display::nonzero},       {59, 59, loopback_display::all},
    {61, 61, loopback_display::not_available}, {62, 102, loopback_display::nothing},
    {104, 106, loopback_display::nothing},
};

const Events kOneFetch = {"open libip_stats.so now", "find ip_get_loopback_counters", "close libip_stats.so"};

// The block of counters fetches its own, though the handler fetched them before.
const Events kTwoFetches = {"open libip_stats.so now", "find ip_get_loopback_counters", "close libip_stats.so",
                            "open libip_stats.so now", "find ip_get_loopback_counters", "close libip_stats.so"};

constexpr char kLoopbackBlock[] =
    "loopback4\n"
    "    0 packets input 0 bytes\n"
    "    0 multicast frames 0 compressed\n"
    "    0 input errors 0 frame 0 overrun 0 fifo\n"
    "    0 packets output 0 bytes 0 underruns\n"
    "    0 output errors 0 collisions 0 fifo\n"
    "    0 out_carrier_errors\n";

// Of a loopback without a record, all of whose counters are 0; of the long list, how it begins.
std::string text_of_unknown_loopback(loopback_display display) {
  switch (display) {
    case loopback_display::info: return kUnknownPort;
    case loopback_display::not_available: return "This information is not available for loopback4\n";
    case loopback_display::brief: return kLoopbackBlock;
    case loopback_display::all: return "loopback4\n  64 bit counters:\n   0. ";
    case loopback_display::nonzero:
    case loopback_display::nothing: break;
  }
  return "";
}

TEST(LoopbackHandler, EachIdRunsItsDisplayAndFlushesOnce) {
  for (uint32 command = 0; command <= kMostCommand; ++command) {
    SCOPED_TRACE(command);
    const loopback_display display = expected(kLoopbackDisplays, command, loopback_display::info);
    const bool fetches = display == loopback_display::nonzero || display == loopback_display::all;
    const bool fetches_twice = display == loopback_display::brief;
    const std::string text = text_of_unknown_loopback(display);
    RecordingPlatform platform;
    platform.loopback_stats[kLoopback] = {};
    EXPECT_EQ(pm_cli_show_loopback_config(platform.show_command(command, kLoopback)), 0U);
    if (display == loopback_display::all)
      EXPECT_EQ(platform.text().substr(0, text.size()), text);
    else
      EXPECT_EQ(platform.text(), text);
    EXPECT_EQ(platform.loader_events, fetches_twice ? kTwoFetches : fetches ? kOneFetch : Events{});
    EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), 1U);
    EXPECT_EQ(platform.sends, 1U);
  }
}

// ---- Loopback counters that are not zero ---------------------------------------------------------------------------

struct counter_case {
  be64 ip_if_stats::*counter;
  const char* line;  // for the value 7
  uint32 tuple;
};

constexpr counter_case kCounters[] = {
    {&ip_if_stats::in_pkts, "  Input Packets:                                        7\n", 0x142A00A7},
    {&ip_if_stats::in_bytes, "  Input Bytes:                                          7\n", 0x142A00A8},
    {&ip_if_stats::in_pkts_mcast, "  Input Multicast:                                      7\n", 0x142A00A9},
    {&ip_if_stats::in_compressed, "  Input Compressed:                                     7\n", 0x142A00AA},
    {&ip_if_stats::in_errors, "  Input Errors:                                         7\n", 0x142A00AB},
    {&ip_if_stats::in_frames, "  Input Frame Errors:                                   7\n", 0x142A00AC},
    {&ip_if_stats::in_overrun, "  Input Overruns:                                       7\n", 0x142A00AD},
    {&ip_if_stats::in_fifo, "  Input FIFOs:                                          7\n", 0x142A00AE},
    {&ip_if_stats::out_pkts, "  Output Packets:                                       7\n", 0x142A00AF},
    {&ip_if_stats::out_bytes, "  Output Bytes:                                         7\n", 0x142A00B0},
    {&ip_if_stats::out_underruns, "  Output Underruns:                                     7\n", 0x142A00B1},
    {&ip_if_stats::out_errors, "  Output Errors:                                        7\n", 0x142A00B2},
    {&ip_if_stats::out_collisions, "  Output Collisions:                                    7\n", 0x142A00B3},
};

std::string nonzero_counters(RecordingPlatform& platform, const ip_if_stats& stats) {
  platform.loopback_stats[kLoopback] = stats;
  EXPECT_EQ(pm_cli_show_loopback_config(platform.show_command(58, kLoopback)), 0U);
  EXPECT_EQ(platform.sends, 1U);
  return platform.text();
}

TEST(LoopbackNonzero, EachCounterAloneShowsItsLine) {
  for (const counter_case& shown : kCounters) {
    RecordingPlatform platform;
    ip_if_stats stats{};
    stats.*shown.counter = 7;
    EXPECT_EQ(nonzero_counters(platform, stats), std::string("loopback4\n") + shown.line + "\n");
    EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0085, kLoopback}, {shown.tuple, 7}}));
  }
}

TEST(LoopbackNonzero, AllCountersStandInTheirOrder) {
  RecordingPlatform platform;
  ip_if_stats stats{};
  std::string expected_text = "loopback4\n";
  for (const counter_case& shown : kCounters) {
    stats.*shown.counter = 7;
    expected_text += shown.line;
  }
  EXPECT_EQ(nonzero_counters(platform, stats), expected_text + "\n");
}

TEST(LoopbackNonzero, NothingIsShownWhenAllAreZero) {
  RecordingPlatform platform;
  EXPECT_EQ(nonzero_counters(platform, {}), "");
}

TEST(LoopbackNonzero, OtherCountersDoNotCount) {
  constexpr be64 ip_if_stats::*kOthers[] = {
      &ip_if_stats::interval_start_time,
      &ip_if_stats::in_pkts_ucast,
      &ip_if_stats::in_pkts_bcast,
      &ip_if_stats::out_pkts_ucast,
      &ip_if_stats::out_pkts_mcast,
      &ip_if_stats::out_pkts_bcast,
      &ip_if_stats::out_fifo,
      &ip_if_stats::out_carrier_errors,
      &ip_if_stats::in_pkts_discard,
      &ip_if_stats::out_pkts_discard,
      &ip_if_stats::unknown_proto_pkts,
  };
  ip_if_stats stats{};
  stats.interval = 60;
  for (be64 ip_if_stats::*const other : kOthers) stats.*other = 7;
  RecordingPlatform platform;
  EXPECT_EQ(nonzero_counters(platform, stats), "");
}

TEST(LoopbackNonzero, WideValuesShowTheirLow32Bits) {
  RecordingPlatform platform;
  ip_if_stats stats{};
  stats.in_pkts = 0x123456789;
  stats.out_bytes = ~uint64{0};
  EXPECT_EQ(nonzero_counters(platform, stats),
            "loopback4\n"
            "  Input Packets:                                591751049\n"
            "  Output Bytes:                                4294967295\n"
            "\n");
  EXPECT_EQ(platform.tuples(), (Tuples{{0x0C2A0085, kLoopback}, {0x142A00A7, 0x23456789}, {0x142A00B0, 0xFFFFFFFFU}}));
}

TEST(LoopbackNonzero, WhatIsZeroOnlyInItsLowHalfIsShownAsZero) {
  RecordingPlatform platform;
  ip_if_stats stats{};
  stats.in_errors = 0x500000000;
  EXPECT_EQ(nonzero_counters(platform, stats),
            "loopback4\n"
            "  Input Errors:                                         0\n"
            "\n");
}

TEST(LoopbackNonzero, FailedFetchShowsWhatTheFetchPrints) {
  RecordingPlatform platform;
  platform.libraries.erase(IP_STATS_LIBRARY);
  ip_if_stats stats{};
  stats.in_pkts = 7;
  EXPECT_EQ(nonzero_counters(platform, stats), "error: unable to open library libip_stats.so\n");
}

// What a provider left behind before it failed is in the record all the same.
TEST(LoopbackNonzero, ResultOfTheFetchIsNotTested) {
  RecordingPlatform platform;
  platform.libraries[IP_STATS_LIBRARY] = {
      {"ip_get_loopback_counters", +[](mts_q_handle_t, if_index_t, ip_if_stats* stats) -> int32 {
         stats->in_fifo = 7;
         return 0;
       }}};
  EXPECT_THAT(nonzero_counters(platform, {}), HasSubstr("  Input FIFOs:                                          7\n"));
}

// ---- The frame -----------------------------------------------------------------------------------------------------

struct handler_case {
  show_handler handler;
  if_index_t if_index;
};

const handler_case kHandlers[] = {
    {pm_cli_show_eth_port_config, kPortInModule3},
    {pm_cli_show_sat_eth_port_config, satellite(100, 1, 1)},
    {pm_cli_show_mgmt_port_config, mgmt()},
    {pm_cli_show_loopback_config, kLoopback},
};

TEST(HandlerFrame, StandbySupervisorRefusesEveryId) {
  for (const handler_case& handler : kHandlers) {
    for (uint32 command = 0; command <= kMostCommand; ++command) {
      RecordingPlatform platform;
      paraminfo_t* const param = platform.show_command(command, handler.if_index);
      param->sup_state = 2;
      EXPECT_EQ(handler.handler(param), 0U);
      EXPECT_EQ(platform.text(), kOnStandby) << command;
      EXPECT_EQ(platform.terminal(), kOnStandby);
      EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), 0U);
      EXPECT_EQ(platform.sends, 0U);
    }
  }
}

TEST(HandlerFrame, StandbyIsToldBeforeAnythingElse) {
  RecordingPlatform platform;
  paraminfo_t* const param = platform.show_command(3, sub_interface(kPortInModule3, 1));
  param->sup_state = 2;
  param->arg_list[0] = nullptr;
  pm_cli_show_eth_port_config(param);
  EXPECT_EQ(platform.text(), kOnStandby);
}

TEST(HandlerFrame, OtherSupervisorStatesServe) {
  for (const uint32 state : {0U, 1U, 3U, 0x102U}) {
    RecordingPlatform platform;
    paraminfo_t* const param = platform.show_command(1, kPortInModule3);
    param->sup_state = state;
    pm_cli_show_eth_port_config(param);
    EXPECT_EQ(platform.text(), kUnknownPort) << state;
  }
}

TEST(HandlerFrame, MissingHandleIsToldForEveryId) {
  for (const handler_case& handler : kHandlers) {
    for (uint32 command = 0; command <= kMostCommand; ++command) {
      RecordingPlatform platform;
      platform.fail_with("cmd_paraminfo_to_rxhandle");
      EXPECT_EQ(handler.handler(platform.show_command(command, handler.if_index)), 0U);
      EXPECT_EQ(platform.text(), kNoHandle) << command;
      EXPECT_EQ(platform.terminal(), kNoHandle);
      EXPECT_EQ(platform.sends, 0U);
      EXPECT_THAT(platform.port_queries, IsEmpty());
      EXPECT_THAT(platform.loader_events, IsEmpty());
    }
  }
}

TEST(HandlerFrame, SatelliteHandlerIsTheEthernetOne) {
  RecordingPlatform platform;
  platform.ports[satellite(100, 1, 1)] = port_record();
  EXPECT_EQ(pm_cli_show_sat_eth_port_config(platform.show_command(16, satellite(100, 1, 1))), 0U);
  EXPECT_EQ(platform.text(), kNotSupported);
  EXPECT_EQ(platform.sends, 1U);
}

// ---- Module filter -------------------------------------------------------------------------------------------------

constexpr uint32 kModuleCommands[] = {27, 30, 32, 33, 34, 35, 42, 43, 50, 51};

bool is_shown_in_module(RecordingPlatform& platform, paraminfo_t* param) {
  EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
  EXPECT_EQ(platform.sends, 1U);
  EXPECT_EQ(platform.text(), platform.port_queries.empty() ? "" : kUnknownPort);
  return !platform.port_queries.empty();
}

TEST(ModuleFilter, ModulesCountFromOneAndSlotsFromZero) {
  for (const uint32 command : kModuleCommands) {
    for (const uint32 module : {0U, 1U, 2U, 3U, 4U, 0x10003U, 0xFFFFFFFFU}) {
      RecordingPlatform platform;
      uint32 named_module = module;
      paraminfo_t* const param = platform.show_command(command, kPortInModule3);
      platform.add_argument(param, PARAM_TYPE_UINT32, &named_module);
      EXPECT_EQ(is_shown_in_module(platform, param), module == 3) << "id " << command << ", module " << module;
    }
  }
}

TEST(ModuleFilter, ShownPortKeepsItsCommandId) {
  RecordingPlatform platform;
  platform.ports[kPortInModule3] = port_record();
  uint32 module = 3;
  paraminfo_t* const param = platform.show_command(34, kPortInModule3);
  platform.add_argument(param, PARAM_TYPE_UINT32, &module);
  pm_cli_show_eth_port_config(param);
  EXPECT_EQ(platform.text(), "stats unavailable\n");  // the flow-control row, of a port without statistics
}

TEST(ModuleFilter, OtherTypesOfArgumentShowNothing) {
  for (const param_type_t type : {param_type_t{PARAM_TYPE_INT_RANGES}, param_type_t{0}, param_type_t{0x40100002}}) {
    RecordingPlatform platform;
    uint32 module[64] = {3};
    paraminfo_t* const param = platform.show_command(27, kPortInModule3);
    platform.add_argument(param, type, module);
    EXPECT_FALSE(is_shown_in_module(platform, param));
  }
}

TEST(ModuleFilter, PortWithoutASlotIsNotShown) {
  RecordingPlatform platform;
  uint32 module = 1;
  paraminfo_t* const param = platform.show_command(27, port_channel(3));
  platform.add_argument(param, PARAM_TYPE_UINT32, &module);
  EXPECT_FALSE(is_shown_in_module(platform, param));
}

TEST(ModuleFilter, UnreadableSlotIsNotShown) {
  RecordingPlatform platform;
  platform.fail_with("if_index_get_slot", PM_ERR_GENERAL);
  uint32 module = 3;
  paraminfo_t* const param = platform.show_command(27, kPortInModule3);
  platform.add_argument(param, PARAM_TYPE_UINT32, &module);
  EXPECT_FALSE(is_shown_in_module(platform, param));
}

TEST(ModuleFilter, NumberNeedNotBeAligned) {
  RecordingPlatform platform;
  alignas(uint32) uint8 bytes[8] = {};
  const uint32 module = 3;
  std::memcpy(bytes + 1, &module, sizeof module);
  paraminfo_t* const param = platform.show_command(27, kPortInModule3);
  platform.add_argument(param, PARAM_TYPE_UINT32, bytes + 1);
  EXPECT_TRUE(is_shown_in_module(platform, param));
}

// ---- VLAN filter ---------------------------------------------------------------------------------------------------

vsh_int_multi_range_t vlans(std::initializer_list<vsh_int_mono_range_t> ranges) {
  vsh_int_multi_range_t list{};
  list.size = sizeof list;
  for (const vsh_int_mono_range_t& range : ranges) list.range[list.range_count++] = range;
  return list;
}

TEST(VlanFilter, OtherTypesOfArgumentShowNothing) {
  for (const param_type_t type : {param_type_t{PARAM_TYPE_UINT32}, param_type_t{0}, param_type_t{0x40100009}}) {
    RecordingPlatform platform;
    vsh_int_multi_range_t list = vlans({{0, 4095}});
    paraminfo_t* const param = platform.show_command(31, kPortInModule3);
    platform.add_argument(param, type, &list);
    EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
    EXPECT_EQ(platform.text(), "");
    EXPECT_THAT(platform.loader_events, IsEmpty());
    EXPECT_EQ(platform.sends, 1U);
  }
}

TEST(VlanFilter, MissingLibraryShowsNothing) {
  RecordingPlatform platform;
  platform.libraries.erase(VLAN_MGR_LIBRARY);
  vsh_int_multi_range_t list = vlans({{0, 4095}});
  paraminfo_t* const param = platform.show_command(31, kPortInModule3);
  platform.add_argument(param, PARAM_TYPE_INT_RANGES, &list);
  EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
  EXPECT_EQ(platform.text(), "");
  EXPECT_EQ(platform.loader_events, (Events{"miss libvlan_mgr.so lazy"}));
  EXPECT_EQ(platform.sends, 1U);
}

// The VLAN manager is there, but cannot be asked.
TEST(VlanFilter, FailedQueryShowsNothingAndClosesTheLibrary) {
  RecordingPlatform platform;
  platform.ports[kPortInModule3] = port_record();
  vsh_int_multi_range_t list = vlans({{0, 4095}});
  paraminfo_t* const param = platform.show_command(31, kPortInModule3);
  platform.add_argument(param, PARAM_TYPE_INT_RANGES, &list);
  EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
  EXPECT_THAT(platform.pieces, IsEmpty());
  EXPECT_THAT(platform.port_queries, IsEmpty());
  ASSERT_FALSE(platform.loader_events.empty());
  EXPECT_EQ(platform.loader_events.front(), "open libvlan_mgr.so lazy");
  EXPECT_EQ(platform.loader_events.back(), "close libvlan_mgr.so");
  EXPECT_EQ(platform.sends, 1U);
}

// The filter and the view ask one after the other.
TEST(VlanFilter, ShowsThePortsWhoseNativeVlanIsInTheList) {
  struct list_case {
    vsh_int_multi_range_t list;
    bool shows;
  };
  const list_case kCases[] = {{vlans({{1, 9}, {11, 20}}), false},
                              {vlans({{1, 9}, {10, 10}}), true},
                              {vlans({{10, 4094}}), true},
                              {vlans({{1, 10}}), true},
                              {vlans({}), false}};
  for (const list_case& it : kCases) {
    RecordingPlatform platform;
    install_vlan_libraries(platform);
    answers_of_vlans.memberships = {membership(kPortInModule3, 10, {10})};
    platform.ports[kPortInModule3] = port_record_in_mode(PM_PORT_MODE_TRUNK);
    vsh_int_multi_range_t list = it.list;
    paraminfo_t* const param = platform.show_command(31, kPortInModule3);
    platform.add_argument(param, PARAM_TYPE_INT_RANGES, &list);
    EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
    EXPECT_THAT(platform.text(), HasSubstrOnlyIf(it.shows, "    Native Vlan: 10\n    Allowed Vlans: 10\n"));
    EXPECT_EQ(platform.text().empty(), !it.shows);
  }
}

TEST(VlanFilter, BelievesNoMoreRangesThanTheListHolds) {
  RecordingPlatform platform;
  install_vlan_libraries(platform);
  answers_of_vlans.memberships = {membership(kPortInModule3, 10, {10})};
  vsh_int_multi_range_t list = vlans({{1, 9}});
  list.range_count = 0xFFFFFFFF;
  paraminfo_t* const param = platform.show_command(31, kPortInModule3);
  platform.add_argument(param, PARAM_TYPE_INT_RANGES, &list);
  EXPECT_EQ(pm_cli_show_eth_port_config(param), 0U);
  EXPECT_EQ(platform.text(), "");
}

// ---- Statistics handler --------------------------------------------------------------------------------------------

// A port whose traffic lines need no provider but the port manager.
void set_up_ips_port(RecordingPlatform& platform) {
  platform.ports[kPortInModule3] = port_record_in_mode(PM_PORT_MODE_IPS);
  platform.eth_stats[kPortInModule3] = {};
}

TEST(StatisticsHandler, ShowsTheTrafficLinesWithoutFlushing) {
  RecordingPlatform platform;
  set_up_ips_port(platform);
  EXPECT_EQ(pm_cli_show_eth_stat_info(platform.show_command(1, kPortInModule3)), 0U);
  EXPECT_EQ(platform.text(), kNoTraffic);
  EXPECT_EQ(platform.sends, 0U);
}

TEST(StatisticsHandler, OnlyId1IsServed) {
  for (uint32 command = 0; command <= kMostCommand; ++command) {
    RecordingPlatform platform;
    set_up_ips_port(platform);
    EXPECT_EQ(pm_cli_show_eth_stat_info(platform.show_command(command, kPortInModule3)), 0U);
    EXPECT_EQ(platform.text(), command == 1 ? kNoTraffic : "") << command;
    EXPECT_EQ(platform.count("cmd_paraminfo_to_rxhandle"), 1U);
    EXPECT_EQ(platform.port_queries.size(), command == 1 ? 1U : 0U);
    EXPECT_EQ(platform.sends, 0U);
  }
}

TEST(StatisticsHandler, EthernetSwitchesDeclineThreeKindsOfInterface) {
  constexpr interface_mask_t kMasks[] = {
      0,
      0x10,
      0x100000,
      0x200000,
      0x1,
      0x11,
      0x30,
      0x300000,
      0x100010,
      0x400000,
      0x100000010,
      0x8000000000100000,
      0x200000000200000,
      0x1000000000,
      0xFFFFFFFF,
      ~interface_mask_t{0},
  };
  for (uint32 chassis = 0; chassis <= 40; ++chassis) {
    const bool is_of_family = chassis == 10 || chassis == 11 || chassis == 17 || (chassis >= 19 && chassis <= 24);
    for (const interface_mask_t mask : kMasks) {
      const bool is_declined = is_of_family && (mask == 0x10 || mask == 0x100000 || mask == 0x200000);
      RecordingPlatform platform;
      set_up_ips_port(platform);
      platform.chassis_type = chassis;
      paraminfo_t* const param = platform.show_command(1, kPortInModule3);
      param->arg_list[0]->interface_mask = mask;
      EXPECT_EQ(pm_cli_show_eth_stat_info(param), 0U);
      EXPECT_EQ(platform.text(), is_declined ? "" : kNoTraffic) << "chassis " << chassis << ", mask " << mask;
      EXPECT_EQ(platform.sends, 0U);
    }
  }
}

TEST(StatisticsHandler, UnreadableChassisDeclinesNothing) {
  RecordingPlatform platform;
  set_up_ips_port(platform);
  platform.fail_with("pdb_get_chassis_type", PM_ERR_GENERAL);
  paraminfo_t* const param = platform.show_command(1, kPortInModule3);
  param->arg_list[0]->interface_mask = 0x10;
  pm_cli_show_eth_stat_info(param);
  EXPECT_EQ(platform.text(), kNoTraffic);
}

TEST(StatisticsHandler, ServesOnAStandbySupervisorAndForSubInterfaces) {
  const if_index_t sub = sub_interface(kPortInModule3, 5);
  RecordingPlatform platform;
  platform.ports[sub] = port_record_in_mode(PM_PORT_MODE_IPS);
  platform.eth_stats[sub] = {};
  paraminfo_t* const param = platform.show_command(1, sub);
  param->sup_state = 2;
  pm_cli_show_eth_stat_info(param);
  EXPECT_EQ(platform.text(), kNoTraffic);
}

TEST(StatisticsHandler, MissingHandleIsTold) {
  for (const uint32 command : {1U, 2U}) {
    RecordingPlatform platform;
    set_up_ips_port(platform);
    platform.fail_with("cmd_paraminfo_to_rxhandle");
    EXPECT_EQ(pm_cli_show_eth_stat_info(platform.show_command(command, kPortInModule3)), 0U);
    EXPECT_EQ(platform.text(), kNoHandle);
  }
}

TEST(StatisticsWorker, AsksForTheRecordOfThePort) {
  RecordingPlatform platform;
  set_up_ips_port(platform);
  pm_show_eth_stat_info(platform.output(), RecordingPlatform::q(), 1, kPortInModule3);
  EXPECT_EQ(platform.text(), kNoTraffic);
  expect_one_query(platform, kPortInModule3);
}

TEST(StatisticsWorker, OtherOptionsAreNotSupported) {
  for (const int32 option : {0, 2, -1}) {
    RecordingPlatform platform;
    set_up_ips_port(platform);
    pm_show_eth_stat_info(platform.output(), RecordingPlatform::q(), option, kPortInModule3);
    EXPECT_EQ(platform.text(), kNotSupported);
    EXPECT_EQ(platform.port_queries.size(), 1U);
  }
}

TEST(StatisticsWorker, FailedQueryIsPrintedForEveryOption) {
  for (const int32 option : {1, 2}) {
    RecordingPlatform platform;
    platform.mts_errno = 32;
    platform.fail_with("pm_cmi_get_port_config", -1);
    pm_show_eth_stat_info(platform.output(), RecordingPlatform::q(), option, kPortInModule3);
    EXPECT_EQ(platform.text(), "<transport failure 2 32>\n");
    platform.clear_output();
    platform.fail_with("pm_cmi_get_port_config", PM_ERR_GENERAL);
    pm_show_eth_stat_info(platform.output(), RecordingPlatform::q(), option, kPortInModule3);
    EXPECT_EQ(platform.text(), "error: <system error 40290000>\n");
  }
}

}  // namespace
}  // namespace pmcli_test
