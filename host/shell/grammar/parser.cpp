#include "shell/grammar/parser.h"

#include <algorithm>

#include "base/text.h"
#include "base/text_argument.h"
#include "base/tokens.h"
#include "shell/grammar/mistakes.h"
#include "shell/grammar/pipe_stages.h"
#include "shell/grammar/reading.h"

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

}  // namespace

std::string words_of_command(const command_line& line) {
  const bool has_text = std::any_of(line.what->syntax.words.begin(), line.what->syntax.words.end(),
                                    [](const syntax_word& word) { return word.kind == syntax_kind::text; });
  return has_text && !line.is_no ? line.text + " " + text_argument(line.free_text) : line.text;
}

std::optional<command_line> parse_command(const cut_line& line, std::string& error, shell_mode mode,
                                          const interface_names& names) {
  if (line.is_empty()) return command_line();
  reading_state state(line.command(), mode, names);
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
  error = read_pipes(line.pipes(), parsed.pipes);
  if (!error.empty()) return std::nullopt;
  return std::move(parsed);
}

line_meaning meaning_of(std::string_view text, shell_mode mode, const interface_names& names) {
  const cut_line line(text);
  if (line.ends_with_question()) {
    suggestions found = suggest(line.before_question(), mode, names);
    if (!found.is_in_text) return found;
  }
  if (line.is_empty()) return {};
  line_mistake mistake{line.written, {}, false};
  if (auto parsed = parse_command(line, mistake.text, mode, names)) return *std::move(parsed);
  mistake.wants_document = asks_for_document(line);
  return mistake;
}

}  // namespace host
