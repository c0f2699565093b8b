#include "platform/module_resources.h"

#include <cstring>

#include "client/request.h"
#include "messages/port_manager_messages.h"
#include "transport/transport.h"

using namespace host;

namespace {

// Whether an answer ends before its tree. It begins with an error; without one the tree's first node follows.
bool is_cut(std::span<const std::byte> payload) {
  be32 error;
  if (payload.size() < sizeof error) return true;
  std::memcpy(&error, payload.data(), sizeof error);
  return error == 0 && payload.size() < sizeof error + sizeof(pm_mod_resource_alloc_resp_data_t);
}

}  // namespace

int32 pm_get_module_resources(mts_q_handle_t q, uint32 count, const pm_mod_resource_category_t* category, uint32,
                              uint32, mts_msg_ref_t* answer) {
  if (category == nullptr || answer == nullptr || count != 1) return PM_ERR_GENERAL;
  const syserr_t error =
      exchange({q, MTS_SAP_PORT_MANAGER, PM_OPC_MODULE_RESOURCES}, bytes_of(module_request{category->id}), answer);
  if (error == 0 && is_cut(payload_of(*answer))) transport_note_damaged(MTS_SAP_PORT_MANAGER);
  return error;
}
