// The private VLANs of a port.

#include "platform/private_vlan.h"

#include <cstdio>
#include <cstring>

#include "platform/mts.h"
#include "pmcli/vlan.h"
#include "support/errors.h"
#include "support/exchange.h"
#include "support/id_set.h"
#include "support/kind.h"
#include "vlan/library_query.h"

using namespace pmcli;

namespace {

constexpr int32 kPrivateVlanTimeout = 10;  // seconds
constexpr mts_addr_t kPrivateVlans = {MTS_NODE_LOCAL, MTS_SAP_PVLAN};

// The record of a port; false after the reason was printed, or when the request was not built or sent.
bool ask(void* library, mts_q_handle_t q, if_index_t if_index, pvlan_switchport_info_t* info) {
  const auto build =
      find_function<pvlan_build_get_switchport_info_req_fn>(library, "pvlan_build_get_switchport_info_req");
  if (build == nullptr) return false;
  const auto parse =
      find_function<pvlan_parse_get_switchport_info_rsp_fn>(library, "pvlan_parse_get_switchport_info_rsp");
  if (parse == nullptr) return false;

  pvlan_get_switchport_info_req_t question{if_index};
  void* payload = nullptr;
  built_request request;
  const int32 build_error = build(&question, &payload, &request.size);
  request.payload.reset(payload);
  if (build_error != 0) return false;

  message answer(q);
  const service_request to_send{kPrivateVlans, MTS_OPC_PVLAN_GET_SWITCHPORT_INFO, request.payload.get(), request.size,
                                kPrivateVlanTimeout};
  const exchange_result result = exchange(q, to_send, &answer);
  if (result == exchange_result::not_sent) return false;
  if (result == exchange_result::not_received) {
    std::printf("error: mts_recv get PVLAN switchport info returned %d\n", mts_errno_get(q));
    return false;
  }
  const answer_payload got = payload_of(answer);
  if (mts_is_reject(answer.ref()) || !got) {
    std::printf("error: mts_recv for get PVLAN switchport info returned %d\n", mts_errno_get(q));
    return false;
  }
  const syserr_t error = parse(got.bytes, got.size, info);
  if (error != 0) std::printf("error: pvlan_parse_get_switchport_info_rsp returned %s\n", system_error_text(error));
  return error == 0;
}

}  // namespace

syserr_t pm_cli_get_pvlan_info(if_index_t if_index, mts_q_handle_t src_q, vlan_id_t* pvhost_primary,
                               vlan_id_t* pvhost_secondary, vlan_id_t* pvmapping_primary,
                               vlan_bitset_t* pvmapping_secondary, vlan_bitset_t* pvoperational_vlans) {
  if (kind_of(if_index) == IF_TYPE_ETH_PORT_CHANNEL) return 0;
  *pvhost_primary = *pvhost_secondary = *pvmapping_primary = 0;
  *pvmapping_secondary = *pvoperational_vlans = empty_set();
  const service_library library(PVLAN_LIBRARY, RTLD_LAZY);
  if (!library) {
    std::puts("error: couldn't open libpvlan.so");
    return -1;
  }
  pvlan_switchport_info_t info{};
  if (!ask(library.handle(), src_q, if_index, &info)) return -1;
  *pvhost_primary = info.host_primary;
  *pvhost_secondary = info.host_secondary;
  *pvmapping_primary = info.mapping_primary;
  std::memcpy(pvmapping_secondary->bits, info.mapping_secondary.bits, sizeof pvmapping_secondary->bits);
  std::memcpy(pvoperational_vlans->bits, info.operational.bits, sizeof pvoperational_vlans->bits);
  return 0;
}
