// Statistics of Ethernet ports: the port manager, the port-channel service, the statistics client.
#pragma once

#include <map>

#include "platform/eth_statistics.h"

namespace pmcli_test {

struct recorded_eth_statistics {
  std::map<if_index_t, show_eth_intf_resp_t> eth_stats;          // pm_get_clear_eth_stats()
  std::map<if_index_t, show_eth_intf_resp_t> channel_eth_stats;  // pm_port_channel_get_clear_eth_stats()
  std::map<if_index_t, statscl_portcl_stats_msg_t> port_stats;   // ifidx is filled in when it is 0
  std::map<if_index_t, statscl_portcl_stats_msg_t> snmp_port_stats;
};

}  // namespace pmcli_test
