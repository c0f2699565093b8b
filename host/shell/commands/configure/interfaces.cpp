// The interfaces that settings are for.
#include "messages/calls/command_account.h"
#include "messages/calls/session.h"
#include "shell/commands/configure/own_connection.h"
#include "shell/commands/configure/setting_outcome.h"
#include "shell/commands/group.h"
#include "shell/library/command_queue.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "shell/platform/prompts.h"
#include "shell/session/modes.h"
#include "switch/range_text.h"

namespace host {
namespace {

configured_interfaces ranges_of(const std::vector<if_index_t>& interfaces) {
  configured_interfaces found;
  for (const auto& [first, last] : runs_of(interfaces)) {
    found.mask |= kind_of(first).mask;
    found.ranges.push_back({first, last});
  }
  return found;
}

int choose_interfaces(const invocation& run) {
  const command_queue q;
  command_account account(q.handle);
  command_parameters parameters(run.session.library, run.session.user, q.handle, kNoDisplayId);
  session_begin_changes(words_of_command(run.line));
  const interfaces_before before(run);
  const selection chosen = select_or_create(parameters, run.line.range);
  before.report();
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  if (chosen.code != kDone) {
    leave_interfaces(run.session);  // later settings must not apply to the interfaces chosen before
    return chosen.code;
  }
  run.session.configured = ranges_of(chosen.interfaces);
  run.session.mode = kInterfaceMode;
  return kDone;
}

int delete_interfaces(const invocation& run) {
  if (!may_delete(run)) return kNotPermitted;
  const command_queue q;
  command_account account(q.handle);
  command_parameters parameters(run.session.library, run.session.user, q.handle, kNoDisplayId);
  session_begin_changes(words_of_command(run.line));
  const interfaces_before before(run);
  const selection deleted = delete_named(parameters, run.line.range, run.session.num_files > 0);
  before.report();
  if (!deleted.complaint.empty()) run.output.complain(deleted.complaint);
  if (deleted.code != kDone) return deleted.code;
  leave_interfaces(run.session);
  return kDone;
}

// clang-format off
constexpr command kChosenInterfaceRows[] = {
    {"interface RANGE", "Choose interfaces, creating missing loopbacks and sub-interfaces", choose_interfaces, kSentences, nullptr, kConfigureMode | kInterfaceMode, command_effect::settings},
    {"no interface RANGE", "Delete loopbacks and sub-interfaces of ports", delete_interfaces, kSentences, nullptr, kConfigureMode | kInterfaceMode, command_effect::settings},
};
// clang-format on

}  // namespace

constexpr command_group kChosenInterfaceCommands = {kChosenInterfaceRows, {}};

}  // namespace host
