// The lists of the management port's counters: those of the port manager, then those of the kernel.

#include "counters/counter_list.h"
#include "pmcli/counters.h"
#include "support/print.h"

using namespace pmcli;

namespace {

using kernel_stats = pm_proc_net_dev_stats_t;

constexpr counter_row<pm_if_stat> kNonzeroVdc[] = {
    {"VDC Level Input Packets:", 0x152A0086, counter<&pm_if_stat::in_pkts>},
    {"VDC Level Input Bytes:", 0x152A0087, counter<&pm_if_stat::in_bytes>},
    {"VDC Level Input Unicast Packets:", 0x152A0088, counter<&pm_if_stat::in_pkts_ucast>},
    {"VDC Level Input Multicast Packets:", 0x152A0089, counter<&pm_if_stat::in_pkts_mcast>},
    {"VDC Level Input Broadcast Packets:", 0x152A008A, counter<&pm_if_stat::in_pkts_bcast>},
    {"VDC Level Input Bytes Per Second:", 0x152A008B, counter<&pm_if_stat::in_bps>},
    {"VDC Level Input Packets Per Second:", 0x152A008C, counter<&pm_if_stat::in_pps>},
    {"VDC Level Average Input Packets:", 0x152A008D, counter<&pm_if_stat::interval_in_pkts>},
    {"VDC Level Average Input Bytes:", 0x152A008E, counter<&pm_if_stat::interval_in_bytes>},
    {"VDC Level Output Packets:", 0x152A008F, counter<&pm_if_stat::out_pkts>},
    {"VDC Level Output Bytes:", 0x152A0090, counter<&pm_if_stat::out_bytes>},
    {"VDC Level Output Unicast Packets:", 0x152A0091, counter<&pm_if_stat::out_pkts_ucast>},
    {"VDC Level Output Multicast Packets:", 0x152A0092, counter<&pm_if_stat::out_pkts_mcast>},
    {"VDC Level Output Broadcast Packets:", 0x152A0093, counter<&pm_if_stat::out_pkts_bcast>},
    {"VDC Level Output Bytes Per Second:", 0x152A0094, counter<&pm_if_stat::out_bps>},
    {"VDC Level Output Packets Per Second:", 0x152A0095, counter<&pm_if_stat::out_pps>},
    {"VDC Level Average Output Packets:", 0x152A0096, counter<&pm_if_stat::interval_out_pkts>},
    {"VDC Level Average Output Bytes:", 0x152A0097, counter<&pm_if_stat::interval_out_bytes>},
};

// Overruns and underruns show the dropped packets, which is intended; so below.
constexpr counter_row<pm_proc_net_dev_stats_t> kNonzeroSystem[] = {
    {"Input Packets:", 0x142A041B, counter<&kernel_stats::rx_packets>},
    {"Input Bytes:", 0x142A041C, counter<&kernel_stats::rx_bytes>},
    {"Input Multicast:", 0x142A041D, counter<&kernel_stats::rx_multicast>},
    {"Input Compressed:", 0x142A041E, counter<&kernel_stats::rx_compressed>},
    {"Input Errors:", 0x142A041F, counter<&kernel_stats::rx_errors>},
    {"Input Frame Errors:", 0x142A0420, counter<&kernel_stats::rx_frame_errors>},
    {"Input Overruns:", 0x142A0421, counter<&kernel_stats::rx_dropped>},
    {"Input FIFO Errors:", 0x142A0422, counter<&kernel_stats::rx_fifo_errors>},
    {"Output Packets:", 0x142A0423, counter<&kernel_stats::tx_packets>},
    {"Output Bytes:", 0x142A0424, counter<&kernel_stats::tx_bytes>},
    {"Output Underruns:", 0x142A0425, counter<&kernel_stats::tx_dropped>},
    {"Output Errors:", 0x142A0426, counter<&kernel_stats::tx_errors>},
    {"Output Collisions:", 0x142A0427, counter<&kernel_stats::tx_collisions>},
    {"Output FIFO Errors:", 0x142A0428, counter<&kernel_stats::tx_fifo_errors>},
    {"Output Carrier Errors:", 0x142A0429, counter<&kernel_stats::tx_carrier_errors>},
};

constexpr counter_row<pm_if_stat> kAllVdc[] = {
    {"VDCLevelInPackets:", 0x152A0409, counter<&pm_if_stat::in_pkts>},
    {"VDCLevelInOctets:", 0x152A040A, counter<&pm_if_stat::in_bytes>},
    {"VDCLevelInUcastPkts:", 0x152A040B, counter<&pm_if_stat::in_pkts_ucast>},
    {"VDCLevelInMcastPkts:", 0x152A040C, counter<&pm_if_stat::in_pkts_mcast>},
    {"VDCLevelInBcastPkts:", 0x152A040D, counter<&pm_if_stat::in_pkts_bcast>},
    {"VDCLevelInBytesPerSec:", 0x152A040E, counter<&pm_if_stat::in_bps>},
    {"VDCLevelInPktsPerSec:", 0x152A040F, counter<&pm_if_stat::in_pps>},
    {"VDCLevelAvgInPkts:", 0x152A0410, counter<&pm_if_stat::interval_in_pkts>},
    {"VDCLevelAvgInOctets:", 0x152A0411, counter<&pm_if_stat::interval_in_bytes>},
    {"VDCLevelOutPackets:", 0x152A0412, counter<&pm_if_stat::out_pkts>},
    {"VDCLevelOutOctets:", 0x152A0413, counter<&pm_if_stat::out_bytes>},
    {"VDCLevelOutUcastPkts:", 0x152A0414, counter<&pm_if_stat::out_pkts_ucast>},
    {"VDCLevelOutMcastPkts:", 0x152A0415, counter<&pm_if_stat::out_pkts_mcast>},
    {"VDCLevelOutBcastPkts:", 0x152A0416, counter<&pm_if_stat::out_pkts_bcast>},
    {"VDCLevelOutBytesPerSec:", 0x152A0417, counter<&pm_if_stat::out_bps>},
    {"VDCLevelOutPktsPerSec:", 0x152A0418, counter<&pm_if_stat::out_pps>},
    {"VDCLevelAvgOutPkts:", 0x152A0419, counter<&pm_if_stat::interval_out_pkts>},
    {"VDCLevelAvgOutOctets:", 0x152A041A, counter<&pm_if_stat::interval_out_bytes>},
};

constexpr counter_row<pm_proc_net_dev_stats_t> kAllSystem[] = {
    {"InPackets", 0x142A041B, counter<&kernel_stats::rx_packets>},
    {"InOctets", 0x142A041C, counter<&kernel_stats::rx_bytes>},
    {"InMcastPkts", 0x142A041D, counter<&kernel_stats::rx_multicast>},
    {"OutPackets", 0x142A0423, counter<&kernel_stats::tx_packets>},
    {"OutOctets", 0x142A0424, counter<&kernel_stats::tx_bytes>},
    {"InErrors", 0x142A041F, counter<&kernel_stats::rx_errors>},
    {"OutErrors", 0x142A0426, counter<&kernel_stats::tx_errors>},
    {"InFIFOs", 0x142A0422, counter<&kernel_stats::rx_fifo_errors>},
    {"OutFIFOs", 0x142A0428, counter<&kernel_stats::tx_fifo_errors>},
    {"Compressed", 0x142A041E, counter<&kernel_stats::rx_compressed>},
    {"InFrame", 0x142A0420, counter<&kernel_stats::rx_frame_errors>},
    {"Overruns", 0x142A0421, counter<&kernel_stats::rx_dropped>},
    {"Underruns", 0x142A0425, counter<&kernel_stats::tx_dropped>},
    {"Collisions", 0x142A0427, counter<&kernel_stats::tx_collisions>},
    {"CarrierErrors", 0x142A0429, counter<&kernel_stats::tx_carrier_errors>},
};

}  // namespace

void pm_cli_mgmt_counters_detailed(cmd_rx_handle_t* rx_handle, pm_if_stat* stats, pm_proc_net_dev_stats_t* system_stats,
                                   if_index_t if_index) {
  const bool any = (stats != nullptr && any_nonzero<pm_if_stat>(kNonzeroVdc, *stats)) ||
                   (system_stats != nullptr && any_nonzero<kernel_stats>(kNonzeroSystem, *system_stats));
  if (rx_handle == nullptr || !any) return;
  print_if_index(rx_handle, "%s\n", 0x0C2A0085, if_index);
  if (stats != nullptr) print_nonzero<pm_if_stat>(rx_handle, kNonzeroVdc, *stats);
  if (system_stats != nullptr) print_nonzero<kernel_stats>(rx_handle, kNonzeroSystem, *system_stats);
  cmd_prt(rx_handle, "\n");
}

void pm_cli_mgmt_counters_detailed_all(cmd_rx_handle_t* rx_handle, pm_if_stat* stats,
                                       pm_proc_net_dev_stats_t* system_stats, if_index_t if_index) {
  if (rx_handle == nullptr) return;
  int number = 0;
  print_if_index(rx_handle, "%s\n  32 Bit Counters:\n", 0x0C2A0408, if_index);
  if (stats != nullptr) number = print_numbered<pm_if_stat>(rx_handle, number, kAllVdc, *stats);
  if (system_stats != nullptr) print_numbered<kernel_stats>(rx_handle, number, kAllSystem, *system_stats);
  cmd_prt(rx_handle, "\n");
}
