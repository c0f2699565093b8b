#include "platform/interface_manager.h"

#include "client/request.h"
#include "messages/interface_manager_messages.h"

using namespace host;

namespace {

// A VLAN id is the lower half of the word that a layer fills.
static_assert(offsetof(if_info_t, val.vlan.vlan_id) + sizeof(be16) == offsetof(if_info_t, val.layer) + sizeof(be32));

syserr_t fill_values(interface_manager_opcode opcode, if_info_t* records, uint32 count) {
  if (records == nullptr && count != 0) return PM_ERR_GENERAL;
  for (if_info_t& record : std::span(records, count)) {
    if_value value;
    const call to{client_queue(), SAP_INTERFACE_MANAGER, opcode};
    const syserr_t error = ask_record(to, bytes_of(interface_request{record.ifindex}), writable_bytes_of(value));
    if (error != 0) return error;
    note_reported(to, value.status);
    record.status = value.status;
    record.val.layer = value.value;
  }
  return 0;
}

}  // namespace

// Needs no preparation: the queue opens with the first query.
int32 im_ext_sbcr_init(uint32, uint32, const char*) { return 0; }

int32 im_get_ifindex_layermode_list(if_info_t* records, uint32 count) {
  return fill_values(IM_OPC_LAYER_MODE, records, count);
}

int32 im_get_ifindex_native_vlan_list(if_info_t* records, uint32 count) {
  return fill_values(IM_OPC_NATIVE_VLAN, records, count);
}

int32 im_get_ifindex_access_vlan_list(if_info_t* records, uint32 count) {
  return fill_values(IM_OPC_ACCESS_VLAN, records, count);
}
