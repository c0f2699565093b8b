// Access mode, the library's own step of macros.

#include <cstdio>

#include "config/conf_ranges.h"
#include "config/config_command.h"
#include "config/send_setting.h"
#include "platform/vsh.h"
#include "pmcli/config.h"
#include "pmcli/displays.h"

namespace pmcli {

const intf_range_t* find_conf_ranges(const paraminfo_t* param) {
  for (uint8 i = 0; i < param->parameter_count && i < PARAM_MAX_ARGS; ++i) {
    const param_arg_t* const argument = param->arg_list[i];
    if (argument != nullptr && argument->token_id == TOKEN_CONF_INTERFACES && argument->arg != nullptr)
      return static_cast<const intf_range_t*>(argument->arg);
  }
  std::puts("error: token id list does not contain CONF_INTF");
  return nullptr;
}

}  // namespace pmcli

using namespace pmcli;

int32 pm_cli_set_eth_switchport_mode_access(paraminfo_t* param, pm_port_cfg_status_t** cfg_status, uint32* num_ports) {
  if (is_vsan_restricted(param)) {
    std::puts("error: port mode configuration not allowed");
    return PM_CLI_NOT_PERMITTED;
  }
  const intf_range_t* const argument = find_conf_ranges(param);
  if (argument == nullptr) return 1;
  const auto ranges = ranges_of(*argument);
  const auto copy = copy_ranges(ranges);
  if (copy == nullptr) return 1;
  const auto tlv = make_tlv({PM_CFG_PORT_MODE, 4, PM_PORT_MODE_ACCESS});
  if (tlv == nullptr) return 1;
  return apply(param, {copy.get(), ranges.size()}, *tlv, cfg_status, num_ports);
}
