// The machine that the shell runs on, as a switch: its devices, addresses and counters from the kernel.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "source/kernel/device_map.h"
#include "switch/source.h"

namespace host {

class kernel_source final : public switch_source {
 public:
  void complete(interface& port, detail needed) override;
  bool is_unknown(if_index_t if_index, std::string_view field) override;
  bool knows_all_fields() const override;
  bool update_statistics(interface& port, uint32 now_sec) override;
  void clear_counters(interface& port, uint32 now_sec) override;
  uint32 apply_settings(const interface& port, const port_settings& before) override;
  bool applies_setting(uint8 type) const override;
  bool hands_settings_to_members() const override;
  bool allows_sub_interfaces_of_switched_ports() const override;
  uint32 create_interfaces(machine& model, std::span<const if_index_t> interfaces) override;
  uint32 delete_interfaces(machine& model, std::span<const if_index_t> interfaces) override;
  uint32 restore_interface(machine& model, const interface& deleted) override;
};

// Makes a machine of devices. What the kernel does not tell keeps the default that is shown as absent.
machine machine_of_devices(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped);

// Reads the kernel; `wanted` is kept for the refreshes. Throws kernel_error.
machine read_kernel_machine(const wanted_interfaces& wanted);

// Where what devices had counted when they were cleared is kept, to be called before the first reading. Without a path
// it is kept in this process.
void keep_cleared_counters_in(const std::string& path);

// Writes it, when counters were cleared since the last time. Returns 0 or an errno.
int write_cleared_counters();

// Reads it anew for another command. The first call after read_kernel_machine() leaves the machine as it was just read.
void refresh_kernel_machine();

// The interfaces of the devices that packets to an address take, and of those below these: parents, members of bridges
// and bonds. An address that is none, or empty, is somewhere behind the default route. Sorted; none without a route.
std::vector<if_index_t> interfaces_on_the_way_to(const std::string& address);

// The devices as they were last read.
const std::vector<mapped_device>& kernel_map();

}  // namespace host
