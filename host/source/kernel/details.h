// Details of devices, read only by a command that needs them, and once for the command: memory of modules by port,
// link faults and further counters by one dump for all ports.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "source/kernel/device_map.h"
#include "source/kernel/ethtool.h"
#include "source/kernel/module.h"
#include "switch/source.h"

namespace host {

// The port manager's reason for a link without carrier, and for a fault that it has no reason for.
inline constexpr uint8 kReasonNotConnected = 7;

class device_details {
 public:
  // Takes note of the devices that a command begins with. Details that were read before are dropped.
  void begin(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped);

  // Completes an interface (switch_source::complete). Values that the kernel does not report stay unchanged.
  void complete(interface& port, detail needed);

  // Sets the baseline of the further counters of an interface. Returns their current values.
  driver_counter_values clear(const interface& port);

  // Sets an earlier baseline, for this command.
  void begin_at(if_index_t if_index, const driver_counter_values& cleared);

 private:
  struct known_device {
    if_index_t if_index = 0;
    uint32 number = 0;  // the kernel's
    std::string name;
    std::optional<pause_settings> pause;
    driver_counter_values cleared = {};  // counts no more
    bool has_module_read = false;
    bool has_diagnostics_read = false;
  };

  known_device* find_hardware(if_index_t if_index);
  ethtool_socket& ethtool();
  void read_fault(const known_device& device, interface& port);
  page_reader reader_of(const known_device& device);
  void read_module_of(known_device& device, interface& port);
  void read_diagnostics_of(known_device& device, interface& port);
  driver_counter_values counters_of(const known_device& device);

  std::vector<known_device> hardware_;  // sorted by interface; other devices have no details
  std::optional<ethtool_socket> ethtool_;
  std::optional<link_faults> faults_;
  std::optional<std::map<uint32, driver_counter_values>> counted_;
  bool modules_are_closed_ = false;  // to this user
};

}  // namespace host
