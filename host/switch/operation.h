// How the ports of a switch that is its model alone operate: as they are set to, and as far as the device at the other
// end of their link agrees.
#pragma once

#include "switch/model.h"

namespace host {

// Makes a port operate by its settings; `before` is what it was set to. A port that is switched off loses its link, one
// that is switched on again gets the link that it had.
void follow_settings(interface& port, const port_settings& before);

// The same of mode, speed, duplex and flow control alone.
void negotiate(interface& port);

}  // namespace host
