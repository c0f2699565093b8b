// What a line means.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "shell/grammar/command_line.h"
#include "shell/grammar/cut_line.h"
#include "shell/grammar/suggester.h"

namespace host {

// Parses a line that was typed in a mode; a comment is an empty line. On an error `error` is one line that says what to
// do next.
std::optional<command_line> parse_command(const cut_line& line, std::string& error, shell_mode mode = kExecMode,
                                          const interface_names& names = interface_names());

struct line_mistake {
  std::string_view line;
  std::string text;             // one line that says what to do next
  bool wants_document = false;  // for its structured form
};

// What a user asks for with a line: nothing with an empty line or a comment, what may be typed at its end with a "?".
using line_meaning = std::variant<std::monostate, suggestions, line_mistake, command_line>;
line_meaning meaning_of(std::string_view line, shell_mode mode, const interface_names& names = interface_names());

}  // namespace host
