#include "shell/library/views.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <map>
#include <utility>

namespace host {
namespace {

using library = command_library;

// Without a range the in-band interface is left out, as every kind without a word of kWordsInOrder (selection.cpp).
constexpr if_index_type_t kWithInband[] = {IF_TYPE_MGMT,      IF_TYPE_ETHERNET,         IF_TYPE_ETHERNET_L3,
                                           IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL,
                                           IF_TYPE_LOOPBACK,  IF_TYPE_VETHERNET,        IF_TYPE_INBAND};
constexpr if_index_type_t kAll[] = {IF_TYPE_MGMT,      IF_TYPE_ETHERNET,         IF_TYPE_ETHERNET_L3,
                                    IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL,
                                    IF_TYPE_LOOPBACK,  IF_TYPE_VETHERNET};
constexpr if_index_type_t kButLoopbacks[] = {IF_TYPE_MGMT,      IF_TYPE_ETHERNET,         IF_TYPE_ETHERNET_L3,
                                             IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL,
                                             IF_TYPE_VETHERNET};
constexpr if_index_type_t kWithTraffic[] = {
    IF_TYPE_MGMT,         IF_TYPE_ETHERNET,  IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL,
    IF_TYPE_PORT_CHANNEL, IF_TYPE_VETHERNET, IF_TYPE_INBAND};
constexpr if_index_type_t kBriefRows[] = {IF_TYPE_MGMT,     IF_TYPE_ETHERNET,         IF_TYPE_SATELLITE,
                                          IF_TYPE_LOOPBACK, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL,
                                          IF_TYPE_INBAND};
constexpr if_index_type_t kInModules[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3};
constexpr if_index_type_t kEthernet[] = {IF_TYPE_ETHERNET};
constexpr if_index_type_t kWithCapabilities[] = {IF_TYPE_MGMT, IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE,
                                                 IF_TYPE_ETH_PORT_CHANNEL};

constexpr if_index_type_t kWithOptics[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE, IF_TYPE_FC};
constexpr if_index_type_t kWithRates[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE,
                                          IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL};
constexpr if_index_type_t kCounted[] = {IF_TYPE_ETHERNET,         IF_TYPE_ETHERNET_L3,  IF_TYPE_SATELLITE,
                                        IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL, IF_TYPE_VETHERNET};

// Of the others the library has no detailed view.
constexpr if_index_type_t kTrunksInDetail[] = {IF_TYPE_ETHERNET, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL};

constexpr table_headers kNone = {};
constexpr table_headers kCommon = {&library::common_header, &library::common_header, &library::common_header,
                                   &library::common_header};
constexpr table_headers kDescription = {&library::channel_header, &library::management_header,
                                        &library::loopback_header, nullptr};
constexpr table_headers kBrief = {&library::ethernet_header, &library::management_header, &library::loopback_header,
                                  &library::inband_header};

// These have no headers for loopbacks and the in-band interface.
constexpr table_headers kCounters = {&library::common_header, &library::common_header, nullptr, nullptr};
constexpr table_headers kPortCounters = {&library::common_header, nullptr, nullptr, nullptr};
constexpr table_headers kTrunks = {&library::common_header, nullptr, nullptr, nullptr};
constexpr table_headers kTrunkCounters = {&library::ethernet_header, nullptr, nullptr, nullptr};

// clang-format off
constexpr view kViews[] = {
    {DISPLAY_DETAIL, kWithInband, kNone},
    {COMPUTED_DETAILED_VIEW, kWithInband, kNone},
    {DISPLAY_STATUS, kWithInband, kCommon},
    {DISPLAY_DESCRIPTION, kAll, kDescription},
    {DISPLAY_BRIEF, kBriefRows, kBrief},
    {DISPLAY_TRANSCEIVER, kWithOptics, kNone},
    {DISPLAY_COUNTERS_BRIEF, kWithRates, kPortCounters},
    {DISPLAY_TRANSCEIVER_CALIBRATION, kWithOptics, kNone},
    {DISPLAY_TRANSCEIVER_DETAIL, kWithOptics, kNone},
    {DISPLAY_CAPABILITIES, kWithCapabilities, kNone},
    {DISPLAY_ERRORS_FIRST, kButLoopbacks, kCounters, INBAND_SAME, DISPLAY_ERRORS_SECOND},
    {DISPLAY_STORM_CONTROL, kCounted, kPortCounters},
    {DISPLAY_TRUNK_COUNTERS, kCounted, kTrunkCounters},
    {DISPLAY_DEBOUNCE, kEthernet, kCommon},
    {DISPLAY_FLOW_CONTROL, kCounted, kPortCounters},
    {DISPLAY_STATUS_ADMIN_DOWN, kAll, kCommon},
    {DISPLAY_ERROR_DISABLED, kButLoopbacks, kCommon},
    {DISPLAY_STATUS_INACTIVE, kAll, kCommon},
    {DISPLAY_STATUS_OF_MODULE, kInModules, kCommon},
    {DISPLAY_STATUS_UP, kAll, kCommon},
    {DISPLAY_TRUNK_DETAIL, kTrunksInDetail, kNone},
    {DISPLAY_TRUNK_DETAIL_OF_MODULE, kTrunksInDetail, kNone},
    {DISPLAY_TRUNK_DETAIL_OF_VLANS, kTrunksInDetail, kNone},
    {DISPLAY_FLOW_CONTROL_OF_MODULE, kInModules, kPortCounters},
    {DISPLAY_MAC_ADDRESS, kButLoopbacks, kCommon},
    {DISPLAY_TRUNK_STATUS, kCounted, kTrunks},
    {DISPLAY_TRUNK_ALLOWED_VLANS, kCounted, kTrunks},
    {DISPLAY_TRUNK_FORWARDING_VLANS, kCounted, kTrunks},
    {DISPLAY_RECEIVED, kWithTraffic, kCounters, INBAND_COUNTERS, DISPLAY_SENT},
    {DISPLAY_SENT, kWithTraffic, kCounters, INBAND_NOTHING},
    {DISPLAY_ERRORS_FIRST_OF_MODULE, kInModules, kPortCounters},
    {DISPLAY_ERRORS_SECOND, kButLoopbacks, kCounters, INBAND_SAME, DISPLAY_ERRORS_THIRD},
    {DISPLAY_ERRORS_THIRD, kButLoopbacks, kCounters},
    {DISPLAY_COUNTERS_NONZERO, kWithInband, kNone, INBAND_COUNTERS},
    {DISPLAY_COUNTERS_ALL, kWithInband, kNone},
    {DISPLAY_IF_INDEX, kEthernet, kCommon},
};
// clang-format on

// What other libraries added.
std::deque<view>& added_views() {
  static std::deque<view> views;
  return views;
}

std::deque<std::vector<if_index_type_t>>& kinds_of_added_views() {
  static std::deque<std::vector<if_index_type_t>> kinds;
  return kinds;
}

std::vector<provided_kinds>& all_provided_kinds() {
  static std::vector<provided_kinds> provided;
  return provided;
}

std::map<command_handler, std::string>& names_of_added_handlers() {
  static std::map<command_handler, std::string> names;
  return names;
}

}  // namespace

const view& view_of(uint32 id) {
  if (id >= FIRST_ADDED_VIEW) return added_views()[id - FIRST_ADDED_VIEW];
  return *std::find_if(std::begin(kViews), std::end(kViews), [id](const view& known) { return known.id == id; });
}

uint32 add_view(std::vector<if_index_type_t> kinds, const added_handlers& handlers) {
  const auto id = FIRST_ADDED_VIEW + static_cast<uint32>(added_views().size());
  const auto& kept = kinds_of_added_views().emplace_back(std::move(kinds));
  added_views().push_back({id, kept, kNone, INBAND_SAME, 0, handlers});
  return id;
}

void provide_kinds(const provided_kinds& kinds) { all_provided_kinds().push_back(kinds); }

void name_added_handler(command_handler handler, std::string name) {
  names_of_added_handlers().insert_or_assign(handler, std::move(name));
}

std::string_view name_of_added_handler(command_handler handler) {
  const auto found = names_of_added_handlers().find(handler);
  return found == names_of_added_handlers().end() ? std::string_view() : found->second;
}

command_handler provided_handler(uint32 view, interface_mask_t kind, bool is_structured) {
  for (const provided_kinds& it : all_provided_kinds())
    if (it.view == view && (it.kinds & kind) != 0 && (is_structured || !it.only_structured)) return it.handler;
  return nullptr;
}

}  // namespace host
