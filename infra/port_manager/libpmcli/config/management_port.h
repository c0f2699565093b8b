// Settings that cannot be changed on the management port.
#pragma once

#include "config/config_command.h"

namespace pmcli {

// True when speed and duplex of this port may be changed from the console only, and the command comes from elsewhere;
// that is printed.
bool is_refused_off_console(const config_command& command);

// True when the management port cannot run at 1 Gbit/s, or its card is unknown; prints the reason.
bool is_gigabit_refused(const config_command& command);

}  // namespace pmcli
