// Fetching statistics from their providers, each of which is a library opened by name for one request.

#include <cstring>

#include "pmcli/counters.h"
#include "support/library_messages.h"
#include "support/scope.h"

using namespace pmcli;

syserr_t pm_cli_get_common_eth_stat_info(if_index_t if_index, statscl_portcl_stats_msg_t* eth_stats,
                                         boolean snmp_values) {
  *eth_stats = {};
  const service_library library(STATCL_LIBRARY, RTLD_LAZY);
  if (!library) {
    print_library_not_opened(STATCL_LIBRARY);
    return -1;
  }
  const char* const name = snmp_values == 1 ? "statcl_get_port_client_snmp_stats" : "statcl_get_port_client_stats";
  const auto get_stats = library.find<statcl_get_port_client_stats_fn>(name);
  if (!get_stats) {
    print_function_not_found(get_stats.error, name);
    return -1;
  }
  return get_stats.function(if_index, eth_stats) == 0 ? 0 : -1;
}

syserr_t pm_cli_get_eth_stat_info(if_index_t if_index, statscl_portcl_stats_msg_t* eth_stats) {
  return pm_cli_get_common_eth_stat_info(if_index, eth_stats, 0);
}

syserr_t pm_cli_get_snmp_eth_stat_info(if_index_t if_index, statscl_portcl_stats_msg_t* eth_stats) {
  return pm_cli_get_common_eth_stat_info(if_index, eth_stats, 1);
}

syserr_t pm_cli_get_loopback_counters(if_index_t if_index, mts_q_handle_t src_q, ip_if_stats* loopback_stats) {
  constexpr char kFunction[] = "ip_get_loopback_counters";
  const service_library library(IP_STATS_LIBRARY, RTLD_NOW);
  if (!library) {
    print_library_not_opened(IP_STATS_LIBRARY);
    return -1;
  }
  const auto get_counters = library.find<ip_get_loopback_counters_fn>(kFunction);
  if (get_counters.error != nullptr) {
    print_function_not_found(get_counters.error, kFunction);
    return -1;
  }
  if (get_counters.function == nullptr) return -1;  // a symbol of value null is passed over in silence
  return get_counters.function(src_q, if_index, loopback_stats) == 1 ? 0 : -1;  // 1 is success here
}

// No provider is called: every forwarding counter shows as 0. The cleared length is that of the counters, counted
// from the start of the record, so that its last 12 bytes stay the caller's; this is intended.
syserr_t pm_cli_get_pfstat_counters(if_index_t, mts_q_handle_t, pfstat_key_cntrs_t* stats, boolean) {
  std::memset(stats, 0, sizeof stats->cntrs);
  return 0;
}
static_assert(sizeof(pfstat_key_cntrs_t::cntrs) == 276);
