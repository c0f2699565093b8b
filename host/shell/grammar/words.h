// What lines of commands are made of: pipes, comments, texts.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/tokens.h"

namespace host {

// The parts of a line between "|"; one in quotes does not count.
inline std::vector<word_token> split_pipes(std::string_view line) { return split_outside_quotes(line, '|'); }

// Whether a line is a comment: it begins with "!" or "#".
bool is_comment(std::string_view line);

// A text as the argument of a command. It reads as the same bytes, on one line, whatever they are but zero: what could
// be read otherwise, or is not printable, is in double quotes, with the escapes of C.
std::string text_argument(std::string_view text);

// The text of such an argument: as it is written, or in single quotes as it is between them, or in double quotes with
// escapes. Nothing when quotes do not end or an escape is none; then `error` names it.
std::optional<std::string> read_text_argument(std::string_view written, std::string& error);

}  // namespace host
