// The views of "show interface": the kinds of interface that the library shows in each, and those that others add.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "pmcli/displays.h"
#include "shell/library/interface_kinds.h"

namespace host {

// The id for the in-band interface where the library has a separate one.
enum inband_id : uint32 {
  kInbandSame = 0,
  kInbandCounters = DISPLAY_COUNTERS,
  kInbandNothing = DISPLAY_COUNTERS_BRIEF
};

// The handlers of a view that another library added, for the kinds of the view.
struct added_handlers {
  command_handler handler = nullptr;  // null: the view is the command library's, by kind
  command_handler header = nullptr;   // null: none
  uint32 command_id = 0;
  bool shows_sub_interfaces = true;
};

struct interface_view {
  uint32 id = 0;                                // of the library (pmcli/displays.h)
  std::span<const if_index_type_t> kinds = {};  // that it applies to; without a range all of them are shown
  table_headers headers = {};
  inband_id inband = kInbandSame;
  const interface_view* followed_by = nullptr;  // another view whose table follows this one; null: none
  added_handlers own = {};
  bool followed_by_lanes = false;  // as text; a record has them anyway

  // The id that the handlers get.
  uint32 command_id() const { return own.handler != nullptr ? own.command_id : id; }
};

// Adds a view of another library, without kinds when its command has no interfaces. It stays for the rest of the
// process. Call it before the first command, like provide_kinds().
const interface_view* add_view(std::vector<if_index_type_t> kinds, const added_handlers& handlers);

// Kinds of interface that another library shows instead of the view's own handlers.
struct provided_kinds {
  const interface_view* view;
  interface_mask_t kinds;
  bool only_structured;  // the text stays that of the view's own handlers
  command_handler handler;
};
void provide_kinds(const provided_kinds& kinds);

// The name of another library's handler in errors, "NAME of FILE"; empty for a handler of the command library.
void name_added_handler(command_handler handler, std::string name);
std::string_view name_of_added_handler(command_handler handler);

// The handler that provides a kind of interface in a view; null when none does.
command_handler provided_handler(const interface_view& view, interface_mask_t kind, bool is_structured);

}  // namespace host
