/* One source for C and C++: records on the wire through the functions of platform/wire.h. */
#ifndef TESTS_C_HEADERS_BOTH_H
#define TESTS_C_HEADERS_BOTH_H

#include "platform/clear_counters.h"
#include "platform/eth_statistics.h"
#include "platform/port_manager.h"
#include "platform/types.h"
#include "platform/wire.h"

/* Numbers whose bytes all differ. */
static inline void fill_port_record(pm_port_info_t* port) {
  be32_set(&port->if_index, 0x01020304);
  be16_set(&port->admin_rxbufsize, 0x2401);
}

static inline void fill_statistics(statscl_portcl_stats_msg_t* stats) {
  be64_set(&stats->mac.errors.input_errors, 0x0102030405060708);
}

static inline void fill_clear_status(pm_clear_status_t* port) { be_int32_set(&port->status, -2); }

static inline uint32 index_of(const pm_port_info_t* port) { return be32_get(port->if_index); }
static inline uint16 mtu_of(const pm_port_info_t* port) { return be16_get(port->admin_rxbufsize); }
static inline uint64 errors_of(const statscl_portcl_stats_msg_t* stats) {
  return be64_get(stats->mac.errors.input_errors);
}
static inline int32 status_of(const pm_clear_status_t* port) { return be_int32_get(port->status); }

#ifdef __cplusplus
/* Before C++20, too. */
constexpr be32 kConstantIndex = 0x01020304U;
static_assert(kConstantIndex == 0x01020304U && kConstantIndex.bytes[3] == 4, "a wire integer is a constant");
#endif

#endif
