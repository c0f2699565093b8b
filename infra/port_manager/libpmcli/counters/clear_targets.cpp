#include "counters/clear_targets.h"

#include <algorithm>
#include <cstdio>

#include "command/frame.h"
#include "interface/port_record.h"
#include "platform/mts.h"
#include "platform/port_manager.h"
#include "platform/vsh.h"

namespace pmcli {

namespace {

bool is_interface_range(uint32 code) { return code == PARAM_TYPE_CONF_INTERFACES || code == PARAM_TYPE_INTERFACES; }

}  // namespace

// Some shells name the parameter by its token, others by its type: both are accepted.
std::optional<std::span<const vsh_intf_mono_range_t>> find_ranges(const paraminfo_t* param) {
  for (uint8 i = 0; i < param->parameter_count && i < PARAM_MAX_ARGS; ++i) {
    const param_arg_t* const argument = find_argument(param, i);
    if (argument == nullptr) continue;
    if (!is_interface_range(argument->type) && !is_interface_range(argument->token_id)) continue;
    const auto* const ranges = static_cast<const intf_range_t*>(argument->arg);
    return std::span(ranges->range, std::min<std::size_t>(ranges->range_count, PARAM_MAX_RANGES));
  }
  std::puts("error: token id list does not contain CONF_INTF");
  return std::nullopt;
}

uint32 count_interfaces(const vsh_intf_mono_range_t& range) {
  uint32 count = 0;
  const uint32 error = pm_get_num_ports_in_if_index_range(range.lower_if_index, range.upper_if_index, &count);
  return error == 0 && count <= kMostInterfaces ? count : 0;
}

bool is_stepped(const vsh_intf_mono_range_t& range) {
  if_index_type_t low = IF_TYPE_NONE, high = IF_TYPE_NONE;
  if (if_index_get_type(range.lower_if_index, &low) != 0 || if_index_get_type(range.upper_if_index, &high) != 0)
    return false;
  const bool is_counted_by_nobody = low == IF_TYPE_LOOPBACK || low == IF_TYPE_VETHERNET || low == IF_TYPE_SATELLITE;
  return is_counted_by_nobody && low == high && range.lower_if_index <= range.upper_if_index;
}

bool step(const vsh_intf_mono_range_t& range, if_index_t* if_index) {
  if_index_t next = 0;
  if (if_index_next(*if_index, &next) != 0 || next <= *if_index || next > range.upper_if_index) return false;
  *if_index = next;
  return true;
}

}  // namespace pmcli
