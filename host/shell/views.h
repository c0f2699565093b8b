// The views of "show interface", by command id of the library.
#pragma once

#include <span>

#include "shell/interface_kinds.h"

namespace host {

// Kinds that another handler shows than their own: that of a sibling library.
struct replacement {
  command_handler command_library::*handler = nullptr;  // null: none
  std::span<const if_index_type_t> kinds = {};
  bool only_structured = false;  // as text their own handler shows them
};

// Ids of views that the code names. The last is the shell's own: what the sibling library computes, else the detailed
// view.
enum { DETAILED_VIEW = 1, COMPUTED_DETAILED_VIEW = 1001 };

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
  uint32 command_id() const { return id == COMPUTED_DETAILED_VIEW ? uint32{DETAILED_VIEW} : id; }
};

// The view with this id; it exists.
const view& view_of(uint32 id);

}  // namespace host
