#include "shell/grammar/suggester.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "base/text.h"
#include "base/text_argument.h"
#include "shell/grammar/mistakes.h"
#include "shell/grammar/pipe_stages.h"
#include "shell/grammar/reading.h"

namespace host {
namespace {

void add_word(suggestions& found, std::string_view word, std::string_view help, const interface_word* kind = nullptr) {
  const auto same = [word](const suggestion& known) { return known.word == word; };
  if (std::none_of(found.words.begin(), found.words.end(), same))
    found.words.push_back({std::string(word), std::string(help), kind});
}

// Once, without a text that a name would complete.
void hint_at_names(suggestions& found, const interface_names& names) {
  constexpr std::string_view kHint = "DEVICE";
  constexpr std::size_t kNamed = 8;
  const auto same = [=](const suggestion& known) { return known.word == kHint; };
  if (names.all().empty() || std::any_of(found.hints.begin(), found.hints.end(), same)) return;
  std::string text = "Network device: ";
  for (std::size_t i = 0; i < std::min(kNamed, names.all().size()); ++i)
    fmt::format_to(std::back_inserter(text), "{}{}", i == 0 ? "" : ", ", names.all()[i].first);
  found.hints.push_back({std::string(kHint), text + (names.all().size() > kNamed ? ", ..." : "")});
}

void suggest_names(suggestions& found, const interface_names& names) {
  if (found.begun.empty()) return hint_at_names(found, names);
  for (const auto& [name, if_index] : names.all())
    if (name.starts_with(found.begun)) add_word(found, name, "Network device");
}

void suggest_items(suggestions& found, const interface_names& names) {
  suggest_names(found, names);
  for (const interface_word& word : kInterfaceWords)
    if (starts_with_ignoring_case(word.word, found.begun)) add_word(found, word.word, word.help, &word);
  if (starts_with_ignoring_case(kEveryInterface, found.begun)) add_word(found, kEveryInterface, "All interfaces");
}

void suggest_except(suggestions& found) {
  if (starts_with_ignoring_case(kExcept, found.begun)) add_word(found, kExcept, "Interfaces to leave out of the range");
}

// Suggests what completes a range with which the line ends.
void suggest_in_range(suggestions& found, const reading_state& state) {
  const range_ending& ending = *state.ending;
  found.begun = state.text.substr(state.range_start + ending.item);
  if (!found.begun.empty() && !ending.begins_item) suggest_names(found, state.names);
  if (!found.words.empty()) return;
  found.begun = state.text.substr(state.range_start + ending.begun);
  if (ending.begins_item) suggest_items(found, state.names);
  if (ending.begins_item && found.begun.empty())
    found.hints.push_back({"\"PATTERN\"", "Names like \"e*1/[1-3]\": * ? and [...] stand for characters"});
  if (ending.word != nullptr && !found.begun.empty() && starts_with_ignoring_case(ending.word->word, found.begun))
    add_word(found, ending.word->word, ending.word->help);
  found.numbers_of = ending.number;
  found.after = ending.low;
  found.needs_whole_number = ending.is_whole;
}

void suggest_next_words(suggestions& found, const reading_state& state) {
  for (const position& at : state.positions) {
    for_each_next_word(at, [&](const syntax_word& word, std::size_t) {
      if (word.kind == syntax_kind::range) return suggest_items(found, state.names);
      if (word.kind == syntax_kind::literal && starts_with_ignoring_case(word.text, found.begun))
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
      if (word.kind == syntax_kind::mac) found.hints.push_back({"MAC", "A MAC address, such as 0200.0000.0009"});
      if (word.kind == syntax_kind::file) found.hints.push_back({"FILE", "Name of a file"});
      if (word.kind == syntax_kind::word) found.hints.push_back({"WORD", "Part of a command or of its help"});
      if (word.kind == syntax_kind::text)
        found.hints.push_back({"TEXT", "The rest of the line; in quotes when it contains '|'"});
    });
  }
}

void suggest_hints(suggestions& found, const reading_state& state) {
  const std::vector<position>& positions = state.positions;
  if (state.ending) found.hints.push_back({",", "Another interface or range"});
  if (state.ending && state.ending->takes_dash) found.hints.push_back({"-", "The last number of a range"});
  suggest_number_argument(found, positions);
  suggest_free_argument(found, positions);
  if (std::none_of(positions.begin(), positions.end(), is_complete)) return;
  found.hints.push_back({"|", "Filter the output"});
  found.hints.push_back({"<Enter>", "Run the command"});
}

// True when a word is the beginning of a range, and more than a part of its first word.
bool is_in_range(const reading_state& state, std::string_view word) {
  const std::vector<step> steps = readings(state.positions, word, state.names);
  const auto begins_range = [](const step& reading) { return reading.begins_range; };
  if (std::none_of(steps.begin(), steps.end(), begins_range)) return false;
  const range_ending ending = read_range(word, state.names).ending;
  return !ending.begins_item || ending.begun != 0;
}

// True when a line ends with "except", whose exceptions follow a blank.
bool ends_with_except(const reading_state& state) {
  const std::string_view text = state.text;
  return state.ending->begins_item && state.ending->begun + state.range_start == text.size() &&
         starts_with_ignoring_case(text.substr(text.size() - std::min(text.size(), kExcept.size())), kExcept);
}

suggestions suggest_pipe(const line_part& part) {
  suggestions found;
  const std::vector<word_token>& words = part.words;
  if (words.empty() || (words.size() == 1 && part.ends_with_word())) {
    found.begun = part.begun();
    for (const pipe_word& word : kPipeWords) {
      if (starts_with_ignoring_case(word.word, found.begun)) add_word(found, word.word, word.help);
    }
    return found;
  }
  const pipe_word* const word = find_pipe(words[0].text);
  found.is_in_text = word != nullptr && word->argument == pipe_argument::expression;
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

suggestions suggest(const cut_line& line, shell_mode mode, const interface_names& names) {
  suggestions found;
  found.is_in_text = line.is_comment();
  if (found.is_in_text) return found;
  if (!line.pipes().empty()) return suggest_pipe(line.pipes().back());

  reading_state state(line.command(), mode, names, true);
  while (!state.left.empty()) {
    const bool is_last = line.command().ends_with_word() && state.left.size() == 1;
    found.is_in_text = takes_text(state.positions);
    if (!is_last && found.is_in_text) return found;
    if (is_last && !is_in_range(state, state.left.front().text)) break;
    if (!read_next(state)) {
      found.error = state.error;
      return found;
    }
  }
  found.is_in_text |= state.ending && state.ending->is_in_quotes;
  found.creates_interfaces = std::any_of(state.positions.begin(), state.positions.end(), [](const position& at) {
    return at.what->syntax.words[0].text == "interface";
  });
  if (!state.left.empty()) found.begun = state.left.front().text;
  if (state.ending && ends_with_except(state)) {
    found.begun = state.text.substr(state.text.size() - kExcept.size());
    suggest_except(found);
    return found;
  }
  const bool has_left_range = !state.ending || (state.ending->is_complete && !line.command().ends_with_word());
  if (!has_left_range) {
    suggest_in_range(found, state);
    return found;
  }
  if (state.takes_except) suggest_except(found);
  suggest_next_words(found, state);
  if (state.left.empty())
    suggest_hints(found, state);
  else if (takes_text(state.positions) && found.words.empty())
    suggest_free_argument(found, state.positions);
  else if (!readings(state.positions, found.begun, names).empty())
    suggest_number_argument(found, state.positions);
  else if (found.words.empty())
    found.error = unknown_word(state, found.begun);
  return found;
}

}  // namespace host
