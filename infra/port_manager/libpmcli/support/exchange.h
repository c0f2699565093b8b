// A request to a service and its answer, over the message transport.
#pragma once

#include "platform/mts.h"
#include "pmcli/command.h"
#include "support/scope.h"

namespace pmcli {

struct service_request {
  mts_addr_t to;
  mts_opc_t opcode;
  void* payload;  // the caller's
  uint32 size;    // bytes
  int32 timeout;  // seconds for the answer
};

enum class exchange_result { answered, not_sent, not_received };

// Sends and waits, also through interruptions. `answer` is held when one came, also a rejection. The request's message
// is dropped.
inline exchange_result exchange(mts_q_handle_t q, const service_request& request, message* answer) {
  message sent(q);
  if (mts_send(q, &request.to, request.opcode, request.payload, request.size, sent.ref(), 0, 0) != 0)
    return exchange_result::not_sent;
  sent.hold();
  mts_recv_options_t options{};
  options.version = 1;
  options.timeout = request.timeout;
  options.rr_token = mts_rr_token_get(sent.ref());
  if (pm_mts_recv_with_eintr(q, answer->ref(), &options) != 0) return exchange_result::not_received;
  answer->hold();
  return exchange_result::answered;
}

// The payload of an answer, owned by its message; false when there is none, which is a failure.
struct answer_payload {
  void* bytes;
  uint32 size;
  explicit operator bool() const { return bytes != nullptr && size != 0; }
};

inline answer_payload payload_of(message& answer) {
  return {mts_payload_get(answer.ref()), mts_payload_size(answer.ref())};
}

}  // namespace pmcli
