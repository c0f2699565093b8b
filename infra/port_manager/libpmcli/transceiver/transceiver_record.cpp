#include "transceiver/transceiver_record.h"

#include <algorithm>
#include <cstring>

#include "interface/port_record.h"
#include "platform/syserr.h"
#include "support/scope.h"

namespace pmcli {

int32 ask_transceiver(mts_q_handle_t q, if_index_t if_index, pm_fcot_res_t* record) {
  const if_index_range_t range{if_index, if_index};
  uint32 length = 0;
  pm_fcot_res_t* response = nullptr;
  const int32 error = pm_cmi_get_fcot_info(q, 1, 1, &range, &length, &response, kPortManagerTimeout);
  const heap_block<pm_fcot_res_t> block(response);
  if (error != 0) return error;
  if (response == nullptr || length == 0) return PM_ERR_GENERAL;
  std::memset(record, 0, sizeof *record);
  std::memcpy(record, response, std::min<std::size_t>(length, sizeof *record));
  return 0;
}

}  // namespace pmcli
