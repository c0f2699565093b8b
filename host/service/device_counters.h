// The record of a kernel device for displays of management ports.
#pragma once

#include "platform/ip_statistics.h"
#include "switch/kernel_device.h"

namespace host {

// A counter that its member of 32 bits cannot hold is the largest value there.
pm_proc_net_dev_stats_t device_record(const device_counters& counted);

}  // namespace host
