// The management port: a kernel device of the supervisor.
#pragma once

#include "platform/cmd_channel.h"
#include "platform/if_index.h"
#include "platform/ip_statistics.h"
#include "platform/types.h"

namespace pmcli {

// The name of the kernel device of a management port, at most 15 characters, terminated, into `size` bytes (16 hold
// any). The chassis type is asked once in the life of the process; one that cannot be read counts as 0.
void pm_get_mgmt_kernel_ifname(if_index_t if_index, char* buf, uint32 size);

// The kernel's counters of that device, into the caller's zeroed record. False when they cannot be read.
bool fetch_kernel_counters(if_index_t if_index, pm_proc_net_dev_stats_t* statistics);

// The traffic lines of a kernel device from its counters, or a line that says that there are none.
void show_device_counters(cmd_rx_handle_t* rx, const char* device);

// The same for the device of a management port.
void show_management_counters(cmd_rx_handle_t* rx, if_index_t if_index);

}  // namespace pmcli
