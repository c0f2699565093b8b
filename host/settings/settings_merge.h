// Settings that differ, setting by setting.
#pragma once

#include "switch/model.h"

namespace host {

// `now`, with each setting in which `to` differs from `from` as it is in `to`. The two sides of flow control are
// settings of their own; a list of VLANs is one.
port_settings merged_settings(port_settings now, const port_settings& from, const port_settings& to);

// Has the source make settings of a port that may differ in any number of ways. The source takes them one after the
// other, in the order in which commands would make them. When it refuses one, those before it are taken back, and the
// port is as it was. Returns 0, or the status of the refusal.
uint32 apply_in_steps(interface& port, const port_settings& wanted);

}  // namespace host
