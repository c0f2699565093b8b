// Messages of the statistics service.
#pragma once

#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "platform/mts.h"
#include "service/messages.h"

namespace host {

enum { SAP_STATISTICS = 190 };

// Opcode                    request             record of the answer
enum statistics_opcode : mts_opc_t {
  STATS_OPC_PORT = 1,       // interface_request   statscl_portcl_stats_msg_t
  STATS_OPC_PORT_SNMP = 2,  // interface_request   statscl_portcl_stats_msg_t
  STATS_OPC_LOOPBACK = 3,   // interface_request   ip_if_stats
};

}  // namespace host
