#include "sibling/detailed_block.h"

#include <cstdio>

#include "pmcli/counters.h"
#include "pmcli/interface.h"
#include "sibling/frame.h"
#include "sibling/port_record.h"

namespace {

using sibling::request;

bool is_old_channel(if_index_t if_index) {
  if_index_type_t type = IF_TYPE_NONE;
  return if_index_get_type(if_index, &type) == 0 && type == IF_TYPE_PORT_CHANNEL;
}

void show_traffic(const request& requested) {
  constexpr uint32 kGet = 1;
  constexpr uint32 kDetail = 1;
  show_eth_intf_resp_t response{};
  const int32 error =
      is_old_channel(requested.if_index)
          ? pm_port_channel_get_clear_eth_stats(requested.q, requested.if_index, kGet, &response)
          : pm_get_clear_eth_stats(requested.q, requested.if_index, requested.if_index, kGet, &response);
  if (error == 0)
    pm_cli_eth_intf_stats_print(requested.rx, &response, kDetail);
  else
    std::puts("stats unavailable");
}

void show_detailed(const request& requested) {
  const sibling::port_record port(requested);
  if (!port) return;
  pm_cli_common_show_intf_data_t data{};
  pm_cli_get_port_data(requested.if_index, requested.q, &data);
  statscl_portcl_stats_msg_t stats{};
  if (pm_cli_get_eth_stat_info(requested.if_index, &stats) == 0)
    pm_cli_calc_eth_reliability_loads(&stats, port.get(), &data);
  pm_cli_show_port_info(requested.rx, port.get(), &data);
  pm_cli_show_port_reset_cntr(requested.rx, port.get(), &data);
  show_traffic(requested);
}

}  // namespace

[[gnu::visibility("default")]] uint32 sibling_show_detailed(paraminfo_t* param) {
  return sibling::run_handler(param, "details", show_detailed);
}
