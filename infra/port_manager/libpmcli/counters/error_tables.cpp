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

using errors_t = pm_cli_common_error_stat_t;
using trunk_t = pm_cli_common_trunk_stat_t;

constexpr char kErrorCell[] = " %11s";
constexpr char kAbsentErrorCell[] = "          --";

constexpr counter_cell<errors_t> kErrors1[] = {
    {&errors_t::rx_align, &errors_t::have_rx_align, 0x152A05C3, kErrorCell},
    {&errors_t::rx_frames, &errors_t::have_rx_frames, 0x152A05C4, kErrorCell},
    {&errors_t::tx_errors, &errors_t::have_tx_errors, 0x152A05C5, kErrorCell},
    {&errors_t::rx_errors, &errors_t::have_rx_errors, 0x152A05C6, kErrorCell},
    {&errors_t::undersize, &errors_t::have_undersize, 0x152A05C7, kErrorCell},
    {&errors_t::tx_dropped, &errors_t::have_tx_dropped, 0x152A05C8, kErrorCell},
};

// The carrier cell lacks its leading blank, which is intended.
constexpr counter_cell<errors_t> kErrors2[] = {
    {&errors_t::single_coll, &errors_t::have_single_coll, 0x152A05C9, kErrorCell},
    {&errors_t::multi_coll, &errors_t::have_multi_coll, 0x152A05CA, kErrorCell},
    {&errors_t::late_coll, &errors_t::have_late_coll, 0x152A05CB, kErrorCell},
    {&errors_t::excess_coll, &errors_t::have_excess_coll, 0x152A05CC, kErrorCell},
    {&errors_t::carrier, &errors_t::have_carrier, 0x152A05CD, "%11s"},
    {&errors_t::runts, &errors_t::have_runts, 0x152A05CE, kErrorCell},
};

// Transmit stands in front of receive in the fourth and fifth cells, which is intended.
constexpr counter_cell<errors_t> kErrors3[] = {
    {&errors_t::giant, &errors_t::have_giant, 0x152A05CF, kErrorCell},
    {&errors_t::SQEtest, &errors_t::have_SQEtest, 0x152A05D0, kErrorCell},
    {&errors_t::deferred, &errors_t::have_deferred, 0x152A05D1, kErrorCell},
    {&errors_t::tx_int_mac_errors, &errors_t::have_tx_int_mac_errors, 0x152A05D3, kErrorCell},
    {&errors_t::rx_int_mac_errors, &errors_t::have_rx_int_mac_errors, 0x152A05D2, kErrorCell},
    {&errors_t::symbol, &errors_t::have_symbol, 0x152A05D4, kErrorCell},
};

constexpr char kTrunkCell[] = "%16.16s";
constexpr char kAbsentTrunkCell[] = "              --";

constexpr counter_cell<trunk_t> kTrunk[] = {
    {&trunk_t::trunk_tx, &trunk_t::have_trunk_tx, 0x152A05E3, kTrunkCell},
    {&trunk_t::trunk_rx, &trunk_t::have_trunk_rx, 0x152A05E4, kTrunkCell},
    {&trunk_t::wrong_encap, &trunk_t::have_wrong_encap, 0x152A05E5, kTrunkCell},
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
void print_errors(cmd_rx_handle_t* rx, if_index_t if_index, const counter_cell<errors_t> (&cells)[Cells],
                  const errors_t& errors) {
  cmd_print_short(rx);
  print_if_index(rx, "%-8.8s", 0x0C2A05C2, if_index);
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
  print_if_index(rx_handle, "%-13.13s", 0x0C2A05E2, if_index);
  print_cells(rx_handle, kTrunk, *stats, kAbsentTrunkCell);
}
