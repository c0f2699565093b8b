// What a line means.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "shell/grammar/command_line.h"

namespace host {

// Parses a line that was typed in a mode; a comment is an empty line. On an error `error` is one line that says what to
// do next.
std::optional<command_line> parse_command(std::string_view line, std::string& error, shell_mode mode = kExecMode);

// Whether one of the pipes of a line is "| json", also when the line cannot be parsed.
bool asks_for_document(std::string_view line);

// True when a "?" at the end of the line belongs to an expression, a text or a comment and asks for no help.
bool is_in_expression(std::string_view line, shell_mode mode = kExecMode);

}  // namespace host
