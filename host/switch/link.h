// Changes of a port's link while the switch runs.
#pragma once

#include "switch/model.h"

namespace host {

// Gives the link of a port another state (PM_PORT_STATE_*) and reason. A change of state is stored with its time, so
// that the traffic of the port follows it.
void set_link(interface& port, uint8 state, uint8 reason);

}  // namespace host
