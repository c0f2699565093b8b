// Called by the client libraries that are opened by name. They have no state; the program that loaded them has it.
#pragma once

#include "platform/card_config.h"
#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "platform/paraminfo.h"
#include "platform/port_config.h"
#include "platform/private_vlan.h"
#include "platform/spanning_tree.h"
#include "platform/vlan_manager.h"

namespace host {

// Fills the caller's record, `ifidx` included. Returns 0 or an error.
int32 get_port_statistics(if_index_t if_index, statscl_portcl_stats_msg_t* stats);
int32 get_port_snmp_statistics(if_index_t if_index, statscl_portcl_stats_msg_t* stats);

// Fills the caller's record. Returns 1, or 0 on failure.
int32 get_loopback_counters(mts_q_handle_t q, if_index_t if_index, ip_if_stats* stats);

// Each clears one interface. The first returns 0 or an error, the second 1, or 0 on failure.
int32 clear_port_statistics(if_index_t if_index);
int32 clear_loopback_counters(if_index_t if_index);

// Fills up to `size` bytes of the caller's response. Returns 0 or a system error.
syserr_t get_port_capability(const if_index_range_t* range, uint32 size, uint8* response);

// Steps of a configuration macro, over the command's range: the ports leave their channels; spanning tree treats them
// as ports to hosts. Each stores a heap block of results by port that the caller frees. Returns 0 or a system error.
int32 leave_channels(const paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports);
int32 make_edge_ports(const paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports);

// Questions to the VLAN services and their answers. Builders store a heap block that the caller frees, and its size;
// parsers fill the caller's record, or store a heap block of records that the caller frees, and their number. 0 is
// success. No parser is called for a rejection, and only that of spanning tree without a payload.
int32 build_vlan_question(const vdc_vlan_id_t* vlan, void** payload, uint32* size);
int32 parse_vlan(vlan_info_resp_t* info, const void* payload, uint32 size);
int32 build_membership_question(const if_index_t* ports, uint32 count, void** payload, uint32* size);
int32 parse_memberships(const void* payload, uint32 size, trunk_port_memb_t** records, uint32* count);
int32 build_private_vlan_question(const pvlan_get_switchport_info_req_t* request, void** payload, uint32* size);
int32 parse_private_vlans(const void* payload, uint32 size, pvlan_switchport_info_t* info);
int32 send_forwarding_question(mts_q_handle_t q, uint32 count, const if_index_t* ports, mts_msg_ref_t* sent);
int32 parse_forwarding(const mts_msg_ref_t* got, stp_port_state_t** ports, uint32* count);

}  // namespace host
