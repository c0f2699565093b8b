// Statistics of Ethernet ports: the port manager, the port-channel service, and the statistics client, a library
// opened by name.
#include <gtest/gtest.h>

#include "support/recorded/answers.h"
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

int32 answer_port_stats(const char* function, const std::map<if_index_t, statscl_portcl_stats_msg_t>& entries,
                        if_index_t if_index, statscl_portcl_stats_msg_t* stats) {
  const int32 error = answer_from(function, entries, if_index, stats);
  if (error == 0 && stats->ifidx == 0U) stats->ifidx = if_index;
  return error;
}

int32 statcl_get_port_client_stats(if_index_t if_index, statscl_portcl_stats_msg_t* stats) {
  return answer_port_stats("statcl_get_port_client_stats", platform_for("statcl_get_port_client_stats").port_stats,
                           if_index, stats);
}

int32 statcl_get_port_client_snmp_stats(if_index_t if_index, statscl_portcl_stats_msg_t* stats) {
  return answer_port_stats("statcl_get_port_client_snmp_stats",
                           platform_for("statcl_get_port_client_snmp_stats").snmp_port_stats, if_index, stats);
}

}  // namespace

library_symbols statistics_client() {
  return {{"statcl_get_port_client_stats", statcl_get_port_client_stats},
          {"statcl_get_port_client_snmp_stats", statcl_get_port_client_snmp_stats},
          {"statscl_clear_port_client_stats", statscl_clear_port_client_stats}};
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 pm_get_clear_eth_stats(mts_q_handle_t, if_index_t low, if_index_t high, uint32 get,
                             show_eth_intf_resp_t* response) {
  EXPECT_EQ(low, high);
  EXPECT_EQ(get != 0, response != nullptr);
  if (get == 0) return clear_at("pm_get_clear_eth_stats", low);
  return answer_from("pm_get_clear_eth_stats", platform_for("pm_get_clear_eth_stats").eth_stats, low, response);
}

int32 pm_port_channel_get_clear_eth_stats(mts_q_handle_t, if_index_t if_index, uint32 get,
                                          show_eth_intf_resp_t* response) {
  EXPECT_EQ(get, 1U);
  return answer_from("pm_port_channel_get_clear_eth_stats",
                     platform_for("pm_port_channel_get_clear_eth_stats").channel_eth_stats, if_index, response);
}

void pm_cli_ethernet_intf_stats_print(cmd_rx_handle_t* rx_handle, statscl_portcl_stats_msg_t* stats, uint32 detail) {
  const RecordingPlatform& platform = platform_for("pm_cli_ethernet_intf_stats_print");
  const std::string text =
      "<statistics of " + interface_text(platform, stats->ifidx, false) + ", detail " + std::to_string(detail) + ">\n";
  cmd_prt(rx_handle, text.c_str());
}

}  // extern "C"
