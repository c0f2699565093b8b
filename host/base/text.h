// Texts and words, for every part of the host.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace host {

inline constexpr std::string_view kBlanks = " \t\r\n";

// In any locale.
constexpr bool is_digit(char character) { return character >= '0' && character <= '9'; }

// Without blanks at both ends.
std::string_view trim(std::string_view text);

bool starts_with_ignoring_case(std::string_view word, std::string_view beginning);
bool contains_ignoring_case(std::string_view text, std::string_view part);

// The known word that needs the fewest insertions, deletions and replacements, in any case; empty when none needs at
// most `max_edits`.
std::string_view closest_word(std::string_view written, const std::vector<std::string_view>& known,
                              std::size_t max_edits);

// The text in single quotes, as messages quote input.
std::string in_quotes(std::string_view text);

std::string join(const std::vector<std::string_view>& words, std::string_view separator);

}  // namespace host
