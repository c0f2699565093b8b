// Modes: entering the configuration, and leaving modes and the shell.
#include "shell/session/modes.h"

#include "shell/commands/group.h"
#include "shell/output/command_output.h"

namespace host {
namespace {

int configure(const invocation& run) {
  run.session.mode = kConfigureMode;
  return kDone;
}

int configure_dry_run(const invocation& run) {
  if (run.session.edited) {
    run.output.complain("a dry run cannot begin while there is a candidate. Type 'end' to leave the candidate first.");
    return kUsage;
  }
  if (!begin_dry_run(run.session, run.session.num_files)) return kServiceFailed;
  run.session.mode = kConfigureMode;
  return kDone;
}

int leave(const invocation& run) {
  if (!may_leave_candidate(run.session)) return kUsage;
  run.session.is_leaving = true;
  return kDone;
}

int leave_configuration(const invocation& run) {
  if (!may_leave_candidate(run.session)) return kUsage;
  run.session.mode = kExecMode;
  run.session.configured = {};
  leave_dry_run(run.session);
  return kDone;
}

int leave_mode(const invocation& run) {
  if (run.session.mode == kExecMode) return leave(run);
  if (run.session.mode == kConfigureMode) return leave_configuration(run);
  leave_interfaces(run.session);
  return kDone;
}

// clang-format off
constexpr command kModeRows[] = {
    {"configure [terminal]", "Enter the configuration", configure, kSentences, nullptr, kExecMode},
    {"configure dry-run", "Check settings without changing anything", configure_dry_run, kSentences, nullptr, kExecMode, command_effect::dry_run},
    {"do COMMAND", "Run an exec command", nullptr, kSentences, nullptr, kConfigureMode | kInterfaceMode},
    {"end", "Leave the configuration", leave_configuration, kSentences, nullptr, kConfigureMode | kInterfaceMode},
    {"exit", "Leave the mode, or the shell", leave_mode, kSentences, nullptr, kEveryMode, command_effect::leaves},
    {"quit", "Leave the shell", leave, kSentences, nullptr, kEveryMode, command_effect::leaves},
};
// clang-format on

constexpr word_help kModeWords[] = {
    {"do", "Run an exec command"},
    {"dry-run", "Check settings without changing anything"},
    {"exit", "Leave the mode, or the shell"},
    {"quit", "Leave the shell"},
};

}  // namespace

constexpr command_group kModeCommands = {kModeRows, kModeWords};

}  // namespace host
