#include "switch/live_statistics.h"

#include <algorithm>
#include <array>
#include <bit>

#include "platform/platform_data.h"
#include "switch/clock.h"
#include "switch/if_index_layout.h"
#include "switch/kernel_device.h"
#include "switch/source.h"

namespace host {
namespace {

uint32 now_sec() { return static_cast<uint32>(clock_now()); }

bool is_management(const interface& port) { return decode_index(port.if_index).type == IF_TYPE_MGMT; }

// Sets unknown counters of a record to 0.
template <typename Counters>
void make_known(Counters& counted) {
  auto all = std::bit_cast<std::array<counter, sizeof(Counters) / sizeof(counter)>>(counted);
  std::replace(all.begin(), all.end(), counter(), counter(0));
  counted = std::bit_cast<Counters>(all);
}

// A simulated port never has events that a kernel device does not count; packets other than multicasts are unicasts.
void complete_device_counters(statistics& stats) {
  make_known(stats.in);
  make_known(stats.out);
  make_known(stats.errors);
  stats.in.unicast_packets = *stats.in.packets - *stats.in.multicast_packets;
  stats.out.unicast_packets = stats.out.packets;
  for (const auto rate : {&statistics::in_bytes_per_second, &statistics::in_packets_per_second,
                          &statistics::out_bytes_per_second, &statistics::out_packets_per_second})
    if (!(stats.*rate)) stats.*rate = 0;
  stats.rate_ring.emplace();
}

// Those of a source that reads the counters of its devices are from all readings.
device_rates rates_of_device(interface& port, const std::string& device) {
  const statistics& stats = port.stats;
  if (the_source().counts_at_refresh() && the_source().update_statistics(port, now_sec()))
    return {stats.in_bytes_per_second, stats.in_packets_per_second, stats.out_bytes_per_second,
            stats.out_packets_per_second};
  return kernel_rates(device);
}

bool refresh_from_device(interface& port) {
  const std::string device = management_device(the_machine(), port.if_index);
  const auto counted = kernel_counters(device);
  if (!counted) return false;
  take_device_counters(*counted, rates_of_device(port, device), port.stats);
  if (the_source().knows_all_fields()) complete_device_counters(port.stats);
  return true;
}

}  // namespace

void take_device_counters(const device_counters& counted, const device_rates& rates, statistics& stats) {
  stats.in = {};
  stats.in.bytes = counted.rx_bytes;
  stats.in.packets = counted.rx_packets;
  stats.in.multicast_packets = std::min(counted.rx_multicast, counted.rx_packets);
  stats.in.errors = counted.rx_errors;
  stats.in.discards = counted.rx_dropped;
  stats.out = {};
  stats.out.bytes = counted.tx_bytes;
  stats.out.packets = counted.tx_packets;
  stats.out.errors = counted.tx_errors;
  stats.out.discards = counted.tx_dropped;
  stats.errors = {};
  stats.errors.crc = counted.rx_frame_errors;
  stats.errors.collisions = counted.tx_collisions;
  stats.errors.lost_carrier = counted.tx_carrier_errors;
  stats.errors.compressed = counted.rx_compressed;
  stats.errors.receive_fifo = counted.rx_fifo_errors;
  stats.errors.send_fifo = counted.tx_fifo_errors;
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
  set_totals_to_zero(stats);
  if (stats.rate_ring) stats.rate_ring.emplace();
  stats.counted_sec = 0;
  stats.last_clear_sec = now_sec();
  stats.is_cleared_here = true;
  return true;
}

std::string management_device(const machine& of, if_index_t if_index) {
  const uint32 port = decode_index(if_index).port;
  if (of.chassis_type == CHASSIS_17) return "eth" + std::to_string(port + 1);
  return of.chassis_type == CHASSIS_22 && port == 1 ? of.mgmt_device2 : of.mgmt_device;
}

}  // namespace host
