/* Transceivers with tags, which the command library shows as plain text only. */
#ifndef SIBLING_TRANSCEIVERS_H
#define SIBLING_TRANSCEIVERS_H

#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Show handlers: `arg` of argument 0 points to the if_index_t of an Ethernet port. Each shows the identity of the
 * port's transceiver; after it its diagnostics with thresholds, or its calibration constants. Return 0.
 */
uint32 sibling_show_transceiver(paraminfo_t* param);
uint32 sibling_show_transceiver_calibration(paraminfo_t* param);

#ifdef __cplusplus
}
#endif
#endif
