// "show interface counters" and "flowcontrol".
#include "shell/commands/show/interface.h"

namespace host {
namespace {

constexpr if_index_type_t kKindsWithRates[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE,
                                               IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL};
constexpr if_index_type_t kKindsWithTraffic[] = {
    IF_TYPE_MGMT,         IF_TYPE_ETHERNET,  IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL,
    IF_TYPE_PORT_CHANNEL, IF_TYPE_VETHERNET, IF_TYPE_INBAND};

// These have no headers for loopbacks and the in-band interface.
constexpr table_headers kCounterHeaders = {&command_library::common_header, &command_library::common_header, nullptr,
                                           nullptr};
constexpr table_headers kTrunkCounterHeaders = {&command_library::ethernet_header, nullptr, nullptr, nullptr};

// Tables that follow another one.
constexpr interface_view kSent = {DISPLAY_SENT, kKindsWithTraffic, kCounterHeaders, kInbandNothing};
constexpr interface_view kThirdErrors = {DISPLAY_ERRORS_THIRD, kAllButLoopbacks, kCounterHeaders};
constexpr interface_view kSecondErrors = {DISPLAY_ERRORS_SECOND, kAllButLoopbacks, kCounterHeaders, kInbandSame,
                                          &kThirdErrors};

constexpr display kCountersShown = {kCountersDisplay, {}, "counters", false, true};
constexpr display kRatesShown = {kRatesDisplay, {}, "rates", false, true};
constexpr display kDetailedCountersShown = {kDetailedCountersDisplay, {}, "detailed_counters", false, true};
constexpr display kAllCountersShown = {kAllCountersDisplay, {}, "all_counters", false, true};
constexpr display kErrorCountersShown = {kErrorCountersDisplay, {}, "error_counters", false, true};
constexpr display kTrunkCountersShown = {kTrunkCountersDisplay, {}, "trunk_counters", false, true};
constexpr display kStormControlShown = {kStormControlDisplay, {}, "storm_control", false, true};
constexpr display kFlowControlShown = {kFlowControlDisplay, {}, "flow_control", false, true};

// clang-format off
constexpr interface_display kCounterDisplays[] = {
    {"show interface [RANGE] counters", "Bytes and packets received and sent", kCountersShown,
     {DISPLAY_RECEIVED, kKindsWithTraffic, kCounterHeaders, kInbandCounters, &kSent}},
    {"show interface [RANGE] counters brief", "Rates of bytes and packets", kRatesShown,
     {DISPLAY_COUNTERS_BRIEF, kKindsWithRates, kPortHeaders}},
    {"show interface [RANGE] counters detailed", "Counters that are not 0", kDetailedCountersShown,
     {DISPLAY_COUNTERS_NONZERO, kAllWithInband, kNoHeaders, kInbandCounters}},
    {"show interface [RANGE] counters detailed all", "All counters", kAllCountersShown,
     {DISPLAY_COUNTERS_ALL, kAllWithInband, kNoHeaders}},
    {"show interface [RANGE] counters errors", "Errors in three tables", kErrorCountersShown,
     {DISPLAY_ERRORS_FIRST, kAllButLoopbacks, kCounterHeaders, kInbandSame, &kSecondErrors}},
    {"show interface [RANGE] counters errors module MODULE", "First error table of a module's ports", kErrorCountersShown,
     {DISPLAY_ERRORS_FIRST_OF_MODULE, kKindsInModules, kPortHeaders}},
    {"show interface [RANGE] counters trunk", "Packets on trunks", kTrunkCountersShown,
     {DISPLAY_TRUNK_COUNTERS, kCountedKinds, kTrunkCounterHeaders}},
    {"show interface [RANGE] counters storm-control", "Storm control levels and discarded packets", kStormControlShown,
     {DISPLAY_STORM_CONTROL, kCountedKinds, kPortHeaders}},
    {"show interface [RANGE] flowcontrol", "Flow control: settings and pause frames", kFlowControlShown,
     {DISPLAY_FLOW_CONTROL, kCountedKinds, kPortHeaders}},
    {"show interface [RANGE] flowcontrol module MODULE", "Flow control of the ports of a module", kFlowControlShown,
     {DISPLAY_FLOW_CONTROL_OF_MODULE, kKindsInModules, kPortHeaders}},
};
// clang-format on

constexpr auto kCounterRows = commands_of<kCounterDisplays>();

constexpr word_help kCounterWords[] = {
    {"storm-control", "Storm control levels and discarded packets"},
};

}  // namespace

constexpr command_group kCounterCommands = {kCounterRows, kCounterWords};

}  // namespace host
