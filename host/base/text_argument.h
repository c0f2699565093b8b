// Texts as arguments of commands.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host {

// A text as the argument of a command. It reads as the same bytes, on one line, whatever they are but zero: what could
// be read otherwise, or is not printable, is in double quotes, with the escapes of C.
std::string text_argument(std::string_view text);

// The text of such an argument: as it is written, or in single quotes as it is between them, or in double quotes with
// escapes. Nothing when quotes do not end or an escape is none; then `error` names it.
std::optional<std::string> read_text_argument(std::string_view written, std::string& error);

}  // namespace host
