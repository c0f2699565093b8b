#include "switch/kernel_device.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <map>
#include <memory>

#include "switch/clock.h"

namespace host {
namespace {

constexpr std::string_view kLoopback = "lo";
constexpr std::time_t kAverageSeconds = 60;

struct close_file {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using open_file = std::unique_ptr<std::FILE, close_file>;

std::FILE* open_running_table() { return std::fopen("/proc/net/dev", "re"); }

open_file kernel_table() { return open_file(the_kernel_table_opener()()); }

// The name before the colon of a row such as "  eth0:  100  2 ...", and what follows it; a headline has none.
struct device_row {
  std::string_view device;
  const char* numbers = nullptr;
};

device_row parse_row(const char* row) {
  std::string_view text = row;
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) return {};
  return {text.substr(0, colon), text.data() + colon + 1};
}

// Visits the rows of devices until one is accepted.
template <class Accept>
void for_each_row(std::FILE* table, Accept accept) {
  std::array<char, 512> line;
  while (std::fgets(line.data(), line.size(), table) != nullptr) {
    const device_row row = parse_row(line.data());
    if (row.numbers != nullptr && accept(row)) return;
  }
}

std::optional<device_counters> read_numbers(const char* numbers) {
  device_counters read;
  for (const auto column : kDeviceCounters) {
    char* end = nullptr;
    read.*column = std::strtoull(numbers, &end, 10);
    if (end == numbers) return std::nullopt;
    numbers = end;
  }
  return read;
}

device_memory& memory_of(const std::string& device) {
  static std::map<std::string, device_memory> devices;
  return devices[device];
}

// The memory of a device after another look at it; null when it is not there.
device_memory* look_at(const std::string& device) {
  const open_file table = kernel_table();
  const auto counted = table == nullptr ? std::nullopt : read_device_counters(table.get(), device);
  if (!counted) return nullptr;
  device_memory& memory = memory_of(device);
  memory.look(clock_now(), *counted);
  return &memory;
}

}  // namespace

kernel_table_opener& the_kernel_table_opener() {
  static kernel_table_opener opener = open_running_table;
  return opener;
}

std::optional<device_counters> read_device_counters(std::FILE* table, std::string_view device) {
  std::optional<device_counters> found;
  if (device.empty()) return found;
  for_each_row(table, [&](const device_row& row) {
    if (row.device != device) return false;
    found = read_numbers(row.numbers);
    return true;
  });
  return found;
}

std::string first_device_of(std::FILE* table) {
  std::string first;
  for_each_row(table, [&](const device_row& row) {
    if (row.device == kLoopback) return false;
    first = row.device;
    return true;
  });
  return first;
}

std::string first_kernel_device() {
  const open_file table = kernel_table();
  return table == nullptr ? std::string() : first_device_of(table.get());
}

std::optional<device_counters> counted_since(const device_counters& now, const device_counters& then) {
  device_counters since;
  for (const auto column : kDeviceCounters) {
    if (now.*column < then.*column) return std::nullopt;
    since.*column = now.*column - then.*column;
  }
  return since;
}

void device_memory::look(std::time_t now, const device_counters& counted) {
  if (!counted_since(counted, last_)) *this = {};
  last_ = counted;
  if (!samples_.empty() && samples_.back().at > now) samples_.clear();
  if (samples_.empty() || samples_.back().at < now) samples_.push_back({now, counted});
  while (samples_.size() > 1 && samples_[1].at <= now - kAverageSeconds) samples_.erase(samples_.begin());
}

device_counters device_memory::since_clear() const {
  device_counters since = last_;
  for (const auto column : kDeviceCounters) since.*column -= cleared_.*column;
  return since;
}

device_rates device_memory::rates() const {
  if (samples_.size() < 2) return {};
  const sample& from = samples_.front();
  const sample& to = samples_.back();
  const auto rate = [&](uint64 device_counters::*column) {
    return (to.counted.*column - from.counted.*column) / static_cast<uint64>(to.at - from.at);
  };
  return {rate(&device_counters::rx_bytes), rate(&device_counters::rx_packets), rate(&device_counters::tx_bytes),
          rate(&device_counters::tx_packets)};
}

std::optional<device_counters> kernel_counters(const std::string& device) {
  const device_memory* const memory = look_at(device);
  return memory == nullptr ? std::nullopt : std::optional(memory->since_clear());
}

device_rates kernel_rates(const std::string& device) { return memory_of(device).rates(); }

void begin_kernel_counters_at(const std::string& device, const device_counters& counted) {
  memory_of(device).clear_at(counted);
}

bool clear_kernel_counters(const std::string& device) {
  device_memory* const memory = look_at(device);
  if (memory != nullptr) memory->clear();
  return memory != nullptr;
}

}  // namespace host
