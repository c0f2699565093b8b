#include "platform/interface_manager.h"
#include "service/answers.h"
#include "service/services.h"
#include "service/spanning_tree_messages.h"
#include "switch/change_journal.h"

namespace host {
namespace {

uint32 become_edge(interface& port) {
  if (port.layer != IF_LAYER_2) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  if (port.is_locked) return PM_ERR_PORT_LOCKED;
  note_change(port);
  port.is_edge = true;
  return 0;
}

}  // namespace

reply serve_spanning_tree(mts_opc_t opcode, std::span<const std::byte> request) {
  return opcode == STP_OPC_EDGE ? answer_statuses(request, become_edge) : reject();
}

}  // namespace host
