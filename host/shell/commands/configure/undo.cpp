// "undo".
#include <fmt/format.h>

#include "messages/calls/session.h"
#include "shell/commands/configure/own_connection.h"
#include "shell/commands/configure/setting_outcome.h"
#include "shell/commands/group.h"
#include "shell/library/interface_kinds.h"
#include "shell/output/command_output.h"
#include "shell/session/modes.h"
#include "switch/range_text.h"

namespace host {
namespace {

int undo(const invocation& run) {
  const uint32 num_steps = run.line.number.value_or(1);
  const auto last = session_last_steps(num_steps);
  if (!last) return kServiceFailed;
  if (last->num_steps < num_steps) {
    run.output.complain(last->num_steps == 0
                            ? "there is no change to undo."
                            : fmt::format("cannot undo {} changes: this session has {}. 'show changes' lists them.",
                                          num_steps, last->num_steps));
    return kUsage;
  }
  const ports_before before(run, last->interfaces);
  if (!may_undo(run, last->interfaces)) return before.report(run.line.text, {}, kUnconfirmed), kNotPermitted;
  int code = kDone;
  std::vector<pm_port_cfg_status_t> refused;
  for (uint32 i = 0; i < num_steps && code == kDone; ++i) {
    const auto made = session_undo();
    if (!made) return kServiceFailed;
    if (!made->applied.empty()) run.output.text(fmt::format("Undone for {}.\n", range_text(made->applied)));
    refused.insert(refused.end(), made->refused.begin(), made->refused.end());
    code = report_refusals(run, "undo", refused);
  }
  before.report(run.line.text, refused);
  leave_lost_interfaces(run.session);
  return code;
}

// clang-format off
constexpr command kUndoRows[] = {
    {"undo [CHANGES]", "Undo the last settings, creations or deletions", undo, kSettingShown, nullptr, kEveryMode, command_effect::settings},
};
// clang-format on

constexpr word_help kUndoWords[] = {
    {"undo", "Undo the last settings, creations or deletions"},
};

}  // namespace

constexpr command_group kUndoCommands = {kUndoRows, kUndoWords};

}  // namespace host
