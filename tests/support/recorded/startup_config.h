// What the shell says of the configuration that a command is about.
#pragma once

#include <string>

#include "platform/startup_config.h"

namespace pmcli_test {

struct recorded_startup_config {
  uint32 config_type = ACFG_RUNNING;
  std::string startup_uri = "startup:";
};

}  // namespace pmcli_test
