/*
 * Transceivers: identity and optical diagnostics of a port's module.
 *
 * Records and images are in wire format and stay the caller's; no pointer may be null unless a contract says what null
 * does. Functions with an output handle print through it and do not flush; all others print on the terminal.
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
 * Prints the identity of the transceiver in the port that the record names, asked of the port manager, and its run-time
 * state, asked of the port's line card. Kinds 1 and 2 and 10-gigabit Fibre-Channel interfaces have one. `eth_port`
 * changes nothing.
 *
 * Returns 0 when diagnostics may follow; 0x40290000 when there is no identity to show (another kind, no transceiver or
 * one that is initializing, an error), which is printed; 1 when only the state was unavailable, which is printed
 * unless the line card rejected the request.
 */
syserr_t print_port_fcot_info(mts_q_handle_t src_q, pm_port_info_t* port_info, boolean eth_port);

/*
 * Each prints the identity block of one image: a whole lc_fcot_info_t, a whole lc_fcot_x2_info_t. Null prints nothing.
 * With `is_type_fc` not zero the Fibre-Channel transmitter is named, with `supported` not zero the vendor's extended
 * code, both by the port manager's client library. Cannot fail.
 */
void print_transceiver_info(uint8* sfp_sprom, boolean is_type_fc, boolean supported);
void print_x2_transceiver_info(uint8* sfp_sprom, boolean is_type_fc, boolean supported);

/*
 * Prints the identity block with tagged values, of data that the caller has fetched: the name from the port record;
 * whether the port takes transceivers from `cap_data`, native, of which only `fcot_capable` is read; the identity from
 * `fcot_info`. Asks no service and cannot fail.
 */
void pm_cli_show_port_transceiver(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                                  pm_cli_common_capability_t* cap_data, pm_fcot_res_t* fcot_info);

/*
 * Writes the text of a transmitter type, "unknown" for one without, into the caller's buffer of `t_size` bytes, cut to
 * it and terminated; with 0 bytes nothing is written.
 */
void pm_port_type_string(char* type, uint32 t_size, uint8 fc_tx_type);

/* The class of an X2 module by its image: 20 DWDM, 12 X2, 1 like an SFP, also for null. */
uint8 pm_get_x2_fcot_type(lc_fcot_x2_info_t* p_x2_fcot_info);

/* ---- Diagnostics ------------------------------------------------------------------------------------------------ */

/*
 * Fetches a port's diagnostics and further values from the port manager into the caller's zeroed records; the second
 * for a port of a satellite unit, which the satellite manager finds. Returns the port manager's result, 0 for success;
 * why there is nothing to show is printed, but not for 0x4029000B (no such port) and 0x4029002A (no transceiver). The
 * second returns -1, printed, when the unit is not known.
 */
syserr_t pm_get_sfp_diag_info_and_print_err(mts_q_handle_t q, if_index_t if_index, mts_get_sfp_diag_info_t* diag_info,
                                            sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);
syserr_t pm_get_sat_sfp_diag_info_and_print_err(mts_q_handle_t q, if_index_t if_index,
                                                mts_get_sfp_diag_info_t* diag_info,
                                                sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);

/* Stores the mark of a value: 1 high alarm, 4 low alarm, 2 high warning, 3 low warning, 5 none; the first that holds.
 */
void pm_set_alarm_warn_flag(uint32* flag, boolean hi_alrm, boolean lo_alrm, boolean hi_warn, boolean lo_warn);

/*
 * Each prints fetched diagnostics with tagged values: the values with thresholds and marks; the calibration constants.
 * A record that is not calibrated (`calib_type`) prints "Invalid calibration" only. The further values are not looked
 * at and may be null. No service is called.
 */
void pm_show_transceiver_sfp_details_info(cmd_rx_handle_t* rx_handle, mts_get_sfp_diag_info_t* diag_info,
                                          sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);
void pm_show_transceiver_sfp_calibration_info(cmd_rx_handle_t* rx_handle, mts_get_sfp_diag_info_t* diag_info,
                                              sfp_diag_info_ddm_tlvs_t* sfp_ddm_info);

/*
 * Each prints fetched diagnostics as plain text: the values in short; the calibration constants; the values with
 * thresholds and marks. A record that is not calibrated (`calib_type`) prints "Invalid calibration" only. The further
 * values are not used and may be null; `eth` changes nothing. No service is called.
 */
void pm_print_sfp_diag_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info, boolean eth);
void pm_print_sfp_calibration_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info,
                                   boolean eth);
void pm_print_sfp_diag_detail_info(mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info,
                                   boolean eth);

/* ---- All ports -------------------------------------------------------------------------------------------------- */

/*
 * Each shows the transceivers of all Fibre-Channel ports and then of all Ethernet-class ports (IF_TYPE_ETHERNET), with
 * their diagnostics in short, with thresholds, or with calibration constants. The first leaves the Ethernet-class ports
 * out where /tmp/fc_nport_mux or /mnt/pss/fc_nport_mux can be opened. A null block shows nothing. Each returns 0
 * whatever happened. The spelling of the names is part of the contract.
 */
int32 pm_show_interface_tranceiver(paraminfo_t* param);
int32 pm_show_interface_tranceiver_details(paraminfo_t* param);
int32 pm_show_interface_tranceiver_calibrations(paraminfo_t* param);

/*
 * Each shows the same of the ports of one kind that the port manager lists on the queue of the command. A port that the
 * user may not see, or whose record is unavailable, is skipped; other failures are printed, and the next port
 * follows. Returns 0; 1 for a null block (silently) and when there is no listing (printed); -1, printed, when the
 * listing's message could not be dropped. The last does not drop it: the transport frees it with the queue.
 */
int32 pm_show_interface_transceiver_for_if_type(paraminfo_t* param, if_index_type_t if_type);
int32 pm_show_interface_tranceiver_details_for_if_type(paraminfo_t* param, if_index_type_t if_type);
int32 pm_show_interface_tranceiver_calibrations_for_if_type(paraminfo_t* param, if_index_type_t if_type);

/*
 * Runs the cabling test program by the machine's shell, on the file that the text of argument 0 names, if there is one;
 * its result is not looked at. The file name is mapped to a path by the platform, of which 106 characters are used.
 * Returns 0; 1 for a null block (silently) and, after "Unknown URI scheme", for a name that cannot be mapped.
 */
int32 pm_cli_test_snake(paraminfo_t* pinfo);

#ifdef __cplusplus
}
#endif
#endif
