#include "shell/views.h"

#include <algorithm>
#include <iterator>

namespace host {
namespace {

using library = command_library;

constexpr if_index_type_t kAll[] = {IF_TYPE_MGMT,      IF_TYPE_ETHERNET,         IF_TYPE_ETHERNET_L3,
                                    IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL,
                                    IF_TYPE_LOOPBACK,  IF_TYPE_VETHERNET};
constexpr if_index_type_t kButLoopbacks[] = {IF_TYPE_MGMT,      IF_TYPE_ETHERNET,         IF_TYPE_ETHERNET_L3,
                                             IF_TYPE_SATELLITE, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL,
                                             IF_TYPE_VETHERNET};
constexpr if_index_type_t kBriefRows[] = {IF_TYPE_MGMT,     IF_TYPE_ETHERNET,         IF_TYPE_SATELLITE,
                                          IF_TYPE_LOOPBACK, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL};
constexpr if_index_type_t kInModules[] = {IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3};
constexpr if_index_type_t kEthernet[] = {IF_TYPE_ETHERNET};
constexpr if_index_type_t kWithCapabilities[] = {IF_TYPE_MGMT, IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE,
                                                 IF_TYPE_ETH_PORT_CHANNEL};

constexpr table_headers kNone = {};
constexpr table_headers kCommon = {&library::common_header, &library::common_header, &library::common_header,
                                   &library::common_header};
constexpr table_headers kDescription = {&library::channel_header, &library::management_header,
                                        &library::loopback_header, nullptr};
constexpr table_headers kBrief = {&library::ethernet_header, &library::management_header, &library::loopback_header,
                                  &library::inband_header};

constexpr view kViews[] = {
    {DETAILED_VIEW, kAll, kNone},
    {2, kAll, kCommon},
    {4, kAll, kDescription},
    {5, kBriefRows, kBrief},
    {13, kWithCapabilities, kNone, &library::show_port_capabilities},
    {22, kEthernet, kCommon},
    {24, kAll, kCommon},
    {25, kButLoopbacks, kCommon},
    {26, kAll, kCommon},
    {27, kInModules, kCommon},
    {28, kAll, kCommon},
    {36, kButLoopbacks, kCommon},
    {104, kEthernet, kCommon},
};

}  // namespace

const view& view_of(uint32 command_id) {
  return *std::find_if(std::begin(kViews), std::end(kViews),
                       [command_id](const view& known) { return known.command_id == command_id; });
}

}  // namespace host
