/* Clearing counters: the functions of each owner of counters. Cleared counters start from 0. */
#ifndef PLATFORM_CLEAR_COUNTERS_H
#define PLATFORM_CLEAR_COUNTERS_H

#include "platform/if_index.h"
#include "platform/paraminfo.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The result for one interface. Wire format. */
typedef struct pm_clear_status_t {
  be32 if_index;
  be_int32 status; /* a system error; 0 is good */
} pm_clear_status_t;
static_assert(sizeof(pm_clear_status_t) == 8, "wire size");

/*
 * Clears the counters that the port manager keeps of `count` interfaces; the two other words are 1. Returns 0 and
 * stores a heap block that the caller frees: a byte with the number of entries, then the entries, not aligned; null is
 * an empty list. Otherwise -1 with the reason in mts_errno_get(), or a system error.
 */
int32 pm_clear_port_counters(mts_q_handle_t q, uint32 count, const if_index_t* if_indexes, uint32 clear,
                             uint8** status_list, uint32 wait);

/* Clears the counters of the kernel device of a management port. Not zero is success. */
int32 pm_clear_interface_counters(const char* device, if_index_t if_index, mts_q_handle_t q);

/* Clears those of a port-channel at the distributed statistics service; the last words are 1, 1 and 5. 0 is success. */
int32 dstats_clear_counters(mts_q_handle_t q, if_index_t if_index, uint32 scope, uint32 clear, uint32 timeout);

/* The port-channel after `current`; the first one after 0. Returns 0, or another value and stores nothing at the end.
 */
int32 pcmap_get_next_port_channel(if_index_t current, if_index_t* next);

/* The command of the Ethernet port-channel service that clears the channels which `param` names. 0 is success. */
int32 pm_cli_clear_ethernet_channel_counters(paraminfo_t* param);

/* "statscl_clear_port_client_stats" of the statistics client (STATCL_LIBRARY): one Ethernet port. 0 is success. */
typedef int32 (*statscl_clear_port_client_stats_fn)(if_index_t if_index);

/* "ip_clear_loopback_counters" of the IP statistics library (IP_STATS_LIBRARY). `zero` is 0. 1 is success. */
typedef int32 (*ip_clear_loopback_counters_fn)(uint32 zero, if_index_t if_index);

#ifdef __cplusplus
}
#endif
#endif
