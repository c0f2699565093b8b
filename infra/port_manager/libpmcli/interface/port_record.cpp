#include "interface/port_record.h"

#include <cstdio>

#include "platform/mts.h"
#include "platform/syserr.h"
#include "platform/vsh.h"
#include "support/errors.h"

namespace pmcli {

heap_block<pm_port_info_t> fetch_port_record(mts_q_handle_t q, if_index_t if_index) {
  const if_index_range_t range{if_index, if_index};
  uint32 count = 0;
  pm_port_info_t* records = nullptr;
  int32 error = pm_cmi_get_port_config(q, 1, 1, &range, &count, &records, kPortManagerTimeout);
  heap_block<pm_port_info_t> record(records);
  if (error == 0 && (record == nullptr || count == 0)) error = PM_ERR_GENERAL;
  if (error == 0) return record;

  if (error == -1)
    vsh_print_mts_error_message(VSH_MTS_ERROR_PORT_CONFIG, mts_errno_get(q));
  else
    std::printf("error: %s\n", system_error_text(error));
  return nullptr;
}

}  // namespace pmcli
