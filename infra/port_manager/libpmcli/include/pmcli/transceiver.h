/* Transceivers: identity and optical diagnostics of a port's module. Plain printf text. */
#ifndef PMCLI_TRANSCEIVER_H
#define PMCLI_TRANSCEIVER_H

#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Identity and run-time state of the module in a port. Returns 0 when diagnostics may follow. */
syserr_t print_port_fcot_info(mts_q_handle_t src_q, pm_port_info_t* port_info, boolean eth_port);

/* Fetches a port's diagnostics into the caller's zeroed records; prints the reason when there are none to show. */
syserr_t pm_get_sfp_diag_info_and_print_err(mts_q_handle_t q, if_index_t if_index, mts_get_sfp_diag_info_t* diag_info,
                                            sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);

/* The diagnostics in short, the calibration constants, the diagnostics with thresholds. `eth` changes nothing. */
void pm_print_sfp_diag_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info, boolean eth);
void pm_print_sfp_calibration_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info,
                                   boolean eth);
void pm_print_sfp_diag_detail_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info,
                                   boolean eth);

#ifdef __cplusplus
}
#endif
#endif
