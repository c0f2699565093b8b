// The counters of devices when they were cleared: the kernel's own cannot be set to 0.
//
// They are stored in a file, so all shells of a user subtract the same values. A file is valid for one boot
// and one network namespace; a baseline is valid while its device has the same number and hardware address.
#pragma once

#include <array>
#include <map>
#include <string>

#include "platform/types.h"
#include "source/kernel/ethtool.h"
#include "switch/kernel_device.h"

namespace host {

struct counter_baseline {
  std::array<uint8, 6> mac{};
  uint32 cleared_sec = 0;  // seconds since 1970
  device_counters counted;
  driver_counter_values reported = {};  // those beyond
};

class counter_baselines {
 public:
  // Stores them in a file from now on; without a path only in memory.
  void keep_in(const std::string& path) { path_ = path; }
  const std::string& path() const { return path_; }

  // Reads the file. Damaged lines, and a file of another boot, are ignored.
  void read();

  // Writes what was put here since the last time. Returns 0 or an errno.
  int write();

  bool is_empty() const { return kept_.empty(); }

  void put(uint32 number, const counter_baseline& baseline);

  // The one of a device that has counted so far; null when there is none, or the device was created again since.
  const counter_baseline* find(uint32 number, const std::array<uint8, 6>& mac, const device_counters& counted) const;

 private:
  std::string path_;
  std::map<uint32, counter_baseline> kept_;
  bool is_changed_ = false;
};

// A baseline as a line of text, "NUMBER MAC SECONDS", then the counters in their order; false for another text.
std::string baseline_text(uint32 number, const counter_baseline& baseline);
bool read_baseline(const std::string& line, uint32& number, counter_baseline& baseline);

// The number of the network namespace, as a text; "0" when it is unknown.
std::string kernel_namespace();

// The boot and the network namespace: the first line of a file that is valid for them.
std::string running_system();

}  // namespace host
