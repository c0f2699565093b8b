// Changes that would cut the way by which the user is connected.
#pragma once

#include <cstddef>

#include "shell/commands.h"
#include "switch/machine_changes.h"

namespace host {

// False when a setting may take the user's own way down, and the user, asked, does not want that; it is then said that
// nothing was changed. Without a terminal the answer is no, with --yes it is yes.
bool may_go_on(const invocation& run);

// The same, of taking back the last changes.
bool may_undo(const invocation& run, std::size_t num_steps);

// The same, of a commit.
bool may_commit(const invocation& run, const machine_changes& changes);

// The same, of deleting the interfaces that the command names.
bool may_delete(const invocation& run);

}  // namespace host
