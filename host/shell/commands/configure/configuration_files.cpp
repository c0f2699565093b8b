// The settings as commands: shown, and written to files.
#include <optional>
#include <sstream>
#include <string>

#include "base/files.h"
#include "base/state_directory.h"
#include "base/text.h"
#include "messages/calls/session.h"
#include "shell/commands/group.h"
#include "shell/grammar/cut_line.h"
#include "shell/grammar/parser.h"
#include "shell/library/command_queue.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "shell/session/command_files.h"
#include "shell/session/saved_files.h"
#include "shell/session/unconfirmed_commit.h"

namespace host {
namespace {

// The interfaces that were named, or all that the user may see.
selection select_configured(const invocation& run) {
  const command_queue q;
  command_parameters parameters(run.session.library, run.session.user, q.handle, kNoDisplayId);
  selection chosen =
      run.line.range.empty() ? select_every(parameters) : select_named(parameters, run.line.range, absent_ends::skip);
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  return chosen;
}

// Nothing when the session service does not answer.
std::optional<std::string> configuration_text(const invocation& run, const selection& chosen) {
  return session_running_config(chosen.interfaces, run.line.range.empty());
}

// A record for each command of each interface. False when the session service does not answer.
bool record_commands(command_output& output, const selection& chosen) {
  const auto commands = session_commands(chosen.interfaces);
  if (!commands) return false;
  for (std::size_t i = 0; i < chosen.interfaces.size(); ++i)
    for (const std::string& command : (*commands)[i]) {
      char name[64];
      output.begin_interface(sprintf_if_index(name, chosen.interfaces[i]));
      output.bind_text(kTagCommand, command);
      output.end_interface();
    }
  return true;
}

// Whether a command only changes the mode, which follows it.
bool changes_mode(const command_line& line, shell_mode& mode) {
  const std::string_view word = line.what == nullptr ? std::string_view() : line.what->syntax.words[0].text;
  if (word == "configure" || (word == "exit" && mode == kInterfaceMode))
    mode = kConfigureMode;
  else if (word == "interface")
    mode = kInterfaceMode;
  else if (word == "end" || word == "exit")
    mode = kExecMode;
  else
    return false;
  return true;
}

// A record for each command of a text, with the interfaces that it is for. Commands that only change the mode have
// none.
void record_commands(command_output& output, const std::string& text) {
  shell_mode mode = kExecMode;
  std::string range;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    const std::string command(trim(line));
    if (command.empty() || is_comment(command)) continue;
    std::string error;
    const auto parsed = parse_command(command, error, mode);
    if (parsed && changes_mode(*parsed, mode)) {
      range = parsed->written_range;
      continue;
    }
    output.begin_interface({});
    if (!range.empty()) output.bind_text(kTagCommandRange, range);
    output.bind_text(kTagCommand, command);
    output.end_interface();
  }
}

int show_startup_config(const invocation& run) {
  const command_text stored = read_commands(startup_file(run.session), true);
  if (stored.code != kDone) {
    run.output.complain(stored.error);
    return stored.code;
  }
  if (run.output.is_structured())
    record_commands(run.output, *stored.text);
  else
    run.output.text(*stored.text);
  return kDone;
}

int show_running_config(const invocation& run) {
  const selection chosen = select_configured(run);
  if (chosen.code != kDone) return chosen.code;
  if (run.output.is_structured())
    return record_commands(run.output, chosen) ? chosen.result_of(kDone) : int{kServiceFailed};
  const auto text = configuration_text(run, chosen);
  if (!text) return kServiceFailed;
  run.output.text(*text);
  return chosen.result_of(kDone);
}

int copy_running_config(const invocation& run) {
  const bool is_startup = run.line.file.empty();
  if (is_startup && is_waiting_for_confirmation(run.session, run.output)) return kUsage;
  const std::string path = is_startup ? startup_file(run.session) : run.line.file;
  if (path.empty()) {
    run.output.complain(kNoPlaceForStartup);
    return kUsage;
  }
  const selection chosen = select_configured(run);
  if (chosen.code != kDone) return chosen.code;
  const auto text = configuration_text(run, chosen);
  if (!text) return kServiceFailed;
  if (path == "-") {
    run.output.text(*text);
    return kDone;
  }
  std::string fault = is_startup ? std::string() : refuse_to_replace(path);
  if (fault.empty()) {
    int error = is_startup ? make_directories_of(path) : 0;
    if (error == 0) error = write_file(path, *text);
    fault = write_fault(path, error);
  }
  if (!fault.empty()) {
    run.output.complain(fault);
    return kUsage;
  }
  if (is_startup && !session_save_startup()) return kServiceFailed;
  run.output.text(written_sentence(path));
  return kDone;
}

constexpr display kRunningConfigShown = {kRunningConfigDisplay, {}, "running_config", false, false, "commands"};
constexpr display kStartupConfigShown = {kStartupConfigDisplay, {}, "startup_config", false, false, "commands"};

// clang-format off
constexpr command kConfigurationRows[] = {
    {"show running-config", "Current settings as commands", show_running_config, kRunningConfigShown},
    {"show running-config interface RANGE", "Current settings of a range", show_running_config, kRunningConfigShown},
    {"show startup-config", "Stored settings as commands", show_startup_config, kStartupConfigShown},
    {"copy running-config startup-config", "Store the settings under the switch's name", copy_running_config, kSentences, nullptr, kEveryMode, command_effect::writes_file},
    {"write", "Store the settings under the switch's name", copy_running_config, kSentences, nullptr, kEveryMode, command_effect::writes_file},
    {"copy startup-config running-config", "Run the commands of the startup-config", nullptr, kSentences},
    {"copy FILE running-config", "Run the commands of a file", nullptr, kSentences},
    {"copy running-config FILE", "Write the settings to a file", copy_running_config, kSentences, nullptr, kEveryMode, command_effect::writes_file},
};
// clang-format on

constexpr word_help kConfigurationWords[] = {
    {"copy", "Write settings to a file, or load them"},
    {"running-config", "Current settings"},
    {"startup-config", "Stored settings"},
    {"write", "Store the settings as the startup-config"},
};

}  // namespace

constexpr command_group kConfigurationCommands = {kConfigurationRows, kConfigurationWords};

}  // namespace host
