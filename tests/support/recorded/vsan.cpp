// The VSAN manager, and the shell's verdict on what a user may see.
#include "support/recorded/answers.h"
#include "support/recording_state.h"

using namespace pmcli_test;

extern "C" {

int32 vsan_get_port_trunking_membership(mts_q_handle_t q, if_index_t if_index, vsan_bitset_t* vsans) {
  RecordingPlatform& platform = platform_for("vsan_get_port_trunking_membership");
  platform.permission_queues.push_back(q);
  return answer_from("vsan_get_port_trunking_membership", platform.port_vsans, if_index, vsans);
}

boolean vsh_fc_intf_perm_check(const vsh_fc_intf_perm_check_info_t* info) {
  RecordingPlatform& platform = platform_for("vsh_fc_intf_perm_check");
  if (platform.failure_of("vsh_fc_intf_perm_check") != 0) return 0;
  return platform.is_permitted ? platform.is_permitted(*info) : 1;
}

}  // extern "C"
