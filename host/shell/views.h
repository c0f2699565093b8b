// The views of "show interface", by command id of the library.
#pragma once

#include <span>

#include "shell/interface_kinds.h"

namespace host {

struct view {
  uint32 command_id;
  std::span<const if_index_type_t> kinds;  // that are shown when no range is given
  table_headers headers;
  command_handler command_library::*show_port = nullptr;  // shows Ethernet ports in place of their kind's handler
};

enum { DETAILED_VIEW = 1 };

// The view with this id; it exists.
const view& view_of(uint32 command_id);

}  // namespace host
