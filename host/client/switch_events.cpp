#include "messages/calls/switch_events.h"

#include "client/request.h"
#include "transport/transport.h"

namespace host {
namespace {

call to_events(mts_opc_t opcode) { return {client_queue(), SAP_SWITCH, opcode}; }

std::vector<std::byte> request_for(uint32 cursor) {
  std::vector<std::byte> request;
  field_writer(request).u32(cursor);
  return request;
}

}  // namespace

event_query::event_query() {
  const bool is_open = ask_fields(to_events(SWITCH_OPC_OPEN_EVENTS), {}, [this](field_reader& fields) {
                         state_ = static_cast<events_state>(fields.u8());
                         cursor_ = fields.u32();
                         reason_ = fields.text();
                         return true;
                       }).has_value();
  if (is_open && (state_ == events_state::open || state_ == events_state::none)) return;
  state_ = events_state::failed;
  cursor_ = 0;
}

event_query::~event_query() {
  if (cursor_ != 0)
    ask_fields(to_events(SWITCH_OPC_CLOSE_EVENTS), request_for(cursor_), [](field_reader&) { return true; });
}

std::vector<int> event_query::descriptors() const { return transport_descriptors(SAP_SWITCH, cursor_); }

bool event_query::read() {
  rows_.clear();
  has_lost_ = has_more_ = false;
  num_lost_changes_ = 0;
  const auto is_taken = ask_fields(to_events(SWITCH_OPC_READ_EVENTS), request_for(cursor_),
                                   [this](field_reader& fields) { return take(fields); });
  if (is_taken && !*is_taken) transport_note_damaged(SAP_SWITCH);
  if (is_taken && *is_taken && reason_.empty()) return true;
  rows_.clear();
  has_lost_ = has_more_ = false;
  num_lost_changes_ = 0;
  state_ = events_state::failed;
  return false;
}

// False when values of a row are damaged.
bool event_query::take(field_reader& fields) {
  reason_ = fields.text();
  has_lost_ = fields.flag();
  num_lost_changes_ = fields.u32();
  has_more_ = fields.flag();
  const auto texts = fields.texts<std::string_view>();
  bytes_.clear();
  for (const std::string_view it : texts) {
    const auto values = std::as_bytes(std::span(it));
    bytes_.insert(bytes_.end(), values.begin(), values.end());
  }
  std::span<const std::byte> left = bytes_;
  for (const std::string_view it : texts) {
    auto values = read_values(left.first(it.size()));
    if (!values) return false;
    rows_.push_back(std::move(*values));
    left = left.subspan(it.size());
  }
  return true;
}

}  // namespace host
