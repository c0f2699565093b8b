// Errors of the shell itself.
#pragma once

#include <functional>
#include <string_view>

namespace host {

// One line to standard error, safe for a terminal.
void print_error(std::string_view text);

// From now on errors go to `sink`, without the name of the program and a newline; empty: to standard error.
void set_error_sink(std::function<void(std::string_view)> sink);

}  // namespace host
