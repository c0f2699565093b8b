// The functions of platform/startup_config.h: every command of this shell uses the running configuration.
#include "platform/startup_config.h"

uint32 acfg_pinfo_cfg_type_get(const paraminfo_t*) { return ACFG_RUNNING; }

const char* acfg_pinfo_startup_cfg_uri_prefix_get(const paraminfo_t*) { return "startup-config:"; }
