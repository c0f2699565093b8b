// The kernel's table of network devices.
#pragma once

#include <cstdio>

#include "platform/ip_statistics.h"

namespace host {

// Reads a device's counters from a table in the form of /proc/net/dev, their low 32 bits. Returns false and leaves the
// record as it was when there is no such device or its row is not complete.
bool read_device_counters(std::FILE* table, const char* device, pm_proc_net_dev_stats_t* stats);

}  // namespace host
