// Changes that would cut the user's own connection.
#pragma once

#include <span>

#include "messages/calls/session.h"
#include "shell/session/invocation.h"

namespace host {

// False when a setting may cut the user's own connection and the user declines it; a message then reports that nothing
// was changed. Without a terminal the answer is no, with --yes it is yes.
bool may_go_on(const invocation& run);

// The same for undoing changes of these interfaces, sorted.
bool may_undo(const invocation& run, std::span<const if_index_t> changed);

// The same for a commit.
bool may_commit(const invocation& run, std::span<const candidate_change> changes);

// The same for deleting the interfaces of the command.
bool may_delete(const invocation& run);

}  // namespace host
