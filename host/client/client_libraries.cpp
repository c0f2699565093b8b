#include "messages/calls/client_libraries.h"

#include <algorithm>

#include "platform/card_config.h"
#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "platform/port_channel.h"
#include "platform/private_vlan.h"
#include "platform/spanning_tree.h"
#include "platform/vlan_manager.h"

namespace host {
namespace {

constexpr const char* kCardConfig[] = {"crdcfg_get_port_cap"};
constexpr const char* kPortChannel[] = {"pcm_switchport_host_func"};
constexpr const char* kIpStatistics[] = {"ip_get_loopback_counters", "ip_clear_loopback_counters"};
constexpr const char* kPrivateVlan[] = {"pvlan_build_get_switchport_info_req", "pvlan_parse_get_switchport_info_rsp"};
constexpr const char* kStatistics[] = {"statcl_get_port_client_stats", "statcl_get_port_client_snmp_stats",
                                       "statscl_clear_port_client_stats"};
constexpr const char* kSpanningTree[] = {"stp_switchport_host_func", "stp_send_get_port_state",
                                         "stp_parse_get_port_state"};
constexpr const char* kVlanManager[] = {"vlan_get_vlan_info_build_mts", "vlan_get_vlan_info_parse_reply",
                                        "vlan_get_port_trunking_memb_build_mts",
                                        "vlan_get_port_trunking_memb_parse_reply"};

constexpr client_library kLibraries[] = {
    {CRDCFG_LIBRARY, kCardConfig},     {PORT_CHANNEL_COMMANDS_LIBRARY, kPortChannel},
    {IP_STATS_LIBRARY, kIpStatistics}, {PVLAN_LIBRARY, kPrivateVlan},
    {STATCL_LIBRARY, kStatistics},     {STP_LIBRARY, kSpanningTree},
    {VLAN_MGR_LIBRARY, kVlanManager},
};

}  // namespace

std::span<const client_library> client_libraries() { return kLibraries; }

const client_library* find_client_library(std::string_view file) {
  const auto* const found = std::ranges::find(kLibraries, file, &client_library::file);
  return found == std::end(kLibraries) ? nullptr : found;
}

}  // namespace host
