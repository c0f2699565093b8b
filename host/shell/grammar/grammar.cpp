#include "shell/grammar/grammar.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <functional>

#include "shell/commands/handlers.h"
#include "shell/grammar/words.h"

namespace host {
namespace {

// How far a line has been read in the table.

// How a partly typed interface range ends.
enum class range_end : uint8 { none, word, number, comma, dash };

struct position {
  const command* what;
  std::size_t next = 0;  // word of the syntax that comes next
  range_end range = range_end::none;
  std::optional<uint32> number = {};  // that the line has named
};

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

// The interface words that the letters at the start of `text` name or abbreviate.
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

bool may_leave_range(range_end end) { return end == range_end::none || end == range_end::number; }

// The words of the syntax that may come next, up to the first one that is required.
template <typename Visit>
void for_each_next_word(const position& at, Visit visit) {
  if (!may_leave_range(at.range)) return;
  for (std::size_t i = at.next; i < at.what->syntax.num_words; ++i) {
    const syntax_word& word = at.what->syntax.words[i];
    visit(word, i);
    if (!word.is_optional) return;
  }
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

// One word further.

struct step {
  std::string_view name;  // the word in full
  position to;
};

// Whether any word is read there.
bool is_free(syntax_kind kind) { return kind == syntax_kind::file || kind == syntax_kind::word; }

// A word that has no other reading is the name of a file, or a word to look for.
void add_free_readings(const std::vector<position>& positions, std::string_view word, std::vector<step>& steps) {
  for (const position& at : positions) {
    for_each_next_word(at, [&](const syntax_word& expected, std::size_t index) {
      if (is_free(expected.kind) || (expected.kind == syntax_kind::vlans && parse_vlans(word)))
        steps.push_back({word, {at.what, index + 1, range_end::none, at.number}});
    });
  }
}

// Every way in which a word can be read at these positions.
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

// Only the readings of a word that is written in full, when there are any.
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

// The number that may come next, if any.
const number_argument* expected_number(const std::vector<position>& positions) {
  const number_argument* wanted = nullptr;
  for (const position& at : positions) {
    for_each_next_word(at, [&](const syntax_word& word, std::size_t) {
      if (word.kind == syntax_kind::number) wanted = &number_argument_of(word);
    });
  }
  return wanted;
}

std::string bounds_of(const number_argument& number) {
  return std::to_string(number.lowest) + " to " + std::to_string(number.highest);
}

std::string type_help(std::string_view in_front) {
  std::string text = "Type '";
  if (!in_front.empty()) text.append(in_front).append(" ");
  return text + "?' for the list.";
}

bool expects_vlans(const std::vector<position>& positions) {
  bool found = false;
  for (const position& at : positions)
    for_each_next_word(at, [&](const syntax_word& word, std::size_t) { found |= word.kind == syntax_kind::vlans; });
  return found;
}

std::string unknown_word(const std::vector<position>& positions, std::string_view word, std::string_view in_front) {
  if (const number_argument* const number = expected_number(positions))
    return "expected a number from " + bounds_of(*number) + " for " + std::string(number->name) + ", not " +
           quoted(word) + ".";
  const std::vector<std::string_view> expected = expected_words(positions);
  if (expects_vlans(positions)) return quoted(word) + " is not a list of VLANs such as 1-10,20.";
  if (expected.empty()) return "unexpected " + quoted(word) + " after " + quoted(in_front) + ".";
  const std::string_view meant = closest_word(word, expected);
  std::string text = "unknown word " + quoted(word);
  if (!meant.empty()) text += ": did you mean " + quoted(meant) + "?";
  return text + (meant.empty() ? ". " : " ") + type_help(in_front);
}

// True when the rest of the line is a text.
bool takes_text(const std::vector<position>& positions) {
  bool found = false;
  for (const position& at : positions)
    for_each_next_word(at, [&](const syntax_word& word, std::size_t) { found |= word.kind == syntax_kind::text; });
  return found;
}

// The commands whose text has been read.
std::vector<position> behind_text(const std::vector<position>& positions) {
  std::vector<position> behind;
  for (const position& at : positions) {
    for_each_next_word(at, [&](const syntax_word& word, std::size_t index) {
      if (word.kind == syntax_kind::text) behind.push_back({at.what, index + 1});
    });
  }
  return behind;
}

struct reading_state {
  explicit reading_state(shell_mode typed_in) : mode(typed_in), positions(all_positions(typed_in)) {}

  shell_mode mode;
  std::vector<position> positions;
  std::vector<std::string_view> path;  // words in full
  std::optional<uint32> every;         // once "watch INTERVAL" has been read
  std::size_t words_in_front = 0;      // of the command behind "do" or "watch INTERVAL"
  std::string error;
};

// Commands that change the mode, or end the shell, are not typed after "do".
bool may_follow_do(const command& what) {
  return (what.modes & kExecMode) != 0 && what.modes != kExecMode && what.run != leave_mode && what.run != leave;
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
  state.every = at.number;
  state.positions = all_positions(state.mode);
  std::erase_if(state.positions, [](const position& begin) { return begin.what->syntax.words[0].text != "show"; });
}

// What to do when a command that cannot be watched follows "watch INTERVAL"; empty when none does.
std::string hint_of_watch(const reading_state& state, std::string_view word) {
  if (!state.every || state.path.size() > state.words_in_front) return {};
  if (readings(all_positions(state.mode), word).empty()) return {};
  return quoted(word) + " cannot be watched: only show commands can. " + type_help(join(state.path, " ") + " show");
}

// What to do when a line begins with words of another mode; empty when it does not.
std::string hint_of_mode(const std::vector<std::string_view>& words, shell_mode mode) {
  const auto begins_line_in = [&words](shell_mode other) {
    std::vector<position> positions = all_positions(other);
    return std::all_of(words.begin(), words.end(), [&positions](std::string_view word) {
      std::vector<step> steps = readings(positions, word);
      prefer_exact(steps, word);
      positions.clear();
      for (const step& reading : steps) positions.push_back(reading.to);
      return names_of(steps).size() == 1;
    });
  };
  const std::string line = join(words, " ");
  if (mode == kExecMode && begins_line_in(kConfigureMode))
    return quoted(line) + " belongs to the configuration. Type 'configure' first.";
  if (mode != kInterfaceMode && begins_line_in(kInterfaceMode))
    return quoted(line) + " is a setting of interfaces. Type '" +
           (mode == kExecMode ? "configure' and then 'interface RANGE' first." : "interface RANGE' first.");
  return {};
}

// Reads a word; returns false and says why when it fits nowhere or in too many ways.
bool read_word(reading_state& state, std::string_view word) {
  std::vector<step> steps = readings(state.positions, word);
  prefer_exact(steps, word);
  const std::vector<std::string_view> names = names_of(steps);
  if (names.empty()) {
    const bool is_no = state.path.size() == 1 && state.path.front() == "no";
    if (is_no) state.error = hint_of_mode({"no", word}, state.mode);
    if (state.path.empty()) state.error = hint_of_mode({word}, state.mode);
    if (state.error.empty()) state.error = hint_of_watch(state, word);
    if (state.error.empty()) state.error = unknown_word(state.positions, word, join(state.path, " "));
    return false;
  }
  if (names.size() > 1) {
    state.error = "ambiguous word " + quoted(word) + ": " + join(names, ", ") + ". Type one more letter.";
    return false;
  }
  state.positions.clear();
  for (const step& reading : steps) state.positions.push_back(reading.to);
  const bool in_range = steps.front().to.range != range_end::none;
  state.path.push_back(in_range ? word : names.front());
  begin_command_behind(state);
  return true;
}

std::string incomplete_command(const reading_state& state) {
  const std::string path = join(state.path, " ");
  if (path.empty()) return "no command before '|'. " + type_help({});
  const bool lacks_number = !may_leave_range(state.positions.front().range);
  return (lacks_number ? "a number is missing after '" : "incomplete command '") + path + "'. " + type_help(path);
}

// Pipes.

std::vector<std::string_view> pipe_names() {
  std::vector<std::string_view> names;
  for (const pipe_word& word : kPipeWords) names.push_back(word.word);
  return names;
}

const pipe_word* find_pipe(std::string_view written) {
  const pipe_word* found = nullptr;
  for (const pipe_word& word : kPipeWords) {
    if (!starts_with_ignoring_case(word.word, written)) continue;
    if (found != nullptr) return nullptr;
    found = &word;
  }
  return found;
}

std::string unknown_pipe(std::string_view written) {
  const std::string_view meant = closest_word(written, pipe_names());
  std::string text = "unknown word " + quoted(written) + " after '|'";
  text += meant.empty() ? "." : ": did you mean " + quoted(meant) + "?";
  return text + " It is one of " + join(pipe_names(), ", ") + ".";
}

// Reads the file name after "| save". Returns the error, or an empty text.
std::string read_save(std::string_view rest, std::vector<pipe_stage>& pipes) {
  const std::string_view name = unquote(rest);
  const std::vector<word_token> words = split_words(rest);
  if (name.empty()) return "'| save' needs the name of a file, such as '| save ports.txt'.";
  if (name == "-") return "'| save' writes to a file: expected its name, not '-'.";
  if (words.size() > 1 && name.size() == rest.size())
    return "unexpected " + quoted(words[1].text) + " after '| save " + std::string(words[0].text) + "'.";
  if (std::any_of(pipes.begin(), pipes.end(), [](const pipe_stage& it) { return it.kind == pipe_kind::save; }))
    return "'| save' is written twice: the output goes to one file.";
  pipes.push_back({pipe_kind::save, std::string(name)});
  return {};
}

// Reads the text after a "|". Returns the error, or an empty text.
std::string read_pipe(std::string_view part, std::vector<pipe_stage>& pipes) {
  part = trim(part);
  if (part.empty()) return "nothing after '|': expected one of " + join(pipe_names(), ", ") + ".";
  const std::string_view written = part.substr(0, part.find_first_of(" \t"));
  const pipe_word* const word = find_pipe(written);
  if (word == nullptr) return unknown_pipe(written);
  const std::string_view rest = trim(part.substr(written.size()));
  const std::string name(word->word);
  if (const std::size_t quote = find_open_quote(rest); quote != std::string_view::npos)
    return "the quote " + std::string(1, rest[quote]) + " in " + quoted(rest) + " is not closed.";
  if (word->argument == pipe_argument::file) return read_save(rest, pipes);
  if (word->argument == pipe_argument::expression && rest.empty())
    return "'| " + name + "' needs an expression, such as '| " + name + " up'.";
  const bool is_columns = word->argument == pipe_argument::columns;
  if ((is_columns || word->argument == pipe_argument::column) && rest.empty())
    return "'| " + name + "' needs " + (is_columns ? "columns" : "a column") + ", such as '| " + name +
           (is_columns ? " Port,Status'." : " Port'.");
  if (word->argument == pipe_argument::none && !rest.empty())
    return "unexpected " + quoted(rest) + " after '| " + name + "'.";
  const bool has_filter =
      std::any_of(pipes.begin(), pipes.end(), [](const pipe_stage& known) { return is_filter(known.kind); });
  if (word->kind == pipe_kind::json && has_filter) return "'| json' must be the first '|' of the command.";
  pipes.push_back({word->kind, std::string(is_columns ? rest : unquote(rest))});
  return {};
}

// Suggestions.

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
  else if (word->argument == pipe_argument::column)
    found.hints.push_back({"COLUMN", "Title of a column, or its beginning"});
  else if (word->argument == pipe_argument::columns)
    found.hints.push_back({"COLUMN,COLUMN", "Titles of columns, or their beginnings"});
  else if (word->argument == pipe_argument::expression)
    found.hints.push_back({"EXPRESSION", "A regular expression; in quotes when it contains '|'"});
  else
    found.hints.push_back({"<Enter>", "Run the command"});
  return found;
}

// Stores an argument that was read, as it was written.
void keep_argument(const position& at, std::string_view written, command_line& parsed) {
  if (at.next == 0) return;
  const syntax_word& word = at.what->syntax.words[at.next - 1];
  if (is_free(word.kind) || word.kind == syntax_kind::vlans) parsed.argument = written;
  if (word.kind == syntax_kind::number && number_argument_of(word).has_any_value) parsed.module = written;
}

// True when the line ends within a TEXT argument.
bool is_in_text(std::string_view line, shell_mode mode) {
  reading_state state(mode);
  for (const word_token& word : split_words(line)) {
    if (takes_text(state.positions)) return word.text != "?";
    if (!read_word(state, word.text)) return false;
  }
  return false;
}

}  // namespace

std::string words_of_command(const command_line& line) {
  const bool has_text = std::any_of(line.what->syntax.words.begin(), line.what->syntax.words.end(),
                                    [](const syntax_word& word) { return word.kind == syntax_kind::text; });
  return has_text && !line.is_no ? line.text + " " + text_argument(line.argument) : line.text;
}

bool asks_for_document(std::string_view line) {
  const auto is_json = [](std::string_view text) {
    const pipe_word* const word = text.empty() ? nullptr : find_pipe(text);
    return word != nullptr && word->kind == pipe_kind::json;
  };
  // A quote that does not end hides the pipes after it.
  const std::size_t last = line.rfind('|');
  if (last != std::string_view::npos && is_json(trim(line.substr(last + 1)))) return true;
  const std::vector<word_token> parts = split_pipes(line);
  return std::any_of(parts.begin() + 1, parts.end(), [&is_json](const word_token& part) {
    const std::string_view text = trim(part.text);
    return is_json(text.substr(0, text.find_first_of(" \t")));
  });
}

std::optional<command_line> parse_command(std::string_view line, std::string& error, shell_mode mode) {
  command_line parsed;
  if (is_comment(line)) return parsed;
  const std::vector<word_token> parts = split_pipes(line);
  const std::vector<word_token> words = split_words(parts[0].text);
  if (words.empty() && parts.size() == 1) return parsed;

  reading_state state(mode);
  for (const word_token& word : words) {
    if (takes_text(state.positions)) {
      auto text = read_text_argument(trim(line.substr(word.start, parts[0].text.size() - word.start)), error);
      if (!text) return std::nullopt;
      parsed.argument = std::move(*text);
      state.positions = behind_text(state.positions);
      break;
    }
    if (!read_word(state, word.text)) {
      error = state.error;
      return std::nullopt;
    }
    keep_argument(state.positions.front(), word.text, parsed);
    if (state.positions.front().range == range_end::none) continue;
    if (!parsed.range.empty()) parsed.range += ' ';
    parsed.range += word.text;
  }
  const auto complete = std::find_if(state.positions.begin(), state.positions.end(), is_complete);
  if (complete == state.positions.end()) {
    error = incomplete_command(state);
    return std::nullopt;
  }
  parsed.what = complete->what;
  parsed.number = complete->number;
  parsed.is_no = !state.path.empty() && state.path.front() == "no";
  parsed.every = state.every;
  parsed.text = join({state.path.begin() + static_cast<std::ptrdiff_t>(state.words_in_front), state.path.end()}, " ");
  if (!parsed.range.empty()) {
    if (const auto fault = parse_interface_range(parsed.range, parsed.spans)) {
      error = fault->message + " of " + quoted(parsed.range) + ". A range looks like 'ethernet 1/1-4, 1/7'.";
      return std::nullopt;
    }
  }
  for (std::size_t i = 1; i < parts.size(); ++i) {
    error = read_pipe(parts[i].text, parsed.pipes);
    if (!error.empty()) return std::nullopt;
  }
  return parsed;
}

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

bool is_in_expression(std::string_view line, shell_mode mode) {
  if (is_comment(line)) return true;
  const std::vector<word_token> parts = split_pipes(line);
  if (parts.size() == 1) return is_in_text(line, mode);
  const std::vector<word_token> words = split_words(parts.back().text);
  if (words.empty() || (words.size() == 1 && words[0].text.end() == parts.back().text.end())) return false;
  const pipe_word* const word = find_pipe(words[0].text);
  return word != nullptr && word->argument == pipe_argument::expression;
}

}  // namespace host
