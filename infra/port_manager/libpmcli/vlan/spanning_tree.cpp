// The VLANs in which spanning tree lets a port forward.

#include "platform/spanning_tree.h"

#include <cstdio>
#include <cstring>

#include "platform/platform_data.h"
#include "pmcli/command.h"
#include "pmcli/vlan.h"
#include "vlan/library_query.h"

using namespace pmcli;

namespace {

constexpr int32 kSpanningTreeTimeout = 60;  // seconds

// Sends the request and stores the token of its answer.
bool send(stp_send_get_port_state_fn send_query, mts_q_handle_t q, if_index_t if_index, mts_rr_token_t* token) {
  message sent(q);
  if (send_query(q, sysmgr_vdc_get(), 1, &if_index, sent.ref()) != 0) return false;
  sent.hold();
  *token = mts_rr_token_get(sent.ref());
  return true;
}

bool receive(mts_q_handle_t q, mts_rr_token_t token, message* answer) {
  mts_recv_options_t options{};
  options.version = 1;
  options.timeout = kSpanningTreeTimeout;
  options.rr_token = token;
  if (pm_mts_recv_with_eintr(q, answer->ref(), &options) != 0) return false;
  answer->hold();
  return true;
}

}  // namespace

syserr_t pm_cli_get_stp_forwarding_info(if_index_t if_index, mts_q_handle_t src_q,
                                        vlan_bitset_t* stp_forwarding_vlans) {
  const service_library library(STP_LIBRARY, RTLD_LAZY);
  if (!library) {
    std::puts("error: couldn't open libstp.so");
    return -1;
  }
  const auto send_query = find_function<stp_send_get_port_state_fn>(library.handle(), "stp_send_get_port_state");
  if (send_query == nullptr) return -1;
  const auto parse = find_function<stp_parse_get_port_state_fn>(library.handle(), "stp_parse_get_port_state");
  if (parse == nullptr) return -1;

  mts_rr_token_t token = 0;
  message answer(src_q);
  if (!send(send_query, src_q, if_index, &token) || !receive(src_q, token, &answer)) return -1;
  if (mts_is_reject(answer.ref())) return -1;
  stp_port_state_t* ports = nullptr;
  uint32 count = 0;
  const int32 error = parse(answer.ref(), &ports, &count);
  const heap_block<stp_port_state_t> block(ports);
  if (error != 0 || count != 1 || ports == nullptr) return -1;
  std::memcpy(stp_forwarding_vlans, &ports->forwarding, sizeof *stp_forwarding_vlans);
  return 0;
}
