// Settings that the command library does not make: VLANs, flow control, membership of port-channels.
#include "client/host_settings.h"

#include <cstring>
#include <vector>

#include "platform/vsh.h"
#include "service/port_manager_messages.h"
#include "shell/output/command_output.h"
#include "shell/setting_outcome.h"
#include "shell/shell.h"
#include "shell/way_of_user.h"
#include "shell/words.h"
#include "switch/change_journal.h"

namespace host {
namespace {

using octets = std::vector<std::byte>;

template <typename Record>
octets octets_of(const Record& record) {
  octets bytes(sizeof record);
  std::memcpy(bytes.data(), &record, sizeof record);
  return bytes;
}

// The VLANs of the line, all or none.
octets vlan_list_value(const command_line& line, const setting_token& token) {
  constexpr vlan_span kAll = {1, 4094};
  allowed_vlans_value value{};
  value.action = static_cast<uint8>(token.id);
  value.vlans.size = BITSET_BYTES;
  std::vector<vlan_span> spans;
  if (token.holds == token_value::text)
    spans = parse_vlans(line.argument).value_or(spans);
  else if (token.fixed != 0)
    spans = {kAll};
  for (const vlan_span& span : spans)
    for (uint32 id = span.first; id <= span.last; ++id) value.vlans.bits[id / 8] |= static_cast<uint8>(0x80U >> id % 8);
  return octets_of(value);
}

octets value_of(const command_line& line) {
  const setting_token& token = line.what->tokens.token[0];
  const uint32 number = token.holds == token_value::number ? line.number.value_or(0) : token.fixed;
  switch (line.what->host_setting) {
    case HOST_CFG_ALLOWED_VLANS: return vlan_list_value(line, token);
    case HOST_CFG_RECEIVE_PAUSE:
    case HOST_CFG_SEND_PAUSE: return octets_of(static_cast<uint8>(number));
    default: return octets_of(be16(static_cast<uint16>(number)));
  }
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
  begin_changes(setting);
  const int32 error =
      set_host_setting(q.handle, ranges_of(run.session), run.line.what->host_setting, value_of(run.line));
  before.report(setting, account.settings.ports, reason_of_silence(0, account.settings));
  if (error != 0) {
    vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(q.handle));
    return kServiceFailed;
  }
  return report_refusals(run, run.line.text, account.settings.ports);
}

}  // namespace host
