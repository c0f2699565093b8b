// Normalising the counters of each medium into the terms that all media share.

#include "pmcli/counters.h"

namespace {

using common_t = pm_cli_common_error_stat_t;
using eth_errors_t = statscl_portcl_mac_error_stats_t;
using presence_flag = boolean common_t::*;

constexpr presence_flag kPresenceFlags[] = {
    &common_t::have_rx_align,
    &common_t::have_rx_frames,
    &common_t::have_tx_errors,
    &common_t::have_rx_errors,
    &common_t::have_undersize,
    &common_t::have_tx_dropped,
    &common_t::have_single_coll,
    &common_t::have_multi_coll,
    &common_t::have_late_coll,
    &common_t::have_excess_coll,
    &common_t::have_carrier,
    &common_t::have_runts,
    &common_t::have_giant,
    &common_t::have_SQEtest,
    &common_t::have_deferred,
    &common_t::have_rx_int_mac_errors,
    &common_t::have_tx_int_mac_errors,
    &common_t::have_symbol,
};

// One common counter: the sum of two counters of the medium, of which either may be missing.
template <typename Medium>
struct common_counter {
  uint64 common_t::*counter;
  presence_flag present;
  be64 Medium::*first;
  be64 Medium::*second;

  uint64 value(const Medium& medium) const {
    return (first != nullptr ? uint64{medium.*first} : 0) + (second != nullptr ? uint64{medium.*second} : 0);
  }
};

// Runts count in two places, and tx_dropped is not the counter of its name; both are intended.
constexpr common_counter<eth_errors_t> kEthCounters[] = {
    {&common_t::rx_align, &common_t::have_rx_align, &eth_errors_t::runt, &eth_errors_t::jabber},
    {&common_t::rx_frames, &common_t::have_rx_frames, &eth_errors_t::crc, nullptr},
    {&common_t::tx_errors, &common_t::have_tx_errors, &eth_errors_t::output_errors, nullptr},
    {&common_t::rx_errors, &common_t::have_rx_errors, &eth_errors_t::input_errors, nullptr},
    {&common_t::undersize, &common_t::have_undersize, &eth_errors_t::shortframe, nullptr},
    {&common_t::tx_dropped, &common_t::have_tx_dropped, &eth_errors_t::underrun, nullptr},
    {&common_t::single_coll, &common_t::have_single_coll, &eth_errors_t::single_collision, nullptr},
    {&common_t::multi_coll, &common_t::have_multi_coll, &eth_errors_t::multi_collision, nullptr},
    {&common_t::late_coll, &common_t::have_late_coll, &eth_errors_t::late_collision, nullptr},
    {&common_t::excess_coll, &common_t::have_excess_coll, &eth_errors_t::excessive_collision, nullptr},
    {&common_t::carrier, &common_t::have_carrier, &eth_errors_t::lost_carrier, &eth_errors_t::no_carrier},
    {&common_t::runts, &common_t::have_runts, &eth_errors_t::runt, nullptr},
    {&common_t::giant, &common_t::have_giant, &eth_errors_t::giants_rx, nullptr},
    {&common_t::deferred, &common_t::have_deferred, &eth_errors_t::deferred, nullptr},
    {&common_t::rx_int_mac_errors, &common_t::have_rx_int_mac_errors, nullptr, nullptr},  // present, and always 0
    {&common_t::tx_int_mac_errors, &common_t::have_tx_int_mac_errors, nullptr, nullptr},
    {&common_t::symbol, &common_t::have_symbol, &eth_errors_t::symbol_err, nullptr},
};

// A counter without a source is written as 0 and does not exist on this medium.
constexpr common_counter<ip_if_stats> kIpCounters[] = {
    {&common_t::rx_align, &common_t::have_rx_align, nullptr, nullptr},
    {&common_t::rx_frames, &common_t::have_rx_frames, &ip_if_stats::in_frames, nullptr},
    {&common_t::tx_errors, &common_t::have_tx_errors, &ip_if_stats::out_errors, nullptr},
    {&common_t::rx_errors, &common_t::have_rx_errors, &ip_if_stats::in_errors, nullptr},
    {&common_t::tx_dropped, &common_t::have_tx_dropped, nullptr, nullptr},
    {&common_t::late_coll, &common_t::have_late_coll, nullptr, nullptr},
    {&common_t::carrier, &common_t::have_carrier, &ip_if_stats::out_carrier_errors, nullptr},
    {&common_t::runts, &common_t::have_runts, nullptr, nullptr},
    {&common_t::giant, &common_t::have_giant, nullptr, nullptr},
};

}  // namespace

void pm_cli_copy_eth_to_common_ctr_err(pm_cli_common_error_stat_t* common, statscl_portcl_stats_msg_t* eth_stats) {
  for (const auto& row : kEthCounters) {
    common->*row.counter = row.value(eth_stats->mac.errors);
    common->*row.present = 1;
  }
  common->have_SQEtest = 0;
}

void pm_cli_copy_eth_to_common_trunk_ctr(pm_cli_common_trunk_stat_t* common, statscl_portcl_stats_msg_t* eth_stats) {
  common->trunk_rx = eth_stats->mac.pktflow.trunk_rx;
  common->trunk_tx = eth_stats->mac.pktflow.trunk_tx;
  common->wrong_encap = eth_stats->mac.errors.bad_encap;
  common->have_trunk_rx = 1;
  common->have_trunk_tx = 1;
  common->have_wrong_encap = 1;
}

void pm_cli_copy_ip_to_common_ctr_err(pm_cli_common_error_stat_t* common, ip_if_stats* ip_stats) {
  for (const auto& row : kIpCounters) {
    common->*row.counter = row.value(*ip_stats);
    common->*row.present = row.first != nullptr ? 1 : 0;
  }
}

void pm_cli_copy_mgmt_to_common_ctr_err(pm_cli_common_error_stat_t* common, pm_if_stat*) {
  for (const presence_flag flag : kPresenceFlags) common->*flag = 0;
}
