#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>

namespace host {
namespace {

char lower(char character) { return static_cast<char>(std::tolower(static_cast<unsigned char>(character))); }

bool is_equal_ignoring_case(char left, char right) { return lower(left) == lower(right); }

// Insertions, deletions and replacements between two words.
std::size_t edit_distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  for (std::size_t j = 0; j <= right.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t replaced = diagonal + (is_equal_ignoring_case(left[i - 1], right[j - 1]) ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string_view trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

bool starts_with_ignoring_case(std::string_view word, std::string_view beginning) {
  return beginning.size() <= word.size() &&
         std::equal(beginning.begin(), beginning.end(), word.begin(), is_equal_ignoring_case);
}

bool contains_ignoring_case(std::string_view text, std::string_view part) {
  const auto found = std::search(text.begin(), text.end(), part.begin(), part.end(), is_equal_ignoring_case);
  return found != text.end() || part.empty();
}

std::string_view closest_word(std::string_view written, const std::vector<std::string_view>& known,
                              std::size_t max_edits) {
  std::string_view closest;
  std::size_t limit = max_edits + 1;
  for (const std::string_view word : known) {
    const std::size_t distance = edit_distance(written, word);
    if (distance >= limit) continue;
    limit = distance;
    closest = word;
  }
  return closest;
}

std::string in_quotes(std::string_view text) { return fmt::format("'{}'", text); }

std::string join(const std::vector<std::string_view>& words, std::string_view separator) {
  std::string text;
  for (const std::string_view word : words) {
    if (!text.empty()) text += separator;
    text += word;
  }
  return text;
}

}  // namespace host
