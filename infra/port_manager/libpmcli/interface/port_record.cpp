#include "interface/port_record.h"

#include <cstdio>
#include <utility>

#include "platform/mts.h"
#include "platform/syserr.h"
#include "platform/vsh.h"
#include "support/errors.h"

namespace pmcli {

port_answer ask_port_record(mts_q_handle_t q, if_index_t if_index) {
  const if_index_range_t range{if_index, if_index};
  uint32 count = 0;
  pm_port_info_t* records = nullptr;
  const int32 error = pm_cmi_get_port_config(q, 1, 1, &range, &count, &records, kPortManagerTimeout);
  heap_block<pm_port_info_t> record(records);
  if (error != 0) return {nullptr, error};
  if (record == nullptr || count == 0) return {nullptr, PM_ERR_GENERAL};
  return {std::move(record), 0};
}

heap_block<pm_port_info_t> fetch_port_record(mts_q_handle_t q, if_index_t if_index) {
  port_answer answer = ask_port_record(q, if_index);
  if (answer.error == -1)
    vsh_print_mts_error_message(VSH_MTS_ERROR_PORT_CONFIG, mts_errno_get(q));
  else if (answer.error != 0)
    std::printf("error: %s\n", system_error_text(answer.error));
  return std::move(answer.record);
}

}  // namespace pmcli
