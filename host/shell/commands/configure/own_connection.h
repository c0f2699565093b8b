// Changes that would cut the user's own connection.
#pragma once

#include <cstddef>

#include "settings/machine_changes.h"
#include "shell/session/invocation.h"

namespace host {

// False when a setting may cut the user's own connection and the user declines it; a message then reports that nothing
// was changed. Without a terminal the answer is no, with --yes it is yes.
bool may_go_on(const invocation& run);

// The same for undoing the last changes.
bool may_undo(const invocation& run, std::size_t num_steps);

// The same for a commit.
bool may_commit(const invocation& run, const machine_changes& changes);

// The same for deleting the interfaces of the command.
bool may_delete(const invocation& run);

}  // namespace host
