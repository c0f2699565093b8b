// A line as it was typed, cut once for all who read it.
#pragma once

#include <concepts>
#include <string_view>
#include <vector>

#include "base/tokens.h"

namespace host {

// The texts are those of the line.
struct cut_line {
  template <std::convertible_to<std::string_view> Text>
  cut_line(const Text& line) : cut_line(std::string_view(line), 0) {}

  std::string_view text;          // the whole line
  bool is_comment = false;        // it begins with "!" or "#"
  std::vector<word_token> parts;  // between "|"; one in quotes does not count
  std::vector<word_token> words;  // of the first part, the command

  bool is_empty() const { return is_comment || (words.empty() && parts.size() == 1); }

 private:
  cut_line(std::string_view line, int);
};

}  // namespace host
