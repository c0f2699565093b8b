/*
 * The miscellaneous information of a port: request to MTS_SAP_PORT_MISC_INFO at the node of its line card, and answer.
 * Wire formats, unaligned.
 */
#ifndef PLATFORM_MISC_INFO_H
#define PLATFORM_MISC_INFO_H

#include "platform/mts.h"
#include "platform/types.h"
#include "platform/wire.h"

enum { MTS_OPC_PORT_MISC_INFO = 902 };

enum { MISC_INFO_TRANSCEIVER_STATE = 1 }; /* type of the entry that holds a port_xcvr_info_t */

/* Request for one port and one type of information. */
typedef struct port_misc_info_req_t {
  uint8 port_misc_info_fsm_flag; /* 0 */
  uint8 num_ports;               /* 1 */
  be32 if_index;
  be16 num_type;
  be16 type_list[1];
} port_misc_info_req_t;
static_assert(sizeof(port_misc_info_req_t) == 10, "wire size");

/* Head of the answer; num_ports ports follow. */
typedef struct port_misc_info_rsp_t {
  uint8 port_misc_info_fsm_flag;
  uint8 num_ports;
} port_misc_info_rsp_t;
static_assert(sizeof(port_misc_info_rsp_t) == 2, "wire size");

/* A port of the answer; num_info entries follow. */
typedef struct port_misc_info_port_t {
  be32 if_index;
  be_int32 status; /* a system error; 0 is good */
  be16 num_info;
} port_misc_info_port_t;
static_assert(sizeof(port_misc_info_port_t) == 10, "wire size");

/* An entry; miscinfo_length bytes of value follow. */
typedef struct port_misc_info_entry_t {
  be16 miscinfo_type;
  be16 miscinfo_length;
} port_misc_info_entry_t;
static_assert(sizeof(port_misc_info_entry_t) == 4, "wire size");

/* Run-time state of a transceiver; a byte each, not zero is yes. */
typedef struct port_xcvr_info_t {
  uint8 op_status; /* 0 is good */
  uint8 xcvr_present;
  uint8 rx_loss;
  uint8 tx_fault;
  uint8 sync_state;
  uint8 read_ok; /* exactly 1: the rest holds */
  uint8 csum_base_ok;
  uint8 csum_ext_ok;
  uint8 diag_mon_type;
} port_xcvr_info_t;
static_assert(sizeof(port_xcvr_info_t) == 9, "wire size");

#endif
