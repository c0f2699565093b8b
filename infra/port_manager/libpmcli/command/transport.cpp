#include "platform/mts.h"
#include "pmcli/command.h"

int32 pm_mts_recv_with_eintr(mts_q_handle_t q, mts_msg_ref_t* got, mts_recv_options_t* options) {
  int32 result;
  do {
    result = mts_recv(q, got, options);
  } while (result == -1 && mts_errno_get(q) == MTS_ERRNO_INTERRUPTED);
  return result;
}
