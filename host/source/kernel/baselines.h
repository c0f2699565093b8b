// What devices had counted when their counters were cleared: the kernel's own cannot be set to 0.
//
// Kept in a file, so that a user's other shells, and those of tomorrow, take the same off. A file is good for one boot
// and one network namespace; what it says of a device is good as long as that has its number and hardware address.
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
  told_counters told = {};  // those beyond
};

class counter_baselines {
 public:
  // Keeps them in a file from now on; without a path only here.
  void keep_in(const std::string& path) { path_ = path; }
  const std::string& path() const { return path_; }

  // Takes in what the file says. Lines that are damaged, and a file of another boot, are left out.
  void read();

  // Writes what was put here since the last time. Returns 0 or an errno.
  int write();

  void put(uint32 number, const counter_baseline& baseline);

  // The one of a device that has counted so far; null when there is none, or the device was made anew since.
  const counter_baseline* find(uint32 number, const std::array<uint8, 6>& mac, const device_counters& counted) const;

 private:
  std::string path_;
  std::map<uint32, counter_baseline> kept_;
  bool is_changed_ = false;
};

// The number of the network namespace, as a text; "0" when it is not known.
std::string kernel_namespace();

}  // namespace host
