// Messages of the VSAN manager.
#pragma once

#include "messages/messages.h"
#include "platform/mts.h"
#include "platform/vsan.h"

namespace host {

enum { SAP_VSAN_MANAGER = 195 };

// Opcode                       request             record of the answer
enum vsan_opcode : mts_opc_t {
  VSAN_OPC_TRUNK_MEMBERSHIP = 1  // interface_request   vsan_bitset_t; empty for a port that carries none
};

}  // namespace host
