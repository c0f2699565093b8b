#include "shell/words.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace host {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

char lower(char character) { return static_cast<char>(std::tolower(static_cast<unsigned char>(character))); }

// Insertions, deletions and replacements between two words.
std::size_t edit_distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  for (std::size_t j = 0; j <= right.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= left.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t replaced = diagonal + (lower(left[i - 1]) != lower(right[j - 1]));
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

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

std::vector<word_token> split_pipes(std::string_view line) {
  std::vector<word_token> parts;
  std::size_t start = 0;
  char quote = '\0';
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char character = line[i];
    if (quote != '\0') {
      if (character == quote) quote = '\0';
    } else if (character == '"' || character == '\'') {
      quote = character;
    } else if (character == '|') {
      parts.push_back({line.substr(start, i - start), start});
      start = i + 1;
    }
  }
  parts.push_back({line.substr(start), start});
  return parts;
}

std::string_view trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

std::string_view unquote(std::string_view text) {
  const bool is_quoted =
      text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front();
  return is_quoted ? text.substr(1, text.size() - 2) : text;
}

bool starts_with_ignoring_case(std::string_view word, std::string_view beginning) {
  return beginning.size() <= word.size() &&
         std::equal(beginning.begin(), beginning.end(), word.begin(),
                    [](char left, char right) { return lower(left) == lower(right); });
}

std::string_view closest_word(std::string_view written, const std::vector<std::string_view>& known) {
  std::string_view closest;
  std::size_t smallest = std::min<std::size_t>(3, (written.size() + 1) / 2 + 1);
  for (const std::string_view word : known) {
    const std::size_t distance = edit_distance(written, word);
    if (distance >= smallest) continue;
    smallest = distance;
    closest = word;
  }
  return closest;
}

std::string quoted(std::string_view text) {
  std::string result(1, '\'');
  result += text;
  result += '\'';
  return result;
}

std::string join(const std::vector<std::string_view>& words, std::string_view separator) {
  std::string text;
  for (const std::string_view word : words) {
    if (!text.empty()) text += separator;
    text += word;
  }
  return text;
}

std::optional<std::vector<vlan_span>> parse_vlans(std::string_view text) {
  constexpr uint32 kLastVlan = 4094;
  constexpr std::size_t kMostItems = 64;
  std::vector<vlan_span> spans;
  const char* at = text.data();
  const char* const end = text.data() + text.size();
  const auto read_id = [&](uint32& id) {
    const auto [next, error] = std::from_chars(at, end, id);
    at = next;
    return error == std::errc{} && id >= 1 && id <= kLastVlan;
  };
  while (true) {
    vlan_span span{};
    if (!read_id(span.first)) return std::nullopt;
    span.last = span.first;
    if (at != end && *at == '-' && (++at == end || !read_id(span.last))) return std::nullopt;
    if (span.last < span.first || spans.size() == kMostItems) return std::nullopt;
    spans.push_back(span);
    if (at == end) return spans;
    if (*at++ != ',') return std::nullopt;
  }
}

}  // namespace host
