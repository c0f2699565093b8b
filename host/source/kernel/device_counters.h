// The counters of all devices, without the rest of what the kernel reports about them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "source/kernel/netlink.h"
#include "switch/kernel_device.h"

namespace host {

struct counted_device {
  uint32 number = 0;  // the kernel's index
  std::string name;
  device_counters counted;
};

// Sorted by number. Names are read before and after the counters: nothing when a device was added, removed or renamed
// meanwhile, and from a kernel that does not support the requests. Throws kernel_error when no socket can be opened.
std::optional<std::vector<counted_device>> read_device_counters();

}  // namespace host
