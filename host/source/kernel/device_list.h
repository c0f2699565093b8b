// The devices of a complete reading, stored for readings of counters alone: a later process need not ask the kernel
// what each device is. The file is valid for one boot and one network namespace.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "source/kernel/device_map.h"

namespace host {

struct listed_devices {
  std::vector<kernel_link> links;  // with number, name, kinds and hardware address; sorted by number
  std::vector<mapped_device> mapped;
  uint32 management = 0;  // number of the management port's device; 0: none
};

class device_list {
 public:
  // Without a path nothing is stored.
  void keep_in(const std::string& path) { path_ = path; }

  // Nothing when the file is missing, damaged, or of another boot or namespace.
  std::optional<listed_devices> read() const;

  // Replaces the file, unless it has the same devices. The list only saves time: a failure is ignored.
  void write(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped, uint32 management) const;

 private:
  std::string path_;
};

}  // namespace host
