#include "sibling/port_capabilities.h"

#include <cstdio>

#include "platform/cmd_channel.h"
#include "platform/if_index.h"
#include "pmcli/interface.h"

[[gnu::visibility("default")]] uint32 sibling_show_port_capabilities(paraminfo_t* param) {
  if (param == nullptr || param->arg_list[0] == nullptr || param->arg_list[0]->arg == nullptr) return 0;
  if (param->sup_state == SYSMGR_SUPSTATE_STANDBY) {
    std::puts("This command is not enabled on Standby SUP.");
    return 0;
  }
  const if_index_t if_index = *static_cast<const if_index_t*>(param->arg_list[0]->arg);
  if (if_index_is_sub_intf(if_index)) return 0;
  cmd_rx_handle_t* const rx = cmd_paraminfo_to_rxhandle(param);
  if (rx == nullptr) {
    std::puts("no output handle for the capabilities");
    return 0;
  }
  pm_cli_common_capability_t capability{};
  if (pm_cli_get_port_capability(if_index, &capability) == 0) pm_cli_show_port_capabities(rx, &capability);
  cmd_prt_send(rx);
  return 0;
}
