// The record of a port's transceiver, as the port manager hands it over.
#pragma once

#include "platform/transceiver.h"

namespace pmcli {

// Asks for it. The record is zero where the answer is shorter. Returns 0 or the error of the call; an answer without a
// record is a general failure.
int32 ask_transceiver(mts_q_handle_t q, if_index_t if_index, pm_fcot_res_t* record);

}  // namespace pmcli
