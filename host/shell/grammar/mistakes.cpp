#include "shell/grammar/mistakes.h"

#include <fmt/format.h>

#include <algorithm>

#include "base/mac_text.h"
#include "base/text.h"

namespace host {
namespace {

// The words that may come next, to name them to the user.
std::vector<std::string_view> expected_words(const std::vector<position>& positions) {
  std::vector<std::string_view> words;
  const auto add = [&words](std::string_view word) {
    if (std::find(words.begin(), words.end(), word) == words.end()) words.push_back(word);
  };
  for (const position& at : positions) {
    for_each_next_word(at, [&](const syntax_word& word, std::size_t) {
      if (word.kind == syntax_kind::literal) return add(word.text);
      if (word.kind != syntax_kind::range) return;
      for (const interface_word& kind : kInterfaceWords) add(kind.word);
    });
  }
  return words;
}

std::string type_help(std::string_view in_front) {
  return fmt::format("Type '{}{}?' for the list.", in_front, in_front.empty() ? "" : " ");
}

bool expects(syntax_kind kind, const std::vector<position>& positions) {
  bool found = false;
  for (const position& at : positions)
    for_each_next_word(at, [&](const syntax_word& word, std::size_t) { found |= word.kind == kind; });
  return found;
}

std::string bad_mac(const reading_state& state, std::string_view word) {
  const mac_reading read = read_mac(word);
  return fmt::format("column {}: {}. A MAC address looks like '0200.0000.0009' or '02:00:00:00:00:09'.",
                     state.left.front().start + read.position + 1, read.fault);
}

// What to do when a command that cannot be watched follows "watch INTERVAL"; empty when none does.
std::string hint_of_watch(const reading_state& state, std::string_view word) {
  if (!state.line.every || state.path.size() > state.words_in_front) return {};
  if (readings(all_positions(state.mode), word, state.names).empty()) return {};
  return fmt::format("'{}' cannot be watched: only show commands can. {}", word,
                     type_help(join(state.path, " ") + " show"));
}

// What to do when a line begins with words of another mode; empty when it does not.
std::string hint_of_mode(const std::vector<std::string_view>& words, shell_mode mode) {
  const auto begins_line_in = [&words](shell_mode other) {
    std::vector<position> positions = all_positions(other);
    return std::all_of(words.begin(), words.end(), [&positions](std::string_view word) {
      std::vector<step> steps = readings(positions, word, interface_names());
      prefer_exact(steps, word);
      positions.clear();
      for (const step& reading : steps) positions.push_back(reading.to);
      return names_of(steps).size() == 1;
    });
  };
  const std::string line = join(words, " ");
  if (mode == kExecMode && begins_line_in(kConfigureMode))
    return fmt::format("'{}' belongs to the configuration. Type 'configure' first.", line);
  if (mode != kInterfaceMode && begins_line_in(kInterfaceMode))
    return fmt::format("'{}' is a setting of interfaces. Type {}'interface RANGE' first.", line,
                       mode == kExecMode ? "'configure' and then " : "");
  return {};
}

}  // namespace

std::string_view likely_word(std::string_view written, const std::vector<std::string_view>& known) {
  return closest_word(written, known, std::min<std::size_t>(2, (written.size() + 1) / 2));
}

std::string bounds_of(const number_argument& number) { return fmt::format("{} to {}", number.lowest, number.highest); }

std::string unknown_word(const reading_state& state, std::string_view word) {
  const std::string before = join(state.path, " ");
  if (const number_argument* const number = expected_number(state.positions))
    return fmt::format("expected a number from {} for {}, not '{}'.", bounds_of(*number), number->name, word);
  std::vector<std::string_view> expected = expected_words(state.positions);
  if (expects(syntax_kind::mac, state.positions)) return bad_mac(state, word);
  if (expects(syntax_kind::vlans, state.positions))
    return fmt::format("'{}' is not a list of VLANs such as 1-10,20.", word);
  if (expected.empty()) return fmt::format("unexpected '{}' after '{}'.", word, before);
  if (state.takes_except) expected.push_back(kExcept);
  const std::string_view meant = likely_word(word, expected);
  if (meant.empty()) return fmt::format("unknown word '{}'. {}", word, type_help(before));
  return fmt::format("unknown word '{}': did you mean '{}'? {}", word, meant, type_help(before));
}

std::string unreadable_word(const reading_state& state, std::string_view word) {
  std::string hint;
  const bool is_no = state.path.size() == 1 && state.path.front() == "no";
  if (is_no) hint = hint_of_mode({"no", word}, state.mode);
  if (state.path.empty()) hint = hint_of_mode({word}, state.mode);
  if (hint.empty()) hint = hint_of_watch(state, word);
  return hint.empty() ? unknown_word(state, word) : hint;
}

std::string ambiguous_word(std::string_view word, const std::vector<std::string_view>& meanings) {
  return fmt::format("ambiguous word '{}': {}. Type one more letter.", word, fmt::join(meanings, ", "));
}

std::string bad_range(const std::vector<range_error>& errors, std::size_t start) {
  std::string text;
  for (const range_error& it : errors)
    text += fmt::format("{}column {}: {}", text.empty() ? "" : "; ", start + it.position + 1, it.reason);
  return text + ". A range looks like 'ethernet 1/1-4, 1/7'.";
}

std::string incomplete_command(const reading_state& state) {
  const std::string path = join(state.path, " ");
  if (path.empty()) return "no command before '|'. " + type_help({});
  const bool lacks_number = state.ending && !state.ending->is_complete;
  return fmt::format("{} '{}'. {}", lacks_number ? "a number is missing after" : "incomplete command", path,
                     type_help(path));
}

}  // namespace host
