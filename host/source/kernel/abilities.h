// What a port can do and is set to: from the link modes and the pause settings that the kernel tells.
#pragma once

#include "source/kernel/links.h"

namespace host {

// MTU limits, speeds, duplex and flow control, those that it has and those that it is set to, of an interface that has
// its state.
void set_abilities(const kernel_link& link, interface& port);

}  // namespace host
