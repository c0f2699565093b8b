// The counter displays of the management port, by command id.

#include <cstdio>

#include "interface/management.h"
#include "pmcli/counters.h"
#include "pmcli/displays.h"

using namespace pmcli;

namespace {

struct shown_port {
  cmd_rx_handle_t* rx;
  mts_q_handle_t q;
  if_index_t if_index;
};

void show_block(const shown_port& port) { pm_cli_show_eth_port_counters(port.rx, port.q, port.if_index); }

using errors_row = void (*)(cmd_rx_handle_t*, if_index_t, pm_cli_common_error_stat_t*);

// Nothing is fetched: the medium has none of these counters.
template <errors_row Print>
void show_errors(const shown_port& port) {
  pm_if_stat none{};
  pm_cli_common_error_stat_t errors{};
  pm_cli_copy_mgmt_to_common_ctr_err(&errors, &none);
  Print(port.rx, port.if_index, &errors);
}

using traffic_row = void (*)(cmd_rx_handle_t*, if_index_t, pm_if_stat*);

template <traffic_row Print>
void show_traffic(const shown_port& port) {
  pm_if_stat stats{};
  if (pm_get_interface_counters(port.if_index, port.q, &stats) != 0)
    Print(port.rx, port.if_index, &stats);
  else
    std::puts("error: pm_get_interface_counters failed");
}

using detailed_list = void (*)(cmd_rx_handle_t*, pm_if_stat*, pm_proc_net_dev_stats_t*, if_index_t);

template <detailed_list Print>
void show_list(const shown_port& port) {
  pm_if_stat stats{};
  pm_proc_net_dev_stats_t kernel{};
  const bool has_stats = pm_get_interface_counters(port.if_index, port.q, &stats) != 0;
  const bool has_kernel = fetch_kernel_counters(port.if_index, &kernel);
  if (!has_stats && !has_kernel) {
    std::puts("No counters available.");
    return;
  }
  if (!has_stats) std::puts("error: pm_get_interface_counters failed");
  Print(port.rx, has_stats ? &stats : nullptr, has_kernel ? &kernel : nullptr, port.if_index);
}

void show_by_id(uint32 command, const shown_port& port) {
  switch (command) {
    case DISPLAY_COUNTERS: return show_block(port);
    case DISPLAY_ERRORS_FIRST: return show_errors<pm_cli_show_port_1st_counters_errors_table>(port);
    case DISPLAY_RECEIVED: return show_traffic<pm_cli_show_mgmt_stats_rx>(port);
    case DISPLAY_SENT: return show_traffic<pm_cli_show_mgmt_stats_tx>(port);
    case DISPLAY_ERRORS_SECOND: return show_errors<pm_cli_show_port_2nd_counters_errors_table>(port);
    case DISPLAY_ERRORS_THIRD: return show_errors<pm_cli_show_port_3rd_counters_errors_table>(port);
    case DISPLAY_COUNTERS_NONZERO: return show_list<pm_cli_mgmt_counters_detailed>(port);
    case DISPLAY_COUNTERS_ALL: return show_list<pm_cli_mgmt_counters_detailed_all>(port);
    default: return;
  }
}

}  // namespace

int32 pm_cli_show_mgmt_counters(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, uint32 command, if_index_t if_index) {
  show_by_id(command, {rx_handle, q, if_index});
  cmd_prt_send(rx_handle);
  return 0;
}
