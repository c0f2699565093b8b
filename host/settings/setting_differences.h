// Differences between settings of interfaces, as commands.
#pragma once

#include "base/command_changes.h"
#include "switch/model.h"

namespace host {

command_changes difference_between(const command_list& before, const command_list& after);

// The commands of the running configuration for a port, and for a port that had other settings.
command_list commands_of(const interface& port);
command_list commands_with(interface port, const port_settings& settings);

// The changes of a port: for each setting the command before and the one after, also for defaults.
command_changes change_of(const interface& port, const port_settings& before);

}  // namespace host
