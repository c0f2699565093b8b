// What is wrong with a line, and the next step.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shell/grammar/reading.h"

namespace host {

// The word that was probably meant; empty when none is close.
std::string_view likely_word(std::string_view written, const std::vector<std::string_view>& known);

// "1 to 64".
std::string bounds_of(const number_argument& number);

// A word that cannot be read next.
std::string unknown_word(const reading_state& state, std::string_view word);

// Why a word cannot be read next: it belongs to another mode, is no show command to watch, or is unknown.
std::string unreadable_word(const reading_state& state, std::string_view word);

std::string ambiguous_word(std::string_view word, const std::vector<std::string_view>& meanings);

// The bad items of a range that begins at this place of the line, each with its column.
std::string bad_range(const std::vector<range_error>& errors, std::size_t start);

std::string incomplete_command(const reading_state& state);

}  // namespace host
