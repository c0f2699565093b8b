// The views of a loopback, whose counters come from the IP statistics library.

#include <cstdio>

#include "interface/port_record.h"
#include "platform/ip_statistics.h"
#include "pmcli/counters.h"
#include "pmcli/displays.h"
#include "pmcli/interface.h"
#include "support/counter_pieces.h"
#include "support/print.h"
#include "support/text.h"

using namespace pmcli;

namespace {

// Single blanks as separators, and the last label as it stands, are intended.
constexpr counter_piece<ip_if_stats, be64> kLoopbackCounters[] = {
    {"    %s packets input", &ip_if_stats::in_pkts, 0x152a023a},
    {" %s bytes\n", &ip_if_stats::in_bytes, 0x152a023b},
    {"    %s multicast frames", &ip_if_stats::in_pkts_mcast, 0x152a023c},
    {" %s compressed\n", &ip_if_stats::in_compressed, 0x152a023d},
    {"    %s input errors", &ip_if_stats::in_errors, 0x152a023e},
    {" %s frame", &ip_if_stats::in_frames, 0x152a023f},
    {" %s overrun", &ip_if_stats::in_overrun, 0x152a0240},
    {" %s fifo\n", &ip_if_stats::in_fifo, 0x152a0241},
    {"    %s packets output", &ip_if_stats::out_pkts, 0x152a0242},
    {" %s bytes", &ip_if_stats::out_bytes, 0x152a0243},
    {" %s underruns\n", &ip_if_stats::out_underruns, 0x152a0244},
    {"    %s output errors", &ip_if_stats::out_errors, 0x152a0245},
    {" %s collisions", &ip_if_stats::out_collisions, 0x152a0246},
    {" %s fifo\n", &ip_if_stats::out_fifo, 0x152a0247},
    {"    %s out_carrier_errors\n", &ip_if_stats::out_carrier_errors, 0x152a0248},
};

void show_detail(cmd_rx_handle_t* rx, mts_q_handle_t q, if_index_t if_index, pm_port_info_t* record) {
  pm_cli_common_show_intf_data_t data;
  pm_cli_get_port_data(if_index, q, &data);
  ip_if_stats stats{};
  pm_cli_get_loopback_counters(if_index, q, &stats);  // what it left is shown
  pm_cli_calc_ip_reliability_loads(&stats, &data);
  pm_cli_show_port_info(rx, record, &data);
  pm_cli_loopback_intf_stats_print(rx, &stats, 0);
}

}  // namespace

void pm_cli_loopback_intf_stats_print(cmd_rx_handle_t* rx_handle, ip_if_stats* stats, uint32) {
  print_counters(rx_handle, kLoopbackCounters, *stats);
}

void print_loopback_port_config(cmd_rx_handle_t*, if_index_t) {}

void print_loop_intf_brief(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info) {
  print_if_index(rx_handle, "%-13.13s ", 0x0c2a01f4, port_info->if_index);
  print_enum(rx_handle, "%-10.10s ", 0x022a01f8, port_info->oper_port_state);
  if (port_info->port_name[0] != '\0')
    print_text(rx_handle, "%s\n", 0x302a0339, terminate(port_info->port_name).text);
  else
    cmd_prt(rx_handle, "--\n");
}

void pm_cli_show_loopback_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command,
                                    if_index_t if_index) {
  const heap_block<pm_port_info_t> record = fetch_port_record(src_q, if_index);
  if (record == nullptr) return;
  const auto show_status_if = [&](bool is_shown) {
    if (is_shown) print_eth_port_status_line(rx_handle, record.get(), src_q);
  };
  switch (command) {
    case DISPLAY_DETAIL: return show_detail(rx_handle, src_q, if_index, record.get());
    case DISPLAY_STATUS: return show_status_if(true);
    case DISPLAY_DESCRIPTION: return print_eth_port_description(rx_handle, record.get());
    case DISPLAY_BRIEF: return print_loop_intf_brief(rx_handle, record.get());
    case DISPLAY_STATUS_ADMIN_DOWN: return show_status_if(record->oper_state_reason == PM_REASON_ADMIN_DOWN);
    case DISPLAY_STATUS_INACTIVE: return show_status_if(record->oper_state_reason == PM_REASON_INACTIVE);
    case DISPLAY_STATUS_UP: return show_status_if(record->oper_port_state == PM_PORT_STATE_UP);
    default: std::puts("Option not supported");
  }
}
