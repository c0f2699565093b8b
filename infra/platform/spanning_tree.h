/* The spanning-tree service's client library, opened by name: in which VLANs a port forwards. */
#ifndef PLATFORM_SPANNING_TREE_H
#define PLATFORM_SPANNING_TREE_H

#include "platform/bitset.h"
#include "platform/mts.h"
#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

#define STP_LIBRARY "libstp.so"

/* One port of the answer. Wire format. */
typedef struct stp_port_state_t {
  be32 if_index;
  vlan_bitset_t forwarding;
} stp_port_state_t;
static_assert(sizeof(stp_port_state_t) == 520, "wire size");

/*
 * "stp_send_get_port_state": asks the service, on the queue, for `count` ports of a virtual device context; the
 * indexes, native, stay the caller's. Returns 0 and fills `sent`, which the caller drops exactly once; any other value
 * is a failure that sent nothing.
 */
typedef int32 (*stp_send_get_port_state_fn)(mts_q_handle_t q, uint32 vdc, uint32 count, if_index_t* ports,
                                            mts_msg_ref_t* sent);

/*
 * "stp_parse_get_port_state": takes the ports out of the answer, which stays the caller's and is not a rejection.
 * Returns 0 and stores a heap block of records that the caller frees, and their number. Any other value is a failure,
 * as for an answer without a payload; a block that was stored nevertheless is the caller's too.
 */
typedef int32 (*stp_parse_get_port_state_fn)(mts_msg_ref_t* got, stp_port_state_t** ports, uint32* count);

#ifdef __cplusplus
}
#endif
#endif
