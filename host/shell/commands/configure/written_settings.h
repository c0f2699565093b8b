// Settings as the commands that make them.
#pragma once

#include <string>
#include <vector>

#include "settings/settings.h"

namespace host {

// The commands that set a port to a value: one, or as many as a long list of VLANs needs. None when no command makes
// the setting.
std::vector<std::string> commands_for(const setting& of, const setting_value& value);

}  // namespace host
