// The place of the shell's persistent files.
#pragma once

#include <string>
#include <string_view>

namespace host {

// The path of a file in the user's state directory: $XDG_STATE_HOME/pmsh, else ~/.local/state/pmsh. Empty when there is
// no place for it.
std::string state_file(std::string_view name);

}  // namespace host
