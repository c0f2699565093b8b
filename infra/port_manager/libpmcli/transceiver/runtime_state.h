// The run-time state of a transceiver, as the port's line card knows it.
#pragma once

#include "platform/mts.h"

namespace pmcli {

// Asks the line card of a port and prints the state, or why there is none. Returns 0 when the line card answered,
// whatever the answer, else 1.
syserr_t print_transceiver_state(mts_q_handle_t q, if_index_t if_index);

}  // namespace pmcli
