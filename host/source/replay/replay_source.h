// A switch from the folder of a capture: the kernel's devices as they were, on any machine.
#pragma once

#include <string>
#include <vector>

#include "source/kernel/kernel_source.h"
#include "source/replay/capture_folder.h"

namespace host {

// The only replay of the process: it answers all requests to the kernel as long as it lives, and no request reaches the
// machine. A request without an answer in the capture throws kernel_error.
class replay_source final : public kernel_source {
 public:
  explicit replay_source(capture_folder folder);
  ~replay_source() override;

  // When the capture began, in seconds since 1970.
  std::time_t clock() const { return folder_.clock; }

  // Settings are refused: a capture cannot be changed.
  uint32 check_settings(const interface& port, const port_settings& before) const override;
  uint32 apply_settings(interface& port, const port_settings& before) override;
  uint32 create_interfaces(machine& model, std::span<const if_index_t> interfaces) override;
  uint32 delete_interfaces(machine& model, std::span<const if_index_t> interfaces) override;
  uint32 restore_interface(machine& model, const interface& deleted) override;
  std::optional<kernel_system> system() const override;
  // None: the user's connection is not through a replayed device.
  std::vector<if_index_t> interfaces_towards(const std::string& address) const override;

 protected:
  std::vector<mapped_device> map(const std::vector<kernel_link>& links, uint32 management) override;
  const counter_baseline* find_baseline(const kernel_link& link) const override;
  bool may_read_counters_alone() const override { return false; }
  std::string name() const override;

 private:
  capture_folder folder_;
  kernel_io before_;
  kernel_table_opener table_before_;
};

}  // namespace host
