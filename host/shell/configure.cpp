// The configuration: its modes, settings for the chosen interfaces, and taking the last one back.
#include <algorithm>
#include <array>
#include <string>

#include "client/setting_results.h"
#include "shell/commands.h"
#include "shell/interface_kinds.h"
#include "shell/interface_ranges.h"
#include "shell/output/command_output.h"
#include "shell/selection.h"
#include "shell/setting_outcome.h"
#include "shell/shell.h"
#include "shell/way_of_user.h"
#include "switch/change_journal.h"

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
    case token_value::fixed: number = token.fixed; return &number;
    case token_value::number: number = line.number.value_or(0); return &number;
    case token_value::half_number:
      values.half_number = static_cast<uint16>(line.number.value_or(0));
      return &values.half_number;
    case token_value::text: values.text = line.argument; return values.text.data();
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

// Ranges of interfaces that follow each other, by kind.
std::vector<configured_ranges> ranges_by_kind(const std::vector<if_index_t>& interfaces) {
  std::vector<configured_ranges> found;
  for (const interface_kind& kind : all_kinds()) {
    configured_ranges of_kind{&kind, {}};
    for (const auto& [first, last] : runs_of(interfaces)) {
      if (&kind_of(first) == &kind) of_kind.ranges.push_back({first, last});
    }
    if (!of_kind.ranges.empty()) found.push_back(std::move(of_kind));
  }
  return found;
}

}  // namespace

int configure(const invocation& run) {
  run.session.mode = kConfigureMode;
  return kDone;
}

int choose_interfaces(const invocation& run) {
  const command_queue q;
  command_parameters parameters(run.session.who, q.handle, kNoDisplayId);
  const selection chosen = select_named(run.session, parameters, run.line.spans);
  if (!chosen.complaint.empty()) run.output.complain(chosen.complaint);
  if (chosen.code != kDone) return chosen.code;
  run.session.configured = ranges_by_kind(chosen.interfaces);
  run.session.mode = kInterfaceMode;
  return kDone;
}

int leave_configuration(const invocation& run) {
  run.session.mode = kExecMode;
  run.session.configured.clear();
  return kDone;
}

int leave_mode(const invocation& run) {
  if (run.session.mode == kExecMode) return leave(run);
  run.session.mode = run.session.mode == kInterfaceMode ? kConfigureMode : kExecMode;
  run.session.configured.clear();
  return kDone;
}

int set_ports(const invocation& run) {
  if (!may_go_on(run)) return kNotPermitted;
  const command_queue q;
  begin_changes();
  take_setting_results();
  int32 worst = 0;
  for (const configured_ranges& of_kind : run.session.configured) {
    for (std::span<const vsh_intf_mono_range_t> left = of_kind.ranges; !left.empty();) {
      command_parameters parameters(run.session.who, q.handle, kNoDisplayId);
      token_values values;
      add_tokens(run.line, parameters, values);
      const auto block = left.first(std::min<std::size_t>(left.size(), PARAM_MAX_RANGES));
      worst = worse(worst, run.session.library.set_port_config(parameters.for_ranges(of_kind.kind->mask, block)));
      left = left.subspan(block.size());
    }
  }
  run.output.flush();
  const setting_results results = take_setting_results();
  record_refusals(run.output, results.ports);
  return exit_code_of(worst, results);
}

int undo(const invocation& run) {
  if (!may_undo(run)) return kNotPermitted;
  const changes_back made = take_changes_back(the_machine());
  if (made.restored.empty() && made.refused.empty()) {
    run.output.complain("there is no setting to take back.");
    return kUsage;
  }
  if (!made.restored.empty()) run.output.text("Taken back for " + range_text(made.restored) + ".\n");
  std::vector<pm_port_cfg_status_t> refused;
  for (const auto& [if_index, status] : made.refused) refused.push_back({if_index, status});
  return report_refusals(run, "undo", refused);
}

}  // namespace host
