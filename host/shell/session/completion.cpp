// Help and completion at the end of a line.
#include "shell/session/completion.h"

#include <algorithm>

#include "base/text.h"
#include "shell/grammar/suggester.h"
#include "shell/grammar/words.h"
#include "shell/library/command_queue.h"
#include "shell/library/listing.h"

namespace host {
namespace {

// The numbers of the interfaces of a word that begin with `begun`.
std::vector<std::string> numbers_of(const interface_word* word, std::string_view begun) {
  const command_queue q;
  const auto interfaces = list_word(q.handle, *word);
  std::vector<std::string> numbers;
  if (!interfaces) return numbers;
  for (const if_index_t if_index : *interfaces) {
    if (number_of(if_index).family != word->family) continue;
    std::string number = interface_text(*word, number_of(if_index)).substr(word->word.size() + 1);
    if (number.starts_with(begun)) numbers.push_back(std::move(number));
  }
  return numbers;
}

// Lists up to eight numbers; of more, the first two and the last.
std::string number_help(const interface_word& word, const std::vector<std::string>& numbers) {
  constexpr std::size_t kFew = 8;
  std::string text = std::string(word.help) + ": ";
  if (numbers.empty()) return text + "none such exists";
  if (numbers.size() > kFew)
    return text + numbers[0] + ", " + numbers[1] + ", ... " + numbers.back() + " (" + std::to_string(numbers.size()) +
           ")";
  return text + join({numbers.begin(), numbers.end()}, ", ");
}

std::string table(const std::vector<suggestion>& rows) {
  constexpr std::size_t kShortest = 14;
  std::size_t width = kShortest;
  for (const suggestion& row : rows) width = std::max(width, row.word.size() + 2);
  std::string text;
  for (const suggestion& row : rows) {
    text += "  " + row.word;
    text.append(width - row.word.size(), ' ');
    text += row.help + "\n";
  }
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
  for (const std::string& word : words) width = std::max(width, word.size() + 2);
  const std::size_t in_line = std::max<std::size_t>(1, kLineWidth / width);
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    text += words[i];
    if (i % in_line == in_line - 1 || i + 1 == words.size())
      text += '\n';
    else
      text.append(width - words[i].size(), ' ');
  }
  return text;
}

}  // namespace

std::string help_text(std::string_view line, shell_mode mode) {
  const suggestions found = suggest(line, mode);
  if (!found.error.empty()) return found.error + "\n";
  std::vector<suggestion> rows = found.words;
  if (found.numbers_of != nullptr) {
    const std::string_view begun = line.substr(found.start);
    rows.push_back({"NUMBER", number_help(*found.numbers_of, numbers_of(found.numbers_of, begun))});
  }
  rows.insert(rows.end(), found.hints.begin(), found.hints.end());
  return table(rows);
}

completion complete(std::string_view line, shell_mode mode) {
  const suggestions found = suggest(line, mode);
  if (!found.error.empty()) return {{}, found.error + "\n"};
  const std::string_view begun = line.substr(found.start);
  std::vector<std::string> words;
  for (const suggestion& choice : found.words) words.push_back(choice.word);
  if (found.numbers_of != nullptr) {
    std::vector<std::string> numbers = numbers_of(found.numbers_of, begun);
    words.insert(words.end(), numbers.begin(), numbers.end());
  }
  if (words.empty()) return {};
  const bool is_number = found.numbers_of != nullptr;
  if (words.size() == 1) return {words[0].substr(begun.size()) + (is_number ? "" : " "), {}};
  const std::string common = common_beginning(words);
  if (common.size() > begun.size()) return {common.substr(begun.size()), {}};
  return {{}, columns(words)};
}

}  // namespace host
