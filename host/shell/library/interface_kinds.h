// The kinds of interface as the shell treats them: how they are listed, and which handlers show them.
#pragma once

#include <span>

#include "shell/library/command_library.h"
#include "switch/if_index_layout.h"

namespace host {

// The headers of a table: a handler for each family of kinds. A null one: no header.
struct table_headers {
  command_handler command_library::*ethernet = nullptr;
  command_handler command_library::*management = nullptr;
  command_handler command_library::*loopback = nullptr;
  command_handler command_library::*inband = nullptr;
};

struct interface_kind {
  if_index_type_t type;
  name_family family;
  interface_mask_t mask;                   // 0: no command takes this kind
  bool is_enumerated;                      // by the library's callback; else by the port manager's listing
  command_handler command_library::*show;  // null: there is no display of this kind
  command_handler command_library::*table_headers::*header;
  bool has_statistics = false;  // the detailed view continues with the traffic lines
};

std::span<const interface_kind> all_kinds();

// The kind of an interface.
const interface_kind& kind_of(if_index_t if_index);

}  // namespace host
