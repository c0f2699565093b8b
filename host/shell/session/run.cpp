#include "shell/session/run.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "base/files.h"
#include "base/text.h"
#include "shell/grammar/parser.h"
#include "shell/grammar/words.h"
#include "shell/output/command_output.h"
#include "shell/output/terminal/external_pager.h"
#include "shell/output/terminal/pager.h"
#include "shell/output/terminal/print_error.h"
#include "shell/session/command_files.h"
#include "shell/session/completion.h"
#include "shell/session/interrupt.h"
#include "shell/session/invocation.h"
#include "shell/session/saved_files.h"
#include "switch/source.h"

namespace host {
namespace {

const pipe_stage* find_stage(const command_line& line, pipe_kind kind) {
  for (const pipe_stage& stage : line.pipes) {
    if (stage.kind == kind) return &stage;
  }
  return nullptr;
}

bool has_stage(const command_line& line, pipe_kind kind) { return find_stage(line, kind) != nullptr; }

bool terminal_can_page() {
  const char* const terminal = std::getenv("TERM");
  return isatty(STDIN_FILENO) != 0 && terminal != nullptr && std::string_view(terminal) != "dumb";
}

// Settings that do not depend on where the output goes.
void set_display(output_settings& settings, const shell& session, const command_line& line) {
  settings.shown = line.what->shown;
  settings.command = line.text;
  settings.hides_traffic = session.user != nullptr && !session.user->sees_counters;
  settings.is_cancelled = was_interrupted;
}

output_settings settings_for(const shell& session, const command_line& line) {
  output_settings settings = session.output == nullptr ? output_settings() : *session.output;
  set_display(settings, session, line);
  if (session.output != nullptr) {
    settings.structured |= has_stage(line, pipe_kind::json);
    return settings;
  }
  settings.to_terminal = isatty(STDOUT_FILENO) != 0 && !has_stage(line, pipe_kind::save);
  if (settings.to_terminal) settings.columns = size_of(STDOUT_FILENO).columns;
  settings.paged =
      session.is_interactive && settings.to_terminal && terminal_can_page() && !has_stage(line, pipe_kind::no_more);
  settings.paged &= session.screen_lines != 0U;
  settings.lines = session.screen_lines.value_or(0);
  if (settings.paged && !session.screen_lines) {
    const pager_choice pager = chosen_pager();
    settings.paged = pager.has_pages;
    settings.pager = pager.command;
  }
  settings.structured = has_stage(line, pipe_kind::json);
  const char* const no_colour = std::getenv("NO_COLOR");
  settings.coloured = settings.to_terminal && terminal_can_page() && (no_colour == nullptr || no_colour[0] == '\0');
  return settings;
}

// A line that does not run: the error on standard error, and in a document when its output is structured.
int refuse_line(const shell& session, std::string_view line, std::string_view error, bool is_structured) {
  print_error(error);
  if (!is_structured) return kUsage;
  const std::string document = document_of_error(line, error, kUsage);
  if (session.output != nullptr && session.output->sink) return session.output->sink(document), kUsage;
  const int code = print_text(document);
  return code == kDone ? int{kUsage} : code;
}

// Text of the shell itself.
int show_text(const shell& session, std::string_view text) {
  if (session.output != nullptr && session.output->sink) return session.output->sink(text), kDone;
  return print_text(text);
}

// Makes the filters of a line that was read. Returns an error, or an empty text when the line can run.
std::string check_line(const shell& session, const command_line& line, bool is_structured, line_filters& filters) {
  const auto for_tables = std::find_if(line.pipes.begin(), line.pipes.end(),
                                       [](const pipe_stage& stage) { return is_for_tables(stage.kind); });
  if (is_structured && for_tables != line.pipes.end())
    return "'| columns', '| sort' and '| rows' work on tables, not on JSON. Remove them or '| json'.";
  for (const pipe_stage& stage : line.pipes) {
    if (const auto fault = filters.add(stage))
      return "bad expression '" + stage.argument + "': " + *fault + ". Quote it, and put '\\' before special signs.";
  }
  if (!line.every) return {};
  if (session.output != nullptr) return "'watch' runs only in the shell. Repeat the show command instead.";
  return has_stage(line, pipe_kind::save) ? "'| save' does not apply to 'watch'." : "";
}

int run_command(shell& session, const command_line& line, std::string_view written) {
  output_settings settings = settings_for(session, line);
  const auto refuse = [&](std::string_view error) { return refuse_line(session, written, error, settings.structured); };
  line_filters filters;
  if (const std::string fault = check_line(session, line, settings.structured, filters); !fault.empty())
    return refuse(fault);
  if (line.before != nullptr) return line.before->run_other(session, line, settings);
  the_source().refresh(the_machine());
  std::optional<interrupt_scope> interrupts;  // signals of a program that embeds the shell are its own
  if (session.output == nullptr) interrupts.emplace();
  const pipe_stage* const save = find_stage(line, pipe_kind::save);
  std::string saved;
  if (save != nullptr) {
    if (const std::string fault = refuse_to_replace(save->argument); !fault.empty()) return refuse(fault);
    settings.sink = [&saved](std::string_view text) { saved += text; };
    settings.sinks_errors = false;
  }
  std::optional<copied_file> copied;
  if (line.what->run == nullptr) copied = run_for_copy(session, line, settings.structured || !line.pipes.empty());
  int result = kDone;
  int write_error = 0;
  {
    command_output output(settings, filters);
    result = output.report_failures(copied ? report(*copied, output) : run_handler({line, session, output}));
    output.set_exit_code(was_interrupted() ? int{kInterrupted} : result);
    write_error = output.finish();
  }
  if (was_interrupted()) return kInterrupted;
  if (result == kDone && !filters.fault().empty()) return refuse(filters.fault());
  if (save != nullptr) {
    const std::string fault = write_fault(save->argument, write_file(save->argument, saved));
    if (!fault.empty()) return refuse(fault);
    const int shown = show_text(session, written_sentence(save->argument));
    return result == kDone ? shown : result;
  }
  if (write_error == 0) return result;
  session.is_leaving = session.has_lost_output = true;
  return report_lost_output(write_error);
}

// The line before a "?" at its end; null when the line does not ask for help.
std::string_view question_of(std::string_view line, shell_mode mode) {
  const std::string_view text = trim(line);
  if (text.empty() || text.back() != '?' || is_in_expression(text, mode)) return {};
  return line.substr(0, line.rfind('?') + 1);
}

}  // namespace

int run_handler(const invocation& run) {
  if (run.session.trying && is_skipped_in_dry_run(run.line)) return skip_in_dry_run(run);
  const command_effect effect = run.line.what->effect;
  const bool changes_switch = effect == command_effect::settings && !run.session.edited;
  if ((changes_switch || effect == command_effect::dry_run) && is_waiting_for_confirmation(run)) return kUsage;
  std::optional<trial> on_candidate;
  if (run.session.edited && is_for_candidate(run.line)) on_candidate.emplace(run.session.edited->state());
  return run.line.what->run(run);
}

int run_line(shell& session, std::string_view line) {
  check_confirmation(session);
  if (const std::string_view question = question_of(line, session.mode); !question.empty()) {
    const std::string help = help_text(question.substr(0, question.size() - 1), session.mode);
    return show_text(session, help);
  }
  std::string error;
  const auto parsed = parse_command(line, error, session.mode);
  if (!parsed) {
    const bool is_structured = asks_for_document(line) || (session.output != nullptr && session.output->structured);
    return refuse_line(session, trim(line), error, is_structured);
  }
  return parsed->what == nullptr ? kDone : run_command(session, *parsed, trim(line));
}

int run_input(shell& session) {
  int result = kDone;
  char* line = nullptr;
  std::size_t size = 0;
  while (!session.is_leaving && getline(&line, &size, stdin) >= 0) {
    const int code = run_line(session, line);
    if (result == kDone) result = code;
    if (code == kInterrupted) break;
  }
  std::free(line);
  return result;
}

}  // namespace host
