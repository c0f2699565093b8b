// Clearing counters of Ethernet ports and virtual Ethernet interfaces.

#include <algorithm>
#include <cstdio>
#include <optional>

#include "counters/clear_targets.h"
#include "platform/clear_counters.h"
#include "platform/eth_statistics.h"
#include "pmcli/clear.h"
#include "support/chassis.h"
#include "support/kind.h"
#include "support/library_messages.h"
#include "support/listing.h"

using namespace pmcli;

namespace {

using clear_function = statscl_clear_port_client_stats_fn;

void report(int32 error) {
  if (error != 0) std::puts("error: clearing counters");
}

void clear_at_port_manager(mts_q_handle_t q, if_index_t if_index) {
  report(pm_get_clear_eth_stats(q, if_index, if_index, 0, nullptr));
}

// Whether the statistics client keeps the counters. On chassis 17 it keeps those of virtual interfaces only, which is
// intended.
bool is_kept_by_client(uint32 chassis_type, if_index_type_t kind) {
  return kind == IF_TYPE_VETHERNET ? is_eth_switch_chassis(chassis_type) : has_statistics_client(chassis_type);
}

// Null when the library is missing, and after a missing function was printed.
clear_function find_clear(const service_library& library) {
  constexpr char kSymbol[] = "statscl_clear_port_client_stats";
  if (!library) return nullptr;
  const auto clear = library.find<clear_function>(kSymbol);
  if (clear) return clear.function;
  print_function_not_found(clear.error, kSymbol);
  return nullptr;
}

// Every interface of a kind. False when the statistics client is needed and cannot serve.
bool clear_all(mts_q_handle_t q, if_index_type_t kind, uint32 chassis_type) {
  message answer(q);
  if (request_listing(kind, q, &answer) != 0) return true;
  const interface_listing listing(answer.ref());
  if (!is_kept_by_client(chassis_type, kind)) {
    listing.for_each([q](if_index_t if_index) { clear_at_port_manager(q, if_index); });
    return true;
  }
  const service_library library(STATCL_LIBRARY, RTLD_NOW);
  const clear_function clear = find_clear(library);
  if (clear == nullptr) return false;
  listing.for_each([clear](if_index_t if_index) { report(clear(if_index)); });
  return true;
}

}  // namespace

void pm_cli_clear_all_eth_counters(mts_q_handle_t q) {
  const uint32 chassis_type = read_chassis_type();
  if (clear_all(q, IF_TYPE_ETHERNET, chassis_type)) clear_all(q, IF_TYPE_VETHERNET, chassis_type);
}

int32 pm_cli_eth_clear_counters(paraminfo_t* param) {
  if (param == nullptr) return 1;
  const auto ranges = find_ranges(param);
  if (!ranges) return 1;
  const uint32 chassis_type = read_chassis_type();
  const auto is_at_client = [=](const vsh_intf_mono_range_t& range) {
    return is_kept_by_client(chassis_type, kind_of(range.lower_if_index));
  };

  std::optional<service_library> client;
  clear_function clear = nullptr;
  if (std::any_of(ranges->begin(), ranges->end(), is_at_client)) {
    clear = find_clear(client.emplace(STATCL_LIBRARY, RTLD_NOW));
    if (clear == nullptr) return 1;
  }
  for (const vsh_intf_mono_range_t& range : *ranges) {
    const bool at_client = clear != nullptr && is_at_client(range);
    for_each_interface(range, [&](if_index_t if_index) {
      if (at_client)
        report(clear(if_index));
      else
        clear_at_port_manager(param->q, if_index);
    });
  }
  return 0;
}
