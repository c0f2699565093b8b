// Current statistics.
#pragma once

#include <string>

#include "switch/kernel_device.h"
#include "switch/model.h"

namespace host {

// Updates the statistics of one interface of the machine. A management port counts what its kernel
// device counts; everything else belongs to the source. False when the device is gone.
bool refresh_statistics(interface& port);

// Clears its counters and stores the time. Rates continue. False as above.
bool clear_statistics(interface& port);

// Makes statistics only from the counters of a device: all other counters become unknown. The kernel
// separates multicasts from the rest only where it receives, and broadcasts nowhere.
void take_device_counters(const device_counters& counted, const device_rates& rates, statistics& stats);

// The kernel device of a management port: that of the machine, or on chassis type 17 "eth" and the port's number
// from 1.
std::string management_device(const machine& of, if_index_t if_index);

}  // namespace host
