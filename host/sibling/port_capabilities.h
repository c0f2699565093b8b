/* The capability display of Ethernet ports, which the command library itself does not have. */
#ifndef SIBLING_PORT_CAPABILITIES_H
#define SIBLING_PORT_CAPABILITIES_H

#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Show handler: `arg` of argument 0 points to the if_index_t of an Ethernet port. Shows the capabilities that its line
 * card reports, and flushes. A sub-interface has no capabilities: nothing is shown. Returns 0.
 */
uint32 sibling_show_port_capabilities(paraminfo_t* param);

#ifdef __cplusplus
}
#endif
#endif
