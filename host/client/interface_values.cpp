#include "messages/calls/interface_values.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "client/request.h"
#include "messages/messages.h"
#include "transport/transport.h"

namespace host {
namespace {

std::optional<values_answer> read_answer(std::span<const std::byte> payload) {
  reply_head head;
  std::memcpy(&head, payload.data(), sizeof head);
  std::vector<std::byte> bytes(payload.begin() + sizeof head, payload.end());
  auto values = read_values(bytes);
  if (!values || values->size() != head.count) return std::nullopt;
  return values_answer(std::move(bytes), std::move(*values));
}

}  // namespace

const interface_value* values_answer::find(property of) const {
  const auto found =
      std::find_if(values_.begin(), values_.end(), [of](const interface_value& it) { return it.of == of; });
  return found == values_.end() ? nullptr : &*found;
}

std::optional<values_answer> ask_interface_values(mts_q_handle_t q, if_index_t if_index,
                                                  std::span<const property> asked, bool only_absent) {
  mts_msg_ref_t got{};
  const std::vector<std::byte> request = values_request_for(if_index, asked, only_absent);
  if (exchange({q, SAP_INTERFACE_VALUES, VALUES_OPC_INTERFACE}, request, &got) != 0) return std::nullopt;
  const std::span payload = payload_of(got);
  const bool has_head = payload.size() >= sizeof(reply_head);
  const bool is_refused = has_head && reported_error(payload) != 0;
  auto answer = has_head && !is_refused ? read_answer(payload) : std::nullopt;
  if (!answer && !is_refused) transport_note_damaged(SAP_INTERFACE_VALUES);
  mts_drop(q, &got);
  return answer;
}

std::optional<unknown_answer> ask_unknown_values(mts_q_handle_t q, if_index_t if_index,
                                                 std::span<const property> asked) {
  unknown_answer unknown{};
  const call to = answered_by_errors({q, SAP_INTERFACE_VALUES, VALUES_OPC_UNKNOWN});
  const syserr_t error = ask_record(to, values_request_for(if_index, asked, true), writable_bytes_of(unknown));
  return error == 0 ? std::optional(unknown) : std::nullopt;
}

std::optional<bool> ask_source_knows_all(mts_q_handle_t q) {
  source_answer record{};
  if (ask_record({q, SAP_INTERFACE_VALUES, VALUES_OPC_SOURCE}, {}, writable_bytes_of(record)) != 0) return std::nullopt;
  return record.knows_all != 0;
}

}  // namespace host
