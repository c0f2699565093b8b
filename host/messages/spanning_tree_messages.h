// Messages of the spanning-tree service.
#pragma once

#include "messages/messages.h"
#include "platform/mts.h"

namespace host {

enum { SAP_SPANNING_TREE = 196 };

// Opcode                   request                records of the answer
enum spanning_tree_opcode : mts_opc_t {
  STP_OPC_EDGE = 1,  // range_requests         pm_port_cfg_status_t for each port: it is a port to a host from now on
  STP_OPC_PORT_STATE = 2,  // be32, an index each    no head: stp_port_state_t for each that is there
};

}  // namespace host
