/* The message transport: requests to services and their answers, on the queue of the running command. */
#ifndef PLATFORM_MTS_H
#define PLATFORM_MTS_H

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32 mts_opc_t;      /* operation code of a request */
typedef uint32 mts_rr_token_t; /* joins an answer to its request; 0 is no token */

/* Node of the supervisor that runs the command. */
#define MTS_NODE_LOCAL 0xFE000000U

/* Service access points; that of the misc-info requests is at the node of a line card. */
enum { MTS_SAP_VLAN_MANAGER = 167, MTS_SAP_PORT_MANAGER = 179, MTS_SAP_PORT_MISC_INFO = 179 };

/* mts_errno_get(): the wait for an answer was interrupted by a signal; it may be taken up again. */
enum { MTS_ERRNO_INTERRUPTED = 4 };

/* The address of a request. */
typedef struct mts_addr_t {
  uint32 node;
  uint32 sap; /* service access point of the addressee */
} mts_addr_t;

/* The message that mts_recv() waits for. All members but version, timeout and rr_token are zero. */
typedef struct mts_recv_options_t {
  uint32 version;     /* always 1 */
  int32 non_blocking; /* 0: wait */
  int32 timeout;      /* seconds */
  mts_rr_token_t rr_token;
  int32 explicit_log;
  mts_opc_t opcode;
  mts_rr_token_t* rr_token_list;
  mts_opc_t* opcode_list;
  uint32 reserved;
} mts_recv_options_t;

/* Reference of a message that was sent or received. Zeroed, it refers to none; every call accepts it so. */
typedef struct mts_msg_ref_t {
  uint32 id;
  uint32 generation;
} mts_msg_ref_t;

/*
 * Sends a request of `size` bytes; the payload stays the caller's. Fills `sent`, which the caller drops exactly once.
 * The last two arguments are 0. Returns 0, or -1 with the reason in mts_errno_get().
 */
int32 mts_send(mts_q_handle_t q, const mts_addr_t* to, mts_opc_t opcode, void* payload, uint32 size,
               mts_msg_ref_t* sent, uint32 flags, uint32 priority);

/* The token under which the answer to a sent request is received; 0 for an empty reference. */
mts_rr_token_t mts_rr_token_get(const mts_msg_ref_t* sent);

/*
 * Waits for the answer that carries the token in `options`. Fills `got`, which the caller drops exactly once.
 * Returns 0, or -1 with the reason in mts_errno_get().
 */
int32 mts_recv(mts_q_handle_t q, mts_msg_ref_t* got, mts_recv_options_t* options);

/*
 * Why the last call on the queue failed; MTS_ERRNO_INTERRUPTED is an interrupted call. Good until the next mts_send()
 * or mts_recv(): an mts_drop() that succeeds leaves it alone, for a request is dropped before its failed mts_recv() is
 * reported.
 */
int32 mts_errno_get(mts_q_handle_t q);

/* Payload of a received message, owned by the message; null when it has none. */
void* mts_payload_get(const mts_msg_ref_t* got);

/* Size of a received message's payload in bytes. */
uint32 mts_payload_size(const mts_msg_ref_t* got);

/* Not zero when the service rejected the request instead of answering it. */
boolean mts_is_reject(const mts_msg_ref_t* got);

/* Releases a sent or received message. Returns 0, or -1 with the reason in mts_errno_get(). */
int32 mts_drop(mts_q_handle_t q, mts_msg_ref_t* message);

#ifdef __cplusplus
}
#endif
#endif
