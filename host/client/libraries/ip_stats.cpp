// libip_stats.so: the IP statistics library.
#include "client/library_functions.h"

// 1 is success.
extern "C" {

int32 ip_get_loopback_counters(mts_q_handle_t q, if_index_t if_index, ip_if_stats* stats) {
  return host::get_loopback_counters(q, if_index, stats);
}

int32 ip_clear_loopback_counters(uint32, if_index_t if_index) { return host::clear_loopback_counters(if_index); }

}  // extern "C"
