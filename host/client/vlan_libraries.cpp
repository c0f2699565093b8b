// Requests and answers of the client libraries of the VLAN services.
#include <cstdlib>
#include <cstring>

#include "client/library_functions.h"
#include "client/request.h"
#include "messages/spanning_tree_messages.h"
#include "messages/vlan_messages.h"
#include "transport/transport.h"

namespace host {
namespace {

// A heap block that the caller frees; null when there is no memory, and for no bytes.
void* copy_of(const void* bytes, std::size_t size) {
  void* const block = size != 0 ? std::malloc(size) : nullptr;
  if (block != nullptr) std::memcpy(block, bytes, size);
  return block;
}

template <typename Question>
int32 build(const Question& question, void** payload, uint32* size) {
  if (payload == nullptr || size == nullptr) return PM_ERR_GENERAL;
  *payload = copy_of(&question, sizeof question);
  *size = sizeof question;
  return *payload != nullptr ? 0 : int32{PM_ERR_GENERAL};
}

// The service at `sap` answered with the payload.
template <typename Record>
int32 parse(uint32 sap, const void* payload, uint32 size, Record* record) {
  if (record == nullptr) return PM_ERR_GENERAL;
  if (size < sizeof *record) {
    transport_note_damaged(sap);
    return PM_ERR_GENERAL;
  }
  std::memcpy(record, payload, sizeof *record);
  return 0;
}

// As many whole records as the payload holds.
template <typename Record>
int32 parse_all(uint32 sap, const void* payload, std::size_t size, Record** records, uint32* count) {
  if (records == nullptr || count == nullptr) return PM_ERR_GENERAL;
  if (size % sizeof(Record) != 0) transport_note_damaged(sap);
  *count = static_cast<uint32>(size / sizeof(Record));
  *records = static_cast<Record*>(copy_of(payload, *count * sizeof(Record)));
  return *count == 0 || *records != nullptr ? 0 : int32{PM_ERR_GENERAL};
}

}  // namespace

int32 build_vlan_question(const vdc_vlan_id_t* vlan, void** payload, uint32* size) {
  return vlan != nullptr ? build(*vlan, payload, size) : int32{PM_ERR_GENERAL};
}

int32 parse_vlan(vlan_info_resp_t* info, const void* payload, uint32 size) {
  return parse(MTS_SAP_VLAN_MANAGER, payload, size, info);
}

int32 build_membership_question(const if_index_t* ports, uint32 count, void** payload, uint32* size) {
  if (ports == nullptr || payload == nullptr || size == nullptr || count == 0) return PM_ERR_GENERAL;
  *size = count * static_cast<uint32>(sizeof(be32));
  auto* const question = static_cast<be32*>(std::malloc(*size));
  *payload = question;
  if (question == nullptr) return PM_ERR_GENERAL;
  for (uint32 i = 0; i < count; ++i) question[i] = ports[i];
  return 0;
}

int32 parse_memberships(const void* payload, uint32 size, trunk_port_memb_t** records, uint32* count) {
  return parse_all(MTS_SAP_VLAN_MANAGER, payload, size, records, count);
}

int32 build_private_vlan_question(const pvlan_get_switchport_info_req_t* request, void** payload, uint32* size) {
  return request != nullptr ? build(interface_request{request->port}, payload, size) : int32{PM_ERR_GENERAL};
}

int32 parse_private_vlans(const void* payload, uint32 size, pvlan_switchport_info_t* info) {
  return parse(MTS_SAP_PVLAN, payload, size, info);
}

int32 send_forwarding_question(mts_q_handle_t q, uint32 count, const if_index_t* ports, mts_msg_ref_t* sent) {
  void* payload = nullptr;
  uint32 size = 0;
  if (build_membership_question(ports, count, &payload, &size) != 0) return PM_ERR_GENERAL;
  const mts_addr_t to{MTS_NODE_LOCAL, SAP_SPANNING_TREE};
  const int32 error = mts_send(q, &to, STP_OPC_PORT_STATE, payload, size, sent, 0, 0);
  std::free(payload);
  return error;
}

int32 parse_forwarding(const mts_msg_ref_t* got, stp_port_state_t** ports, uint32* count) {
  const void* const payload = mts_payload_get(got);
  if (payload == nullptr) return PM_ERR_GENERAL;
  return parse_all(SAP_SPANNING_TREE, payload, mts_payload_size(got), ports, count);
}

}  // namespace host

int32 vlan_get_errored_vlans(if_index_t if_index, vlan_bitset_t* vlans) {
  if (vlans == nullptr) return PM_ERR_GENERAL;
  return host::ask_record({host::client_queue(), MTS_SAP_VLAN_MANAGER, host::VLAN_OPC_ERRORED},
                          host::bytes_of(host::interface_request{if_index}), host::writable_bytes_of(*vlans));
}

int32 vlan_get_all_vlans(vlan_info_resp_t** records, uint32* count) {
  if (records == nullptr || count == nullptr) return PM_ERR_GENERAL;
  const host::answer got({host::client_queue(), MTS_SAP_VLAN_MANAGER, host::VLAN_OPC_ALL}, {}, sizeof **records);
  if (got.error() != 0) return got.error();
  void* const block = host::copy_of(got.records().data(), got.records().size());
  if (block == nullptr && got.count() != 0) return PM_ERR_GENERAL;
  *records = static_cast<vlan_info_resp_t*>(block);
  *count = got.count();
  return 0;
}
