// What is read of a device only for a command that needs it, and then once for the command: memory of modules by port,
// link faults and further counters by one dump for all ports.
#pragma once

#include <vector>

#include "source/kernel/device_map.h"
#include "source/kernel/ethtool.h"
#include "switch/source.h"

namespace host {

// Takes note of the devices that a command begins with. What was read of details before is dropped.
void note_devices(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped);

// Completes an interface (switch_source::complete). What the kernel does not tell stays as it is.
void read_details(interface& port, detail wanted);

// Whether the driver of an interface's device has a counter.
bool is_told_by_driver(if_index_t if_index, told_counter counter);

// Lets the further counters of an interface start from 0. Returns what they are now.
told_counters clear_details(const interface& port);

// Lets them start from what they were once, for this command.
void begin_details_at(if_index_t if_index, const told_counters& cleared);

}  // namespace host
