#include "platform/platform_data.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/if_index.h"
#include "platform/syserr.h"
#include "switch/model.h"

using namespace host;

namespace {

template <std::size_t Size>
void copy_device_name(const std::string& name, char (&to)[Size]) {
  std::memset(to, 0, Size);
  std::memcpy(to, name.data(), std::min(name.size(), Size - 1));
}

const card* card_of(if_index_t if_index) {
  uint32 slot = 0;
  if (if_index_get_slot(if_index, &slot) != 0) return nullptr;
  const auto& cards = the_machine().cards;
  const auto found = std::find_if(cards.begin(), cards.end(), [=](const card& it) { return it.slot == slot; });
  return found == cards.end() ? nullptr : &*found;
}

}  // namespace

platform_runtime_param_t platform_runtime_param_array[PLATFORM_RUNTIME_PARAMS];

int32 pdb_get_chassis_type(uint32* type) {
  if (type == nullptr) return PM_ERR_GENERAL;
  *type = the_machine().chassis_type;
  return 0;
}

// Readers of the table look up the row first: the row of this machine is filled then.
uint32 get_platform_runtime_index(void) {
  const machine& self = the_machine();
  const uint32 index = self.chassis_type % PLATFORM_RUNTIME_PARAMS;
  copy_device_name(self.mgmt_device, platform_runtime_param_array[index].mgmt_eth_intf_name);
  copy_device_name(self.mgmt_device2, platform_runtime_param_array[index].mgmt_eth_intf_name2);
  return index;
}

int32 get_platform_info(platform_info_t* info) {
  if (info == nullptr) return PM_ERR_GENERAL;
  info->num_slots = the_machine().num_slots;
  return 0;
}

int32 get_card_module_info(if_index_t if_index, card_module_info_t* info) {
  const card* const carrier = card_of(if_index);
  if (carrier == nullptr || info == nullptr) return PM_ERR_NO_SUCH_INTERFACE;
  info->card_type = carrier->card_type;
  return 0;
}

// Simulated switches have no line cards of these two families.
boolean pm_is_tamber_lindo_linecard(uint32) { return 0; }
boolean pm_is_corvid_linecard(uint32) { return 0; }

boolean pdb_is_module_tamber(uint32 module_key) {
  const auto& cards = the_machine().cards;
  return std::any_of(cards.begin(), cards.end(), [module_key](const card& it) {
    return (it.slot + 1) * 256 + 2 == module_key && it.shares_resources;
  });
}

// This machine is one context.
uint32 sysmgr_vdc_get(void) { return 1; }

// Line cards are nodes of their own, numbered by slot from 1.
int32 idxmap_node_by_if_index(if_index_t if_index, uint32* node) {
  const card* const carrier = card_of(if_index);
  if (carrier == nullptr || node == nullptr) return PM_ERR_NO_SUCH_INTERFACE;
  *node = carrier->slot + 1;
  return 0;
}
