// Tables of traffic, flow control and storm control: one row for each interface.

#include <cstdio>

#include "pmcli/counters.h"
#include "support/print.h"

using namespace pmcli;

namespace {

// The four values of a row of received or sent traffic, in the order of its cells.
struct traffic {
  uint64 octets;
  uint64 unicast;
  uint64 multicast;
  uint64 broadcast;
};

// The four tuple ids of such a row.
struct traffic_tuples {
  tuple_id<CMD_TYPE_UINT64> octets;
  tuple_id<CMD_TYPE_UINT64> unicast;
  tuple_id<CMD_TYPE_UINT64> multicast;
  tuple_id<CMD_TYPE_UINT64> broadcast;
};

constexpr traffic_tuples kReceived = {tag::counters_input_bytes, tag::counters_input_unicast_packets,
                                      tag::counters_input_multicast_packets, tag::counters_input_broadcast_packets};
constexpr traffic_tuples kSent = {tag::counters_output_bytes, tag::counters_output_unicast_packets,
                                  tag::counters_output_multicast_packets, tag::counters_output_broadcast_packets};

void print_traffic(cmd_rx_handle_t* rx, if_index_t if_index, const traffic_tuples& tuples, const traffic& values) {
  print_if_index(rx, "%-8.8s", tag::counters_interface, if_index);
  print_u64(rx, " %19s", tuples.octets, values.octets);
  print_u64(rx, " %17s", tuples.unicast, values.unicast);
  print_u64(rx, " %16s", tuples.multicast, values.multicast);
  print_u64(rx, " %16s\n", tuples.broadcast, values.broadcast);
}

// The first cell is a count of packets under the id of octets, and no blank parts the cells: both are intended.
void print_loopback_traffic(cmd_rx_handle_t* rx, if_index_t if_index, const traffic_tuples& tuples,
                            const traffic& values) {
  print_if_index(rx, "%-12.12s", tag::counters_interface, if_index);
  print_u64(rx, "%14s", tuples.octets, values.octets);
  print_u64(rx, "%14s", tuples.unicast, values.unicast);
  print_u64(rx, "%14s", tuples.multicast, values.multicast);
  print_u64(rx, "%14s\n", tuples.broadcast, values.broadcast);
}

// The suppression level of one traffic class, in percent, as text.
struct storm_level {
  explicit storm_level(const pm_port_storm_control_t& control) {
    const auto percent = static_cast<float>(control.level + control.level_fraction / 100.0);
    std::snprintf(text, sizeof text, "%.2f", static_cast<double>(percent));
  }
  char text[16];
};

constexpr uint64 kMega = 1'000'000;

}  // namespace

void pm_cli_show_eth_port_stats_rx(cmd_rx_handle_t* rx_handle, statscl_portcl_stats_msg_t* stats) {
  const auto& flow = stats->mac.pktflow;
  print_traffic(rx_handle, stats->ifidx, kReceived,
                {flow.bytes_pkts, flow.unicast_pkts, flow.multicast_pkts, flow.broadcast_pkts});
}

void pm_cli_show_eth_port_stats_tx(cmd_rx_handle_t* rx_handle, statscl_portcl_stats_msg_t* stats) {
  const auto& flow = stats->mac.pktflow;
  print_traffic(rx_handle, stats->ifidx, kSent,
                {flow.bytes_tx, flow.unicast_pkts_tx, flow.multicast_pkts_tx, flow.broadcast_pkts_tx});
}

void pm_cli_show_mgmt_stats_rx(cmd_rx_handle_t* rx_handle, if_index_t if_index, pm_if_stat* stats) {
  print_traffic(rx_handle, if_index, kReceived,
                {stats->in_bytes, stats->in_pkts_ucast, stats->in_pkts_mcast, stats->in_pkts_bcast});
}

void pm_cli_show_mgmt_stats_tx(cmd_rx_handle_t* rx_handle, if_index_t if_index, pm_if_stat* stats) {
  print_traffic(rx_handle, if_index, kSent,
                {stats->out_bytes, stats->out_pkts_ucast, stats->out_pkts_mcast, stats->out_pkts_bcast});
}

void pm_cli_show_loopback_stats_rx(cmd_rx_handle_t* rx_handle, if_index_t if_index, ip_if_stats* stats) {
  print_loopback_traffic(rx_handle, if_index, kReceived,
                         {stats->in_pkts, stats->in_pkts_ucast, stats->in_pkts_mcast, stats->in_pkts_bcast});
}

void pm_cli_show_loopback_stats_tx(cmd_rx_handle_t* rx_handle, if_index_t if_index, ip_if_stats* stats) {
  print_loopback_traffic(rx_handle, if_index, kSent,
                         {stats->out_pkts, stats->out_pkts_ucast, stats->out_pkts_mcast, stats->out_pkts_bcast});
}

void pm_cli_show_port_flow_ctrl(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                statscl_portcl_stats_msg_t* stats) {
  const uint32 admin = port_info->admin_port_flow_ctrl;
  const uint32 oper = port_info->oper_port_flow_ctrl;
  cmd_print_short(rx_handle);
  print_if_index(rx_handle, "%-10.10s ", tag::flow_control_interface, port_info->if_index);
  print_enum(rx_handle, "%-8.8s ", tag::flow_control_admin_output, admin & PM_FLOW_CTRL_SEND);
  print_enum(rx_handle, "%-8.8s ", tag::flow_control_oper_output, oper & PM_FLOW_CTRL_SEND);
  print_enum(rx_handle, "%-8.8s ", tag::flow_control_admin_input, admin & PM_FLOW_CTRL_RECEIVE);
  print_enum(rx_handle, "%-8.8s    ", tag::flow_control_oper_input, oper & PM_FLOW_CTRL_RECEIVE);
  print_u64(rx_handle, "%-7.7s ", tag::flow_control_input_pause_frames, stats->mac.ctrl.rx_pause);
  print_u64(rx_handle, "%-7.7s\n", tag::flow_control_output_pause_frames, stats->mac.ctrl.tx_pause);
}

void pm_cli_show_port_storm_ctrl_counters(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                                          statscl_portcl_stats_msg_t* stats) {
  const auto& control = port_info->admin_port_storm_control;
  print_if_index(rx_handle, "%-10.10s ", tag::storm_control_interface, port_info->if_index);
  print_text(rx_handle, "%11s     ", tag::storm_control_unicast_level, storm_level(control[PM_STORM_UNICAST]).text);
  print_text(rx_handle, "%11s     ", tag::storm_control_multicast_level, storm_level(control[PM_STORM_MULTICAST]).text);
  print_text(rx_handle, "%11s     ", tag::storm_control_broadcast_level, storm_level(control[PM_STORM_BROADCAST]).text);
  print_u64(rx_handle, "%17s\n", tag::storm_control_suppressed_packets, stats->mac.pktflow.storm_supression);
}

void pm_cli_show_common_counters_brief(cmd_rx_handle_t* rx_handle, statscl_portcl_stats_msg_t* stats) {
  const auto& flow = stats->mac.pktflow;
  print_if_index(rx_handle, "%-22.22s ", tag::rates_interface, stats->ifidx);
  print_u64(rx_handle, "%-8.8s ", tag::rates_input_mbytes_per_sec, flow.byte_rate_rx / kMega);
  print_u64(rx_handle, "%-17.17s ", tag::rates_input_pps, flow.pkt_rate_rx);
  print_u64(rx_handle, "%-8.8s ", tag::rates_output_mbytes_per_sec, flow.byte_rate_tx / kMega);
  print_u64(rx_handle, "%-17.17s\n", tag::rates_output_pps, flow.pkt_rate_tx);
}
