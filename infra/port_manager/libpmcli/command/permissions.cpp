// Which interfaces a user may see or change who is restricted to some VSANs.

#include <algorithm>
#include <cstdio>

#include "platform/bitset.h"
#include "platform/if_index.h"
#include "platform/mts.h"
#include "platform/port_manager.h"
#include "platform/syserr.h"
#include "platform/vsan.h"
#include "pmcli/displays.h"
#include "pmcli/selection.h"
#include "support/id_set.h"
#include "support/kind.h"
#include "support/scope.h"

using namespace pmcli;

namespace {

enum : uint32 {
  kAllowed = 0,
  kDenied = static_cast<uint32>(PM_CLI_VSAN_DENIED),
  kFailed = static_cast<uint32>(PM_CLI_FAILED)
};

bool carries_vsans(if_index_t if_index) {
  const if_index_type_t type = kind_of(if_index);
  return type == IF_TYPE_FC || type == IF_TYPE_PORT_CHANNEL || type == IF_TYPE_FCIP;
}

// The ports of a range as the port manager answers. The message holds until its scope ends.
struct port_range_answer {
  explicit port_range_answer(mts_q_handle_t q) : answer(q) {}

  message answer;
  heap_block<pm_port_info_t> ports;
  uint32 count = 0;
};

enum class fetch_end { done, failed, not_parsed };

// Fetches the ports of a pair of interfaces; a failure was printed.
fetch_end fetch_ports(mts_q_handle_t q, const vsh_intf_mono_range_t& range, port_range_answer* got) {
  if (pm_get_port_info_range(q, range.lower_if_index, range.upper_if_index, got->answer.ref()) != 0) {
    std::puts("error: getting port info range");
    return fetch_end::failed;
  }
  got->answer.hold();
  pm_port_info_t* ports = nullptr;
  const int32 error = pm_parse_get_port_info_range(got->answer.ref(), &got->count, &ports);
  got->ports.reset(ports);
  if (ports == nullptr) got->count = 0;
  if (error == 0) return fetch_end::done;
  got->answer.drop();
  std::puts("error: parsing port info range");
  return fetch_end::not_parsed;
}

// Whether the shell lets the user at a port.
bool is_allowed(paraminfo_t* param, const pm_port_info_t& port) {
  vsan_bitset_t trunk_vsans = empty_set();
  vsan_get_port_trunking_membership(param->q, port.if_index, &trunk_vsans);  // a failure leaves the empty set
  vsh_fc_intf_perm_check_info_t request{};
  request.vsan_mask = &param->vsan_mask;
  request.if_index = port.if_index;
  request.oper_port_mode = port.oper_port_mode;
  request.admin_port_mode = port.admin_port_mode;
  request.port_vsan = port.port_vsan;
  request.trunk_vsan_list = &trunk_vsans;
  request.parse_cmd_mode = param->prc_mode;
  return vsh_fc_intf_perm_check(&request) != 0;
}

uint32 check_pair(paraminfo_t* param, const vsh_intf_mono_range_t& range) {
  port_range_answer got(param->q);
  if (fetch_ports(param->q, range, &got) != fetch_end::done) return kFailed;
  const pm_port_info_t* const ports = got.ports.get();
  const bool are_allowed =
      std::all_of(ports, ports + got.count, [param](const pm_port_info_t& port) { return is_allowed(param, port); });
  return are_allowed ? kAllowed : kDenied;
}

}  // namespace

uint32 pm_cli_check_user_vsan_perms(paraminfo_t* param, const intf_range_t* intf_range) {
  const uint32 count = std::min<uint32>(intf_range->range_count, PARAM_MAX_RANGES);
  for (const vsh_intf_mono_range_t* range = intf_range->range; range != intf_range->range + count; ++range) {
    if (!carries_vsans(range->lower_if_index)) continue;
    if (const uint32 result = check_pair(param, *range); result != kAllowed) return result;
  }
  return kAllowed;
}

uint32 pm_cli_check_if_index_for_vsan_perm(paraminfo_t* param, if_index_t if_index) {
  if (!carries_vsans(if_index)) return kAllowed;
  port_range_answer got(param->q);
  switch (fetch_ports(param->q, {if_index, if_index}, &got)) {
    case fetch_end::failed: return kFailed;
    case fetch_end::not_parsed: return PM_ERR_GENERAL;
    case fetch_end::done: break;
  }
  if (got.count != 1 || !is_allowed(param, *got.ports)) return PM_ERR_GENERAL;
  return kAllowed;
}
