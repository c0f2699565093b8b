// The satellite manager: which unit carries a port, and the modules in its ports.
#include "messages/vlan_messages.h"
#include "service/answers.h"
#include "service/optics.h"
#include "service/services.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

reply answer_fabric_port(const interface& port) {
  const index_fields fields = decode_index(port.if_index);
  if (fields.type != IF_TYPE_SATELLITE) return answer_error(PM_ERR_NOT_ALLOWED_ON_INTERFACE);
  return answer_record(satmgr_fport_info_t{fields.unit, fields.slot + 1});
}

// Slots of a unit are known by their number.
reply answer_slot(std::span<const std::byte> bytes) {
  const auto request = read_request<satmgr_fport_info_t>(bytes);
  if (!request) return reject();
  return answer_record(satmgr_slot_info_t{request->slot});
}

}  // namespace

reply serve_satellite_manager(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case SAT_OPC_FABRIC_PORT: return answer_for_interface(request, answer_fabric_port);
    case SAT_OPC_SLOT: return answer_slot(request);
    case SAT_OPC_DIAGNOSTICS: return answer_with_statistics(request, answer_diagnostics);
    default: return reject_opcode();
  }
}

}  // namespace host
