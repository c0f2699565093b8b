/*
 * The port vocabulary: the text of every port attribute and state reason, and the predicates on kinds of interface.
 *
 * None of it fails, and no service is called. Texts are constant and the library's, but for "Unknown(%d)", which the
 * first group returns for a value outside its vocabulary: the library keeps it in one buffer that the next such text
 * overwrites, so use each result before the next call.
 */
#ifndef PM_PORT_ATTRIBUTES_H
#define PM_PORT_ATTRIBUTES_H

#include <stdbool.h>

#include "platform/if_index.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Texts ------------------------------------------------------------------------------------------------------ */

/* Holds the last "Unknown(%d)" text; at most 74 characters are used. */
extern char local_temp_string_buffer[200];

/*
 * The text of a value. Outside its vocabulary: the buffer above; a flow control reads "off", an encapsulation and a
 * delayed trap state "unknown", a track mode the empty text. Access mode reads "FA", a delayed trap state of 2 "FX".
 */
const char* port_mode_string(pm_port_mode_t port_mode);
const char* port_service_state_string(pm_port_service_state_t service_state);
const char* port_type_string(pm_port_type_t port_type);
const char* port_beacon_mode_string(pm_port_beacon_mode_t beacon_mode);
const char* port_bb_scn_cfg_string(pm_port_bb_scn_cfg_t bb_scn_cfg);
const char* port_promiscuous_string(pm_port_promiscuous_mode_t promiscuous_mode);
const char* port_auto_neg_string(pm_gige_auto_negotiate_t auto_negotiate);
const char* port_snmp_trap_string(pm_port_snmp_trap_state_t trap_state);
const char* port_reserve_state_string(pm_port_reserve_state_t reserve_state);
const char* port_flowctrl_mode_string(port_flow_ctrl_t flow);
const char* port_rate_mode_string(pm_port_rate_mode_t rate_mode);
const char* port_ignore_param_string(pm_port_ignore_t ignore);
const char* port_trunking_mode_string(pm_port_trunking_mode_t trunking_mode);
const char* port_encap_string(pm_port_encap_t encap);
const char* port_track_mode_string(pm_port_track_mode_t track_mode);
const char* port_down_on_link_failure_string(pm_port_sticky_down_link_failure_t setting);
const char* pm_delayed_trap_state_string(pm_delayed_trap_state_t trap_state);

/*
 * Each writes the text of a value into the caller's buffer `buf`, terminated, and returns it. The buffer has at least
 * the number of bytes that is named; no more are written. Numbers show as signed.
 */
char* port_bb_credit_string(pm_b2b_credit_t port_bb_credit, char* buf); /* 80 bytes; the mode after the count */
char* port_bb_credit_multiplier_string(pm_b2b_credit_multiplier_t multiplier, char* buf);                /* 20 bytes */
char* port_bb_credit_performance_buf_string(pm_b2b_performance_buffer_t performance_buffers, char* buf); /* 20 bytes */
char* port_ec_bb_credit_string(pm_b2b_credit_t port_bb_credit, char* buf);                               /* 40 bytes */
char* port_rxbufsize_string(pm_b2b_recv_data_fld_size_t rxbufsize, char* buf);                           /* 20 bytes */
char* port_speed_string_gbps(pm_port_speed_t port_speed, char* buf); /* 80 bytes; of Mbit/s, in Gbit/s */
char* port_promiscuous_mode_string(pm_port_promiscuous_mode_t promiscuous_mode, char* buf); /* 50 bytes */
char* port_auto_negotiate_string(pm_gige_auto_negotiate_t auto_negotiate, char* buf);       /* 50 bytes */

/*
 * Why a port is in its state: the short word when `short_name` is exactly 1, else the sentence. A constant text always:
 * "down" or "Unknown" for a reason without one.
 */
const char* port_state_reason_string(pm_port_state_reason_t port_state_reason, boolean short_name);

/* The first reason of the family to which a reason belongs, or the reason itself when it is in none. */
pm_port_state_reason_t port_state_reason_unique_enum(pm_port_state_reason_t port_state_reason);

/* ---- Predicates on interfaces ----------------------------------------------------------------------------------- */

/* Each returns false when the kind cannot be read. */
bool pm_is_xgfc_interface(if_index_t if_index);   /* a port-channel of either family with subtype PC_SUBTYPE_XGFC */
bool pm_is_bundle_port_type(if_index_t if_index); /* any other port-channel of either family */
bool pm_is_fcsif_port_type(if_index_t if_index);  /* a server (Fibre-Channel SIF) interface */

/*
 * Whether an interface has an attribute. One whose kind cannot be read counts as IF_TYPE_NONE. A port-channel of the
 * older family has beacon and credits only when pm_is_xgfc_interface() holds, an Ethernet port-channel always.
 */
bool pm_is_beacon_mode_supported(if_index_t if_index); /* not management, FCIP, IP storage */
bool pm_is_bbcredit_supported(if_index_t if_index);    /* not management, FCIP, IP storage, server, external */
bool pm_is_transceiver_supported(if_index_t if_index); /* Fibre-Channel ports, kinds 2 and 26 of Ethernet */

/* ---- Predicates on kinds ---------------------------------------------------------------------------------------- */

/* Whether interfaces of a kind have an attribute. */
bool pm_is_port_mode_supported(if_index_type_t type);   /* all kinds but IF_TYPE_ETHERNET, management and IP storage */
bool pm_is_trunk_mode_supported(if_index_type_t type);  /* the same kinds as port modes */
bool pm_is_port_speed_supported(if_index_type_t type);  /* all kinds but IF_TYPE_ETHERNET and IP storage */
bool pm_is_duplex_mode_supported(if_index_type_t type); /* management ports only */

/* ---- Modules and errors ----------------------------------------------------------------------------------------- */

/*
 * Whether an X2 module is a DWDM one, by its NVR image, which stays the caller's: no 10-gigabit Ethernet code, and an
 * extended code from 9 to 40. False for null.
 */
bool pm_is_x2_dwdm(lc_fcot_x2_info_t* x2);

/* The port manager's code for SNMP: `ret_val` as it is. */
int32 pm_map_snmp_error_code(int32 ret_val);

#ifdef __cplusplus
}
#endif
#endif
