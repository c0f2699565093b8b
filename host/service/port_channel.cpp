#include <algorithm>
#include <cstring>

#include "messages/port_channel_messages.h"
#include "service/answers.h"
#include "service/change_settings.h"
#include "service/services.h"

namespace host {
namespace {

reply answer_members(const interface& channel) {
  const std::vector<if_index_t> members = the_machine().members_of(channel.if_index);
  answer_writer answer(members.size() * sizeof(be32));
  for (const if_index_t member : members) answer.append(be32(member));
  return answer.finish();
}

reply answer_multi_chassis_status(const interface& channel) {
  multi_chassis_status record{};
  const std::string& text = channel.multi_chassis_status;
  std::memcpy(record.text, text.data(), std::min(text.size(), sizeof record.text - 1));
  return answer_record(record);
}

reply answer_channel_of(const interface& port) { return answer_record(port_channel_info_t{port.settings.channel}); }

bool is_whole_channel(const interface& it) {
  if_index_type_t type = IF_TYPE_NONE;
  if_index_get_type(it.if_index, &type);
  return (type == IF_TYPE_PORT_CHANNEL || type == IF_TYPE_ETH_PORT_CHANNEL) && if_index_is_sub_intf(it.if_index) == 0;
}

reply answer_next(std::span<const std::byte> bytes) {
  const auto request = read_request<interface_request>(bytes);
  if (!request) return reject();
  const if_index_t current = request->if_index;
  const auto& all = the_machine().interfaces;
  const auto next = std::find_if(all.begin(), all.end(),
                                 [=](const interface& it) { return it.if_index > current && is_whole_channel(it); });
  return next == all.end() ? answer_error(PM_ERR_NO_SUCH_INTERFACE) : answer_record(be32(next->if_index));
}

// A port that leaves its channel keeps the settings that it took over.
uint32 leave(interface& port) {
  if (port.refusal != 0) return port.refusal;
  if (port.is_locked) return PM_ERR_PORT_LOCKED;
  return change_settings(port, [](interface& it) -> uint32 {
    it.settings.channel = 0;
    return 0;
  });
}

}  // namespace

reply serve_port_channel(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case PC_OPC_MEMBERS: return answer_for_interface(request, answer_members);
    case PC_OPC_MULTI_CHASSIS_STATUS: return answer_for_interface(request, answer_multi_chassis_status);
    case PC_OPC_NEXT: return answer_next(request);
    case PC_OPC_CHANNEL_OF: return answer_for_interface(request, answer_channel_of);
    case PC_OPC_LEAVE: return answer_statuses(request, leave);
    default: return reject_opcode();
  }
}

}  // namespace host
