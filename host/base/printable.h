// Text that came from outside, made safe for a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

// True when the text is all printable ASCII, the common case.
bool is_plain_ascii(std::string_view text);

// Appends `text`; every byte that is not part of a printable UTF-8 character is written visibly, such as "\x1b":
// control bytes, those of the upper range (U+0080 to U+009F) too, and bytes that are no UTF-8. The bytes in `but` pass
// as they are.
void append_printable(std::string& to, std::string_view text, std::string_view but = {});

// Characters of a text that append_printable() made.
std::size_t count_characters(std::string_view text);

// The first `count` characters of such a text.
std::string_view first_characters(std::string_view text, std::size_t count);

}  // namespace host
