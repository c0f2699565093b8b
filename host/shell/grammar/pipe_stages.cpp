#include "shell/grammar/pipe_stages.h"

#include <algorithm>

#include "base/text.h"
#include "base/tokens.h"
#include "shell/grammar/mistakes.h"
#include "shell/grammar/words.h"

namespace host {
namespace {

std::vector<std::string_view> pipe_names() {
  std::vector<std::string_view> names;
  for (const pipe_word& word : kPipeWords) names.push_back(word.word);
  return names;
}

// Reads the file name after "| save". Returns the error, or an empty text.
std::string read_save(std::string_view rest, std::vector<pipe_stage>& pipes) {
  const std::string_view name = unquote(rest);
  const std::vector<word_token> words = split_words(rest);
  if (name.empty()) return "'| save' needs the name of a file, such as '| save ports.txt'.";
  if (name == "-") return "'| save' writes to a file: expected its name, not '-'.";
  if (words.size() > 1 && name.size() == rest.size())
    return "unexpected " + in_quotes(words[1].text) + " after '| save " + std::string(words[0].text) + "'.";
  if (std::any_of(pipes.begin(), pipes.end(), [](const pipe_stage& it) { return it.kind == pipe_kind::save; }))
    return "'| save' is written twice: the output goes to one file.";
  pipes.push_back({pipe_kind::save, std::string(name)});
  return {};
}

}  // namespace

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
  const std::string_view meant = likely_word(written, pipe_names());
  std::string text = "unknown word " + in_quotes(written) + " after '|'";
  text += meant.empty() ? "." : ": did you mean " + in_quotes(meant) + "?";
  return text + " It is one of " + join(pipe_names(), ", ") + ".";
}

std::string read_pipe(std::string_view part, std::vector<pipe_stage>& pipes) {
  part = trim(part);
  if (part.empty()) return "nothing after '|': expected one of " + join(pipe_names(), ", ") + ".";
  const std::string_view written = part.substr(0, part.find_first_of(" \t"));
  const pipe_word* const word = find_pipe(written);
  if (word == nullptr) return unknown_pipe(written);
  const std::string_view rest = trim(part.substr(written.size()));
  const std::string name(word->word);
  if (const std::size_t quote = find_open_quote(rest); quote != std::string_view::npos)
    return "the quote " + std::string(1, rest[quote]) + " in " + in_quotes(rest) + " is not closed.";
  if (word->argument == pipe_argument::file) return read_save(rest, pipes);
  if (word->argument == pipe_argument::expression && rest.empty())
    return "'| " + name + "' needs an expression, such as '| " + name + " up'.";
  const bool is_columns = word->argument == pipe_argument::columns;
  if ((is_columns || word->argument == pipe_argument::column) && rest.empty())
    return "'| " + name + "' needs " + (is_columns ? "columns" : "a column") + ", such as '| " + name +
           (is_columns ? " Port,Status'." : " Port'.");
  if (word->argument == pipe_argument::none && !rest.empty())
    return "unexpected " + in_quotes(rest) + " after '| " + name + "'.";
  const bool has_filter =
      std::any_of(pipes.begin(), pipes.end(), [](const pipe_stage& known) { return is_filter(known.kind); });
  if (word->kind == pipe_kind::json && has_filter) return "'| json' must be the first '|' of the command.";
  pipes.push_back({word->kind, std::string(is_columns ? rest : unquote(rest))});
  return {};
}

}  // namespace host
