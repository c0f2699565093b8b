// The satellite manager.
#include "support/recorded/answers.h"
#include "support/recording_state.h"

using namespace pmcli_test;

extern "C" {

int32 satmgr_get_fport_info(mts_q_handle_t, if_index_t if_index, satmgr_fport_info_t* info) {
  RecordingPlatform& platform = platform_for("satmgr_get_fport_info");
  return answer_from("satmgr_get_fport_info", platform.fabric_ports, if_index, info);
}

int32 satmgr_get_slot_info(mts_q_handle_t, const satmgr_fport_info_t* fport, satmgr_slot_info_t* info) {
  if (const int32 error = platform_for("satmgr_get_slot_info").failure_of("satmgr_get_slot_info"); error != 0)
    return error;
  info->slot_id = fport->slot * 1000;
  return 0;
}

int32 pm_get_sat_sfp_diag_info(mts_q_handle_t, uint32 sat_id, uint32 slot_id, if_index_t if_index,
                               mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t*) {
  RecordingPlatform& platform = platform_for("pm_get_sat_sfp_diag_info");
  platform.satellite_queries.push_back({sat_id, slot_id});
  return answer_from("pm_get_sat_sfp_diag_info", platform.diagnostics, if_index, diag_info, PM_ERR_SFP_NO_DIAGNOSTICS);
}

}  // extern "C"
