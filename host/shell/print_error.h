// Errors of the shell itself.
#pragma once

#include <string_view>

namespace host {

// One line to standard error, safe for a terminal.
void print_error(std::string_view text);

}  // namespace host
