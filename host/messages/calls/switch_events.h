// Requests for the events of the switch.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "messages/fields.h"
#include "messages/interface_values.h"
#include "messages/switch_messages.h"

namespace host {

// Follows the events from the moment at which it was made. Its destructor ends that.
class event_query {
 public:
  using row = std::vector<interface_value>;

  event_query();
  ~event_query();
  event_query(const event_query&) = delete;
  event_query& operator=(const event_query&) = delete;

  // Whether events can be read: `none` when the switch publishes none.
  events_state state() const { return state_; }

  // Why they cannot: a sentence without its full stop. Empty when the service failed, which is noted.
  const std::string& reason() const { return reason_; }

  // One of them is readable when events may have come (transport/transport.h).
  std::vector<int> descriptors() const;

  // Reads events that have come, which replace the former ones, without waiting. Returns false when the state is
  // `failed` from now on.
  bool read();

  // They live until the next call.
  std::span<const row> rows() const { return rows_; }

  // Whether events of the source were lost before these: what differs now is among them.
  bool has_lost() const { return has_lost_; }

  // How many changes by sessions were lost before these.
  uint32 num_lost_changes() const { return num_lost_changes_; }

  // Whether more have come.
  bool has_more() const { return has_more_; }

 private:
  bool take(field_reader& fields);

  events_state state_ = events_state::failed;
  uint32 cursor_ = 0;
  std::string reason_;
  std::vector<std::byte> bytes_;
  std::vector<row> rows_;
  bool has_lost_ = false;
  uint32 num_lost_changes_ = 0;
  bool has_more_ = false;
};

}  // namespace host
