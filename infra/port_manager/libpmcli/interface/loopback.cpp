#include "platform/ip_statistics.h"
#include "pmcli/interface.h"
#include "support/counter_pieces.h"

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

}  // namespace

void pm_cli_loopback_intf_stats_print(cmd_rx_handle_t* rx_handle, ip_if_stats* stats, uint32) {
  print_counters(rx_handle, kLoopbackCounters, *stats);
}

void print_loopback_port_config(cmd_rx_handle_t*, if_index_t) {}

// Prints nothing yet: the loopback's views come with the counter displays.
void pm_cli_show_loopback_port_info(cmd_rx_handle_t*, mts_q_handle_t, uint32, if_index_t) {}
