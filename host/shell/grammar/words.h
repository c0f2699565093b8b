// Lines of commands, cut into words and pipes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

struct word_token {
  std::string_view text;
  std::size_t start;  // in the line
};

// The words between blanks.
std::vector<word_token> split_words(std::string_view text, std::size_t start = 0);

// The parts of a line between "|"; one in quotes does not count.
std::vector<word_token> split_pipes(std::string_view line);

// The last quote of a text that has no end; npos: each has one.
std::size_t find_open_quote(std::string_view text);

// Without the quotes around the whole.
std::string_view unquote(std::string_view text);

// Whether a line is a comment: it begins with "!" or "#".
bool is_comment(std::string_view line);

// A text as the argument of a command. It reads as the same bytes, on one line, whatever they are but zero: what could
// be read otherwise, or is not printable, is in double quotes, with the escapes of C.
std::string text_argument(std::string_view text);

// The text of such an argument: as it is written, or in single quotes as it is between them, or in double quotes with
// escapes. Nothing when quotes do not end or an escape is none; then `error` names it.
std::optional<std::string> read_text_argument(std::string_view written, std::string& error);

}  // namespace host
