#include "config/layer_query.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "platform/interface_manager.h"
#include "support/errors.h"
#include "support/interface_manager.h"
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

// How the number of a kind is read and set.
struct numbered_kind {
  if_index_type_t kind;
  int32 (*get)(if_index_t if_index, uint32* number);
  int32 (*set)(if_index_t* if_index, uint32 number);
};

constexpr numbered_kind kNumbered[] = {
    {IF_TYPE_ETHERNET, if_index_get_port, if_index_set_port},
    {IF_TYPE_ETHERNET_L3, if_index_get_port, if_index_set_port},
    {IF_TYPE_PORT_CHANNEL, if_index_port_channel_get_channel_num, if_index_set_channel_num},
    {IF_TYPE_ETH_PORT_CHANNEL, if_index_eth_port_channel_get_channel_num, if_index_set_channel_num},
};

// The interface with the next number of its kind; a sub-interface keeps its own and goes to the next port.
bool step_to_next(if_index_t* if_index) {
  const if_index_type_t kind = kind_of(*if_index);
  const auto* const known = std::find_if(std::begin(kNumbered), std::end(kNumbered),
                                         [kind](const numbered_kind& it) { return it.kind == kind; });
  if (known == std::end(kNumbered)) {
    const if_index_t current = *if_index;
    return if_index_next(current, if_index) == 0;
  }
  uint32 number = 0;
  return known->get(*if_index, &number) == 0 && known->set(if_index, number + 1) == 0;
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
