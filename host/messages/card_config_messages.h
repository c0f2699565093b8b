// Messages of the line-card configuration.
#pragma once

#include "messages/messages.h"
#include "platform/card_config.h"
#include "platform/mts.h"

namespace host {

enum { SAP_CARD_CONFIG = 193 };

// Opcode                        request         record of the answer
enum card_config_opcode : mts_opc_t {
  CRDCFG_OPC_PORT_CAPABILITY = 1  // range_request   crdcfg_port_cap_t of the first interface
};

}  // namespace host
