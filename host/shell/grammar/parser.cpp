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
bool is_in_text(const cut_line& line, shell_mode mode) {
  reading_state state(mode, true);
  for (std::span<const word_token> left = line.words; !left.empty();) {
    if (takes_text(state.positions)) return left.front().text != "?";
    const std::size_t taken = read_next(state, line.text, left);
    if (taken == 0) return false;
    left = left.subspan(taken);
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
  const std::size_t last = line.text.rfind('|');
  if (last != std::string_view::npos && is_json(trim(line.text.substr(last + 1)))) return true;
  return std::any_of(line.parts.begin() + 1, line.parts.end(), [&is_json](const word_token& part) {
    const std::string_view text = trim(part.text);
    return is_json(text.substr(0, text.find_first_of(" \t")));
  });
}

std::optional<command_line> parse_command(const cut_line& line, std::string& error, shell_mode mode) {
  if (line.is_empty()) return command_line();
  const std::vector<word_token>& parts = line.parts;

  reading_state state(mode);
  command_line& parsed = state.line;
  for (std::span<const word_token> left = line.words; !left.empty();) {
    const std::size_t start = left.front().start;
    if (takes_text(state.positions)) {
      auto text = read_text_argument(trim(parts[0].text.substr(start)), error);
      if (!text) return std::nullopt;
      parsed.free_text = std::move(*text);
      state.positions = behind_text(state.positions);
      break;
    }
    const std::size_t taken = read_next(state, parts[0].text, left);
    if (taken == 0) {
      error = state.error;
      return std::nullopt;
    }
    left = left.subspan(taken);
  }
  const auto complete = std::find_if(state.positions.begin(), state.positions.end(), is_complete);
  const bool is_range_open = state.ending && !state.ending->is_complete;
  if (complete == state.positions.end() || is_range_open) {
    error = incomplete_command(state);
    return std::nullopt;
  }
  parsed.what = complete->what;
  parsed.number = complete->number;
  parsed.is_no = !state.path.empty() && state.path.front() == "no";
  parsed.text = join({state.path.begin() + static_cast<std::ptrdiff_t>(state.words_in_front), state.path.end()}, " ");
  for (std::size_t i = 1; i < parts.size(); ++i) {
    error = read_pipe(parts[i].text, parsed.pipes);
    if (!error.empty()) return std::nullopt;
  }
  return std::move(parsed);
}

bool is_in_expression(const cut_line& line, shell_mode mode) {
  if (line.is_comment) return true;
  if (line.parts.size() == 1) return is_in_text(line, mode);
  const std::string_view pipe = line.parts.back().text;
  const std::vector<word_token> words = split_words(pipe);
  if (words.empty() || (words.size() == 1 && words[0].text.end() == pipe.end())) return false;
  const pipe_word* const word = find_pipe(words[0].text);
  return word != nullptr && word->argument == pipe_argument::expression;
}

line_meaning meaning_of(std::string_view text, shell_mode mode) {
  const cut_line line(text);
  line_meaning meant;
  meant.written = trim(text);
  if (meant.written.ends_with('?') && !is_in_expression(meant.written, mode)) {
    meant.kind = line_kind::question;
    meant.begun = text.substr(0, text.rfind('?'));
    return meant;
  }
  auto parsed = parse_command(line, meant.mistake, mode);
  if (!parsed) {
    meant.kind = line_kind::mistake;
    meant.wants_document = asks_for_document(line);
  } else if (parsed->what != nullptr) {
    meant.kind = line_kind::command;
    meant.command = std::move(*parsed);
  }
  return meant;
}

}  // namespace host
