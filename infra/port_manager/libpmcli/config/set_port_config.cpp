// The handler of the commands that set one attribute of ports.

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "config/config_command.h"
#include "config/failure_report.h"
#include "config/layer_query.h"
#include "config/send_setting.h"
#include "config/switchport_commands.h"
#include "platform/mts.h"
#include "pm/port_attributes.h"
#include "pmcli/command.h"
#include "pmcli/config.h"
#include "pmcli/displays.h"
#include "support/errors.h"

using namespace pmcli;

namespace {

bool is_keyword_last(const config_command& command) { return command.num_behind() == 1; }

struct keyword;
using keyword_rule = outcome (*)(const config_command& command, const keyword& row);

// A keyword, the TLV that it becomes, and its values.
struct keyword {
  uint32 token;
  uint8 type;
  uint8 length;
  uint32 plain;
  uint32 no;
  keyword_rule rule;
};

outcome fixed(const config_command& command, const keyword& row) {
  return send_setting({row.type, row.length, command.is_no ? row.no : row.plain});
}

bool is_confirmed(const config_command& command, const char* consequence) {
  std::puts(consequence);
  return pm_confirm_response("Do you wish to continue(y/n)?", command.param) != 0;
}

outcome shutdown(const config_command& command, const keyword& row) {
  if (command.kind == IF_TYPE_MGMT && !command.is_no && is_keyword_last(command) &&
      !is_confirmed(command, "Shutting down this interface will drop all telnet and SSH sessions."))
    return end_command(1);
  return fixed(command, row);
}

outcome out_of_service(const config_command& command, const keyword& row) {
  if (!command.is_no && is_keyword_last(command) &&
      !is_confirmed(command,
                    "Putting an interface into out-of-service will cause its shared resource configuration to revert "
                    "to default"))
    return end_command(0);  // unlike a shutdown that is not confirmed: intended
  return fixed(command, row);
}

outcome port_down_on_link_failure(const config_command& command, const keyword& row) {
  if (command.is_no && command.num_behind() > 2) return refuse("'no' option is not supported with this command");
  const outcome setting = fixed(command, row);
  if (command.param->vsh_debug_flag != 0)
    std::printf("%s: Debug - port dwon on link failure state %s \n", "pm_cli_set_port_config",  // "dwon" is intended
                port_down_on_link_failure_string(setting.setting.number));
  return setting;
}

bool is_switchport_kind(if_index_type_t kind) {
  constexpr if_index_type_t kKinds[] = {IF_TYPE_ETHERNET_L3, IF_TYPE_VETHERNET, IF_TYPE_SATELLITE, IF_TYPE_PORT_CHANNEL,
                                        IF_TYPE_ETH_PORT_CHANNEL};
  return std::find(std::begin(kKinds), std::end(kKinds), kind) != std::end(kKinds);
}

bool needs_layer(const config_command& command) {
  return !command.is_no && (command.kind == IF_TYPE_ETHERNET_L3 || command.kind == IF_TYPE_ETH_PORT_CHANNEL ||
                            command.kind == IF_TYPE_VETHERNET);
}

outcome switchport(const config_command& command, const keyword& row) {
  if (command.num_behind() > 1) {
    if (needs_layer(command) && !all_layers_known(command)) return end_command(1);
    return read_switchport_command(command);
  }
  if (!is_switchport_kind(command.kind)) return refuse("Error: command not supported on interface type");
  return fixed(command, row);
}

constexpr keyword kKeywords[] = {
    // token, TLV type, length, plain, no, rule
    {TOKEN_SHUTDOWN, PM_CFG_PORT_STATE, 1, 2, 1, shutdown},
    {TOKEN_OUT_OF_SERVICE, PM_CFG_SERVICE_STATE, 4, 1, 0, out_of_service},
    {TOKEN_ATTRIBUTE_31, PM_CFG_31, 4, 1, 2, fixed},
    {TOKEN_PORT_DOWN_ON_LINK_FAILURE, PM_CFG_PORT_DOWN_ON_LINK_FAILURE, 4, 3, 4, port_down_on_link_failure},
    {TOKEN_SWITCHPORT, PM_CFG_SWITCHPORT, 4, 2, 3, switchport},
};

outcome read_keyword(const config_command& command) {
  const uint32 token = command.keyword();
  const auto found = std::find_if(std::begin(kKeywords), std::end(kKeywords),
                                  [token](const keyword& row) { return row.token == token; });
  if (found != std::end(kKeywords)) return found->rule(command, *found);
  std::printf("error: invalid configuration %d on interface\n", static_cast<int32>(token));
  return end_command(1);
}

int32 report_request_failure(mts_q_handle_t q, int32 error) {
  if (error == -1) {
    vsh_print_mts_error_message(VSH_MTS_ERROR_PORT_CONFIG, mts_errno_get(q));
  } else {
    std::printf("error: %s\n", system_error_text(error));
    std::printf("error: 0x%x\n", static_cast<uint32>(error));
  }
  return 1;
}

int32 send_and_report(const config_command& command, std::span<const if_index_range_t> ranges,
                      const port_setting& setting) {
  const auto tlv = make_tlv(setting);
  if (tlv == nullptr) return 1;
  pm_port_cfg_status_t* answer = nullptr;
  uint32 num_ports = 0;
  const int32 error = apply(command.param, ranges, *tlv, &answer, &num_ports);
  const heap_block<pm_port_cfg_status_t> results(answer);
  if (error != 0) return report_request_failure(command.param->q, error);
  return report_failures(command.param, {answer, answer != nullptr ? num_ports : 0}) ? 0 : 1;
}

}  // namespace

int32 pm_cli_set_port_config(paraminfo_t* param) {
  if (param == nullptr) return 1;
  if (param->ascii_gen != 0) return 0;
  const auto command = read_config_command(param);
  if (!command) {
    std::puts("error: token id list does not contain interface range");
    return 1;
  }
  const auto ranges = copy_ranges(command->ranges);
  if (ranges == nullptr) return 1;
  const outcome read = read_keyword(*command);
  if (!read.is_to_send) return read.result;
  return send_and_report(*command, {ranges.get(), command->ranges.size()}, read.setting);
}
