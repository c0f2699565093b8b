// Ports that blink, to identify them on the machine.
#pragma once

#include <string>

#include "platform/types.h"

namespace host {

// Makes a device blink until stop_identifying() or the end of this process. Returns 0 or an errno, EOPNOTSUPP for a
// device that cannot.
int start_identifying(uint32 number, const std::string& device);

void stop_identifying(uint32 number);

bool is_identifying(uint32 number);

}  // namespace host
