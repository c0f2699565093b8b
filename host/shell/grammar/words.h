// Lines of commands, cut into words and pipes.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

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

// Without blanks at both ends, and without the quotes around the whole.
std::string_view trim(std::string_view text);
std::string_view unquote(std::string_view text);

// Whether a line is a comment: it begins with "!" or "#".
bool is_comment(std::string_view line);

// A text as the argument of a command. It reads as the same bytes, on one line, whatever they are but zero: what could
// be read otherwise, or is not printable, is in double quotes, with the escapes of C.
std::string text_argument(std::string_view text);

// The text of such an argument: as it is written, or in single quotes as it is between them, or in double quotes with
// escapes. Nothing when quotes do not end or an escape is none; then `error` names it.
std::optional<std::string> read_text_argument(std::string_view written, std::string& error);

bool starts_with_ignoring_case(std::string_view word, std::string_view beginning);
bool contains_ignoring_case(std::string_view text, std::string_view part);

// The word that was probably meant; empty when none is close.
std::string_view closest_word(std::string_view written, const std::vector<std::string_view>& known);

// The text in single quotes, as messages name what was written.
std::string quoted(std::string_view text);

// A list of VLANs such as "1-10,20" as pairs of bounds; none when it is not one, or has more than 64 items.
struct vlan_span {
  uint32 first;
  uint32 last;
};
std::optional<std::vector<vlan_span>> parse_vlans(std::string_view text);

std::string join(const std::vector<std::string_view>& words, std::string_view separator);

}  // namespace host
