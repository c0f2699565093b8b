#include "shell/grammar/pipe_stages.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "base/text.h"
#include "base/tokens.h"
#include "shell/grammar/mistakes.h"

namespace host {
namespace {

std::vector<std::string_view> pipe_names() {
  std::vector<std::string_view> names;
  for (const pipe_word& word : kPipeWords) names.push_back(word.word);
  return names;
}

// Reads the file name after "| save". Returns the error, or an empty text.
std::string read_save(std::span<const word_token> words, std::vector<pipe_stage>& pipes) {
  const std::string_view rest = text_of(words);
  const std::string_view name = unquote(rest);
  if (name.empty()) return "'| save' needs the name of a file, such as '| save ports.txt'.";
  if (name == "-") return "'| save' writes to a file: expected its name, not '-'.";
  if (words.size() > 1 && name.size() == rest.size())
    return fmt::format("unexpected '{}' after '| save {}'.", words[1].text, words[0].text);
  if (std::any_of(pipes.begin(), pipes.end(), [](const pipe_stage& it) { return it.kind == pipe_kind::save; }))
    return "'| save' is written twice: the output goes to one file.";
  pipes.push_back({pipe_kind::save, std::string(name)});
  return {};
}

// Returns the error, or an empty text.
std::string read_pipe(const line_part& part, std::vector<pipe_stage>& pipes) {
  if (part.words.empty()) return fmt::format("nothing after '|': expected one of {}.", fmt::join(pipe_names(), ", "));
  const std::string_view written = part.words.front().text;
  const pipe_word* const word = find_pipe(written);
  if (word == nullptr) return unknown_pipe(written);
  const auto arguments = std::span(part.words).subspan(1);
  const std::string_view rest = text_of(arguments);
  const std::string_view name = word->word;
  if (const std::size_t quote = find_open_quote(rest); quote != std::string_view::npos)
    return fmt::format("the quote {} in '{}' is not closed.", rest[quote], rest);
  if (word->argument == pipe_argument::file) return read_save(arguments, pipes);
  if (word->argument == pipe_argument::expression && rest.empty())
    return fmt::format("'| {0}' needs an expression, such as '| {0} up'.", name);
  const bool is_columns = word->argument == pipe_argument::columns;
  if (is_columns && rest.empty()) return fmt::format("'| {0}' needs columns, such as '| {0} Port,Status'.", name);
  if (word->argument == pipe_argument::column && rest.empty())
    return fmt::format("'| {0}' needs a column, such as '| {0} Port'.", name);
  if (word->argument == pipe_argument::none && !rest.empty())
    return fmt::format("unexpected '{}' after '| {}'.", rest, name);
  const bool has_filter =
      std::any_of(pipes.begin(), pipes.end(), [](const pipe_stage& known) { return is_filter(known.kind); });
  if (word->kind == pipe_kind::json && has_filter) return "'| json' must be the first '|' of the command.";
  pipes.push_back({word->kind, std::string(is_columns ? rest : unquote(rest))});
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
  const std::string hint = meant.empty() ? "." : fmt::format(": did you mean '{}'?", meant);
  return fmt::format("unknown word '{}' after '|'{} It is one of {}.", written, hint, fmt::join(pipe_names(), ", "));
}

std::string read_pipes(std::span<const line_part> parts, std::vector<pipe_stage>& pipes) {
  for (const line_part& part : parts) {
    if (std::string error = read_pipe(part, pipes); !error.empty()) return error;
  }
  return {};
}

bool asks_for_document(const cut_line& line) {
  const auto is_json = [](std::string_view word) {
    const pipe_word* const found = word.empty() ? nullptr : find_pipe(word);
    return found != nullptr && found->kind == pipe_kind::json;
  };
  // A quote that does not end hides the pipes after it.
  const std::string_view end = line.parts.back().text;
  const std::size_t last = end.rfind('|');
  if (last != std::string_view::npos && is_json(trim(end.substr(last + 1)))) return true;
  return std::any_of(line.pipes().begin(), line.pipes().end(), [&is_json](const line_part& pipe) {
    return !pipe.words.empty() && is_json(pipe.words.front().text);
  });
}

}  // namespace host
