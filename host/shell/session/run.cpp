#include "shell/session/run.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>

#include "messages/calls/device_names.h"
#include "messages/calls/switch_facts.h"
#include "shell/grammar/parser.h"
#include "shell/output/command_output.h"
#include "shell/output/document/account.h"
#include "shell/output/terminal/print_error.h"
#include "shell/session/command_files.h"
#include "shell/session/completion.h"
#include "shell/session/interrupt.h"
#include "shell/session/invocation.h"
#include "shell/session/line_output.h"
#include "shell/session/unconfirmed_commit.h"
#include "switch/clock.h"
#include "transport/failures.h"

namespace host {
namespace {

// Runs a command with an output of its own. `write_error` is the errno with which that was lost.
int run_with_output(shell& session, const command_line& line, const output_settings& settings, line_filters& filters,
                    int& write_error) {
  std::optional<copied_file> copied;
  if (line.what->run == nullptr) copied = run_for_copy(session, line.file, settings.structured || !line.pipes.empty());
  command_output output(settings, filters);
  const int result = output.report_failures(copied ? report(*copied, output) : run_handler({line, session, output}));
  output.set_exit_code(was_interrupted() ? int{kInterrupted} : result);
  write_error = output.finish();
  return result;
}

int run_command(shell& session, const command_line& line) {
  output_settings settings = settings_for(session, line.pipes);
  settings.shown = line.what->shown;
  settings.command = line.text;
  const auto refuse = [&](std::string_view error) {
    return refuse_line(session, line.written, error, settings.structured);
  };
  line_filters filters;
  if (const std::string fault = make_filters(line.pipes, settings.structured, filters); !fault.empty())
    return refuse(fault);
  const command& runs = line.before != nullptr ? *line.before : *line.what;
  if (runs.run_other != nullptr) {
    if (const std::string fault = refuse_to_watch(session, line.pipes); !fault.empty()) return refuse(fault);
    return runs.run_other(session, line, settings);
  }
  saved_output saved(line.pipes);
  if (const std::string fault = saved.begin(settings); !fault.empty()) return refuse(fault);
  const std::string& refresh_fault = refresh_model(session, line.what);
  if (!refresh_fault.empty() && line.what->effect != command_effect::leaves)
    return refuse_line(session, line.written, refresh_fault, settings.structured, kServiceFailed);
  std::optional<interrupt_scope> interrupts;  // signals of a program that embeds the shell are its own
  if (session.output == nullptr) interrupts.emplace();
  int write_error = 0;
  const int result = run_with_output(session, line, settings, filters, write_error);
  if (was_interrupted()) return kInterrupted;
  if (result == kDone && !filters.fault().empty()) return refuse(filters.fault());
  if (saved.is_wanted()) {
    if (const std::string fault = saved.write(); !fault.empty()) return refuse(fault);
    const int shown = show_text(session, saved.sentence());
    return result == kDone ? shown : result;
  }
  if (write_error == 0) return result;
  session.is_leaving = session.has_lost_output = true;
  return report_lost_output(write_error);
}

}  // namespace

void take_over_clock(const switch_clock& clock) {
  clock_take_over({clock.is_stopped, static_cast<std::time_t>(clock.seconds)});
}

std::string refresh_for(const command* shown) {
  constexpr uint64 kCounters = kCountersDisplay | kErrorCountersDisplay | kRatesDisplay;
  const bool needs_counters_only = shown != nullptr && (shown->shown.bit & kCounters) != 0;
  const std::size_t num_noted = noted_failures().size();
  if (const auto answer = ask_refresh(needs_counters_only ? switch_part::counters : switch_part::everything)) {
    take_over_clock(answer->clock);
    return answer->reason.empty() ? answer->reason : answer->reason + ".";
  }
  const auto noted = noted_failures().subspan(num_noted);
  return noted.empty() ? std::string() : sentence_of(noted.front());  // none: the user interrupted it
}

const std::string& refresh_model(shell& session, const command* shown) {
  if (!session.is_refreshed) session.refresh_fault = refresh_for(shown);
  session.is_refreshed = true;
  return session.refresh_fault;
}

interface_names device_names(shell& session) {
  const auto load = [&session] {
    return refresh_model(session).empty() ? ask_device_names() : std::vector<interface_names::named_interface>();
  };
  // The grammar looks for the same word several times.
  const auto may_exist = [&session, known = std::map<std::string, bool, std::less<>>()](std::string_view name) mutable {
    if (session.is_refreshed) return true;
    const auto found = known.find(name);
    if (found != known.end()) return found->second;
    return known.emplace(name, ask_may_have_device(name).value_or(true)).first->second;
  };
  return interface_names(load, may_exist);
}

int run_handler(const invocation& run) {
  const auto& [line, session, output] = run;
  const command_effect effect = line.what->effect;
  const bool is_outside =
      effect == command_effect::outside || (effect == command_effect::writes_file && line.file != "-");
  if (session.trying && is_outside) {
    output.text(fmt::format("Skipped in a dry run: '{}'.\n", line.text));
    return kDone;
  }
  const bool changes_settings = effect == command_effect::settings;
  const bool changes_switch = changes_settings && !session.edited;
  if ((changes_switch || effect == command_effect::dry_run) && is_waiting_for_confirmation(session, output))
    return kUsage;
  const candidate_scope on_candidate(session, changes_settings || effect == command_effect::shows_settings);
  return on_candidate.has_failed() ? int{kServiceFailed} : line.what->run(run);
}

int run_line(shell& session, std::string_view line) {
  check_confirmation(session);
  session.is_refreshed = false;
  const line_meaning meant = meaning_of(line, session.mode, device_names(session));
  if (const auto* const command = std::get_if<command_line>(&meant)) return run_command(session, *command);
  if (const auto* const mistake = std::get_if<line_mistake>(&meant)) {
    const bool is_known = !session.is_refreshed || session.refresh_fault.empty();
    return is_known ? refuse_mistake(session, *mistake) : refuse_mistake(session, *mistake, session.refresh_fault);
  }
  if (const auto* const question = std::get_if<suggestions>(&meant)) return show_text(session, help_text(*question));
  return kDone;
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
