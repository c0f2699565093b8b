// The machine: chassis, slots, cards.
#include <cstring>

#include "support/recording_state.h"

namespace pmcli_test {

void reset_runtime_params() {
  std::memset(platform_runtime_param_array, 0, sizeof platform_runtime_param_array);
  std::strcpy(platform_runtime_param_array[0].mgmt_eth_intf_name, "eth1");
  std::strcpy(platform_runtime_param_array[0].mgmt_eth_intf_name2, "eth2");
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

platform_runtime_param_t platform_runtime_param_array[PLATFORM_RUNTIME_PARAMS];

int32 pdb_get_chassis_type(uint32* type) {
  RecordingPlatform& platform = platform_for("pdb_get_chassis_type");
  if (const int32 error = platform.failure_of("pdb_get_chassis_type"); error != 0) return error;
  *type = platform.chassis_type;
  return 0;
}

uint32 get_platform_runtime_index(void) { return platform_for("get_platform_runtime_index").runtime_index; }

int32 get_platform_info(platform_info_t* info) {
  RecordingPlatform& platform = platform_for("get_platform_info");
  if (const int32 error = platform.failure_of("get_platform_info"); error != 0) return error;
  info->num_slots = platform.num_slots;
  return 0;
}

int32 get_card_module_info(if_index_t if_index, card_module_info_t* info) {
  RecordingPlatform& platform = platform_for("get_card_module_info");
  if (const int32 error = platform.failure_of("get_card_module_info"); error != 0) return error;
  info->card_type = platform.card_types[if_index];
  return 0;
}

boolean pm_is_tamber_lindo_linecard(uint32 card_type) {
  return platform_for("pm_is_tamber_lindo_linecard").tamber_lindo_cards.count(card_type) != 0 ? 4 : 0;
}

boolean pm_is_corvid_linecard(uint32 card_type) {
  return platform_for("pm_is_corvid_linecard").corvid_cards.count(card_type) != 0 ? 4 : 0;
}

boolean pdb_is_module_tamber(uint32 module_key) {
  return platform_for("pdb_is_module_tamber").resource_modules.count(module_key) != 0 ? 4 : 0;
}

uint32 sysmgr_vdc_get(void) { return platform_for("sysmgr_vdc_get").vdc; }

}  // extern "C"
