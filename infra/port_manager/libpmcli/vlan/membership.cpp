// The attributes of a VLAN and the trunking membership of a port, from the VLAN manager.

#include <cstdio>
#include <cstring>

#include "platform/mts.h"
#include "platform/syserr.h"
#include "pmcli/vlan.h"
#include "support/exchange.h"
#include "vlan/library_query.h"

using namespace pmcli;

namespace {

constexpr int32 kVlanInfoTimeout = 60;  // seconds
constexpr mts_addr_t kVlanManager = {MTS_NODE_LOCAL, MTS_SAP_VLAN_MANAGER};

// The last record of the port, copied whole; the caller's is unchanged when there is none.
void take_membership(const trunk_port_memb_t* records, uint32 count, if_index_t if_index, trunk_port_memb_t* to) {
  for (uint32 i = 0; records != nullptr && i < count; ++i)
    if (records[i].port == if_index) std::memcpy(to, &records[i], sizeof *to);
}

}  // namespace

syserr_t pm_cli_get_vlan_info_from_vlan_mgr(void* libvm_handle, mts_q_handle_t src_q, vdc_vlan_id_t* vv_p,
                                            vlan_info_resp_t* vlan_info_p) {
  const auto build = find_function<vlan_get_vlan_info_build_fn>(libvm_handle, "vlan_get_vlan_info_build_mts");
  if (build == nullptr) return PM_ERR_GENERAL;
  void* payload = nullptr;
  built_request request;
  const int32 build_error = build(vv_p, &payload, &request.size);
  request.payload.reset(payload);
  if (build_error != 0) return PM_ERR_GENERAL;

  message answer(src_q);
  const auto result = exchange(
      src_q, {kVlanManager, MTS_OPC_VLAN_INFO, request.payload.get(), request.size, kVlanInfoTimeout}, &answer);
  if (result != exchange_result::answered || mts_is_reject(answer.ref())) return PM_ERR_GENERAL;
  const answer_payload got = payload_of(answer);
  if (!got) return PM_ERR_GENERAL;
  const auto parse = find_function<vlan_get_vlan_info_parse_fn>(libvm_handle, "vlan_get_vlan_info_parse_reply");
  if (parse == nullptr) return PM_ERR_GENERAL;
  const int32 error = parse(vlan_info_p, got.bytes, got.size);
  return error == 0 ? 0 : PM_ERR_GENERAL;
}

syserr_t pm_cli_get_vlan_memb_info(void* dl_handle, mts_q_handle_t mts_q, if_index_t if_index,
                                   trunk_port_memb_t* vlan_mem_list) {
  const auto build =
      find_function<vlan_get_port_trunking_memb_build_fn>(dl_handle, "vlan_get_port_trunking_memb_build_mts");
  if (build == nullptr) return -1;
  const auto parse =
      find_function<vlan_get_port_trunking_memb_parse_fn>(dl_handle, "vlan_get_port_trunking_memb_parse_reply");
  if (parse == nullptr) return -1;

  void* payload = nullptr;
  built_request request;
  const int32 build_error = build(&if_index, 1, &payload, &request.size);
  request.payload.reset(payload);
  if (build_error != 0) return -1;

  // Neither result is looked at: without an answer the payload is empty.
  message answer(mts_q);
  exchange(mts_q,
           {kVlanManager, MTS_OPC_VLAN_TRUNKING_MEMBERSHIP, request.payload.get(), request.size, kVlanInfoTimeout},
           &answer);
  if (mts_is_reject(answer.ref())) return -1;
  const answer_payload got = payload_of(answer);
  if (!got) {
    std::puts("error");
    return -1;
  }
  trunk_port_memb_t* records = nullptr;
  uint32 count = 0;
  const int32 error = parse(got.bytes, got.size, &records, &count);
  const heap_block<trunk_port_memb_t> block(records);
  if (error != 0) return -1;
  take_membership(records, count, if_index, vlan_mem_list);
  return 0;
}
