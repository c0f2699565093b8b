// The sub-commands of switchport.
#pragma once

#include "config/config_command.h"
#include "config/setting.h"

namespace pmcli {

// Runs the sub-command after the keyword; errors in it are printed.
outcome read_switchport_command(const config_command& command);

}  // namespace pmcli
