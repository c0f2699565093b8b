// What the shell says of the configuration that a command is about.
#include "support/recording_state.h"

using namespace pmcli_test;

extern "C" {

uint32 acfg_pinfo_cfg_type_get(const paraminfo_t*) { return platform_for("acfg_pinfo_cfg_type_get").config_type; }

const char* acfg_pinfo_startup_cfg_uri_prefix_get(const paraminfo_t*) {
  return platform_for("acfg_pinfo_startup_cfg_uri_prefix_get").startup_uri.c_str();
}

}  // extern "C"
