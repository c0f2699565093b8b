// Commands that the command libraries passed to system().
#pragma once

#include <string>
#include <vector>

namespace host {

// The commands that were given to system() in this process. None of them is run.
std::vector<std::string>& system_commands();

}  // namespace host
