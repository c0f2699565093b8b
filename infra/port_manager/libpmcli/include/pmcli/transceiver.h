/*
 * Transceivers: identity and optical diagnostics of a port's module.
 *
 * Records come from the port manager in wire format and stay the caller's. Functions with an output handle print
 * through the output channel, all others as plain text.
 */
#ifndef PMCLI_TRANSCEIVER_H
#define PMCLI_TRANSCEIVER_H

#include "platform/cmd_channel.h"
#include "platform/paraminfo.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "platform/types.h"
#include "pmcli/interface.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Identity --------------------------------------------------------------------------------------------------- */

/*
 * Identity of the module in a port, asked of the port manager, and its run-time state, asked of the line card. Returns
 * 0 when diagnostics may follow, 0x40290000 when there was no identity to show, 1 when only the state failed; why is
 * printed. `eth_port` changes nothing.
 */
syserr_t print_port_fcot_info(mts_q_handle_t src_q, pm_port_info_t* port_info, boolean eth_port);

/*
 * The identity block of one image: a whole lc_fcot_info_t, or a whole lc_fcot_x2_info_t. A null image prints nothing.
 * With `is_type_fc` the Fibre-Channel transmitter is named, with `supported` the vendor's extended code.
 */
void print_transceiver_info(uint8* sfp_sprom, boolean is_type_fc, boolean supported);
void print_x2_transceiver_info(uint8* sfp_sprom, boolean is_type_fc, boolean supported);

/* The identity block with tags, of data that the caller has fetched. */
void pm_cli_show_port_transceiver(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                                  pm_cli_common_capability_t* cap_data, pm_fcot_res_t* fcot_info);

/* The text of a transmitter type into `type`, terminated within `t_size` bytes; 0 bytes: nothing is written. */
void pm_port_type_string(char* type, uint32 t_size, uint8 fc_tx_type);

/* The class of an X2 module: 20 DWDM, 12 X2, 1 like an SFP, also for null. */
uint8 pm_get_x2_fcot_type(lc_fcot_x2_info_t* p_x2_fcot_info);

/* ---- Diagnostics ------------------------------------------------------------------------------------------------ */

/* Fetches a port's diagnostics into the caller's zeroed records; prints the reason when there are none to show. Returns
 * the port manager's result. The second is for a port of a satellite unit, -1 when the unit is not known. */
syserr_t pm_get_sfp_diag_info_and_print_err(mts_q_handle_t q, if_index_t if_index, mts_get_sfp_diag_info_t* diag_info,
                                            sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);
syserr_t pm_get_sat_sfp_diag_info_and_print_err(mts_q_handle_t q, if_index_t if_index,
                                                mts_get_sfp_diag_info_t* diag_info,
                                                sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);

/* The mark of a value: 1 high alarm, 4 low alarm, 2 high warning, 3 low warning, 5 none; the first that holds. */
void pm_set_alarm_warn_flag(uint32* flag, boolean hi_alrm, boolean lo_alrm, boolean hi_warn, boolean lo_warn);

/* The diagnostics with thresholds, and the calibration constants, with tags. The further values are not looked at. */
void pm_show_transceiver_sfp_details_info(cmd_rx_handle_t* rx_handle, mts_get_sfp_diag_info_t* diag_info,
                                          sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);
void pm_show_transceiver_sfp_calibration_info(cmd_rx_handle_t* rx_handle, mts_get_sfp_diag_info_t* diag_info,
                                              sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);

/* The diagnostics in short, the calibration constants, the diagnostics with thresholds. `eth` changes nothing. */
void pm_print_sfp_diag_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info, boolean eth);
void pm_print_sfp_calibration_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info,
                                   boolean eth);
void pm_print_sfp_diag_detail_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info,
                                   boolean eth);

/* ---- All ports -------------------------------------------------------------------------------------------------- */

/*
 * The transceivers of all Fibre-Channel and Ethernet ports that the user may see, with their diagnostics in short, with
 * thresholds, or with calibration constants. Each returns 0. The spelling of the names is part of the contract.
 */
int32 pm_show_interface_tranceiver(paraminfo_t* param);
int32 pm_show_interface_tranceiver_details(paraminfo_t* param);
int32 pm_show_interface_tranceiver_calibrations(paraminfo_t* param);

/*
 * The same of one kind. Returns 0, 1 without a parameter block or without a listing of the kind, -1 when the listing
 * could not be dropped. The last leaves the listing's message to the transport.
 */
int32 pm_show_interface_transceiver_for_if_type(paraminfo_t* param, if_index_type_t if_type);
int32 pm_show_interface_tranceiver_details_for_if_type(paraminfo_t* param, if_index_type_t if_type);
int32 pm_show_interface_tranceiver_calibrations_for_if_type(paraminfo_t* param, if_index_type_t if_type);

/* Runs the cabling test program, on the file that the first argument names, if any. Returns 0, or 1 for a name that
 * cannot be mapped and without a parameter block. */
int32 pm_cli_test_snake(paraminfo_t* pinfo);

#ifdef __cplusplus
}
#endif
#endif
