// Messages of the interface manager.
#pragma once

#include "messages/messages.h"
#include "platform/mts.h"

namespace host {

enum { SAP_INTERFACE_MANAGER = 191 };

// Opcode                   request             record of the answer
enum interface_manager_opcode : mts_opc_t {
  IM_OPC_LAYER_MODE = 1,   // interface_request   if_value; IF_LAYER_2 or IF_LAYER_3
  IM_OPC_NATIVE_VLAN = 2,  // interface_request   if_value; VLAN id
  IM_OPC_ACCESS_VLAN = 3,  // interface_request   if_value; VLAN id
};

struct if_value {
  be_int32 status;  // of this interface; 0 is good
  be32 value;
};
static_assert(sizeof(if_value) == 8);

}  // namespace host
