// "undo".
#include <fmt/format.h>

#include "messages/calls/command_account.h"
#include "settings/change_journal.h"
#include "shell/commands/configure/own_connection.h"
#include "shell/commands/configure/setting_outcome.h"
#include "shell/commands/group.h"
#include "shell/grammar/range_text.h"
#include "shell/library/command_queue.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "shell/platform/prompts.h"
#include "shell/session/modes.h"

namespace host {
namespace {

int undo(const invocation& run) {
  const std::size_t num_steps = run.line.number.value_or(1);
  const std::size_t num_known = change_steps(the_machine()).size();
  if (num_known < num_steps) {
    run.output.complain(num_known == 0
                            ? "there is no change to undo."
                            : fmt::format("cannot undo {} changes: this session has {}. 'show changes' lists them.",
                                          num_steps, num_known));
    return kUsage;
  }
  const ports_before before(run, changed_ports(the_machine(), num_steps));
  if (!may_undo(run, num_steps)) return before.report(run.line.text, {}, kUnconfirmed), kNotPermitted;
  int code = kDone;
  std::vector<pm_port_cfg_status_t> refused;
  for (std::size_t i = 0; i < num_steps && code == kDone; ++i) {
    const changes_made made = take_change_back(the_machine());
    if (!made.applied.empty()) run.output.text(fmt::format("Undone for {}.\n", range_text(made.applied)));
    for (const auto& [if_index, status] : made.refused) refused.push_back({if_index, status});
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
