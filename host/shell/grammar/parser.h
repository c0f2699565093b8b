// What a line means.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "shell/grammar/command_line.h"
#include "shell/grammar/cut_line.h"

namespace host {

// Parses a line that was typed in a mode; a comment is an empty line. On an error `error` is one line that says what to
// do next.
std::optional<command_line> parse_command(const cut_line& line, std::string& error, shell_mode mode = kExecMode);

// Whether one of the pipes of a line is "| json", also when the line cannot be parsed.
bool asks_for_document(const cut_line& line);

// True when a "?" at the end of the line belongs to an expression, a text or a comment and asks for no help.
bool is_in_expression(const cut_line& line, shell_mode mode = kExecMode);

// What a user asks for with a line.
enum class line_kind : uint8 {
  nothing,   // an empty line, or a comment
  question,  // what may be typed at the end of `begun`
  mistake,
  command
};

struct line_meaning {
  line_kind kind = line_kind::nothing;
  std::string_view written;  // the line without blanks at both ends
  std::string_view begun;
  std::string mistake;          // one line that says what to do next
  bool wants_document = false;  // with a mistake: for its structured form
  command_line command;
};
line_meaning meaning_of(std::string_view line, shell_mode mode);

}  // namespace host
