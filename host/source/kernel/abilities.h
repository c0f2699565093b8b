// Capabilities and settings of a port, from the link modes and pause settings that the kernel reports.
#pragma once

#include "source/kernel/links.h"

namespace host {

// MTU limits, speeds, duplex and flow control, those that it has and those that it is set to, of an interface that has
// its state.
void set_abilities(const kernel_link& link, interface& port);

}  // namespace host
