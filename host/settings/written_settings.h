// Settings as commands.
#pragma once

#include <string>
#include <vector>

#include "settings/settings.h"

namespace host {

// The commands that set a port to a value: one, or as many as a long list of VLANs needs. None when the setting has
// no command.
std::vector<std::string> commands_for(const setting& of, const setting_value& value);

}  // namespace host
