#include "counters/loopback_lists.h"

#include "counters/counter_list.h"
#include "pmcli/counters.h"
#include "support/print.h"

using namespace pmcli;

namespace {

// Their ids promise 32 bits, so of each counter the low half shows, which is intended.
constexpr counter_row<ip_if_stats> kLoopbackNonzero[] = {
    {"Input Packets:", tag::nonzero_loopback_input_packets, counter<&ip_if_stats::in_pkts>},
    {"Input Bytes:", tag::nonzero_loopback_input_bytes, counter<&ip_if_stats::in_bytes>},
    {"Input Multicast:", tag::nonzero_loopback_input_multicast_packets, counter<&ip_if_stats::in_pkts_mcast>},
    {"Input Compressed:", tag::nonzero_loopback_input_compressed, counter<&ip_if_stats::in_compressed>},
    {"Input Errors:", tag::nonzero_loopback_input_errors, counter<&ip_if_stats::in_errors>},
    {"Input Frame Errors:", tag::nonzero_loopback_input_frame_errors, counter<&ip_if_stats::in_frames>},
    {"Input Overruns:", tag::nonzero_loopback_overrun_errors, counter<&ip_if_stats::in_overrun>},
    {"Input FIFOs:", tag::nonzero_loopback_input_fifo_errors, counter<&ip_if_stats::in_fifo>},
    {"Output Packets:", tag::nonzero_loopback_output_packets, counter<&ip_if_stats::out_pkts>},
    {"Output Bytes:", tag::nonzero_loopback_output_bytes, counter<&ip_if_stats::out_bytes>},
    {"Output Underruns:", tag::nonzero_loopback_underrun_errors, counter<&ip_if_stats::out_underruns>},
    {"Output Errors:", tag::nonzero_loopback_output_errors, counter<&ip_if_stats::out_errors>},
    {"Output Collisions:", tag::nonzero_loopback_collision_errors, counter<&ip_if_stats::out_collisions>},
};

constexpr counter_row<ip_if_stats> kLoopbackHighCapacity[] = {
    {"rxHCTotalPkts", tag::high_capacity_input_packets, counter<&ip_if_stats::in_pkts>},
    {"txHCTotalPkts", tag::high_capacity_output_packets, counter<&ip_if_stats::out_pkts>},
    {"rxHCMulticastPkts", tag::high_capacity_input_multicast_packets, counter<&ip_if_stats::in_pkts_mcast>},
    {"rxHCOctets", tag::high_capacity_input_bytes, counter<&ip_if_stats::in_bytes>},
    {"txHCOctets", tag::high_capacity_output_bytes, counter<&ip_if_stats::out_bytes>},
};

constexpr counter_row<ip_if_stats> kLoopbackAll[] = {
    {"InPackets", tag::all_loopback_input_packets, counter<&ip_if_stats::in_pkts>},
    {"OutPackets", tag::all_loopback_output_packets, counter<&ip_if_stats::out_pkts>},
    {"InOctets", tag::all_loopback_input_bytes, counter<&ip_if_stats::in_bytes>},
    {"OutOctets", tag::all_loopback_output_bytes, counter<&ip_if_stats::out_bytes>},
    {"InMcastPkts", tag::all_loopback_input_multicast_packets, counter<&ip_if_stats::in_pkts_mcast>},
    {"InErrors", tag::all_loopback_input_errors, counter<&ip_if_stats::in_errors>},
    {"OutErrors", tag::all_loopback_output_errors, counter<&ip_if_stats::out_errors>},
    {"Compressed", tag::all_loopback_input_compressed, counter<&ip_if_stats::in_compressed>},
    {"InFrames", tag::all_loopback_input_frame_errors, counter<&ip_if_stats::in_frames>},
    {"InFIFOs", tag::all_loopback_input_fifo_errors, counter<&ip_if_stats::in_fifo>},
    {"OutFIFOs", tag::all_loopback_output_fifo_errors, counter<&ip_if_stats::out_fifo>},
    {"Overruns", tag::all_loopback_overrun_errors, counter<&ip_if_stats::in_overrun>},
    {"Underruns", tag::all_loopback_underrun_errors, counter<&ip_if_stats::out_underruns>},
    {"Collisions", tag::all_loopback_collision_errors, counter<&ip_if_stats::out_collisions>},
    {"CarrierErrors", tag::all_loopback_lost_carrier_errors, counter<&ip_if_stats::out_carrier_errors>},
};

}  // namespace

void pmcli::print_loopback_nonzero(cmd_rx_handle_t* rx, const ip_if_stats& stats, if_index_t if_index) {
  if (!any_nonzero<ip_if_stats>(kLoopbackNonzero, stats)) return;
  print_if_index(rx, "%s\n", tag::nonzero_interface, if_index);
  print_nonzero<ip_if_stats>(rx, kLoopbackNonzero, stats);
  cmd_prt(rx, "\n");
}

void pm_cli_show_loopback_counters_detailed_all(cmd_rx_handle_t* rx_handle, ip_if_stats* stats, if_index_t if_index) {
  if (rx_handle == nullptr || stats == nullptr) return;
  print_if_index(rx_handle, "%s\n  64 bit counters:\n", tag::all_interface, if_index);
  print_numbered<ip_if_stats>(rx_handle, 0, kLoopbackHighCapacity, *stats);
  cmd_prt(rx_handle, "\n  All Port Counters:\n");
  print_numbered<ip_if_stats>(rx_handle, 0, kLoopbackAll, *stats);
  cmd_prt(rx_handle, "\n");
}
