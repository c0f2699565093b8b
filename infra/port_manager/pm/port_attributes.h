/*
 * The port vocabulary: the text of every port attribute and state reason, and the predicates on kinds of interface.
 *
 * None of it fails. A value outside a vocabulary gives a fixed text or "Unknown(%d)" in one buffer that the next such
 * text overwrites, so use each result before the next call.
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

/* Holds the last "Unknown(%d)" text. */
extern char local_temp_string_buffer[200];

/* Constant texts, or the buffer above for an unknown value. */
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

/* Texts written into the caller's buffer of 80 bytes, which is returned. */
char* port_bb_credit_string(pm_b2b_credit_t port_bb_credit, char* buf);
char* port_bb_credit_multiplier_string(pm_b2b_credit_multiplier_t multiplier, char* buf);
char* port_bb_credit_performance_buf_string(pm_b2b_performance_buffer_t performance_buffers, char* buf);
char* port_ec_bb_credit_string(pm_b2b_credit_t port_bb_credit, char* buf);
char* port_rxbufsize_string(pm_b2b_recv_data_fld_size_t rxbufsize, char* buf);
char* port_speed_string_gbps(pm_port_speed_t port_speed, char* buf);
char* port_promiscuous_mode_string(pm_port_promiscuous_mode_t promiscuous_mode, char* buf);
char* port_auto_negotiate_string(pm_gige_auto_negotiate_t auto_negotiate, char* buf);

/*
 * Why a port is in its state: the short word when `short_name` is exactly 1, else the sentence. A constant text always:
 * "down" or "Unknown" for a reason without one.
 */
const char* port_state_reason_string(pm_port_state_reason_t port_state_reason, boolean short_name);

/* The first reason of the family to which a reason belongs, or the reason itself. */
pm_port_state_reason_t port_state_reason_unique_enum(pm_port_state_reason_t port_state_reason);

/* Predicates on interfaces. The first three are false when the kind cannot be read. */
bool pm_is_xgfc_interface(if_index_t if_index);   /* kind 4 or 22 with subtype 1: 10-gigabit Fibre Channel */
bool pm_is_bundle_port_type(if_index_t if_index); /* any other port-channel of either family              */
bool pm_is_fcsif_port_type(if_index_t if_index);  /* a server (Fibre-Channel SIF) interface               */
bool pm_is_beacon_mode_supported(if_index_t if_index);
bool pm_is_bbcredit_supported(if_index_t if_index);
bool pm_is_transceiver_supported(if_index_t if_index);

/* Predicates on kinds. */
bool pm_is_port_mode_supported(if_index_type_t type);
bool pm_is_trunk_mode_supported(if_index_type_t type);
bool pm_is_port_speed_supported(if_index_type_t type);
bool pm_is_duplex_mode_supported(if_index_type_t type);

/* A DWDM module, told by its NVR image. False for null. */
bool pm_is_x2_dwdm(lc_fcot_x2_info_t* x2);

/* The port manager's code for SNMP: as it is. */
int32 pm_map_snmp_error_code(int32 ret_val);

#ifdef __cplusplus
}
#endif
#endif
