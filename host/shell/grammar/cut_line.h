// A line as it was typed, cut once for all who read it.
#pragma once

#include <concepts>
#include <span>
#include <string_view>
#include <vector>

#include "base/tokens.h"

namespace host {

// What is before the first "|", or after one. The texts are those of the line.
struct line_part {
  std::string_view text;
  std::vector<word_token> words;  // with their places in the line

  bool ends_with_word() const { return !words.empty() && words.back().text.end() == text.end(); }

  // The word at the end, which may be incomplete; empty after a blank.
  std::string_view begun() const { return ends_with_word() ? words.back().text : std::string_view(); }
};

// "|" in quotes does not cut.
struct cut_line {
  template <std::convertible_to<std::string_view> Text>
  cut_line(const Text& line) : cut_line(std::string_view(line), 0) {}

  std::string_view written;      // without blanks at both ends
  std::vector<line_part> parts;  // at least one

  const line_part& command() const { return parts.front(); }
  std::span<const line_part> pipes() const { return std::span(parts).subspan(1); }

  bool is_comment() const;
  bool is_empty() const { return is_comment() || (command().words.empty() && pipes().empty()); }
  bool ends_with_question() const;

  // The same up to the "?" with which it ends.
  cut_line before_question() const;

 private:
  cut_line(std::string_view line, int);
};

// Whether a line that begins without a blank is a comment: it begins with "!" or "#".
bool is_comment(std::string_view line);

}  // namespace host
