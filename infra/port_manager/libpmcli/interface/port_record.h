// The record of one port, as every display starts from it.
#pragma once

#include "platform/port_manager.h"
#include "support/scope.h"

namespace pmcli {

// Seconds that the port manager has to answer.
inline constexpr int32 kPortManagerTimeout = 60;

// Asks the port manager for the record of one port; null after the reason was printed.
heap_block<pm_port_info_t> fetch_port_record(mts_q_handle_t q, if_index_t if_index);

}  // namespace pmcli
