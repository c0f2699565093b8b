// The common begin and end of this library's handlers.
#pragma once

#include <cstdio>

#include "platform/cmd_channel.h"
#include "platform/if_index.h"
#include "platform/paraminfo.h"

namespace sibling {

// The interface of a handler's call.
struct request {
  cmd_rx_handle_t* rx;
  mts_q_handle_t q;
  if_index_t if_index;
  bool may_see_counters;
};

// Calls `show` for the interface that argument 0 names, and flushes. `what` is shown when there is no output handle.
template <typename Show>
uint32 run_handler(paraminfo_t* param, const char* what, Show show) {
  if (param == nullptr || param->arg_list[0] == nullptr || param->arg_list[0]->arg == nullptr) return 0;
  if (param->sup_state == SYSMGR_SUPSTATE_STANDBY) {
    std::puts("This command is not enabled on Standby SUP.");
    return 0;
  }
  cmd_rx_handle_t* const rx = cmd_paraminfo_to_rxhandle(param);
  if (rx == nullptr) {
    std::printf("no output handle for the %s\n", what);
    return 0;
  }
  show(request{rx, param->q, *static_cast<const if_index_t*>(param->arg_list[0]->arg),
               param->user_mode_state != VSH_USER_MODE_RESTRICTED});
  cmd_prt_send(rx);
  return 0;
}

}  // namespace sibling
