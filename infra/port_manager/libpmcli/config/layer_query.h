// The layer check before the switchport sub-commands.
#pragma once

#include "config/config_command.h"

namespace pmcli {

// Asks the interface manager for the layer of every interface of the command. False at the first whose layer is
// unknown, which is printed; the layer itself decides nothing.
bool all_layers_known(const config_command& command);

}  // namespace pmcli
