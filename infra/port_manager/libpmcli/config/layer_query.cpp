#include "config/layer_query.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "platform/interface_manager.h"
#include "support/errors.h"
#include "support/interface_manager.h"
#include "support/interface_numbering.h"
#include "support/kind.h"

namespace pmcli {

namespace {

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

// The interface with the next number of its kind; a sub-interface keeps its own and goes to the next port.
bool step_to_next(if_index_t* if_index) {
  const interface_numbering* const numbering = numbering_of(kind_of(*if_index));
  if (numbering == nullptr) return if_index_next(*if_index, if_index) == 0;
  uint32 number = 0;
  return numbering->get(*if_index, &number) == 0 && numbering->set(if_index, number + 1) == 0;
}

bool are_layers_known(const vsh_intf_mono_range_t& range) {
  if_index_t current = range.lower_if_index;
  while (current <= range.upper_if_index) {
    if (!is_layer_known(current)) return false;
    const if_index_t last = current;
    if (!step_to_next(&current) || current <= last) break;
  }
  return true;
}

}  // namespace

bool all_layers_known(const config_command& command) {
  return std::all_of(command.ranges.begin(), command.ranges.end(), are_layers_known);
}

}  // namespace pmcli
