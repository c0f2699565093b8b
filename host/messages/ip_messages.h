// Messages of the service that keeps IP addresses.
#pragma once

#include "messages/messages.h"
#include "platform/ip_config.h"
#include "platform/mts.h"

namespace host {

enum { SAP_IP = 192 };

// Opcode               request             records of the answer
enum ip_opcode : mts_opc_t {
  IP_OPC_ADDRESSES = 1  // interface_request   ipconf_if_inet_addr_info_t each
};

// The head of this answer is also the head of the list that the client returns.
static_assert(sizeof(reply_head) == sizeof(ipconf_if_inet_addrs_t));
static_assert(offsetof(reply_head, count) == offsetof(ipconf_if_inet_addrs_t, num_inet_addrs));

}  // namespace host
