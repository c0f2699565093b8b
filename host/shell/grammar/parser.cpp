#include "shell/grammar/parser.h"

#include <algorithm>

#include "base/text.h"
#include "base/tokens.h"
#include "shell/grammar/mistakes.h"
#include "shell/grammar/pipe_stages.h"
#include "shell/grammar/reading.h"
#include "shell/grammar/words.h"

namespace host {
namespace {

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

// True when the line ends within a TEXT argument, or in the quotes of a pattern.
bool is_in_text(const line_part& command, shell_mode mode) {
  reading_state state(command, mode, true);
  while (!state.left.empty()) {
    if (takes_text(state.positions)) return true;
    if (!read_next(state)) return false;
  }
  return state.ending && state.ending->is_in_quotes;
}

}  // namespace

std::string words_of_command(const command_line& line) {
  const bool has_text = std::any_of(line.what->syntax.words.begin(), line.what->syntax.words.end(),
                                    [](const syntax_word& word) { return word.kind == syntax_kind::text; });
  return has_text && !line.is_no ? line.text + " " + text_argument(line.free_text) : line.text;
}

bool asks_for_document(const cut_line& line) {
  const auto is_json = [](std::string_view text) {
    const pipe_word* const word = text.empty() ? nullptr : find_pipe(text);
    return word != nullptr && word->kind == pipe_kind::json;
  };
  // A quote that does not end hides the pipes after it.
  const std::string_view end = line.parts.back().text;
  const std::size_t last = end.rfind('|');
  if (last != std::string_view::npos && is_json(trim(end.substr(last + 1)))) return true;
  return std::any_of(line.pipes().begin(), line.pipes().end(), [&is_json](const line_part& pipe) {
    return !pipe.words.empty() && is_json(pipe.words.front().text);
  });
}

std::optional<command_line> parse_command(const cut_line& line, std::string& error, shell_mode mode) {
  if (line.is_empty()) return command_line();
  reading_state state(line.command(), mode);
  command_line& parsed = state.line;
  while (!state.left.empty()) {
    if (takes_text(state.positions)) {
      auto text = read_text_argument(text_of(state.left), error);
      if (!text) return std::nullopt;
      parsed.free_text = std::move(*text);
      state.positions = behind_text(state.positions);
      break;
    }
    if (!read_next(state)) {
      error = state.error;
      return std::nullopt;
    }
  }
  const auto complete = std::find_if(state.positions.begin(), state.positions.end(), is_complete);
  const bool is_range_open = state.ending && !state.ending->is_complete;
  if (complete == state.positions.end() || is_range_open) {
    error = incomplete_command(state);
    return std::nullopt;
  }
  parsed.written = line.written;
  parsed.what = complete->what;
  parsed.number = complete->number;
  parsed.is_no = !state.path.empty() && state.path.front() == "no";
  parsed.text = join({state.path.begin() + static_cast<std::ptrdiff_t>(state.words_in_front), state.path.end()}, " ");
  for (const line_part& pipe : line.pipes()) {
    error = read_pipe(pipe, parsed.pipes);
    if (!error.empty()) return std::nullopt;
  }
  return std::move(parsed);
}

bool is_in_expression(const cut_line& line, shell_mode mode) {
  if (line.is_comment()) return true;
  if (line.pipes().empty()) return is_in_text(line.command(), mode);
  const line_part& pipe = line.pipes().back();
  if (pipe.words.empty() || (pipe.words.size() == 1 && pipe.ends_with_word())) return false;
  const pipe_word* const word = find_pipe(pipe.words.front().text);
  return word != nullptr && word->argument == pipe_argument::expression;
}

line_meaning meaning_of(const cut_line& line, shell_mode mode) {
  if (line.ends_with_question()) {
    const cut_line begun = line.before_question();
    if (!is_in_expression(begun, mode)) return suggest(begun, mode);
  }
  if (line.is_empty()) return {};
  line_mistake mistake{line.written, {}, false};
  if (auto parsed = parse_command(line, mistake.text, mode)) return *std::move(parsed);
  mistake.wants_document = asks_for_document(line);
  return mistake;
}

}  // namespace host
