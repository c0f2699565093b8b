#include "platform/spanning_tree.h"

#include <algorithm>

#include "messages/spanning_tree_messages.h"
#include "platform/interface_manager.h"
#include "platform/port_config.h"
#include "platform/port_manager.h"
#include "service/answers.h"
#include "service/change_settings.h"
#include "service/services.h"
#include "service/spanning_tree.h"
#include "settings/settings.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

uint32 become_edge(interface& port) {
  if (port.refusal != 0) return port.refusal;
  if (port.settings.layer != IF_LAYER_2 || !find_setting(PM_CFG_PORT_MODE)->has_it(decode_index(port.if_index).type))
    return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  if (port.is_locked) return PM_ERR_PORT_LOCKED;
  return change_settings(port, [](interface& it) -> uint32 {
    it.settings.is_edge = true;
    return 0;
  });
}

std::vector<uint16> carried_by(const interface& port) {
  if (port.oper_mode == PM_PORT_MODE_TRUNK) return port.settings.allowed_vlans;
  return port.settings.access_vlan.value_or(0) != 0 ? std::vector{*port.settings.access_vlan} : std::vector<uint16>{};
}

stp_port_state_t state_of(const interface& port) {
  stp_port_state_t state{};
  state.if_index = port.if_index;
  state.forwarding.size = BITSET_BYTES;
  for (const uint16 id : forwarding_vlans(port)) bitset_set(&state.forwarding, id);
  return state;
}

reply answer_states(std::span<const std::byte> bytes) {
  if (bytes.size() % sizeof(be32) != 0) return reject();
  reply answer;
  for (; !bytes.empty(); bytes = bytes.subspan(sizeof(be32))) {
    be32 if_index;
    std::memcpy(&if_index, bytes.data(), sizeof if_index);
    if (const interface* const port = std::as_const(the_machine()).find(if_index))
      append_bytes(answer, state_of(*port));
  }
  return answer;
}

}  // namespace

std::vector<uint16> forwarding_vlans(const interface& port) {
  if (port.oper_state != PM_PORT_STATE_UP || port.settings.layer != IF_LAYER_2) return {};
  std::vector<uint16> vlans = carried_by(port);
  std::erase_if(vlans, [&port](uint16 id) {
    const auto holds = [id](const std::vector<uint16>& shut) {
      return std::find(shut.begin(), shut.end(), id) != shut.end();
    };
    return holds(port.blocked_vlans) || holds(port.errored_vlans);
  });
  return vlans;
}

reply serve_spanning_tree(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case STP_OPC_EDGE: return answer_statuses(request, become_edge);
    case STP_OPC_PORT_STATE: return answer_states(request);
    default: return reject_opcode();
  }
}

}  // namespace host
