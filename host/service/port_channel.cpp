#include <algorithm>
#include <cstring>

#include "service/answers.h"
#include "service/port_channel_messages.h"
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

}  // namespace

reply serve_port_channel(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case PC_OPC_MEMBERS: return answer_for_interface(request, answer_members);
    case PC_OPC_MULTI_CHASSIS_STATUS: return answer_for_interface(request, answer_multi_chassis_status);
    default: return reject();
  }
}

}  // namespace host
