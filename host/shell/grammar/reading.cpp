#include "shell/grammar/reading.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <iterator>

#include "base/mac_text.h"
#include "base/text.h"
#include "base/vlan_set.h"
#include "shell/grammar/mistakes.h"

namespace host {
namespace {

// The names of what a range may begin with that a word names or abbreviates.
std::vector<std::string_view> beginnings_of_range(std::string_view word, const interface_names& names) {
  if (const std::string_view name = first_item_word(word); names.find(name)) return {name};
  if (word.front() == '"' || word.front() == '\'') return {word};
  const std::string_view letters = word.substr(0, word.find_first_of("0123456789/,"));
  if (letters.empty()) return {};
  if (starts_with_ignoring_case(kEveryInterface, letters)) return {kEveryInterface};
  range_fault fault{};
  const interface_word* const named = parse_interface_word(letters, fault);
  if (named != nullptr) return {named->word};
  std::vector<std::string_view> found;
  if (fault != range_fault::ambiguous_word) return found;
  for (const interface_word& known : kInterfaceWords)
    if (starts_with_ignoring_case(known.word, letters)) found.push_back(known.word);
  return found;
}

// The number that a word is; within its bounds unless it may have any value.
std::optional<uint32> read_number(const number_argument& wanted, std::string_view word) {
  uint32 number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error == std::errc::invalid_argument || end != word.data() + word.size()) return std::nullopt;
  const bool is_too_great = error == std::errc::result_out_of_range;
  if (wanted.has_any_value) return is_too_great ? UINT32_MAX : number;
  if (is_too_great) return std::nullopt;
  return number >= wanted.lowest && number <= wanted.highest ? std::optional(number) : std::nullopt;
}

// A word that has no other reading is the name of a file, a word to look for, a MAC address or a list of VLANs.
void add_free_readings(const std::vector<position>& positions, std::string_view word, std::vector<step>& steps) {
  for (const position& at : positions) {
    for_each_next_word(at, [&](const syntax_word& expected, std::size_t index) {
      const position next{at.what, index + 1, at.number};
      if (expected.kind == syntax_kind::file || expected.kind == syntax_kind::word) steps.push_back({word, next});
      if (expected.kind == syntax_kind::mac && read_mac(word).mac) steps.push_back({word, next});
      if (expected.kind != syntax_kind::vlans) return;
      if (auto vlans = parse_vlans(word)) steps.push_back({word, next, false, std::move(*vlans)});
    });
  }
}

// Commands that change the mode, or end the shell, are not typed after "do".
bool may_follow_do(const command& what) {
  return (what.modes & kExecMode) != 0 && what.modes != kExecMode && what.effect != command_effect::leaves;
}

// After "watch INTERVAL" a show command begins; after "do", one of the exec mode.
void begin_command_behind(reading_state& state) {
  const position& at = state.positions.front();
  if (at.next >= at.what->syntax.num_words || at.what->syntax.words[at.next].kind != syntax_kind::command) return;
  const bool is_watched = at.number.has_value();
  state.words_in_front = state.path.size();
  if (!is_watched) {
    state.mode = kExecMode;
    state.positions = all_positions(kExecMode);
    std::erase_if(state.positions, [](const position& begin) { return !may_follow_do(*begin.what); });
    return;
  }
  state.line.before = at.what;
  state.line.every = at.number;
  state.positions = all_positions(state.mode);
  std::erase_if(state.positions, [](const position& begin) { return begin.what->syntax.words[0].text != "show"; });
}

}  // namespace

bool is_complete(const position& at) {
  bool only_optional = true;
  for_each_next_word(at, [&](const syntax_word& word, std::size_t) { only_optional &= word.is_optional; });
  return only_optional;
}

std::vector<position> all_positions(uint8 modes) {
  std::vector<position> positions;
  for (const command& what : all_commands()) {
    if ((what.modes & modes) != 0) positions.push_back({&what});
  }
  return positions;
}

const number_argument& number_argument_of(const syntax_word& word) {
  return *std::find_if(std::begin(kNumberArguments), std::end(kNumberArguments),
                       [&word](const number_argument& known) { return known.name == word.text; });
}

std::vector<step> readings(const std::vector<position>& positions, std::string_view word,
                           const interface_names& names) {
  std::vector<step> steps;
  for (const position& at : positions) {
    for_each_next_word(at, [&](const syntax_word& expected, std::size_t index) {
      if (expected.kind == syntax_kind::range) {
        for (const std::string_view name : beginnings_of_range(word, names))
          steps.push_back({name, {at.what, index + 1, at.number}, true, {}, names.find(name).has_value()});
      } else if (expected.kind == syntax_kind::number) {
        if (const auto number = read_number(number_argument_of(expected), word))
          steps.push_back({word, {at.what, index + 1, number}});
      } else if (expected.kind == syntax_kind::literal && starts_with_ignoring_case(expected.text, word)) {
        steps.push_back({expected.text, {at.what, index + 1, at.number}});
      }
    });
  }
  if (steps.empty()) add_free_readings(positions, word, steps);
  return steps;
}

void prefer_exact(std::vector<step>& steps, std::string_view word) {
  const auto is_exact = [word](const step& reading) {
    return reading.name.size() == word.size() && starts_with_ignoring_case(reading.name, word);
  };
  if (std::none_of(steps.begin(), steps.end(), is_exact)) return;
  std::erase_if(steps, std::not_fn(is_exact));
  const auto is_name = [](const step& reading) { return reading.is_name; };
  if (!std::all_of(steps.begin(), steps.end(), is_name)) std::erase_if(steps, is_name);
}

std::vector<std::string_view> names_of(const std::vector<step>& steps) {
  std::vector<std::string_view> names;
  for (const step& reading : steps) {
    if (std::find(names.begin(), names.end(), reading.name) == names.end()) names.push_back(reading.name);
  }
  return names;
}

const number_argument* expected_number(const std::vector<position>& positions) {
  const number_argument* wanted = nullptr;
  for (const position& at : positions) {
    for_each_next_word(at, [&](const syntax_word& word, std::size_t) {
      if (word.kind == syntax_kind::number) wanted = &number_argument_of(word);
    });
  }
  return wanted;
}

bool takes_text(const std::vector<position>& positions) {
  bool found = false;
  for (const position& at : positions)
    for_each_next_word(at, [&](const syntax_word& word, std::size_t) { found |= word.kind == syntax_kind::text; });
  return found;
}

namespace {

// Stores the value of an argument that a word is.
void keep_argument(step& reading, std::string_view word, command_line& line) {
  if (reading.to.next == 0) return;
  const syntax_word& argument = reading.to.what->syntax.words[reading.to.next - 1];
  if (argument.kind == syntax_kind::file) line.file = word;
  if (argument.kind == syntax_kind::word) line.search_word = word;
  if (argument.kind == syntax_kind::mac) line.mac = read_mac(word).mac;
  if (argument.kind == syntax_kind::vlans) line.vlans = std::move(reading.vlans);
  if (argument.kind == syntax_kind::number && number_argument_of(argument).has_any_value) line.module = word;
}

// Whether an error is that the line ends too soon: more may still be typed.
bool is_of_end(const range_error& error, std::size_t end, bool is_being_typed) {
  if (error.position + error.length != end) return false;
  const bool is_missing = error.fault == range_fault::empty || error.fault == range_fault::missing_number;
  return is_being_typed || (is_missing && error.length == 0);
}

// Reads a range from its first word on.
bool read_range_of(reading_state& state) {
  state.range_start = state.left.front().start;
  const std::string_view text = state.text.substr(state.range_start);
  range_reading reading = read_range(text, state.names);
  const bool is_open =
      reading.errors.size() == 1 && is_of_end(reading.errors.front(), text.size(), state.is_being_typed);
  if (!reading.errors.empty() && !is_open) {
    state.error = bad_range(reading.errors, state.range_start);
    return false;
  }
  if (reading.end == text.size()) state.ending = reading.ending;
  const auto after = std::find_if(state.left.begin(), state.left.end(),
                                  [&](const word_token& it) { return it.start >= state.range_start + reading.end; });
  const std::string_view written = trim(text.substr(0, reading.end));
  const std::size_t first = state.path.size();
  if (written.find_first_of("\"'") != std::string_view::npos) {
    state.path.push_back(written);  // with the blanks of its patterns
  } else {
    for (const word_token& it : std::span(state.left.begin(), after)) state.path.push_back(it.text);
  }
  state.takes_except = !is_open && reading.range.exceptions.empty();
  state.line.range = std::move(reading.range);
  state.line.written_range = join({state.path.begin() + static_cast<std::ptrdiff_t>(first), state.path.end()}, " ");
  state.left = {after, state.left.end()};
  return true;
}

}  // namespace

bool read_next(reading_state& state) {
  const std::string_view word = state.left.front().text;
  std::vector<step> steps = readings(state.positions, word, state.names);
  prefer_exact(steps, word);
  const std::vector<std::string_view> names = names_of(steps);
  if (names.size() != 1) {
    state.error = names.empty() ? unreadable_word(state, word) : ambiguous_word(word, names);
    return false;
  }
  keep_argument(steps.front(), word, state.line);
  state.positions.clear();
  for (const step& reading : steps) state.positions.push_back(reading.to);
  state.takes_except = false;
  if (steps.front().begins_range) return read_range_of(state);
  state.path.push_back(names.front());
  begin_command_behind(state);
  state.left = state.left.subspan(1);
  return true;
}

}  // namespace host
