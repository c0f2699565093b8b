#include "shell/grammar/suggester.h"

#include <algorithm>
#include <cctype>

#include "base/text.h"
#include "shell/grammar/mistakes.h"
#include "shell/grammar/pipe_stages.h"
#include "shell/grammar/reading.h"
#include "shell/grammar/words.h"

namespace host {
namespace {

bool is_letter(char character) { return std::isalpha(static_cast<unsigned char>(character)) != 0; }

void add_word(suggestions& found, std::string_view word, std::string_view help) {
  const auto same = [word](const suggestion& known) { return known.word == word; };
  if (std::none_of(found.words.begin(), found.words.end(), same))
    found.words.push_back({std::string(word), std::string(help)});
}

void suggest_interface_words(suggestions& found, std::string_view begun) {
  for (const interface_word& word : kInterfaceWords) {
    if (starts_with_ignoring_case(word.word, begun)) add_word(found, word.word, word.help);
  }
}

// The interface word to which a number at the end of a range belongs.
const interface_word* word_of_number(std::string_view range) {
  const std::size_t last = range.find_last_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
  if (last == std::string_view::npos) return nullptr;
  const std::size_t start = range.find_last_of(" ,", last) + 1;  // npos + 1 is 0
  const auto words = interface_words(range.substr(start, last + 1 - start));
  return words.size() == 1 ? words.front() : nullptr;
}

// Suggests a number at the end of the last word, which is part of a range: where the number begins, and its kind.
void suggest_numbers(suggestions& found, std::string_view range, const word_token& begun) {
  const std::size_t separator = begun.text.find_last_of(",-");
  std::size_t number = separator == std::string_view::npos ? 0 : separator + 1;
  if (separator == std::string_view::npos) {
    number = std::min(begun.text.find_first_of("0123456789"), begun.text.size());
  } else if (number < begun.text.size() && is_letter(begun.text[number])) {
    found.start = begun.start + number;
    return suggest_interface_words(found, begun.text.substr(number));
  }
  found.start = begun.start + number;
  found.numbers_of = word_of_number(range);
  if (begun.text.ends_with(',')) suggest_interface_words(found, {});
}

void suggest_next_words(suggestions& found, const std::vector<position>& positions, std::string_view begun) {
  for (const position& at : positions) {
    for_each_next_word(at, [&](const syntax_word& word, std::size_t) {
      if (word.kind == syntax_kind::range) return suggest_interface_words(found, begun);
      if (word.kind == syntax_kind::literal && starts_with_ignoring_case(word.text, begun))
        add_word(found, word.text, help_of_word(word.text));
    });
  }
  std::sort(found.words.begin(), found.words.end(),
            [](const suggestion& left, const suggestion& right) { return left.word < right.word; });
}

void suggest_number_argument(suggestions& found, const std::vector<position>& positions) {
  if (const number_argument* const number = expected_number(positions))
    found.hints.push_back({std::string(number->name), std::string(number->help) + ", " + bounds_of(*number)});
}

void suggest_free_argument(suggestions& found, const std::vector<position>& positions) {
  for (const position& at : positions) {
    for_each_next_word(at, [&](const syntax_word& word, std::size_t) {
      if (word.kind == syntax_kind::vlans) found.hints.push_back({"VLANS", "A list of VLANs, such as 1-10,20"});
      if (word.kind == syntax_kind::file) found.hints.push_back({"FILE", "Name of a file"});
      if (word.kind == syntax_kind::word) found.hints.push_back({"WORD", "Part of a command or of its help"});
      if (word.kind == syntax_kind::text)
        found.hints.push_back({"TEXT", "The rest of the line; in quotes when it contains '|'"});
    });
  }
}

void suggest_hints(suggestions& found, const std::vector<position>& positions) {
  const bool in_number =
      std::any_of(positions.begin(), positions.end(), [](const position& at) { return at.range == range_end::number; });
  if (in_number) {
    found.hints.push_back({",", "Another interface or range"});
    found.hints.push_back({"-", "The last number of a range"});
  }
  suggest_number_argument(found, positions);
  suggest_free_argument(found, positions);
  if (std::none_of(positions.begin(), positions.end(), is_complete)) return;
  found.hints.push_back({"|", "Filter the output"});
  found.hints.push_back({"<Enter>", "Run the command"});
}

// True when a word can be read as part of a range that has reached a number.
bool begins_number(const std::vector<position>& positions, std::string_view word) {
  const std::vector<step> steps = readings(positions, word);
  return std::any_of(steps.begin(), steps.end(), [](const step& reading) {
    return reading.to.range != range_end::none && reading.to.range != range_end::word;
  });
}

suggestions suggest_pipe(const word_token& part) {
  suggestions found;
  const std::vector<word_token> words = split_words(part.text, part.start);
  const bool in_first = words.size() == 1 && words[0].text.end() == part.text.end();
  if (words.empty() || in_first) {
    found.start = words.empty() ? part.start + part.text.size() : words[0].start;
    const std::string_view begun = words.empty() ? "" : words[0].text;
    for (const pipe_word& word : kPipeWords) {
      if (starts_with_ignoring_case(word.word, begun)) add_word(found, word.word, word.help);
    }
    return found;
  }
  found.start = part.start + part.text.size();
  const pipe_word* const word = find_pipe(words[0].text);
  if (word == nullptr)
    found.error = unknown_pipe(words[0].text);
  else if (word->argument == pipe_argument::file && words.size() == 1)
    found.hints.push_back({"FILE", "Name of a file"});
  else if (word->argument == pipe_argument::expression)
    found.hints.push_back({"EXPRESSION", "A regular expression; in quotes when it contains '|'"});
  else if (word->argument == pipe_argument::column)
    found.hints.push_back({"COLUMN", "Title of a column, or its beginning"});
  else if (word->argument == pipe_argument::columns)
    found.hints.push_back({"COLUMN,COLUMN", "Titles of columns, or their beginnings"});
  else
    found.hints.push_back({"<Enter>", "Run the command"});
  return found;
}

}  // namespace

suggestions suggest(std::string_view line, shell_mode mode) {
  suggestions found;
  if (is_comment(line)) return found;
  const std::vector<word_token> parts = split_pipes(line);
  if (parts.size() > 1) return suggest_pipe(parts.back());

  std::vector<word_token> words = split_words(line);
  const bool has_begun = !words.empty() && words.back().text.end() == line.end();
  const word_token begun = has_begun ? words.back() : word_token{line.substr(line.size()), line.size()};
  if (has_begun) words.pop_back();

  found.start = begun.start;
  reading_state state(mode);
  std::size_t range_start = begun.start;
  for (const word_token& word : words) {
    if (takes_text(state.positions)) return found;
    if (!read_word(state, word.text)) {
      found.error = state.error;
      return found;
    }
    if (state.positions.front().range == range_end::none)
      range_start = begun.start;
    else
      range_start = std::min(range_start, word.start);
  }
  const range_end end = state.positions.front().range;
  if (has_begun ? begins_number(state.positions, begun.text) : !may_leave_range(end)) {
    suggest_numbers(found, line.substr(range_start), begun);
    if (end == range_end::comma && !has_begun) suggest_interface_words(found, {});
    return found;
  }
  if (end == range_end::comma) {
    suggest_interface_words(found, begun.text);
    return found;
  }
  suggest_next_words(found, state.positions, begun.text);
  if (!has_begun)
    suggest_hints(found, state.positions);
  else if (takes_text(state.positions) && found.words.empty())
    suggest_free_argument(found, state.positions);
  else if (!readings(state.positions, begun.text).empty())
    suggest_number_argument(found, state.positions);
  else
    found.error = unknown_word(state.positions, begun.text, join(state.path, " "));
  return found;
}

}  // namespace host
