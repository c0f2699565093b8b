/* The detailed display of Ethernet ports and port-channels with the values computed from statistics. */
#ifndef SIBLING_DETAILED_BLOCK_H
#define SIBLING_DETAILED_BLOCK_H

#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Show handler: `arg` of argument 0 points to the if_index_t of the interface. Shows the common block, which lists the
 * members of a port-channel, with reliability, loads and the times since the link changed and the counters were
 * cleared, then the number of resets and the traffic of the last five minutes. Flushes and returns 0. Failures are
 * printed.
 */
uint32 sibling_show_detailed(paraminfo_t* param);

#ifdef __cplusplus
}
#endif
#endif
