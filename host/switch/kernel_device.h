// Network devices of the kernel: which there are, and what they count.
//
// The kernel's counters cannot be set to 0. Clearing a device remembers what it had counted; this process then shows
// what has come since.
#pragma once

#include <cstdio>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"
#include "switch/count.h"

namespace host {

struct device_counters {
  uint64 rx_bytes = 0, rx_packets = 0, rx_errors = 0, rx_dropped = 0;
  uint64 rx_fifo_errors = 0, rx_frame_errors = 0, rx_compressed = 0, rx_multicast = 0;
  uint64 tx_bytes = 0, tx_packets = 0, tx_errors = 0, tx_dropped = 0;
  uint64 tx_fifo_errors = 0, tx_collisions = 0, tx_carrier_errors = 0, tx_compressed = 0;

  bool operator==(const device_counters&) const = default;
};

// All of them, in the order of the kernel's table: what is received, then what is sent.
inline constexpr uint64 device_counters::*kDeviceCounters[] = {
    &device_counters::rx_bytes,       &device_counters::rx_packets,     &device_counters::rx_errors,
    &device_counters::rx_dropped,     &device_counters::rx_fifo_errors, &device_counters::rx_frame_errors,
    &device_counters::rx_compressed,  &device_counters::rx_multicast,   &device_counters::tx_bytes,
    &device_counters::tx_packets,     &device_counters::tx_errors,      &device_counters::tx_dropped,
    &device_counters::tx_fifo_errors, &device_counters::tx_collisions,  &device_counters::tx_carrier_errors,
    &device_counters::tx_compressed,
};

// What was counted between two readings; nothing when a counter decreased: the device was recreated.
std::optional<device_counters> counted_since(const device_counters& now, const device_counters& then);

// A device's row in a table in the form of /proc/net/dev; nothing when it has none or its row is not complete.
std::optional<device_counters> read_device_counters(std::FILE* table, std::string_view device);

// The first device of such a table that is not the loopback, empty when there is none.
std::string first_device_of(std::FILE* table);

// The same of the running kernel.
std::string first_kernel_device();

struct device_rates {
  counter rx_bytes, rx_packets, tx_bytes, tx_packets;  // per second
};

// The readings of one device. A device that counted less than at the last reading was recreated: it counts from its
// own start.
class device_memory {
 public:
  // Stores what the device has counted at this moment.
  void look(std::time_t now, const device_counters& counted);

  // What is counted up to the last look counts no more.
  void clear() { cleared_ = last_; }
  void clear_at(const device_counters& counted) { cleared_ = counted; }

  device_counters since_clear() const;

  // Averages of the minute before the last look; of less while the first look is not as old, unknown after one look
  // alone.
  device_rates rates() const;

 private:
  struct sample {
    std::time_t at;
    device_counters counted;
  };
  device_counters last_;
  device_counters cleared_;
  std::vector<sample> samples_;  // of the last minute, and one that is older
};

// Opens the table of the running kernel's devices, in the form of /proc/net/dev; null when there is none. A recording
// replaces it.
using kernel_table_opener = std::FILE* (*)();
kernel_table_opener& the_kernel_table_opener();

// What a device of the running kernel has counted since it was cleared; nothing when there is no such device.
std::optional<device_counters> kernel_counters(const std::string& device);

// Its rates, from the readings taken by this process; kernel_counters() takes one.
device_rates kernel_rates(const std::string& device);

// Makes a device count from a stored baseline.
void begin_kernel_counters_at(const std::string& device, const device_counters& counted);

// Clears a device's counters for this process. False when there is no such device.
bool clear_kernel_counters(const std::string& device);

}  // namespace host
