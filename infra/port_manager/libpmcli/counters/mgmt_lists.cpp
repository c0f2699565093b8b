// The lists of the management port's counters: those of the port manager, then those of the kernel.

#include "counters/counter_list.h"
#include "pmcli/counters.h"
#include "support/print.h"

using namespace pmcli;

namespace {

using kernel_stats = pm_proc_net_dev_stats_t;

constexpr counter_row<pm_if_stat> kNonzeroVdc[] = {
    {"VDC Level Input Packets:", tag::nonzero_vdc_input_packets, counter<&pm_if_stat::in_pkts>},
    {"VDC Level Input Bytes:", tag::nonzero_vdc_input_bytes, counter<&pm_if_stat::in_bytes>},
    {"VDC Level Input Unicast Packets:", tag::nonzero_vdc_input_unicast_packets, counter<&pm_if_stat::in_pkts_ucast>},
    {"VDC Level Input Multicast Packets:", tag::nonzero_vdc_input_multicast_packets,
     counter<&pm_if_stat::in_pkts_mcast>},
    {"VDC Level Input Broadcast Packets:", tag::nonzero_vdc_input_broadcast_packets,
     counter<&pm_if_stat::in_pkts_bcast>},
    {"VDC Level Input Bytes Per Second:", tag::nonzero_vdc_input_bytes_per_sec, counter<&pm_if_stat::in_bps>},
    {"VDC Level Input Packets Per Second:", tag::nonzero_vdc_input_packets_per_sec, counter<&pm_if_stat::in_pps>},
    {"VDC Level Average Input Packets:", tag::nonzero_vdc_interval_input_packets,
     counter<&pm_if_stat::interval_in_pkts>},
    {"VDC Level Average Input Bytes:", tag::nonzero_vdc_interval_input_bytes, counter<&pm_if_stat::interval_in_bytes>},
    {"VDC Level Output Packets:", tag::nonzero_vdc_output_packets, counter<&pm_if_stat::out_pkts>},
    {"VDC Level Output Bytes:", tag::nonzero_vdc_output_bytes, counter<&pm_if_stat::out_bytes>},
    {"VDC Level Output Unicast Packets:", tag::nonzero_vdc_output_unicast_packets,
     counter<&pm_if_stat::out_pkts_ucast>},
    {"VDC Level Output Multicast Packets:", tag::nonzero_vdc_output_multicast_packets,
     counter<&pm_if_stat::out_pkts_mcast>},
    {"VDC Level Output Broadcast Packets:", tag::nonzero_vdc_output_broadcast_packets,
     counter<&pm_if_stat::out_pkts_bcast>},
    {"VDC Level Output Bytes Per Second:", tag::nonzero_vdc_output_bytes_per_sec, counter<&pm_if_stat::out_bps>},
    {"VDC Level Output Packets Per Second:", tag::nonzero_vdc_output_packets_per_sec, counter<&pm_if_stat::out_pps>},
    {"VDC Level Average Output Packets:", tag::nonzero_vdc_interval_output_packets,
     counter<&pm_if_stat::interval_out_pkts>},
    {"VDC Level Average Output Bytes:", tag::nonzero_vdc_interval_output_bytes,
     counter<&pm_if_stat::interval_out_bytes>},
};

// Overruns and underruns show the dropped packets, which is intended; so below.
constexpr counter_row<pm_proc_net_dev_stats_t> kNonzeroSystem[] = {
    {"Input Packets:", tag::all_kernel_input_packets, counter<&kernel_stats::rx_packets>},
    {"Input Bytes:", tag::all_kernel_input_bytes, counter<&kernel_stats::rx_bytes>},
    {"Input Multicast:", tag::all_kernel_input_multicast_packets, counter<&kernel_stats::rx_multicast>},
    {"Input Compressed:", tag::all_kernel_input_compressed, counter<&kernel_stats::rx_compressed>},
    {"Input Errors:", tag::all_kernel_input_errors, counter<&kernel_stats::rx_errors>},
    {"Input Frame Errors:", tag::all_kernel_input_frame_errors, counter<&kernel_stats::rx_frame_errors>},
    {"Input Overruns:", tag::all_kernel_input_overruns, counter<&kernel_stats::rx_dropped>},
    {"Input FIFO Errors:", tag::all_kernel_input_fifo_errors, counter<&kernel_stats::rx_fifo_errors>},
    {"Output Packets:", tag::all_kernel_output_packets, counter<&kernel_stats::tx_packets>},
    {"Output Bytes:", tag::all_kernel_output_bytes, counter<&kernel_stats::tx_bytes>},
    {"Output Underruns:", tag::all_kernel_output_underruns, counter<&kernel_stats::tx_dropped>},
    {"Output Errors:", tag::all_kernel_output_errors, counter<&kernel_stats::tx_errors>},
    {"Output Collisions:", tag::all_kernel_output_collisions, counter<&kernel_stats::tx_collisions>},
    {"Output FIFO Errors:", tag::all_kernel_output_fifo_errors, counter<&kernel_stats::tx_fifo_errors>},
    {"Output Carrier Errors:", tag::all_kernel_output_carrier_errors, counter<&kernel_stats::tx_carrier_errors>},
};

constexpr counter_row<pm_if_stat> kAllVdc[] = {
    {"VDCLevelInPackets:", tag::all_vdc_input_packets, counter<&pm_if_stat::in_pkts>},
    {"VDCLevelInOctets:", tag::all_vdc_input_bytes, counter<&pm_if_stat::in_bytes>},
    {"VDCLevelInUcastPkts:", tag::all_vdc_input_unicast_packets, counter<&pm_if_stat::in_pkts_ucast>},
    {"VDCLevelInMcastPkts:", tag::all_vdc_input_multicast_packets, counter<&pm_if_stat::in_pkts_mcast>},
    {"VDCLevelInBcastPkts:", tag::all_vdc_input_broadcast_packets, counter<&pm_if_stat::in_pkts_bcast>},
    {"VDCLevelInBytesPerSec:", tag::all_vdc_input_bytes_per_sec, counter<&pm_if_stat::in_bps>},
    {"VDCLevelInPktsPerSec:", tag::all_vdc_input_packets_per_sec, counter<&pm_if_stat::in_pps>},
    {"VDCLevelAvgInPkts:", tag::all_vdc_interval_input_packets, counter<&pm_if_stat::interval_in_pkts>},
    {"VDCLevelAvgInOctets:", tag::all_vdc_interval_input_bytes, counter<&pm_if_stat::interval_in_bytes>},
    {"VDCLevelOutPackets:", tag::all_vdc_output_packets, counter<&pm_if_stat::out_pkts>},
    {"VDCLevelOutOctets:", tag::all_vdc_output_bytes, counter<&pm_if_stat::out_bytes>},
    {"VDCLevelOutUcastPkts:", tag::all_vdc_output_unicast_packets, counter<&pm_if_stat::out_pkts_ucast>},
    {"VDCLevelOutMcastPkts:", tag::all_vdc_output_multicast_packets, counter<&pm_if_stat::out_pkts_mcast>},
    {"VDCLevelOutBcastPkts:", tag::all_vdc_output_broadcast_packets, counter<&pm_if_stat::out_pkts_bcast>},
    {"VDCLevelOutBytesPerSec:", tag::all_vdc_output_bytes_per_sec, counter<&pm_if_stat::out_bps>},
    {"VDCLevelOutPktsPerSec:", tag::all_vdc_output_packets_per_sec, counter<&pm_if_stat::out_pps>},
    {"VDCLevelAvgOutPkts:", tag::all_vdc_interval_output_packets, counter<&pm_if_stat::interval_out_pkts>},
    {"VDCLevelAvgOutOctets:", tag::all_vdc_interval_output_bytes, counter<&pm_if_stat::interval_out_bytes>},
};

constexpr counter_row<pm_proc_net_dev_stats_t> kAllSystem[] = {
    {"InPackets", tag::all_kernel_input_packets, counter<&kernel_stats::rx_packets>},
    {"InOctets", tag::all_kernel_input_bytes, counter<&kernel_stats::rx_bytes>},
    {"InMcastPkts", tag::all_kernel_input_multicast_packets, counter<&kernel_stats::rx_multicast>},
    {"OutPackets", tag::all_kernel_output_packets, counter<&kernel_stats::tx_packets>},
    {"OutOctets", tag::all_kernel_output_bytes, counter<&kernel_stats::tx_bytes>},
    {"InErrors", tag::all_kernel_input_errors, counter<&kernel_stats::rx_errors>},
    {"OutErrors", tag::all_kernel_output_errors, counter<&kernel_stats::tx_errors>},
    {"InFIFOs", tag::all_kernel_input_fifo_errors, counter<&kernel_stats::rx_fifo_errors>},
    {"OutFIFOs", tag::all_kernel_output_fifo_errors, counter<&kernel_stats::tx_fifo_errors>},
    {"Compressed", tag::all_kernel_input_compressed, counter<&kernel_stats::rx_compressed>},
    {"InFrame", tag::all_kernel_input_frame_errors, counter<&kernel_stats::rx_frame_errors>},
    {"Overruns", tag::all_kernel_input_overruns, counter<&kernel_stats::rx_dropped>},
    {"Underruns", tag::all_kernel_output_underruns, counter<&kernel_stats::tx_dropped>},
    {"Collisions", tag::all_kernel_output_collisions, counter<&kernel_stats::tx_collisions>},
    {"CarrierErrors", tag::all_kernel_output_carrier_errors, counter<&kernel_stats::tx_carrier_errors>},
};

}  // namespace

void pm_cli_mgmt_counters_detailed(cmd_rx_handle_t* rx_handle, pm_if_stat* stats, pm_proc_net_dev_stats_t* system_stats,
                                   if_index_t if_index) {
  const bool any = (stats != nullptr && any_nonzero<pm_if_stat>(kNonzeroVdc, *stats)) ||
                   (system_stats != nullptr && any_nonzero<kernel_stats>(kNonzeroSystem, *system_stats));
  if (rx_handle == nullptr || !any) return;
  print_if_index(rx_handle, "%s\n", tag::nonzero_interface, if_index);
  if (stats != nullptr) print_nonzero<pm_if_stat>(rx_handle, kNonzeroVdc, *stats);
  if (system_stats != nullptr) print_nonzero<kernel_stats>(rx_handle, kNonzeroSystem, *system_stats);
  cmd_prt(rx_handle, "\n");
}

void pm_cli_mgmt_counters_detailed_all(cmd_rx_handle_t* rx_handle, pm_if_stat* stats,
                                       pm_proc_net_dev_stats_t* system_stats, if_index_t if_index) {
  if (rx_handle == nullptr) return;
  int number = 0;
  print_if_index(rx_handle, "%s\n  32 Bit Counters:\n", tag::all_interface, if_index);
  if (stats != nullptr) number = print_numbered<pm_if_stat>(rx_handle, number, kAllVdc, *stats);
  if (system_stats != nullptr) print_numbered<kernel_stats>(rx_handle, number, kAllSystem, *system_stats);
  cmd_prt(rx_handle, "\n");
}
