// The traffic lines of an interface; each kind has its own provider.

#include <cstdio>

#include "interface/eth_statistics.h"
#include "interface/management.h"
#include "platform/eth_statistics.h"
#include "platform/if_index.h"
#include "platform/ip_statistics.h"
#include "pmcli/interface.h"
#include "support/chassis.h"
#include "support/kind.h"
#include "support/library_messages.h"
#include "support/scope.h"

using namespace pmcli;

namespace {

void show_ips(cmd_rx_handle_t* rx, mts_q_handle_t q, if_index_t if_index, if_index_type_t type) {
  show_eth_intf_resp_t statistics{};
  if (!fetch_eth_statistics(q, if_index, type, &statistics)) return;
  pm_cli_eth_intf_stats_print(rx, &statistics, 0);
  const bool is_channel = type == IF_TYPE_PORT_CHANNEL || type == IF_TYPE_ETH_PORT_CHANNEL;
  if (is_channel && !if_index_is_sub_intf(if_index)) print_eth_port_channel_members(rx, if_index);
}

// A missing library prints nothing here.
void show_port(cmd_rx_handle_t* rx, if_index_t if_index) {
  constexpr char kSymbol[] = "statcl_get_port_client_stats";
  const service_library library(STATCL_LIBRARY, RTLD_NOW);
  if (!library) return;
  const auto get_stats = library.find<statcl_get_port_client_stats_fn>(kSymbol);
  if (!get_stats) {
    print_function_not_found(get_stats.error, kSymbol);
    return;
  }
  statscl_portcl_stats_msg_t statistics{};
  if (get_stats.function(if_index, &statistics) == 0) pm_cli_ethernet_intf_stats_print(rx, &statistics, 0);
}

// The provider's result is ignored: the record is printed also after a failure.
void show_loopback(cmd_rx_handle_t* rx, mts_q_handle_t q, if_index_t if_index) {
  constexpr char kSymbol[] = "ip_get_loopback_counters";
  const service_library library(IP_STATS_LIBRARY, RTLD_NOW);
  if (!library) {
    print_library_not_opened(IP_STATS_LIBRARY);
    return;
  }
  const auto get_counters = library.find<ip_get_loopback_counters_fn>(kSymbol);
  if (get_counters.error != nullptr) {
    print_function_not_found(get_counters.error, kSymbol);
    return;
  }
  ip_if_stats statistics{};
  if (get_counters.function != nullptr) get_counters.function(q, if_index, &statistics);
  pm_cli_loopback_intf_stats_print(rx, &statistics, 0);
}

}  // namespace

void print_eth_stat_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t mts_q, pm_port_info_t* port_info) {
  const if_index_t if_index = port_info->if_index;
  const if_index_type_t type = kind_of(if_index);
  switch (type) {
    case IF_TYPE_ETHERNET:
    case IF_TYPE_ETHERNET_L3:
    case IF_TYPE_MGMT:
    case IF_TYPE_PORT_CHANNEL:
    case IF_TYPE_ETH_PORT_CHANNEL:
    case IF_TYPE_LOOPBACK: break;
    default: std::printf("error: invalid if index type(%d)\n", type); return;
  }
  if (type == IF_TYPE_PORT_CHANNEL && port_info->phy_port_layer == PM_PHY_LAYER_FC) return;

  if (port_info->oper_port_mode == PM_PORT_MODE_IPS) return show_ips(rx_handle, mts_q, if_index, type);
  switch (type) {
    case IF_TYPE_ETHERNET_L3:
      if (has_statistics_client(read_chassis_type())) show_port(rx_handle, if_index);
      return;
    case IF_TYPE_LOOPBACK: return show_loopback(rx_handle, mts_q, if_index);
    case IF_TYPE_MGMT: return show_management_counters(rx_handle, if_index);
    default: return;
  }
}
