#include "platform/vsan.h"

#include "client/request.h"
#include "messages/vsan_messages.h"

using namespace host;

int32 vsan_get_port_trunking_membership(mts_q_handle_t q, if_index_t if_index, vsan_bitset_t* vsans) {
  if (vsans == nullptr) return PM_ERR_GENERAL;
  return ask_record({q, SAP_VSAN_MANAGER, VSAN_OPC_TRUNK_MEMBERSHIP}, bytes_of(interface_request{if_index}),
                    writable_bytes_of(*vsans));
}
