// The client libraries of the VLAN services as tests supply them: builders, parsers, senders.
#pragma once

#include <cstring>

#include "platform/private_vlan.h"
#include "platform/spanning_tree.h"
#include "platform/vlan_manager.h"
#include "support/recording_platform.h"

namespace pmcli_test {

// What the parsers make of an answer. Set by a test; the functions of libraries have no other way to know.
struct vlan_answers {
  std::vector<trunk_port_memb_t> memberships;
  bool null_memberships = false;  // hands over their number without records
  vlan_info_resp_t info{};
  std::vector<stp_port_state_t> forwarding;
  bool null_forwarding = false;
  pvlan_switchport_info_t private_vlans{};
};
inline vlan_answers answers_of_vlans;

inline int32 failed(const char* function) { return RecordingPlatform::active()->failure_of(function); }

template <typename Record>
void* hand_over_records(const std::vector<Record>& records, const char* label) {
  return RecordingPlatform::active()->hand_over(records.data(), records.size() * sizeof(Record), label);
}

// A builder's request: the bytes of what it was asked.
template <typename Question>
int32 build(const char* function, const Question* questions, uint32 count, void** payload, uint32* size) {
  if (const int32 error = failed(function); error != 0) return error;
  *size = count * static_cast<uint32>(sizeof *questions);
  *payload = RecordingPlatform::active()->hand_over(questions, *size, "a request of a client library");
  return 0;
}

inline int32 build_info(vdc_vlan_id_t* vlan, void** payload, uint32* size) {
  return build("vlan_get_vlan_info_build_mts", vlan, 1, payload, size);
}
inline int32 parse_info(vlan_info_resp_t* info, void*, uint32) {
  if (const int32 error = failed("vlan_get_vlan_info_parse_reply"); error != 0) return error;
  *info = answers_of_vlans.info;
  return 0;
}
inline int32 build_membership(if_index_t* ports, uint32 count, void** payload, uint32* size) {
  return build("vlan_get_port_trunking_memb_build_mts", ports, count, payload, size);
}
inline int32 parse_membership(void*, uint32, trunk_port_memb_t** records, uint32* count) {
  if (const int32 error = failed("vlan_get_port_trunking_memb_parse_reply"); error != 0) return error;
  *count = static_cast<uint32>(answers_of_vlans.memberships.size());
  if (!answers_of_vlans.null_memberships)
    *records = static_cast<trunk_port_memb_t*>(hand_over_records(answers_of_vlans.memberships, "memberships"));
  return 0;
}

inline int32 send_stp(mts_q_handle_t q, uint32 vdc, uint32 count, if_index_t* ports, mts_msg_ref_t* sent) {
  if (const int32 error = failed("stp_send_get_port_state"); error != 0) return error;
  const mts_addr_t to{MTS_NODE_LOCAL, vdc};
  return mts_send(q, &to, count, ports, sizeof *ports, sent, 0, 0);
}
inline int32 parse_stp(mts_msg_ref_t*, stp_port_state_t** ports, uint32* count) {
  if (const int32 error = failed("stp_parse_get_port_state"); error != 0) return error;
  *count = static_cast<uint32>(answers_of_vlans.forwarding.size());
  if (!answers_of_vlans.null_forwarding)
    *ports = static_cast<stp_port_state_t*>(hand_over_records(answers_of_vlans.forwarding, "forwarding ports"));
  return 0;
}

inline int32 build_private(pvlan_get_switchport_info_req_t* request, void** payload, uint32* size) {
  return build("pvlan_build_get_switchport_info_req", request, 1, payload, size);
}
inline int32 parse_private(void*, uint32, pvlan_switchport_info_t* info) {
  if (const int32 error = failed("pvlan_parse_get_switchport_info_rsp"); error != 0) return error;
  *info = answers_of_vlans.private_vlans;
  return 0;
}

// Gives the platform all three libraries, and services that answer four bytes.
inline void install_vlan_libraries(RecordingPlatform& platform) {
  answers_of_vlans = {};
  platform.libraries[VLAN_MGR_LIBRARY] = {{"vlan_get_vlan_info_build_mts", build_info},
                                          {"vlan_get_vlan_info_parse_reply", parse_info},
                                          {"vlan_get_port_trunking_memb_build_mts", build_membership},
                                          {"vlan_get_port_trunking_memb_parse_reply", parse_membership}};
  platform.libraries[STP_LIBRARY] = {{"stp_send_get_port_state", send_stp}, {"stp_parse_get_port_state", parse_stp}};
  platform.libraries[PVLAN_LIBRARY] = {{"pvlan_build_get_switchport_info_req", build_private},
                                       {"pvlan_parse_get_switchport_info_rsp", parse_private}};
  platform.on_request = [](const mts_request&) { return mts_reply{{1, 2, 3, 4}}; };
}

inline vlan_bitset_t vlans(const std::vector<uint32>& ids) {
  vlan_bitset_t set;
  bitset_clear_all(&set);
  for (const uint32 id : ids) bitset_set(&set, id);
  return set;
}

inline trunk_port_memb_t membership(if_index_t port, uint16 native, const std::vector<uint32>& allowed) {
  trunk_port_memb_t record{};
  record.port = port;
  record.native_trunk.vlan_id = native;
  record.allowed_vlan_list = vlans(allowed);
  return record;
}

}  // namespace pmcli_test
