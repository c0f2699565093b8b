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

// Single blanks as separators, and the spelling of the last label, are intended.
constexpr counter_piece<ip_if_stats, be64> kLoopbackCounters[] = {
    {"    %s packets input", &ip_if_stats::in_pkts, tag::loopback_input_packets},
    {" %s bytes\n", &ip_if_stats::in_bytes, tag::loopback_input_bytes},
    {"    %s multicast frames", &ip_if_stats::in_pkts_mcast, tag::loopback_input_multicast_packets},
    {" %s compressed\n", &ip_if_stats::in_compressed, tag::loopback_input_compressed},
    {"    %s input errors", &ip_if_stats::in_errors, tag::loopback_input_errors},
    {" %s frame", &ip_if_stats::in_frames, tag::loopback_input_frame_errors},
    {" %s overrun", &ip_if_stats::in_overrun, tag::loopback_input_overruns},
    {" %s fifo\n", &ip_if_stats::in_fifo, tag::loopback_input_fifo_errors},
    {"    %s packets output", &ip_if_stats::out_pkts, tag::loopback_output_packets},
    {" %s bytes", &ip_if_stats::out_bytes, tag::loopback_output_bytes},
    {" %s underruns\n", &ip_if_stats::out_underruns, tag::loopback_output_underruns},
    {"    %s output errors", &ip_if_stats::out_errors, tag::loopback_output_errors},
    {" %s collisions", &ip_if_stats::out_collisions, tag::loopback_output_collisions},
    {" %s fifo\n", &ip_if_stats::out_fifo, tag::loopback_output_fifo_errors},
    {"    %s out_carrier_errors\n", &ip_if_stats::out_carrier_errors, tag::loopback_output_carrier_errors},
};

void show_detail(cmd_rx_handle_t* rx, mts_q_handle_t q, if_index_t if_index, pm_port_info_t* record) {
  pm_cli_common_show_intf_data_t data;
  pm_cli_get_port_data(if_index, q, &data);
  ip_if_stats stats{};
  pm_cli_get_loopback_counters(if_index, q, &stats);  // shown also after a failure
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
  print_if_index(rx_handle, "%-13.13s ", tag::brief_interface, port_info->if_index);
  print_enum(rx_handle, "%-10.10s ", tag::brief_state, port_info->oper_port_state);
  if (port_info->port_name[0] != '\0')
    print_text(rx_handle, "%s\n", tag::brief_description, terminate(port_info->port_name).text);
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
