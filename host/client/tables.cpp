#include "messages/calls/tables.h"

#include <cstring>
#include <optional>

#include "client/request.h"
#include "messages/messages.h"
#include "transport/transport.h"

namespace host {
namespace {

// Takes a record from the front.
template <typename Record>
std::optional<Record> take(std::span<const std::byte>& bytes) {
  if (bytes.size() < sizeof(Record)) return std::nullopt;
  Record record;
  std::memcpy(&record, bytes.data(), sizeof record);
  bytes = bytes.subspan(sizeof record);
  return record;
}

void append_to(std::vector<std::byte>& bytes, std::span<const std::byte> added) {
  bytes.insert(bytes.end(), added.begin(), added.end());
}

}  // namespace

table_query::table_query(mts_q_handle_t q, table_id table, std::span<const if_index_t> interfaces) : q_(q) {
  append_to(request_, bytes_of(begin_table_request{static_cast<uint16>(table), 0}));
  for (const if_index_t it : interfaces) append_to(request_, bytes_of(be32(it)));
}

table_query::~table_query() {
  if (cursor_ == 0) return;
  mts_msg_ref_t got{};
  if (exchange({q_, SAP_TABLES, TABLES_OPC_END}, bytes_of(table_cursor{cursor_}), &got) == 0) mts_drop(q_, &got);
}

bool table_query::next() {
  rows_.clear();
  if (error_ != 0 || (is_begun_ && cursor_ == 0)) return false;
  const mts_opc_t opcode = is_begun_ ? mts_opc_t{TABLES_OPC_GO_ON} : mts_opc_t{TABLES_OPC_BEGIN};
  if (is_begun_) {
    const table_cursor cursor{cursor_};
    const std::span bytes = bytes_of(cursor);
    request_.assign(bytes.begin(), bytes.end());
  }
  is_begun_ = true;
  cursor_ = 0;
  mts_msg_ref_t got{};
  if (exchange({q_, SAP_TABLES, opcode}, request_, &got) != 0) {
    error_ = PM_ERR_GENERAL;
    return false;
  }
  const std::span payload = payload_of(got);
  bytes_.assign(payload.begin(), payload.end());
  mts_drop(q_, &got);
  if (bytes_.size() >= sizeof(reply_head) && reported_error(bytes_) != 0) {
    error_ = reported_error(bytes_);
    return false;
  }
  if (read(bytes_)) return true;
  transport_note_damaged(SAP_TABLES);
  rows_.clear();
  error_ = PM_ERR_GENERAL;
  return false;
}

bool table_query::read(std::span<const std::byte> payload) {
  const auto head = take<reply_head>(payload);
  const auto answer = take<table_answer>(payload);
  if (!head || !answer) return false;
  cursor_ = answer->next;
  has_changed_ |= answer->has_changed != 0;
  while (!payload.empty()) {
    const auto of_row = take<row_head>(payload);
    if (!of_row || of_row->size > payload.size()) return false;
    auto values = read_values(payload.first(of_row->size));
    if (!values) return false;
    payload = payload.subspan(of_row->size);
    rows_.push_back(std::move(*values));
  }
  return rows_.size() == head->count;
}

}  // namespace host
