// Rows of the counters of drivers, by ioctl: the kernel has no message for them.
#include <linux/ethtool.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "source/kernel/tables.h"

namespace host {
namespace {

constexpr std::size_t kMostCountersOfRow = 512;
constexpr std::size_t kDevicesOfPiece = 16;
constexpr uint32 kMostCounters = 65536;

// The kernel writes as many entries as the driver has at that moment, which may be more than it had when it was asked
// for their number.
constexpr uint32 kRoomForNewOnes = 4096;

uint32 num_counters(const std::string& device) {
  ethtool_drvinfo info{};
  info.cmd = ETHTOOL_GDRVINFO;
  const int error = the_kernel_io().ethtool_ioctl(device, &info);
  return error == 0 ? std::min(info.n_stats, kMostCounters) : 0;
}

// An answer of ioctl: a head, then entries.
template <typename Head>
class ioctl_list {
 public:
  ioctl_list(std::size_t count, std::size_t entry_bytes) : words_(1 + (sizeof(Head) + count * entry_bytes) / 8) {}

  bool ask(const std::string& device, const Head& request) {
    std::memcpy(words_.data(), &request, sizeof request);
    return the_kernel_io().ethtool_ioctl(device, words_.data()) == 0;
  }
  Head head() const {
    Head answered{};
    std::memcpy(&answered, words_.data(), sizeof answered);
    return answered;
  }
  const char* entries() const { return reinterpret_cast<const char*>(words_.data()) + sizeof(Head); }

 private:
  std::vector<uint64> words_;
};

using named_counters = std::vector<std::pair<std::string, uint64>>;

named_counters counters_of_driver(const std::string& device) {
  const uint32 count = num_counters(device);
  if (count == 0) return {};
  const uint32 room = count + kRoomForNewOnes;
  ioctl_list<ethtool_gstrings> names(room, ETH_GSTRING_LEN);
  ethtool_gstrings names_request{};
  names_request.cmd = ETHTOOL_GSTRINGS;
  names_request.string_set = ETH_SS_STATS;
  names_request.len = count;
  ioctl_list<ethtool_stats> values(room, sizeof(uint64));
  ethtool_stats values_request{};
  values_request.cmd = ETHTOOL_GSTATS;
  values_request.n_stats = count;
  if (!names.ask(device, names_request) || !values.ask(device, values_request)) return {};
  named_counters counters;
  for (uint32 i = 0; i < std::min({names.head().len, values.head().n_stats, room}); ++i) {
    const char* const name = names.entries() + std::size_t{i} * ETH_GSTRING_LEN;
    uint64 value = 0;
    std::memcpy(&value, values.entries() + std::size_t{i} * sizeof value, sizeof value);
    if (const std::size_t size = strnlen(name, ETH_GSTRING_LEN); size != 0)
      counters.emplace_back(std::string(name, size), value);
  }
  return counters;
}

class driver_counter_reader final : public table_reader {
 public:
  explicit driver_counter_reader(table_devices devices) : devices_(std::move(devices)) {}

  bool next(std::vector<table_row>& rows) override {
    const std::vector<table_device>& all = devices_.requested();
    for (std::size_t i = 0; i < kDevicesOfPiece && at_ < all.size(); ++i)
      for (table_row& it : driver_counter_rows(all[at_++])) rows.push_back(std::move(it));
    return at_ < all.size();
  }

 private:
  table_devices devices_;
  std::size_t at_ = 0;
};

}  // namespace

std::vector<table_row> driver_counter_rows(const table_device& device) {
  const row_device about = {device.if_index, device.name, device.number};
  const named_counters all = counters_of_driver(device.name);
  std::vector<table_row> rows;
  for (std::size_t at = 0; at < all.size(); at += kMostCountersOfRow) {
    const std::size_t end = std::min(at + kMostCountersOfRow, all.size());
    const auto place = [&all](std::size_t i) { return all.begin() + static_cast<std::ptrdiff_t>(i); };
    rows.emplace_back(driver_counter_row{about, named_counters(place(at), place(end))});
  }
  if (rows.empty()) rows.emplace_back(driver_counter_row{about, std::nullopt});
  return rows;
}

std::unique_ptr<table_reader> read_driver_counter_table(table_devices devices) {
  return std::make_unique<driver_counter_reader>(std::move(devices));
}

}  // namespace host
