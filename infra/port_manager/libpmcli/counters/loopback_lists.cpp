#include "counters/loopback_lists.h"

#include "counters/counter_list.h"
#include "pmcli/counters.h"
#include "support/print.h"

using namespace pmcli;

namespace {

// Their ids promise 32 bits, so of each counter the low half shows, which is intended.
constexpr counter_row<ip_if_stats> kLoopbackNonzero[] = {
    {"Input Packets:", 0x142A00A7, counter<&ip_if_stats::in_pkts>},
    {"Input Bytes:", 0x142A00A8, counter<&ip_if_stats::in_bytes>},
    {"Input Multicast:", 0x142A00A9, counter<&ip_if_stats::in_pkts_mcast>},
    {"Input Compressed:", 0x142A00AA, counter<&ip_if_stats::in_compressed>},
    {"Input Errors:", 0x142A00AB, counter<&ip_if_stats::in_errors>},
    {"Input Frame Errors:", 0x142A00AC, counter<&ip_if_stats::in_frames>},
    {"Input Overruns:", 0x142A00AD, counter<&ip_if_stats::in_overrun>},
    {"Input FIFOs:", 0x142A00AE, counter<&ip_if_stats::in_fifo>},
    {"Output Packets:", 0x142A00AF, counter<&ip_if_stats::out_pkts>},
    {"Output Bytes:", 0x142A00B0, counter<&ip_if_stats::out_bytes>},
    {"Output Underruns:", 0x142A00B1, counter<&ip_if_stats::out_underruns>},
    {"Output Errors:", 0x142A00B2, counter<&ip_if_stats::out_errors>},
    {"Output Collisions:", 0x142A00B3, counter<&ip_if_stats::out_collisions>},
};

constexpr counter_row<ip_if_stats> kLoopbackHighCapacity[] = {
    {"rxHCTotalPkts", 0x152A0439, counter<&ip_if_stats::in_pkts>},
    {"txHCTotalPkts", 0x152A043A, counter<&ip_if_stats::out_pkts>},
    {"rxHCMulticastPkts", 0x152A043C, counter<&ip_if_stats::in_pkts_mcast>},
    {"rxHCOctets", 0x152A043E, counter<&ip_if_stats::in_bytes>},
    {"txHCOctets", 0x152A0443, counter<&ip_if_stats::out_bytes>},
};

constexpr counter_row<ip_if_stats> kLoopbackAll[] = {
    {"InPackets", 0x152A042A, counter<&ip_if_stats::in_pkts>},
    {"OutPackets", 0x152A0432, counter<&ip_if_stats::out_pkts>},
    {"InOctets", 0x152A042B, counter<&ip_if_stats::in_bytes>},
    {"OutOctets", 0x152A0433, counter<&ip_if_stats::out_bytes>},
    {"InMcastPkts", 0x152A042C, counter<&ip_if_stats::in_pkts_mcast>},
    {"InErrors", 0x152A042E, counter<&ip_if_stats::in_errors>},
    {"OutErrors", 0x152A0435, counter<&ip_if_stats::out_errors>},
    {"Compressed", 0x152A042D, counter<&ip_if_stats::in_compressed>},
    {"InFrames", 0x152A042F, counter<&ip_if_stats::in_frames>},
    {"InFIFOs", 0x152A0431, counter<&ip_if_stats::in_fifo>},
    {"OutFIFOs", 0x152A0437, counter<&ip_if_stats::out_fifo>},
    {"Overruns", 0x152A0430, counter<&ip_if_stats::in_overrun>},
    {"Underruns", 0x152A0434, counter<&ip_if_stats::out_underruns>},
    {"Collisions", 0x152A0436, counter<&ip_if_stats::out_collisions>},
    {"CarrierErrors", 0x152A0438, counter<&ip_if_stats::out_carrier_errors>},
};

}  // namespace

void pmcli::print_loopback_nonzero(cmd_rx_handle_t* rx, const ip_if_stats& stats, if_index_t if_index) {
  if (!any_nonzero<ip_if_stats>(kLoopbackNonzero, stats)) return;
  print_if_index(rx, "%s\n", 0x0C2A0085, if_index);
  print_nonzero<ip_if_stats>(rx, kLoopbackNonzero, stats);
  cmd_prt(rx, "\n");
}

void pm_cli_show_loopback_counters_detailed_all(cmd_rx_handle_t* rx_handle, ip_if_stats* stats, if_index_t if_index) {
  if (rx_handle == nullptr || stats == nullptr) return;
  print_if_index(rx_handle, "%s\n  64 bit counters:\n", 0x0C2A0408, if_index);
  print_numbered<ip_if_stats>(rx_handle, 0, kLoopbackHighCapacity, *stats);
  cmd_prt(rx_handle, "\n  All Port Counters:\n");
  print_numbered<ip_if_stats>(rx_handle, 0, kLoopbackAll, *stats);
  cmd_prt(rx_handle, "\n");
}
