// How the ports of a simulated switch operate: by their settings, limited by what the device at the other end of the
// link agrees to.
#pragma once

#include "switch/model.h"

namespace host {

// Makes a port operate by its settings; `before` has the previous ones. A port that is disabled loses its link, one
// that is enabled again gets its previous link.
void follow_settings(interface& port, const port_settings& before);

// The same only for mode, speed, duplex and flow control.
void negotiate(interface& port);

}  // namespace host
