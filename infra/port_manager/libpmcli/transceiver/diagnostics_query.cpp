// Fetching diagnostics, and why there are none to show.

#include <cstdio>

#include "platform/satellite.h"
#include "pmcli/transceiver.h"

namespace {

syserr_t print_reason(syserr_t error) {
  // puts() adds an empty line; the leading blanks differ: both intended.
  switch (static_cast<uint32>(error)) {
    case 0:
    case PM_ERR_SFP_NO_PORT:
    case PM_ERR_SFP_NOT_PRESENT: break;
    case PM_ERR_SFP_NO_DIAGNOSTICS: std::puts("    Digital diagnostics feature not supported in SFP\n"); break;
    case PM_ERR_SFP_NO_INFORMATION: std::puts("   SFP diagnostics information not available\n"); break;
    case PM_ERR_SFP_READ: std::puts("    Error reading from SFP\n"); break;
    default: std::printf("    unknown error 0x%x\n\n", static_cast<uint32>(error));
  }
  return error;
}

}  // namespace

syserr_t pm_get_sfp_diag_info_and_print_err(mts_q_handle_t q, if_index_t if_index, mts_get_sfp_diag_info_t* diag_info,
                                            sfp_diag_info_ddm_tlvs_t* sfp_ddm_info) {
  return print_reason(pm_get_sfp_diag_info(q, if_index, diag_info, sfp_ddm_info));
}

syserr_t pm_get_sat_sfp_diag_info_and_print_err(mts_q_handle_t q, if_index_t if_index,
                                                mts_get_sfp_diag_info_t* diag_info,
                                                sfp_diag_info_ddm_tlvs_t* sfp_ddm_info) {
  satmgr_fport_info_t fport{};
  satmgr_slot_info_t slot{};
  if (satmgr_get_fport_info(q, if_index, &fport) != 0 || satmgr_get_slot_info(q, &fport, &slot) != 0) {
    std::puts("error getting FEX fabric interface information");
    return -1;
  }
  return print_reason(pm_get_sat_sfp_diag_info(q, fport.sat_id, slot.slot_id, if_index, diag_info, sfp_ddm_info));
}
