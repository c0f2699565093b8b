// A user at a terminal.
#pragma once

#include "shell/session/state.h"

namespace host {

// Reads commands from the user until the end of the input. Returns an exit code.
int run_interactively(shell& session);

}  // namespace host
