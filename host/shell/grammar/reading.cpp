#include "shell/grammar/reading.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <functional>
#include <iterator>

#include "base/text.h"
#include "base/vlan_set.h"
#include "shell/grammar/mistakes.h"

namespace host {
namespace {

bool is_digit(char character) { return std::isdigit(static_cast<unsigned char>(character)) != 0; }
bool is_letter(char character) { return std::isalpha(static_cast<unsigned char>(character)) != 0; }

range_end end_of_range(std::string_view text) {
  if (text.back() == ',') return range_end::comma;
  const std::string_view item = text.substr(text.find_last_of(", ") + 1);  // npos + 1 is 0
  if (item.empty() || item.find_first_of("0123456789") == std::string_view::npos) {
    if (item.empty() || !is_letter(item.front())) return range_end::dash;
    range_fault fault{};
    const interface_word* const word = parse_interface_word(item, fault);
    return word != nullptr && names_one_interface(*word) ? range_end::number : range_end::word;
  }
  return text.back() == '-' ? range_end::dash : range_end::number;
}

// True when a word continues a range that ends with `end` so far.
bool continues_range(range_end end, std::string_view word) {
  switch (end) {
    case range_end::none: return false;
    case range_end::word:
    case range_end::dash: return is_digit(word.front());
    case range_end::comma: return is_digit(word.front()) || !interface_words(word).empty();
    case range_end::number: return word.front() == ',' || word.front() == '-';
  }
  return false;
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

// A word that has no other reading is the name of a file, or a word to look for.
void add_free_readings(const std::vector<position>& positions, std::string_view word, std::vector<step>& steps) {
  for (const position& at : positions) {
    for_each_next_word(at, [&](const syntax_word& expected, std::size_t index) {
      const position next{at.what, index + 1, range_end::none, at.number};
      if (expected.kind == syntax_kind::file || expected.kind == syntax_kind::word) steps.push_back({word, next});
      if (expected.kind != syntax_kind::vlans) return;
      if (auto vlans = parse_vlans(word)) steps.push_back({word, next, std::move(*vlans)});
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

bool may_leave_range(range_end end) { return end == range_end::none || end == range_end::number; }

std::vector<const interface_word*> interface_words(std::string_view text) {
  const std::size_t letters = std::min(text.find_first_of("0123456789/,"), text.size());
  std::vector<const interface_word*> found;
  range_fault fault{};
  const interface_word* const named = letters == 0 ? nullptr : parse_interface_word(text.substr(0, letters), fault);
  if (named != nullptr) return {named};
  if (letters == 0 || fault != range_fault::kAmbiguousWord) return found;
  for (const interface_word& word : kInterfaceWords) {
    if (starts_with_ignoring_case(word.word, text.substr(0, letters))) found.push_back(&word);
  }
  return found;
}

bool is_complete(const position& at) {
  bool only_optional = may_leave_range(at.range);
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

std::vector<step> readings(const std::vector<position>& positions, std::string_view word) {
  std::vector<step> steps;
  for (const position& at : positions) {
    if (continues_range(at.range, word)) {
      steps.push_back({word, {at.what, at.next, end_of_range(word), at.number}});
      continue;
    }
    for_each_next_word(at, [&](const syntax_word& expected, std::size_t index) {
      if (expected.kind == syntax_kind::range) {
        for (const interface_word* const kind : interface_words(word))
          steps.push_back({kind->word, {at.what, index + 1, end_of_range(word), at.number}});
      } else if (expected.kind == syntax_kind::number) {
        if (const auto number = read_number(number_argument_of(expected), word))
          steps.push_back({word, {at.what, index + 1, range_end::none, number}});
      } else if (expected.kind == syntax_kind::literal && starts_with_ignoring_case(expected.text, word)) {
        steps.push_back({expected.text, {at.what, index + 1, range_end::none, at.number}});
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
  if (std::any_of(steps.begin(), steps.end(), is_exact))
    steps.erase(std::remove_if(steps.begin(), steps.end(), std::not_fn(is_exact)), steps.end());
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
  if (argument.kind == syntax_kind::vlans) line.vlans = std::move(reading.vlans);
  if (argument.kind == syntax_kind::number && number_argument_of(argument).has_any_value) line.module = word;
}

}  // namespace

bool read_word(reading_state& state, std::string_view word) {
  std::vector<step> steps = readings(state.positions, word);
  prefer_exact(steps, word);
  const std::vector<std::string_view> names = names_of(steps);
  if (names.size() != 1) {
    state.error = names.empty() ? unreadable_word(state, word) : ambiguous_word(word, names);
    return false;
  }
  keep_argument(steps.front(), word, state.line);
  state.positions.clear();
  for (const step& reading : steps) state.positions.push_back(reading.to);
  const bool in_range = steps.front().to.range != range_end::none;
  state.path.push_back(in_range ? word : names.front());
  begin_command_behind(state);
  return true;
}

}  // namespace host
