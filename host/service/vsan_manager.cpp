#include "messages/vsan_messages.h"
#include "service/answers.h"
#include "service/services.h"

namespace host {
namespace {

// Only Fibre Channel ports, their port-channels and their tunnels belong to VSANs.
bool has_vsans(const interface& port) {
  if_index_type_t type = IF_TYPE_NONE;
  if_index_get_type(port.if_index, &type);
  return type == IF_TYPE_FC || type == IF_TYPE_PORT_CHANNEL || type == IF_TYPE_FCIP;
}

reply answer_trunk_membership(const interface& port) {
  if (!has_vsans(port)) return answer_error(PM_ERR_NOT_ALLOWED_ON_INTERFACE);
  vsan_bitset_t carried{};
  carried.size = BITSET_BYTES;
  for (const uint16 vsan : port.trunk_vsans) bitset_set(&carried, vsan);
  return answer_record(carried);
}

}  // namespace

reply serve_vsan_manager(mts_opc_t opcode, std::span<const std::byte> request) {
  return opcode == VSAN_OPC_TRUNK_MEMBERSHIP ? answer_for_interface(request, answer_trunk_membership) : reject_opcode();
}

}  // namespace host
