// The configuration: its modes, settings for the chosen interfaces, and taking the last one back.
#include <algorithm>
#include <array>
#include <string>

#include "client/command_account.h"
#include "settings/change_journal.h"
#include "shell/commands/configure/own_connection.h"
#include "shell/commands/configure/setting_outcome.h"
#include "shell/commands/handlers.h"
#include "shell/grammar/range_text.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "shell/platform/prompts.h"
#include "shell/session/shell.h"

namespace host {
namespace {

constexpr uint32 kNoDisplayId = 0;

// ---- The values of a setting's tokens, which must outlive the call.

struct token_values {
  std::array<uint32, MAX_SETTING_TOKENS> numbers{};
  uint16 half_number = 0;
  std::string text;
};

void* value_of(const setting_token& token, const command_line& line, uint32& number, token_values& values) {
  switch (token.holds) {
    case token_value::none: return nullptr;
    case token_value::of_form: number = line.what->form->value; return &number;
    case token_value::number: number = line.number.value_or(0); return &number;
    case token_value::half_number:
      values.half_number = static_cast<uint16>(line.number.value_or(0));
      return &values.half_number;
    case token_value::text: values.text = line.free_text; return values.text.data();
  }
  return nullptr;
}

void add_tokens(const command_line& line, command_parameters& parameters, token_values& values) {
  parameters.begin_setting(line.is_no);
  const setting_tokens& tokens = line.what->tokens;
  for (std::size_t i = 0; i < tokens.count; ++i)
    parameters.add_token(tokens.token[i].id, value_of(tokens.token[i], line, values.numbers[i], values));
}

int32 worse(int32 one, int32 other) { return one == kForbiddenSetting || one == 1 ? one : other; }

// ---- The chosen interfaces.

configured_interfaces ranges_of(const std::vector<if_index_t>& interfaces) {
  configured_interfaces found;
  for (const auto& [first, last] : runs_of(interfaces)) {
    found.mask |= kind_of(first).mask;
    found.ranges.push_back({first, last});
  }
  return found;
}

// Asks the command library for a setting of all ranges: one call for as many of them as an argument holds. A command
// that is refused or not confirmed sends nothing, and ends with its first call. Returns the worst result.
int32 set_ranges(const invocation& run, mts_q_handle_t q, const setting_results& results) {
  const kept_answers answers;
  const configured_interfaces& configured = run.session.configured;
  int32 worst = 0;
  for (std::span<const vsh_intf_mono_range_t> left = configured.ranges; !left.empty();) {
    command_parameters parameters(run.session.who, q, kNoDisplayId);
    token_values values;
    add_tokens(run.line, parameters, values);
    const auto block = left.first(std::min<std::size_t>(left.size(), PARAM_MAX_RANGES));
    worst = worse(worst, run.session.library.set_port_config(parameters.for_ranges(configured.mask, block)));
    if (!results.was_asked) break;
    left = left.subspan(block.size());
  }
  return worst;
}

}  // namespace

int configure(const invocation& run) {
  run.session.mode = kConfigureMode;
  return kDone;
}

namespace {

void leave_interfaces(shell& session) {
  session.configured = {};
  session.mode = kConfigureMode;
}

// Whether the interface mode is about one that is not there any more.
bool has_lost_interfaces(const shell& session) {
  const auto is_lost = [](const vsh_intf_mono_range_t& range) {
    return std::as_const(the_machine()).find(range.lower_if_index) == nullptr ||
           std::as_const(the_machine()).find(range.upper_if_index) == nullptr;
  };
  return std::any_of(session.configured.ranges.begin(), session.configured.ranges.end(), is_lost);
}

}  // namespace

void leave_lost_interfaces(shell& session) {
  if (has_lost_interfaces(session)) leave_interfaces(session);
}

int choose_interfaces(const invocation& run) {
  const command_queue q;
  command_account account(q.handle);
  command_parameters parameters(run.session.who, q.handle, kNoDisplayId);
  begin_changes(words_of_command(run.line));
  const interfaces_before before(run);
  const selection chosen = select_or_create(run.session, parameters, run.line.range);
  before.report();
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  if (chosen.code != kDone) {
    leave_interfaces(run.session);  // settings that follow must not go to those chosen before
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
  command_parameters parameters(run.session.who, q.handle, kNoDisplayId);
  begin_changes(words_of_command(run.line));
  const interfaces_before before(run);
  const selection deleted = delete_named(run.session, parameters, run.line.range, run.session.num_files > 0);
  before.report();
  if (!deleted.complaint.empty()) run.output.complain(deleted.complaint);
  if (deleted.code != kDone) return deleted.code;
  leave_interfaces(run.session);
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

int set_ports(const invocation& run) {
  const std::string setting = words_of_command(run.line);
  const ports_before before(run);
  if (!may_go_on(run)) return before.report(setting, {}, kUnconfirmed), kNotPermitted;
  const command_queue q;
  command_account account(q.handle);
  begin_changes(setting);
  const int32 worst = set_ranges(run, q.handle, account.settings);
  run.output.flush();
  before.report(setting, account.settings.ports, reason_of_silence(worst, account.settings));
  return exit_code_of(worst, account.settings);
}

int undo(const invocation& run) {
  const std::size_t num_steps = run.line.number.value_or(1);
  const std::size_t num_known = change_steps(the_machine()).size();
  if (num_known < num_steps) {
    run.output.complain(num_known == 0 ? "there is no setting to take back."
                                       : "there are only " + std::to_string(num_known) +
                                             " changes to take back. 'show changes' lists them.");
    return kUsage;
  }
  const ports_before before(run, changed_ports(the_machine(), num_steps));
  if (!may_undo(run, num_steps)) return before.report(run.line.text, {}, kUnconfirmed), kNotPermitted;
  int code = kDone;
  std::vector<pm_port_cfg_status_t> refused;
  for (std::size_t i = 0; i < num_steps && code == kDone; ++i) {
    const changes_made made = take_change_back(the_machine());
    if (!made.applied.empty()) run.output.text("Taken back for " + range_text(made.applied) + ".\n");
    for (const auto& [if_index, status] : made.refused) refused.push_back({if_index, status});
    code = report_refusals(run, "undo", refused);
  }
  before.report(run.line.text, refused);
  leave_lost_interfaces(run.session);
  return code;
}

}  // namespace host
