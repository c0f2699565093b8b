// Which interfaces a command is about: resolved, expanded and checked with the command library's callbacks, with the
// parameters of the command and for its user.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "shell/library/parameters.h"
#include "shell/output/exit_codes.h"
#include "switch/interface_range.h"

namespace host {

struct selection {
  int code = kDone;  // exit code; otherwise nothing is to be shown
  std::string complaint;
  std::vector<if_index_t> interfaces;
  std::vector<if_index_t> matched = {};  // those that "all" and patterns alone name, sorted
  bool has_absent_ends = false;          // which the complaint names; the others are to be shown

  // Whether the user named an interface by its number.
  bool is_named(if_index_t if_index) const;

  // The exit code of a command with this result, which showed what exists.
  int result_of(int shown) const { return shown == kDone && has_absent_ends ? int{kNoSuchInterface} : shown; }
};

// Ends of ranges that do not exist: an error, or named and skipped as long as something exists.
enum class absent_ends : uint8 { refuse, skip };

// The interfaces of a range that the user wrote: each once, in the order of the items, in natural order within each.
// The user must be allowed to see what the numbers name; of "all" and of patterns the others are left out.
selection select_named(command_parameters& command, const interface_range& range,
                       absent_ends absent = absent_ends::refuse);

// The same for their configuration. Loopbacks, and sub-interfaces of ports that exist, are created where they are
// missing.
selection select_or_create(command_parameters& command, const interface_range& range);

// Deletes the interfaces that the user named: loopbacks and sub-interfaces of ports. Without `may_be_missing` all ends
// must exist.
selection delete_named(command_parameters& command, const interface_range& range, bool may_be_missing);

// All interfaces of some kinds that the user may see, word by word in natural order; sub-interfaces follow their port.
selection select_all(command_parameters& command, std::span<const if_index_type_t> kinds);

// Every interface that the user may see, also of kinds that have no display.
selection select_every(command_parameters& command);

}  // namespace host
