#include "base/tokens.h"

#include <algorithm>

#include "base/text.h"

namespace host {
namespace {

// Follows the quotes of a text.
class quote_reader {
 public:
  // Takes the next character; true when it is a quote or is between two quotes.
  bool take(char character) {
    if (is_escaped_) return is_escaped_ = false, true;
    if (quote_ == '\0') {
      if (character == '"' || character == '\'') quote_ = character;
      return quote_ != '\0';
    }
    is_escaped_ = character == '\\' && quote_ == '"';
    if (character == quote_) quote_ = '\0';
    return true;
  }
  bool is_open() const { return quote_ != '\0'; }

 private:
  char quote_ = '\0';
  bool is_escaped_ = false;
};

}  // namespace

std::vector<word_token> split_words(std::string_view text, std::size_t start) {
  std::vector<word_token> words;
  std::size_t at = 0;
  while ((at = text.find_first_not_of(kBlanks, at)) != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(kBlanks, at), text.size());
    words.push_back({text.substr(at, end - at), start + at});
    at = end;
  }
  return words;
}

std::string_view text_of(std::span<const word_token> words) {
  return words.empty() ? std::string_view() : std::string_view(words.front().text.begin(), words.back().text.end());
}

std::vector<word_token> split_outside_quotes(std::string_view line, char separator) {
  std::vector<word_token> parts;
  std::size_t start = 0;
  quote_reader quotes;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (quotes.take(line[i]) || line[i] != separator) continue;
    parts.push_back({line.substr(start, i - start), start});
    start = i + 1;
  }
  parts.push_back({line.substr(start), start});
  return parts;
}

std::size_t find_open_quote(std::string_view text) {
  quote_reader quotes;
  std::size_t begin = std::string_view::npos;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool was_open = quotes.is_open();
    quotes.take(text[i]);
    if (quotes.is_open() && !was_open) begin = i;
  }
  return quotes.is_open() ? begin : std::string_view::npos;
}

std::string_view unquote(std::string_view text) {
  const bool is_quoted =
      text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front();
  return is_quoted ? text.substr(1, text.size() - 2) : text;
}

}  // namespace host
