/* Counter displays of Ethernet ports and port-channels, which the command library itself does not have. */
#ifndef SIBLING_PORT_COUNTERS_H
#define SIBLING_PORT_COUNTERS_H

#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Show handlers: `arg` of argument 0 points to the if_index_t of the interface. They flush and return 0. Failures are
 * printed.
 */

/* All counters, the layer-3 ones last; only those of a sub-interface. */
uint32 sibling_show_all_counters(paraminfo_t* param);

/* A row of the storm-control table. A sub-interface has none. */
uint32 sibling_show_storm_control(paraminfo_t* param);

/* A row of the brief rates with values that are bound. A sub-interface has none. */
uint32 sibling_show_rates(paraminfo_t* param);

#ifdef __cplusplus
}
#endif
#endif
