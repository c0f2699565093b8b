// Help and completion at the end of a line.
#include "shell/session/completion.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "base/printable.h"
#include "base/text.h"
#include "shell/library/listing.h"

namespace host {
namespace {

// Whether a number may be the last of a span that begins with another one.
bool may_follow(const interface_number& low, const interface_number& high) {
  if (high <= low || (low.unit == 0) != (high.unit == 0)) return false;
  if (low.sub_interface == 0) return high.sub_interface == 0;
  return high.sub_interface != 0 && high.unit == low.unit && high.slot == low.slot && high.port == low.port;
}

// The last part alone, for a number in the same slot or on the same port; empty for others.
std::string last_part(const interface_number& low, const interface_number& high) {
  if (low.sub_interface != 0) return std::to_string(high.sub_interface);
  return low.unit == high.unit && low.slot == high.slot ? std::to_string(high.port) : std::string();
}

// The numbers that may be the last of a span: those in the same slot by their last part, as long as there are such.
std::vector<std::string> last_numbers(const suggestions& found, const std::vector<written_number>& existing) {
  std::vector<std::string> parts, numbers;
  for (const auto& [number, text] : existing) {
    if (!may_follow(*found.after, number)) continue;
    const std::string part = found.needs_whole_number ? "" : last_part(*found.after, number);
    if (!part.empty() && part.starts_with(found.begun)) parts.push_back(part);
    if (text.starts_with(found.begun)) numbers.push_back(text);
  }
  return parts.empty() ? numbers : parts;
}

// The numbers that may be typed and begin with what is typed already.
std::vector<std::string> numbers_of(const suggestions& found) {
  std::vector<std::string> numbers;
  const auto existing = existing_numbers(*found.numbers_of);
  if (!existing) return numbers;
  if (found.after) return last_numbers(found, *existing);
  for (const auto& [number, text] : *existing)
    if (text.starts_with(found.begun)) numbers.push_back(text);
  return numbers;
}

// Removes the words of interfaces that the switch does not have and the command does not make.
void remove_absent_kinds(suggestions& found) {
  std::erase_if(found.words, [&found](const suggestion& choice) {
    if (choice.kind == nullptr) return false;
    if (found.creates_interfaces && choice.kind->kinds.front() == IF_TYPE_LOOPBACK) return false;
    const auto existing = existing_numbers(*choice.kind);
    return existing && existing->empty();
  });
}

// Lists up to eight numbers; of more, the first two and the last.
std::string number_help(const interface_word& word, const std::vector<std::string>& numbers) {
  constexpr std::size_t kFew = 8;
  if (numbers.empty()) return fmt::format("{}: none such exists", word.help);
  if (numbers.size() <= kFew) return fmt::format("{}: {}", word.help, fmt::join(numbers, ", "));
  return fmt::format("{}: {}, {}, ... {} ({})", word.help, numbers[0], numbers[1], numbers.back(), numbers.size());
}

std::string printable(std::string_view text) {
  std::string made;
  append_printable(made, text);
  return made;
}

std::string table(const std::vector<suggestion>& rows) {
  constexpr std::size_t kShortest = 14;
  std::vector<std::string> words;
  std::size_t width = kShortest;
  for (const suggestion& row : rows)
    width = std::max(width, count_characters(words.emplace_back(printable(row.word))) + 2);
  std::string text;
  for (std::size_t i = 0; i < rows.size(); ++i)
    text += fmt::format("  {}{:{}}{}\n", words[i], "", width - count_characters(words[i]), printable(rows[i].help));
  return text;
}

std::string common_beginning(const std::vector<std::string>& words) {
  std::string common = words.front();
  for (const std::string& word : words) {
    const auto differ = std::mismatch(common.begin(), common.end(), word.begin(), word.end());
    common.erase(differ.first, common.end());
  }
  return common;
}

// Choices side by side, in lines of a terminal's width.
std::string columns(const std::vector<std::string>& words) {
  constexpr std::size_t kLineWidth = 80;
  std::size_t width = 0;
  for (const std::string& word : words) width = std::max(width, count_characters(word) + 2);
  const std::size_t in_line = std::max<std::size_t>(1, kLineWidth / width);
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    text += words[i];
    if (i % in_line == in_line - 1 || i + 1 == words.size())
      text += '\n';
    else
      text.append(width - count_characters(words[i]), ' ');
  }
  return text;
}

}  // namespace

std::string help_text(suggestions found) {
  if (!found.error.empty()) return printable(found.error) + "\n";
  remove_absent_kinds(found);
  std::vector<suggestion> rows = found.words;
  if (found.numbers_of != nullptr) rows.push_back({"NUMBER", number_help(*found.numbers_of, numbers_of(found))});
  rows.insert(rows.end(), found.hints.begin(), found.hints.end());
  return table(rows);
}

completion complete(suggestions found) {
  if (!found.error.empty()) return {{}, printable(found.error) + "\n"};
  remove_absent_kinds(found);
  std::vector<std::string> words;
  for (const suggestion& choice : found.words) words.push_back(choice.word);
  if (found.numbers_of != nullptr) {
    std::vector<std::string> numbers = numbers_of(found);
    words.insert(words.end(), numbers.begin(), numbers.end());
  }
  // What a terminal cannot show cannot be typed either.
  std::erase_if(words, [](const std::string& word) { return printable(word) != word; });
  if (words.empty()) return {};
  const bool is_number = found.numbers_of != nullptr;
  if (words.size() == 1) return {words[0].substr(found.begun.size()) + (is_number ? "" : " "), {}};
  const std::string common = common_beginning(words);
  if (common.size() > found.begun.size()) return {common.substr(found.begun.size()), {}};
  return {{}, columns(words)};
}

}  // namespace host
