// Splits texts into words and parts; quotes are respected.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace host {

struct word_token {
  std::string_view text;
  std::size_t start;  // in the line
};

// The words between blanks.
std::vector<word_token> split_words(std::string_view text, std::size_t start = 0);

// The text from the first to the last of some words of one text.
std::string_view text_of(std::span<const word_token> words);

// The parts of a line between separators; one in quotes does not count.
std::vector<word_token> split_outside_quotes(std::string_view line, char separator);

// The position of an unclosed quote; npos when there is none.
std::size_t find_open_quote(std::string_view text);

// Without the quotes around the whole.
std::string_view unquote(std::string_view text);

}  // namespace host
