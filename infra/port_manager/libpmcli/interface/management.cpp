#include "interface/management.h"

#include <algorithm>
#include <cstdio>

#include "platform/ip_statistics.h"
#include "platform/platform_data.h"
#include "pmcli/interface.h"
#include "support/chassis.h"
#include "support/counter_pieces.h"
#include "support/text.h"

using namespace pmcli;

// A table, unlike a function, is bound when the library is loaded. Weak, because a platform may lack it.
extern "C" [[gnu::weak]] platform_runtime_param_t platform_runtime_param_array[PLATFORM_RUNTIME_PARAMS];

namespace {

using kernel_stats = pm_proc_net_dev_stats_t;

// Overrun and underrun show the dropped packets, which is intended.
constexpr counter_piece<kernel_stats, be32> kKernelCounters[] = {
    {"    %s packets input", &kernel_stats::rx_packets, tag::kernel_input_packets},
    {", %s bytes\n", &kernel_stats::rx_bytes, tag::kernel_input_bytes},
    {"    %s multicast frames", &kernel_stats::rx_multicast, tag::kernel_input_multicast_packets},
    {", %s compressed\n", &kernel_stats::rx_compressed, tag::kernel_input_compressed},
    {"    %s input errors", &kernel_stats::rx_errors, tag::kernel_input_errors},
    {", %s frame", &kernel_stats::rx_frame_errors, tag::kernel_input_frame_errors},
    {", %s overrun", &kernel_stats::rx_dropped, tag::kernel_input_overruns},
    {", %s fifo\n", &kernel_stats::rx_fifo_errors, tag::kernel_input_fifo_errors},
    {"    %s packets output", &kernel_stats::tx_packets, tag::kernel_output_packets},
    {", %s bytes\n", &kernel_stats::tx_bytes, tag::kernel_output_bytes},
    {"    %s underrun", &kernel_stats::tx_dropped, tag::kernel_output_underruns},
    {", %s output errors", &kernel_stats::tx_errors, tag::kernel_output_errors},
    {", %s collisions\n", &kernel_stats::tx_collisions, tag::kernel_output_collisions},
    {"    %s fifo", &kernel_stats::tx_fifo_errors, tag::kernel_output_fifo_errors},
    {", %s carrier errors\n", &kernel_stats::tx_carrier_errors, tag::kernel_output_carrier_errors},
};

constexpr uint32 kDeviceNameBytes = sizeof platform_runtime_param_t::mgmt_eth_intf_name;

// A chassis type that is read once; negative until then.
using cached_chassis_type = int32;

bool is_chassis(cached_chassis_type& cache, int32 type) {
  if (cache < 0) cache = static_cast<int32>(read_chassis_type());
  return cache == type;
}

// Counted from 0.
uint32 port_number(if_index_t if_index) {
  uint32 port = 0;
  if_index_get_port(if_index, &port);
  return port;
}

// The names of this platform's devices; empty when it is not in the table.
platform_runtime_param_t runtime_parameters() {
  const platform_runtime_param_t* const table = platform_runtime_param_array;
  const uint32 platform = get_platform_runtime_index();
  return table != nullptr && platform < PLATFORM_RUNTIME_PARAMS ? table[platform] : platform_runtime_param_t{};
}

struct device_name {
  explicit device_name(if_index_t if_index) { pm_get_mgmt_kernel_ifname(if_index, text, sizeof text); }
  char text[kDeviceNameBytes] = "";
};

}  // namespace

void pmcli::pm_get_mgmt_kernel_ifname(if_index_t if_index, char* buf, uint32 size) {
  static cached_chassis_type type_for_count = -1;
  static cached_chassis_type type_for_second = -1;

  if (is_chassis(type_for_count, CHASSIS_17)) {
    const auto number = static_cast<int32>(port_number(if_index) + 1);
    std::snprintf(buf, std::min(size, kDeviceNameBytes - 1), "%s%d", "eth", number);
    return;
  }
  const platform_runtime_param_t devices = runtime_parameters();
  const bool is_second = is_chassis(type_for_second, CHASSIS_22) && port_number(if_index) == 1;
  copy_text(buf, std::min(size, kDeviceNameBytes),
            is_second ? devices.mgmt_eth_intf_name2 : devices.mgmt_eth_intf_name);
}

bool pmcli::fetch_kernel_counters(if_index_t if_index, pm_proc_net_dev_stats_t* statistics) {
  return pm_get_proc_net_dev_stats(device_name(if_index).text, statistics) == 0;
}

void pmcli::show_device_counters(cmd_rx_handle_t* rx, const char* device) {
  pm_proc_net_dev_stats_t statistics{};
  if (pm_get_proc_net_dev_stats(device, &statistics) == 0)
    print_eth_port_counters(rx, &statistics);
  else
    std::puts("No counters available.");
}

void pmcli::show_management_counters(cmd_rx_handle_t* rx, if_index_t if_index) {
  show_device_counters(rx, device_name(if_index).text);
}

void print_eth_port_counters(cmd_rx_handle_t* rx_handle, pm_proc_net_dev_stats_t* stats) {
  if (stats != nullptr) print_counters(rx_handle, kKernelCounters, *stats);
}
