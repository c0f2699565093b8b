// The sub-commands of switchport.
#pragma once

#include "config/config_command.h"
#include "config/setting.h"

namespace pmcli {

// What the sub-command behind the keyword comes to; what is wrong with it is printed.
outcome read_switchport_command(const config_command& command);

}  // namespace pmcli
