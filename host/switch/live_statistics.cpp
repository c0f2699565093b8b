#include "switch/live_statistics.h"

#include <algorithm>

#include "platform/platform_data.h"
#include "switch/clock.h"
#include "switch/if_index_layout.h"
#include "switch/kernel_device.h"
#include "switch/source.h"

namespace host {
namespace {

uint32 now_sec() { return static_cast<uint32>(clock_now()); }

bool is_management(const interface& port) { return take_apart(port.if_index).type == IF_TYPE_MGMT; }

bool refresh_from_device(interface& port) {
  const std::string device = management_device(the_machine(), port.if_index);
  const auto counted = kernel_counters(device);
  if (counted) take_device_counters(*counted, kernel_rates(device), port.stats);
  return counted.has_value();
}

}  // namespace

void take_device_counters(const device_counters& counted, const device_rates& rates, statistics& stats) {
  const uint64 multicast = std::min(counted.rx_multicast, counted.rx_packets);
  stats.in = {.bytes = counted.rx_bytes,
              .unicast_packets = counted.rx_packets - multicast,
              .multicast_packets = multicast,
              .errors = counted.rx_errors,
              .discards = counted.rx_dropped};
  stats.out = {.bytes = counted.tx_bytes,
               .unicast_packets = counted.tx_packets,
               .errors = counted.tx_errors,
               .discards = counted.tx_dropped};
  stats.errors = {.crc = counted.rx_frame_errors,
                  .collisions = counted.tx_collisions,
                  .lost_carrier = counted.tx_carrier_errors,
                  .compressed = counted.rx_compressed,
                  .receive_fifo = counted.rx_fifo_errors,
                  .send_fifo = counted.tx_fifo_errors};
  stats.in_bytes_per_second = rates.rx_bytes;
  stats.in_packets_per_second = rates.rx_packets;
  stats.out_bytes_per_second = rates.tx_bytes;
  stats.out_packets_per_second = rates.tx_packets;
}

bool refresh_statistics(interface& port) {
  if (is_management(port) && refresh_from_device(port)) return true;
  return the_source().update_statistics(port, now_sec());
}

bool clear_statistics(interface& port) {
  const bool is_device = is_management(port) && clear_kernel_counters(management_device(the_machine(), port.if_index));
  if (!is_device && !refresh_statistics(port)) return false;
  the_source().clear_counters(port, now_sec());
  statistics& stats = port.stats;
  stats.in = {};
  stats.out = {};
  stats.errors = {};
  stats.rate_ring = {};
  stats.counted_sec = 0;
  stats.last_clear_sec = now_sec();
  stats.is_cleared_here = true;
  return true;
}

std::string management_device(const machine& of, if_index_t if_index) {
  const uint32 port = take_apart(if_index).port;
  if (of.chassis_type == CHASSIS_17) return "eth" + std::to_string(port + 1);
  return of.chassis_type == CHASSIS_22 && port == 1 ? of.mgmt_device2 : of.mgmt_device;
}

}  // namespace host
