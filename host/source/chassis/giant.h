// A switch of many ports without a file, for tests and measurements.
#pragma once

#include <ctime>

#include "switch/clock.h"
#include "switch/model.h"

namespace host {

enum { kMaxGiantPorts = 10000 };

// A switch of this many Ethernet ports (at most kMaxGiantPorts), of kind 2 on cards in odd slots and of kind 26 on
// the others, in typical states: up, down for every usual reason, switched, trunking, routed, in port-channels. It also
// has the management port and the port-channels. The same number always gives the same switch; times count back from
// `now` (seconds since 1970).
machine make_giant(uint32 ports, std::time_t now = clock_now());

}  // namespace host
