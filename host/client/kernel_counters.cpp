#include "client/kernel_counters.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "platform/syserr.h"

namespace host {
namespace {

// The columns of a row: what is received, then what is sent.
constexpr be32 pm_proc_net_dev_stats_t::*kColumns[] = {
    &pm_proc_net_dev_stats_t::rx_bytes,          &pm_proc_net_dev_stats_t::rx_packets,
    &pm_proc_net_dev_stats_t::rx_errors,         &pm_proc_net_dev_stats_t::rx_dropped,
    &pm_proc_net_dev_stats_t::rx_fifo_errors,    &pm_proc_net_dev_stats_t::rx_frame_errors,
    &pm_proc_net_dev_stats_t::rx_compressed,     &pm_proc_net_dev_stats_t::rx_multicast,
    &pm_proc_net_dev_stats_t::tx_bytes,          &pm_proc_net_dev_stats_t::tx_packets,
    &pm_proc_net_dev_stats_t::tx_errors,         &pm_proc_net_dev_stats_t::tx_dropped,
    &pm_proc_net_dev_stats_t::tx_fifo_errors,    &pm_proc_net_dev_stats_t::tx_collisions,
    &pm_proc_net_dev_stats_t::tx_carrier_errors, &pm_proc_net_dev_stats_t::tx_compressed,
};

// The numbers of a row such as "  eth0:  100  2 ..."; null when the row is another device's.
const char* numbers_of(const char* row, std::string_view device) {
  std::string_view text = row;
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  if (!text.starts_with(device) || !text.substr(device.size()).starts_with(':')) return nullptr;
  return text.data() + device.size() + 1;
}

bool read_row(const char* numbers, pm_proc_net_dev_stats_t* stats) {
  pm_proc_net_dev_stats_t read{};
  for (const auto column : kColumns) {
    char* end = nullptr;
    read.*column = static_cast<uint32>(std::strtoull(numbers, &end, 10));
    if (end == numbers) return false;
    numbers = end;
  }
  *stats = read;
  return true;
}

struct close_file {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

bool read_device_counters(std::FILE* table, const char* device, pm_proc_net_dev_stats_t* stats) {
  std::array<char, 512> row;
  while (std::fgets(row.data(), row.size(), table) != nullptr)
    if (const char* const numbers = numbers_of(row.data(), device)) return read_row(numbers, stats);
  return false;
}

}  // namespace host

int32 pm_get_proc_net_dev_stats(const char* device, pm_proc_net_dev_stats_t* stats) {
  if (device == nullptr || stats == nullptr) return PM_ERR_GENERAL;
  const std::unique_ptr<std::FILE, host::close_file> table(std::fopen("/proc/net/dev", "re"));
  const bool found = table != nullptr && host::read_device_counters(table.get(), device, stats);
  return found ? 0 : PM_ERR_NO_SUCH_INTERFACE;
}
