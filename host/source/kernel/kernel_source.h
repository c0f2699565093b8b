// The machine that the shell runs on, as a switch: its devices, addresses and counters from the kernel.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "source/kernel/device_map.h"
#include "switch/source.h"

namespace host {

class kernel_source final : public switch_source {
 public:
  void refresh(machine& model) override;
  void complete(interface& port, detail needed) override;
  bool is_unknown(if_index_t if_index, std::string_view field) override;
  bool knows_all_fields() const override;
  bool update_statistics(interface& port, uint32 now_sec) override;
  void clear_counters(interface& port, uint32 now_sec) override;
  bool counts_at_refresh() const override;
  std::optional<std::string> baseline_file() const override;
  int write_baselines() override;
  uint32 apply_settings(const interface& port, const port_settings& before) override;
  bool applies_setting(uint8 type) const override;
  bool hands_settings_to_members() const override;
  bool allows_sub_interfaces_of_switched_ports() const override;
  uint32 create_interfaces(machine& model, std::span<const if_index_t> interfaces) override;
  uint32 delete_interfaces(machine& model, std::span<const if_index_t> interfaces) override;
  uint32 restore_interface(machine& model, const interface& deleted) override;
  std::optional<std::vector<kernel_device>> devices() const override;
  // Those below these, too: parents, members of bridges and bonds.
  std::vector<if_index_t> interfaces_towards(const std::string& address) const override;
};

// Makes a machine of devices. What the kernel does not tell keeps the default that is shown as absent.
machine machine_of_devices(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped);

// Reads the kernel; `wanted` is kept for the refreshes, the first of which leaves the machine as it was read here.
// Throws kernel_error.
machine read_kernel_machine(const wanted_interfaces& wanted);

// Where what devices had counted when they were cleared is kept, to be called before the first reading. Without a path
// it is kept in this process.
void keep_cleared_counters_in(const std::string& path);

}  // namespace host
