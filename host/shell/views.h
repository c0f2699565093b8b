// The views of "show interface", by command id of the library.
#pragma once

#include <span>

#include "shell/interface_kinds.h"

namespace host {

// Kinds that another handler shows than their own: that of a sibling library.
struct replacement {
  command_handler command_library::*handler = nullptr;  // null: none
  std::span<const if_index_type_t> kinds = {};
  bool only_structured = false;                     // as text their own handler shows them,
  std::span<const if_index_type_t> also_text = {};  // but for these, which it does not know
};

// Ids of views that the code names. Those above 1000 are the shell's own: what the sibling library computes, else the
// detailed view; and the VLANs that an error keeps off trunks.
enum { DETAILED_VIEW = 1, COMPUTED_DETAILED_VIEW = 1001, ERRORED_VLANS_VIEW = 1002 };

// What the library is told for the in-band interface, in place of the view's id, where it has its own idea of it.
enum inband_id : uint32 { INBAND_SAME = 0, INBAND_COUNTERS = 3, INBAND_NOTHING = 7 };

struct view {
  uint32 id;
  std::span<const if_index_type_t> kinds;  // that are shown when no range is given
  table_headers headers;
  inband_id inband = INBAND_SAME;
  replacement replaced = {};
  uint32 followed_by = 0;  // another view whose table stands below this one; 0: none

  // What the library is told.
  uint32 command_id() const {
    enum : uint32 { ERRORED_VLANS_HEADER = 97 };
    if (id == ERRORED_VLANS_VIEW) return ERRORED_VLANS_HEADER;
    return id == COMPUTED_DETAILED_VIEW ? uint32{DETAILED_VIEW} : id;
  }
};

// The view with this id; it exists.
const view& view_of(uint32 id);

}  // namespace host
