/* Which configuration a command is about: the running one or the one of the next start. */
#ifndef PLATFORM_STARTUP_CONFIG_H
#define PLATFORM_STARTUP_CONFIG_H

#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { ACFG_RUNNING = 1, ACFG_STARTUP = 2 };

/* ACFG_RUNNING or ACFG_STARTUP. */
uint32 acfg_pinfo_cfg_type_get(const paraminfo_t* param);

/* The path of the startup configuration, owned by the shell. */
const char* acfg_pinfo_startup_cfg_uri_prefix_get(const paraminfo_t* param);

#ifdef __cplusplus
}
#endif
#endif
