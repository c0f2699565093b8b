// The VLANs in which spanning tree lets ports forward.
#pragma once

#include <vector>

#include "switch/model.h"

namespace host {

// The VLANs, ascending, in which a port forwards: those that it carries while it is up, except those that spanning tree
// or an error blocks.
std::vector<uint16> forwarding_vlans(const interface& port);

}  // namespace host
