// The configuration: its modes, settings for the chosen interfaces, and taking the last one back.
#include <algorithm>
#include <array>
#include <string>

#include "client/setting_results.h"
#include "platform/syserr.h"
#include "shell/commands.h"
#include "shell/interface_kinds.h"
#include "shell/interface_ranges.h"
#include "shell/output/command_output.h"
#include "shell/output/schema.h"
#include "shell/selection.h"
#include "shell/shell.h"
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

// ---- What became of it.

const char* text_of(uint32 status) {
  const char* const text = syserr2str(static_cast<syserr_t>(status));
  return text != nullptr ? text : "";
}

constexpr uint32 tuple_id(uint32 type, uint16 tag) { return type << 24 | tag; }

// A record for each port that refused.
void report_refusals(command_output& output, const setting_results& results) {
  if (!output.is_structured()) return;
  for (const pm_port_cfg_status_t& port : results.ports) {
    const uint32 status = port.status;
    if (status == 0) continue;
    char name[64];
    output.begin_interface(sprintf_if_index(name, port.if_index));
    output.bind({tuple_id(CMD_TYPE_UINT32, kTagSettingStatus), &status});
    output.bind({tuple_id(CMD_TYPE_STRING, kTagSettingText), text_of(status)});
    output.end_interface();
  }
}

bool any_refused(const setting_results& results) {
  return std::any_of(results.ports.begin(), results.ports.end(),
                     [](const pm_port_cfg_status_t& port) { return port.status != 0; });
}

constexpr int32 kForbidden = -12;

int exit_code_of(int32 worst, const setting_results& results) {
  if (worst == kForbidden) return kNotPermitted;
  if (results.has_failed) return kServiceFailed;
  if (any_refused(results)) return kSomeInterfacesFailed;
  if (worst == 0) return kDone;
  return results.was_asked ? kSomeInterfacesFailed : kUsage;
}

int32 worse(int32 one, int32 other) { return one == kForbidden || one == 1 ? one : other; }

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
  report_refusals(run.output, results);
  return exit_code_of(worst, results);
}

int undo(const invocation& run) {
  const std::vector<if_index_t> restored = take_changes_back(the_machine());
  if (restored.empty()) {
    run.output.complain("there is no setting to take back.");
    return kUsage;
  }
  run.output.text("Taken back for " + range_text(restored) + ".\n");
  return kDone;
}

}  // namespace host
