// Messages of the statistics service.
#pragma once

#include "messages/messages.h"
#include "platform/eth_statistics.h"
#include "platform/ip_statistics.h"
#include "platform/mts.h"

namespace host {

enum { SAP_STATISTICS = 190 };

// Opcode                    request             record of the answer
enum statistics_opcode : mts_opc_t {
  STATS_OPC_PORT = 1,       // interface_request   statscl_portcl_stats_msg_t
  STATS_OPC_PORT_SNMP = 2,  // interface_request   statscl_portcl_stats_msg_t
  STATS_OPC_LOOPBACK = 3,   // interface_request   ip_if_stats

  // Clearing; the answers have no record.
  STATS_OPC_CLEAR_PORT = 4,      // interface_request
  STATS_OPC_CLEAR_LOOPBACK = 5,  // interface_request
  STATS_OPC_CLEAR_CHANNEL = 6,   // interface_request
};

}  // namespace host
