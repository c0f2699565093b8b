#include "client/request.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "base/c_edge.h"
#include "messages/messages.h"
#include "platform/transceiver.h"
#include "transport/transport.h"

namespace host {
namespace {

int32 receive(const call& to, mts_rr_token_t token, mts_msg_ref_t* got) {
  mts_recv_options_t options{};
  options.version = 1;
  options.timeout = to.timeout_sec;
  options.rr_token = token;
  int32 result = 0;
  do result = mts_recv(to.q, got, &options);
  while (result == -1 && mts_errno_get(to.q) == MTS_ERRNO_INTERRUPTED);
  return result;
}

// Whether an error means that a transceiver has nothing to report.
bool is_none(syserr_t error) {
  constexpr syserr_t kNone[] = {PM_ERR_SFP_NOT_PRESENT, PM_ERR_SFP_NO_DIAGNOSTICS, PM_ERR_SFP_NO_INFORMATION};
  return std::find(std::begin(kNone), std::end(kNone), error) != std::end(kNone);
}

}  // namespace

mts_q_handle_t client_queue() {
  static mts_q_handle_t q = -1;
  if (q == -1) q = no_throw<mts_q_handle_t>(-1, transport_open_queue);
  return q;
}

syserr_t exchange(const call& to, std::span<const std::byte> request, mts_msg_ref_t* got) {
  *got = {};
  const mts_addr_t address{MTS_NODE_LOCAL, to.sap};
  mts_msg_ref_t sent{};
  if (mts_send(to.q, &address, to.opcode, const_cast<std::byte*>(request.data()), static_cast<uint32>(request.size()),
               &sent, 0, 0) != 0)
    return -1;
  const int32 result = receive(to, mts_rr_token_get(&sent), got);
  mts_drop(to.q, &sent);
  if (result != 0) return -1;
  if (mts_is_reject(got) == 0) return 0;
  mts_drop(to.q, got);
  *got = {};
  return PM_ERR_GENERAL;
}

std::span<const std::byte> payload_of(const mts_msg_ref_t& got) {
  return {static_cast<const std::byte*>(mts_payload_get(&got)), mts_payload_size(&got)};
}

syserr_t reported_error(std::span<const std::byte> payload) {
  be_int32 status;
  if (payload.size() < sizeof(reply_head)) return PM_ERR_GENERAL;
  std::memcpy(&status, payload.data() + offsetof(reply_head, status), sizeof status);
  return status;
}

counted_records records_of(std::span<const std::byte> payload, std::size_t record_size) {
  if (const syserr_t error = reported_error(payload); error != 0) return {.error = error};
  reply_head head;
  std::memcpy(&head, payload.data(), sizeof head);
  const std::span records = payload.subspan(sizeof head);
  if (head.count > records.size() / record_size) return {.error = PM_ERR_GENERAL};
  return {0, head.count, records.first(head.count * record_size)};
}

bool is_damaged(std::span<const std::byte> payload, const counted_records& found) {
  return found.error != 0 && (payload.size() < sizeof(reply_head) || reported_error(payload) == 0);
}

void note_reported(const call& to, syserr_t error) {
  if (error != 0 && to.error == error_is::failure && !is_none(error)) transport_note_error(to.sap, error);
}

answer::answer(const call& to, std::span<const std::byte> request, std::size_t record_size) : q_(to.q) {
  const syserr_t error = exchange(to, request, &got_);
  held_ = error != 0 ? counted_records{.error = error} : records_of(payload_of(got_), record_size);
  if (error != 0) return;
  if (is_damaged(payload_of(got_), held_))
    transport_note_damaged(to.sap);
  else
    note_reported(to, held_.error);
}

answer::~answer() { mts_drop(q_, &got_); }

fields_answer::fields_answer(const call& to, std::span<const std::byte> request)
    : q_(to.q), sap_(to.sap), error_(exchange(to, request, &got_)) {
  if (error_ != 0) return;
  const std::span payload = payload_of(got_);
  error_ = reported_error(payload);
  if (payload.size() < sizeof(reply_head))
    note_damage();
  else if (error_ != 0)
    note_reported(to, error_);
  else
    fields_ = payload.subspan(sizeof(reply_head));
}

fields_answer::~fields_answer() { mts_drop(q_, &got_); }

void fields_answer::note_damage() const { transport_note_damaged(sap_); }

syserr_t ask_record(const call& to, std::span<const std::byte> request, std::span<std::byte> record) {
  const answer got(to, request, record.size());
  if (got.error() != 0) return got.error();
  if (got.count() == 0) {
    transport_note_damaged(to.sap);
    return PM_ERR_GENERAL;
  }
  std::memcpy(record.data(), got.records().data(), record.size());
  return 0;
}

syserr_t ask_list(const call& to, std::span<const std::byte> request, const list_layout& layout, void** block) {
  *block = nullptr;
  const answer got(to, request, sizeof(be32));
  if (got.error() != 0) return got.error();
  auto* const list = static_cast<std::byte*>(std::calloc(1, layout.block_bytes));
  if (list == nullptr) return PM_ERR_GENERAL;
  const std::size_t room = (layout.block_bytes - layout.first_entry) / layout.entry_bytes;
  const std::size_t count = std::min<std::size_t>(got.count(), room);
  const be32 count_on_wire = static_cast<uint32>(count);
  std::memcpy(list + layout.count_offset, &count_on_wire, sizeof count_on_wire);
  for (std::size_t i = 0; i < count; ++i)
    std::memcpy(list + layout.first_entry + i * layout.entry_bytes, got.records().data() + i * sizeof(be32),
                sizeof(be32));
  *block = list;
  return 0;
}

}  // namespace host
