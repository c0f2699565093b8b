// Settings that the command library does not make: VLANs, flow control, membership of port-channels.
#include "messages/calls/host_settings.h"

#include <span>
#include <vector>

#include "base/text_argument.h"
#include "messages/calls/session.h"
#include "platform/vsh.h"
#include "settings/wire.h"
#include "shell/commands/configure/own_connection.h"
#include "shell/commands/configure/setting_commands.h"
#include "shell/commands/configure/setting_outcome.h"
#include "shell/library/command_queue.h"
#include "shell/output/command_output.h"
#include "shell/session/invocation.h"

namespace host {
namespace {

std::vector<uint16> vlans_in(std::span<const vlan_span> spans) {
  std::vector<uint16> vlans;
  for (const vlan_span& span : spans)
    for (uint32 id = span.first; id <= span.last; ++id) vlans.push_back(static_cast<uint16>(id));
  return vlans;
}

setting_value value_of(const command_line& line) {
  const setting& of = *line.what->sets;
  const setting_form& form = *line.what->form;
  if (of.kind == setting_kind::vlans) {
    if (form.kind == form_kind::argument) return vlans_in(line.vlans);
    return form.value != 0 ? every_vlan() : std::vector<uint16>();
  }
  if (form.kind == form_kind::usual) return usual_value(of, interface{});
  if (form.kind == form_kind::argument) return line.number.value_or(0) | form.value;
  return form.value;
}

std::vector<std::byte> octets_of(const command_line& line) {
  const setting_form& form = *line.what->form;
  const auto action = form.kind == form_kind::argument ? static_cast<vlan_action>(form.value) : vlan_action::set;
  return octets_of(*line.what->sets, value_of(line), action);
}

std::vector<if_index_range_t> ranges_of(const shell& session) {
  std::vector<if_index_range_t> ranges;
  for (const vsh_intf_mono_range_t& range : session.configured.ranges)
    ranges.push_back({range.lower_if_index, range.upper_if_index});
  return ranges;
}

}  // namespace

int set_ports_of_host(const invocation& run) {
  const std::string setting = words_of_command(run.line);
  const ports_before before(run);
  if (!may_go_on(run)) return before.report(setting, {}, kUnconfirmed), kNotPermitted;
  const command_queue q;
  command_account account(q.handle);
  session_begin_changes(setting);
  const int32 error =
      set_host_setting(q.handle, ranges_of(run.session), run.line.what->sets->type, octets_of(run.line));
  before.report(setting, account.settings.ports, reason_of_silence(0, account.settings));
  if (error != 0) {
    vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q.handle));
    return kServiceFailed;
  }
  return report_refusals(run, run.line.text, account.settings.ports);
}

}  // namespace host
