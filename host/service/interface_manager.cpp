#include "messages/interface_manager_messages.h"
#include "service/answers.h"
#include "service/services.h"

namespace host {
namespace {

uint32 known_or_zero(uint32 value) { return value; }
uint32 known_or_zero(std::optional<uint16> value) { return value.value_or(0); }

// An unknown interface is an error of its own record, not of the request.
template <typename Member>
reply answer_value(std::span<const std::byte> bytes, Member member) {
  const auto request = read_request<interface_request>(bytes);
  if (!request) return reject();
  const interface* const found = std::as_const(the_machine()).find(request->if_index);
  if (found == nullptr) return answer_record(if_value{PM_ERR_NO_SUCH_INTERFACE, 0});
  return answer_record(if_value{0, known_or_zero(found->settings.*member)});
}

}  // namespace

reply serve_interface_manager(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case IM_OPC_LAYER_MODE: return answer_value(request, &port_settings::layer);
    case IM_OPC_NATIVE_VLAN: return answer_value(request, &port_settings::native_vlan);
    case IM_OPC_ACCESS_VLAN: return answer_value(request, &port_settings::access_vlan);
    default: return reject_opcode();
  }
}

}  // namespace host
