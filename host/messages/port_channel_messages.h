// Messages of the port-channel manager.
#pragma once

#include "messages/messages.h"
#include "platform/mts.h"
#include "platform/port_channel.h"

namespace host {

enum { SAP_PORT_CHANNEL = 194 };

// Opcode                         request             records of the answer
enum port_channel_opcode : mts_opc_t {
  PC_OPC_MEMBERS = 1,               // interface_request   be32, an interface index each
  PC_OPC_MULTI_CHASSIS_STATUS = 2,  // interface_request   multi_chassis_status
  PC_OPC_NEXT = 3,                  // interface_request   be32, the first port-channel after this index
  PC_OPC_LEAVE = 4,                 // range_requests      pm_port_cfg_status_t for each port
  PC_OPC_CHANNEL_OF = 5,            // interface_request   port_channel_info_t
};

struct multi_chassis_status {
  char text[MCEC_STATUS_BYTES];  // terminated; empty is none
};
static_assert(sizeof(multi_chassis_status) == 256);

}  // namespace host
