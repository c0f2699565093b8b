#include "shell/session/line_output.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "base/files.h"
#include "shell/output/terminal/external_pager.h"
#include "shell/output/terminal/pager.h"
#include "shell/output/terminal/print_error.h"
#include "shell/session/interrupt.h"
#include "shell/session/saved_files.h"

namespace host {
namespace {

const pipe_stage* find_stage(std::span<const pipe_stage> pipes, pipe_kind kind) {
  const auto found = std::find_if(pipes.begin(), pipes.end(), [kind](const pipe_stage& it) { return it.kind == kind; });
  return found == pipes.end() ? nullptr : &*found;
}

bool has_stage(std::span<const pipe_stage> pipes, pipe_kind kind) { return find_stage(pipes, kind) != nullptr; }

bool terminal_can_page() {
  const char* const terminal = std::getenv("TERM");
  return isatty(STDIN_FILENO) != 0 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

bool wants_document(const shell& session, const line_mistake& mistake) {
  return mistake.wants_document || (session.output != nullptr && session.output->structured);
}

}  // namespace

output_settings settings_for(const shell& session, std::span<const pipe_stage> pipes) {
  output_settings settings = session.output == nullptr ? output_settings() : *session.output;
  settings.hides_traffic = session.user != nullptr && !session.user->sees_counters;
  settings.is_cancelled = was_interrupted;
  if (session.output != nullptr) {
    settings.structured |= has_stage(pipes, pipe_kind::json);
    return settings;
  }
  settings.to_terminal = isatty(STDOUT_FILENO) != 0 && !has_stage(pipes, pipe_kind::save);
  if (settings.to_terminal) settings.columns = size_of(STDOUT_FILENO).columns;
  settings.paged =
      session.is_interactive && settings.to_terminal && terminal_can_page() && !has_stage(pipes, pipe_kind::no_more);
  settings.paged &= session.screen_lines != 0U;
  settings.lines = session.screen_lines.value_or(0);
  if (settings.paged && !session.screen_lines) {
    const pager_choice pager = chosen_pager();
    settings.paged = pager.has_pages;
    settings.pager = pager.command;
  }
  settings.structured = has_stage(pipes, pipe_kind::json);
  const char* const no_colour = std::getenv("NO_COLOR");
  settings.coloured = settings.to_terminal && terminal_can_page() && (no_colour == nullptr || no_colour[0] == '\0');
  return settings;
}

int refuse_line(const shell& session, std::string_view line, std::string_view error, bool is_structured,
                int exit_code) {
  print_error(error);
  if (!is_structured) return exit_code;
  const std::string document = document_of_error(line, error, exit_code);
  if (session.output != nullptr && session.output->sink) return session.output->sink(document), exit_code;
  const int code = print_text(document);
  return code == kDone ? exit_code : code;
}

int show_text(const shell& session, std::string_view text) {
  if (session.output != nullptr && session.output->sink) return session.output->sink(text), kDone;
  return print_text(text);
}

int refuse_mistake(const shell& session, const line_mistake& mistake) {
  return refuse_line(session, mistake.line, mistake.text, wants_document(session, mistake));
}

int refuse_mistake(const shell& session, const line_mistake& mistake, std::string_view fault) {
  return refuse_line(session, mistake.line, fault, wants_document(session, mistake), kServiceFailed);
}

std::string make_filters(std::span<const pipe_stage> pipes, bool is_structured, line_filters& filters) {
  const bool is_for_table =
      std::any_of(pipes.begin(), pipes.end(), [](const pipe_stage& stage) { return is_for_tables(stage.kind); });
  if (is_structured && is_for_table)
    return "'| columns', '| sort' and '| rows' work on tables, not on JSON. Remove them or '| json'.";
  for (const pipe_stage& stage : pipes) {
    if (const auto fault = filters.add(stage))
      return fmt::format("bad expression '{}': {}. Quote it, and put '\\' before special signs.", stage.argument,
                         *fault);
  }
  return {};
}

std::string refuse_to_watch(const shell& session, std::span<const pipe_stage> pipes) {
  if (session.output != nullptr) return "'watch' runs only in the shell. Repeat the show command instead.";
  return has_stage(pipes, pipe_kind::save) ? "'| save' does not apply to 'watch'." : "";
}

saved_output::saved_output(std::span<const pipe_stage> pipes) {
  if (const pipe_stage* const stage = find_stage(pipes, pipe_kind::save)) file_ = &stage->argument;
}

std::string saved_output::begin(output_settings& settings) {
  if (file_ == nullptr) return {};
  settings.sink = [this](std::string_view text) { text_ += text; };
  settings.sinks_errors = false;
  return refuse_to_replace(*file_);
}

std::string saved_output::write() const { return write_fault(*file_, write_file(*file_, text_)); }

std::string saved_output::sentence() const { return written_sentence(*file_); }

}  // namespace host
