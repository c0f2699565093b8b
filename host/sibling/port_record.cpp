#include "sibling/port_record.h"

#include <cstdio>
#include <cstdlib>

#include "platform/syserr.h"
#include "platform/vsh.h"

namespace sibling {

port_record::port_record(const request& requested) {
  constexpr int32 kTimeoutSec = 60;
  const if_index_range_t range{requested.if_index, requested.if_index};
  uint32 count = 0;
  const syserr_t error = pm_cmi_get_port_config(requested.q, 1, 1, &range, &count, &record_, kTimeoutSec);
  if (error == -1)
    vsh_print_mts_error_message(VSH_MTS_ERROR_PORT_CONFIG, mts_errno_get(requested.q));
  else if (error != 0)
    std::printf("error: %s\n", syserr2str(error));
}

port_record::~port_record() { std::free(record_); }

}  // namespace sibling
