// The devices that a packet takes.
#pragma once

#include <set>
#include <vector>

#include "source/kernel/links.h"

namespace host {

// The numbers of a device and of those that carry it: its parent, the members of a bridge or bond, and theirs.
std::set<uint32> devices_below(const std::vector<kernel_link>& links, uint32 number);

}  // namespace host
