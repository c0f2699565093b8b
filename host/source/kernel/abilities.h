// Capabilities and settings of a port, from the link modes and pause settings that the kernel reports.
#pragma once

#include "source/kernel/links.h"

namespace host {

// Sets MTU limits, speeds, duplex and flow control, operational and configured, of an interface whose state is set.
void set_abilities(const kernel_link& link, interface& port);

}  // namespace host
