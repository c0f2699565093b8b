// Merges settings one by one.
#pragma once

#include "switch/model.h"

namespace host {

// `now`, with each setting in which `to` differs from `from` as it is in `to`. The two sides of flow control are
// settings of their own; a list of VLANs is one.
port_settings merged_settings(port_settings now, const port_settings& from, const port_settings& to);

// Has the source apply several settings of a port, one by one, in the order of commands. When it refuses one, those
// before it are reverted and the port is unchanged. Returns 0, or the status of the refusal.
uint32 apply_in_steps(interface& port, const port_settings& requested);

}  // namespace host
