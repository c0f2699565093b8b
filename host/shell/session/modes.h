// The modes of a session, and its prompt.
#pragma once

#include <string>

#include "shell/session/state.h"

namespace host {

// "switch# ", "switch(config)# ", "switch(config-if-dry-run)# " and so on.
std::string prompt_of(const shell& session);

// Goes from the interface mode to the configuration.
void leave_interfaces(shell& session);

// The same, when one of the interfaces of the mode is not there any more.
void leave_lost_interfaces(shell& session);

}  // namespace host
