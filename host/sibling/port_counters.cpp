#include "sibling/port_counters.h"

#include <cstdio>
#include <cstring>
#include <optional>

#include "pmcli/counters.h"
#include "sibling/frame.h"
#include "sibling/port_record.h"

namespace {

using sibling::request;

// The report of the statistics client on a port; nothing after a failure was printed.
std::optional<statscl_portcl_stats_msg_t> statistics_of(const request& requested) {
  statscl_portcl_stats_msg_t stats{};
  if (pm_cli_get_eth_stat_info(requested.if_index, &stats) == 0) return stats;
  std::puts("stats unavailable");
  return std::nullopt;
}

void show_all_counters(const request& requested) {
  pfstat_key_cntrs_t forwarding;
  std::memset(&forwarding, 0, sizeof forwarding);
  pm_cli_get_pfstat_counters(requested.if_index, requested.q, &forwarding, 0);
  if (auto stats = statistics_of(requested)) pm_cli_show_eth_counters_detailed_all(requested.rx, &forwarding, &*stats);
}

void show_storm_control(const request& requested) {
  if (if_index_is_sub_intf(requested.if_index)) return;
  const sibling::port_record port(requested);
  if (!port) return;
  if (auto stats = statistics_of(requested)) pm_cli_show_port_storm_ctrl_counters(requested.rx, port.get(), &*stats);
}

void show_rates(const request& requested) {
  if (if_index_is_sub_intf(requested.if_index)) return;
  if (!requested.may_see_counters) {
    std::puts("    Counters not available");
    return;
  }
  if (auto stats = statistics_of(requested)) pm_cli_show_common_counters_brief(requested.rx, &*stats);
}

}  // namespace

[[gnu::visibility("default")]] uint32 sibling_show_all_counters(paraminfo_t* param) {
  return sibling::run_handler(param, "counters", show_all_counters);
}

[[gnu::visibility("default")]] uint32 sibling_show_storm_control(paraminfo_t* param) {
  return sibling::run_handler(param, "storm control", show_storm_control);
}

[[gnu::visibility("default")]] uint32 sibling_show_rates(paraminfo_t* param) {
  return sibling::run_handler(param, "rates", show_rates);
}
