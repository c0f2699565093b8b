#include "config/layer_query.h"

#include <algorithm>
#include <cstdio>

#include "platform/interface_manager.h"
#include "support/errors.h"
#include "support/interface_manager.h"

namespace pmcli {

namespace {

constexpr uint32 kMostSteps = 65536;

bool is_layer_known(if_index_t if_index) {
  if (prepare_interface_manager() != 0) return false;
  if_info_t answer;
  std::memset(&answer, 0, sizeof answer);
  answer.ifindex = if_index;
  const syserr_t error = im_get_ifindex_layermode_list(&answer, 1);
  const int32 status = answer.status;
  if (error == 0 && status == 0) return true;
  // Worded unlike the same failure of the displays.
  std::printf("layermode query on if_idx 0x%x failed: \nstatus: %x - %s\nif_info_status: %x - %s\n", if_index,
              static_cast<uint32>(error), system_error_text(error), static_cast<uint32>(status),
              system_error_text(status));
  return false;
}

// The interface with the next number; a sub-interface keeps its own and goes to the next port.
bool step_to_next(if_index_type_t kind, if_index_t* if_index) {
  if (kind != IF_TYPE_ETHERNET && kind != IF_TYPE_ETHERNET_L3) {
    if_index_t next = 0;
    if (if_index_next(*if_index, &next) != 0) return false;
    *if_index = next;
    return true;
  }
  uint32 port = 0;
  return if_index_get_port(*if_index, &port) == 0 && if_index_set_port(if_index, port + 1) == 0;
}

bool are_layers_known(if_index_type_t kind, const vsh_intf_mono_range_t& range) {
  if_index_t current = range.lower_if_index;
  for (uint32 steps = 0; steps < kMostSteps && current <= range.upper_if_index; ++steps) {
    if (!is_layer_known(current)) return false;
    const if_index_t last = current;
    if (!step_to_next(kind, &current) || current <= last) break;
  }
  return true;
}

}  // namespace

bool all_layers_known(const config_command& command) {
  return std::all_of(command.ranges.begin(), command.ranges.end(),
                     [&command](const vsh_intf_mono_range_t& range) { return are_layers_known(command.kind, range); });
}

}  // namespace pmcli
