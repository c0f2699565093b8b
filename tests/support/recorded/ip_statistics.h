// Counters of the management port, of the kernel's devices and of loopbacks.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/ip_statistics.h"

namespace pmcli_test {

struct recorded_ip_statistics {
  std::map<if_index_t, pm_if_stat> interface_counters;            // pm_get_interface_counters(); without: it returns 0
  std::map<std::string, pm_proc_net_dev_stats_t> kernel_devices;  // pm_get_proc_net_dev_stats(); without: -1
  std::vector<std::string> kernel_devices_asked;
  std::map<if_index_t, ip_if_stats> loopback_stats;
};

}  // namespace pmcli_test
