#include <algorithm>
#include <cstring>
#include <string>

#include "messages/hardware_messages.h"
#include "service/answers.h"
#include "service/device_counters.h"
#include "service/services.h"

namespace host {
namespace {

template <std::size_t Size>
void copy_device_name(const std::string& name, char (&to)[Size]) {
  std::memcpy(to, name.data(), std::min(name.size(), Size - 1));
}

reply answer_chassis(std::span<const std::byte> request) {
  if (!request.empty()) return reject();
  const machine& self = the_machine();
  chassis_record record{};
  record.chassis_type = self.chassis_type;
  record.num_slots = self.num_slots;
  copy_device_name(self.mgmt_device, record.management.mgmt_eth_intf_name);
  copy_device_name(self.mgmt_device2, record.management.mgmt_eth_intf_name2);
  return answer_record(record);
}

reply answer_card(std::span<const std::byte> bytes) {
  const auto request = read_request<card_request>(bytes);
  if (!request) return reject();
  const auto& cards = the_machine().cards;
  const auto found = std::find_if(cards.begin(), cards.end(), [&](const card& it) { return it.slot == request->slot; });
  if (found == cards.end()) return answer_error(PM_ERR_NO_SUCH_INTERFACE);
  return answer_record(card_record{found->slot, found->card_type, found->shares_resources ? 1U : 0U});
}

reply answer_device_counters(std::span<const std::byte> bytes) {
  const auto request = read_request<device_request>(bytes);
  if (!request) return reject();
  const auto counted = kernel_counters(std::string(request->name, strnlen(request->name, sizeof request->name)));
  return counted ? answer_record(device_record(*counted)) : answer_error(PM_ERR_NO_SUCH_INTERFACE);
}

reply clear_device(std::span<const std::byte> bytes) {
  const auto request = read_request<device_request>(bytes);
  if (!request) return reject();
  const std::string name(request->name, strnlen(request->name, sizeof request->name));
  return clear_kernel_counters(name) ? answer_writer(0).finish() : answer_error(PM_ERR_NO_SUCH_INTERFACE);
}

void append_name(answer_writer& to, if_index_t if_index, const std::string& name) {
  to.append(device_name_record{if_index, static_cast<uint16>(name.size())}, std::as_bytes(std::span(name)));
}

reply answer_device_names(std::span<const std::byte> request) {
  if (!request.empty()) return reject();
  const auto devices = the_source().devices();
  answer_writer answer(0);
  for (const kernel_device& it : devices ? *devices : std::vector<kernel_device>()) {
    append_name(answer, it.if_index, it.name);
    for (const std::string& name : it.alternative_names) append_name(answer, it.if_index, name);
  }
  return answer.finish();
}

}  // namespace

reply serve_hardware(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case HARDWARE_OPC_CHASSIS: return answer_chassis(request);
    case HARDWARE_OPC_CARD: return answer_card(request);
    case HARDWARE_OPC_DEVICE_COUNTERS: return answer_device_counters(request);
    case HARDWARE_OPC_DEVICE_NAMES: return answer_device_names(request);
    case HARDWARE_OPC_CLEAR_DEVICE: return clear_device(request);
    default: return reject_opcode();
  }
}

}  // namespace host
