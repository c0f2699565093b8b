// The interface that each device had when a shell first saw it.
//
// They are stored in a file, so later shells of a user give a device the same interface. A file is valid for one boot
// and one network namespace. A device is recognised by its number and hardware address, else by its permanent hardware
// address, or by its name when it has no permanent address or shares it.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "source/kernel/device_map.h"

namespace host {

class stored_names {
 public:
  // Stores them in a file from now on; map() reads it when it is called first. Without a path there are none.
  void keep_in(const std::string& path);

  // Maps the devices, and stores the interfaces of new ones. Entries that another shell stored take precedence.
  std::vector<mapped_device> map(const std::vector<kernel_link>& links, uint32 management,
                                 const requested_interfaces& requested);

  // Why interfaces are not stored: one sentence; empty when they are.
  const std::string& fault() const { return fault_; }

 private:
  struct entry {
    std::string key;
    uint32 number = 0;
    std::array<uint8, 6> mac{};
    if_index_t if_index = 0;
    name_reason reason = name_reason::stored;  // in this process
  };
  using entries = std::vector<entry>;

  static std::optional<entry> read_entry(std::string_view line);
  static std::string written(const entry& it);
  // The key of each device, empty when a line of the file cannot hold it, and the place of its entry, if it has one.
  struct matches {
    std::vector<std::string> keys;
    std::vector<std::size_t> places;
  };

  static std::vector<std::string> keys_of(const std::vector<kernel_link>& links);
  matches match(const std::vector<kernel_link>& links) const;
  known_interfaces known_of(const std::vector<kernel_link>& links, const matches& found) const;
  void set_key(entry& of, std::string key);
  bool add_new(const std::vector<kernel_link>& links, const matches& found, const std::vector<mapped_device>& mapped);
  void read();
  void write();
  void give_up(const char* failed, const std::string& reason);

  std::string path_;
  std::string head_;  // first line of the file
  std::string fault_;
  entries entries_;
  bool is_read_ = false;
};

}  // namespace host
