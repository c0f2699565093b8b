// Errors of the shell itself, and texts that are not the output of a command.
#pragma once

#include <functional>
#include <string_view>

namespace host {

// One line to standard error, safe for a terminal.
void print_error(std::string_view text);

// Writes a text to standard output, after the text printed so far. Returns an exit code and prints the reason of a
// failure. A closed pipe is not a failure.
int print_text(std::string_view text);

// The error of output that could not be written, by its errno. Returns the exit code.
int report_lost_output(int error);

// Takes an error, without the name of the program and a newline.
using error_taker = std::function<void(std::string_view)>;

// From now on errors go to `sink`; empty: to standard error. Returns the sink before.
error_taker set_error_sink(error_taker sink);

}  // namespace host
