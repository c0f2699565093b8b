// Events of a switch: changes that its source publishes, or its sessions make, while the switch runs.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/types.h"
#include "switch/tables.h"

namespace host {

// The last three are changes by sessions.
enum class event_kind : uint8 { link, address, neighbor, module, setting, counters, interface };

// No value is one that there was not before, or is not any more.
using event_value = std::variant<std::monostate, std::string, mac_address, ip_address>;

struct switch_event {
  uint32 at_sec = 0;  // when it was received, in seconds since 1970
  event_kind kind = event_kind::link;
  row_device device = {};
  std::optional<ip_address> address = {};  // that an event of an address or a neighbor is about
  std::optional<mac_address> mac = {};     // of the neighbor
  std::string change = {};                 // "added", "removed" and the like, or the name of what changed
  event_value old_value = {}, new_value = {};
  std::string user = {};      // of the session that made the change; empty: it is the source's
  std::string terminal = {};  // of that session; empty: none
};

// Events as they come, from the moment at which it was made.
class event_reader {
 public:
  event_reader() = default;
  virtual ~event_reader() = default;
  event_reader(const event_reader&) = delete;
  event_reader& operator=(const event_reader&) = delete;

  // One of them is readable when events may have come.
  virtual std::vector<int> descriptors() const = 0;

  // Appends the events that have come, without waiting. Returns false when some were lost: the differences to what was
  // known before are then among the events. Throws std::runtime_error with the reason.
  virtual bool read(std::vector<switch_event>& events) = 0;

  // How many changes by sessions were lost before those that the last call has read: they are not among the events.
  virtual uint32 num_lost_changes() const { return 0; }
};

}  // namespace host
