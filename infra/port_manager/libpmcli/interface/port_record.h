// The record of one port, as every display starts from it.
#pragma once

#include "platform/port_manager.h"
#include "support/port_manager.h"
#include "support/scope.h"

namespace pmcli {

// The port manager's record of one port, or a null one and the error.
struct port_answer {
  heap_block<pm_port_info_t> record;
  int32 error;
};

// Requests it without printing. An answer without a record is a general failure.
port_answer ask_port_record(mts_q_handle_t q, if_index_t if_index);

// The same, for displays that cannot go on without a record: null after the reason was printed.
heap_block<pm_port_info_t> fetch_port_record(mts_q_handle_t q, if_index_t if_index);

}  // namespace pmcli
