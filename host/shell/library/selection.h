// Which interfaces a command is about: resolved, expanded and checked with the command library's callbacks, with the
// parameters of the command and for its user.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "shell/library/parameters.h"
#include "shell/output/exit_codes.h"
#include "switch/interface_name.h"

namespace host {

struct selection {
  int code = kDone;  // exit code; otherwise nothing is to be shown
  std::string complaint;
  std::vector<if_index_t> interfaces;
};

// The interfaces that the user named, in the order of the spans, in natural order within each. All of their ends must
// exist, and the user must be allowed to see all of them.
selection select_named(command_parameters& command, std::span<const interface_span> spans);

// The interfaces that the user named for their configuration. Loopbacks, and sub-interfaces of ports that exist, are
// created where they are missing.
selection select_or_create(command_parameters& command, std::span<const interface_span> spans);

// Deletes the interfaces that the user named: loopbacks and sub-interfaces of ports. Without `may_be_missing` all ends
// must exist.
selection delete_named(command_parameters& command, std::span<const interface_span> spans, bool may_be_missing);

// All interfaces of some kinds that the user may see, word by word in natural order; sub-interfaces follow their port.
selection select_all(command_parameters& command, std::span<const if_index_type_t> kinds);

// Every interface that the user may see, also of kinds that have no display.
selection select_every(command_parameters& command);

}  // namespace host
