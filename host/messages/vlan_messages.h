// Messages of the VLAN manager, of private VLANs and of satellites, as their client libraries build and parse them.
#pragma once

#include "messages/messages.h"
#include "platform/mts.h"
#include "platform/private_vlan.h"
#include "platform/satellite.h"
#include "platform/vlan_manager.h"

namespace host {

// Opcode                             request                      answer, without a head
// MTS_OPC_VLAN_INFO                  vdc_vlan_id_t                vlan_info_resp_t; without that VLAN a rejection
// MTS_OPC_VLAN_TRUNKING_MEMBERSHIP   be32, an index each          trunk_port_memb_t, for each that is there
// MTS_OPC_PVLAN_GET_SWITCHPORT_INFO  interface_request            pvlan_switchport_info_t
// VLAN_OPC_ALL                       nothing                      vlan_info_resp_t of each VLAN, after a head
// VLAN_OPC_ERRORED                   interface_request            vlan_bitset_t, after a head

enum { VLAN_OPC_ERRORED = 23570, VLAN_OPC_ALL = 23571 };

enum { SAP_SATELLITE_MANAGER = 197 };

// Opcode                       request               record of the answer
enum satellite_opcode : mts_opc_t {
  SAT_OPC_FABRIC_PORT = 1,  // interface_request     satmgr_fport_info_t
  SAT_OPC_SLOT = 2,         // satmgr_fport_info_t   satmgr_slot_info_t
  SAT_OPC_DIAGNOSTICS = 3,  // interface_request     sfp_diagnostics
};

}  // namespace host
