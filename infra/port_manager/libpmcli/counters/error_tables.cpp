// Tables of errors and of trunk frames: one row for each interface, a cell without a counter shows "--".

#include "pmcli/counters.h"
#include "support/print.h"

using namespace pmcli;

namespace {

// One cell: a counter, whether its medium has it, and how it is printed.
template <typename Stats>
struct counter_cell {
  uint64 Stats::*counter;
  boolean Stats::*present;
  tuple_id<CMD_TYPE_UINT64> tuple;
  const char* format;
};

using counted_errors_t = pm_cli_common_error_stat_t;
using trunk_t = pm_cli_common_trunk_stat_t;

constexpr char kErrorCell[] = " %11s";
constexpr char kAbsentErrorCell[] = "          --";

constexpr counter_cell<counted_errors_t> kErrors1[] = {
    {&counted_errors_t::rx_align, &counted_errors_t::have_rx_align, tag::error_counters_alignment_errors, kErrorCell},
    {&counted_errors_t::rx_frames, &counted_errors_t::have_rx_frames, tag::error_counters_frame_check_errors,
     kErrorCell},
    {&counted_errors_t::tx_errors, &counted_errors_t::have_tx_errors, tag::error_counters_output_errors, kErrorCell},
    {&counted_errors_t::rx_errors, &counted_errors_t::have_rx_errors, tag::error_counters_input_errors, kErrorCell},
    {&counted_errors_t::undersize, &counted_errors_t::have_undersize, tag::error_counters_undersize_errors, kErrorCell},
    {&counted_errors_t::tx_dropped, &counted_errors_t::have_tx_dropped, tag::error_counters_output_discards,
     kErrorCell},
};

// The carrier cell lacks its leading blank, which is intended.
constexpr counter_cell<counted_errors_t> kErrors2[] = {
    {&counted_errors_t::single_coll, &counted_errors_t::have_single_coll, tag::error_counters_single_collisions,
     kErrorCell},
    {&counted_errors_t::multi_coll, &counted_errors_t::have_multi_coll, tag::error_counters_multiple_collisions,
     kErrorCell},
    {&counted_errors_t::late_coll, &counted_errors_t::have_late_coll, tag::error_counters_late_collisions, kErrorCell},
    {&counted_errors_t::excess_coll, &counted_errors_t::have_excess_coll, tag::error_counters_excessive_collisions,
     kErrorCell},
    {&counted_errors_t::carrier, &counted_errors_t::have_carrier, tag::error_counters_carrier_errors, "%11s"},
    {&counted_errors_t::runts, &counted_errors_t::have_runts, tag::error_counters_runts, kErrorCell},
};

// Transmit is before receive in the fourth and fifth cells, which is intended.
constexpr counter_cell<counted_errors_t> kErrors3[] = {
    {&counted_errors_t::giant, &counted_errors_t::have_giant, tag::error_counters_giants, kErrorCell},
    {&counted_errors_t::SQEtest, &counted_errors_t::have_SQEtest, tag::error_counters_sqe_test_errors, kErrorCell},
    {&counted_errors_t::deferred, &counted_errors_t::have_deferred, tag::error_counters_deferred, kErrorCell},
    {&counted_errors_t::tx_int_mac_errors, &counted_errors_t::have_tx_int_mac_errors,
     tag::error_counters_output_internal_mac_errors, kErrorCell},
    {&counted_errors_t::rx_int_mac_errors, &counted_errors_t::have_rx_int_mac_errors,
     tag::error_counters_input_internal_mac_errors, kErrorCell},
    {&counted_errors_t::symbol, &counted_errors_t::have_symbol, tag::error_counters_symbol_errors, kErrorCell},
};

constexpr char kTrunkCell[] = "%16.16s";
constexpr char kAbsentTrunkCell[] = "              --";

constexpr counter_cell<trunk_t> kTrunk[] = {
    {&trunk_t::trunk_tx, &trunk_t::have_trunk_tx, tag::trunk_counters_output_packets, kTrunkCell},
    {&trunk_t::trunk_rx, &trunk_t::have_trunk_rx, tag::trunk_counters_input_packets, kTrunkCell},
    {&trunk_t::wrong_encap, &trunk_t::have_wrong_encap, tag::trunk_counters_wrong_encapsulation, kTrunkCell},
};

template <typename Stats, std::size_t Cells>
void print_cells(cmd_rx_handle_t* rx, const counter_cell<Stats> (&cells)[Cells], const Stats& stats,
                 const char* absent) {
  for (const counter_cell<Stats>& cell : cells) {
    if (stats.*cell.present != 0)
      print_u64(rx, cell.format, cell.tuple, stats.*cell.counter);
    else
      cmd_prt(rx, absent);
  }
  cmd_prt(rx, "\n");
}

template <std::size_t Cells>
void print_errors(cmd_rx_handle_t* rx, if_index_t if_index, const counter_cell<counted_errors_t> (&cells)[Cells],
                  const counted_errors_t& errors) {
  cmd_print_short(rx);
  print_if_index(rx, "%-8.8s", tag::error_counters_interface, if_index);
  print_cells(rx, cells, errors, kAbsentErrorCell);
}

}  // namespace

void pm_cli_show_port_1st_counters_errors_table(cmd_rx_handle_t* rx_handle, if_index_t if_index,
                                                pm_cli_common_error_stat_t* stats) {
  print_errors(rx_handle, if_index, kErrors1, *stats);
}

void pm_cli_show_port_2nd_counters_errors_table(cmd_rx_handle_t* rx_handle, if_index_t if_index,
                                                pm_cli_common_error_stat_t* stats) {
  print_errors(rx_handle, if_index, kErrors2, *stats);
}

void pm_cli_show_port_3rd_counters_errors_table(cmd_rx_handle_t* rx_handle, if_index_t if_index,
                                                pm_cli_common_error_stat_t* stats) {
  print_errors(rx_handle, if_index, kErrors3, *stats);
}

void pm_cli_show_port_counters_trunk(cmd_rx_handle_t* rx_handle, pm_cli_common_trunk_stat_t* stats,
                                     if_index_t if_index) {
  cmd_print_short(rx_handle);
  print_if_index(rx_handle, "%-13.13s", tag::trunk_counters_interface, if_index);
  print_cells(rx_handle, kTrunk, *stats, kAbsentTrunkCell);
}
