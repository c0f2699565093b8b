#include "command/frame.h"

#include <cstdio>

namespace pmcli {

bool refused_on_standby(const paraminfo_t* param) {
  if (param->sup_state != SYSMGR_SUPSTATE_STANDBY) return false;
  std::puts("This command is not enabled on Standby SUP.");
  return true;
}

cmd_rx_handle_t* obtain_output(paraminfo_t* param) {
  cmd_rx_handle_t* const rx = cmd_paraminfo_to_rxhandle(param);
  if (rx == nullptr) std::puts("cmd_paraminfo_to_rxhandle failed ");  // the trailing blank is intended
  return rx;
}

const param_arg_t* find_argument(const paraminfo_t* param, uint8 index) {
  const param_arg_t* const argument = param->arg_list[index];
  return argument != nullptr && argument->arg != nullptr ? argument : nullptr;
}

}  // namespace pmcli
