// Optical diagnostics. Prints nothing yet, and there are no diagnostics to fetch: both come with the optics displays.

#include "pmcli/transceiver.h"

syserr_t pm_get_sfp_diag_info_and_print_err(mts_q_handle_t, if_index_t, mts_get_sfp_diag_info_t*,
                                            sfp_diag_info_ddm_tlvs_t*) {
  return -1;
}

void pm_print_sfp_diag_info(mts_get_sfp_diag_info_t*, sfp_diag_info_ddm_tlvs_t*, boolean) {}
void pm_print_sfp_calibration_info(mts_get_sfp_diag_info_t*, sfp_diag_info_ddm_tlvs_t*, boolean) {}
void pm_print_sfp_diag_detail_info(mts_get_sfp_diag_info_t*, sfp_diag_info_ddm_tlvs_t*, boolean) {}
