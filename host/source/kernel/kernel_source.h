// The machine that the shell runs on, as a switch: its devices, addresses and counters from the kernel.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "source/kernel/baselines.h"
#include "source/kernel/details.h"
#include "source/kernel/device_list.h"
#include "source/kernel/device_map.h"
#include "source/kernel/settings.h"
#include "source/kernel/stored_names.h"
#include "switch/source.h"

namespace host {

class kernel_source : public switch_source {
 public:
  // `requested` has the interfaces that the user's map file gives to devices. Without the path of a file, baselines of
  // cleared counters, or the interfaces of devices, are known only to this process, and read_counters() reads nothing.
  explicit kernel_source(requested_interfaces requested = {}, const std::string& baseline_file = {},
                         const std::string& names_file = {}, const std::string& list_file = {});

  // Reads the kernel. The first refresh() leaves the model as it was read here. Throws kernel_error.
  machine read();

  // The same for a session that begins with a command that shows counters only: what the devices are is taken from the
  // list that an earlier process stored, and the next refresh() reads the rest. Nothing when that is not possible.
  std::optional<machine> read_counters();

  // Why the interfaces of devices are not stored: one sentence; empty when they are, or no file is given.
  const std::string& names_fault() const { return names_.fault(); }

  void refresh(machine& model) override;
  bool refresh_counters(machine& model) override;
  void complete(interface& port, detail needed) override;
  bool knows_all_fields() const override;
  bool update_statistics(interface& port, uint32 now_sec) override;
  void clear_counters(interface& port, uint32 now_sec) override;
  bool counts_at_refresh() const override;
  std::optional<double> rate_seconds() const override;
  std::optional<std::string> baseline_file() const override;
  int write_baselines() override;
  uint32 check_settings(const interface& port, const port_settings& before) const override;
  uint32 apply_settings(interface& port, const port_settings& before) override;
  bool applies_setting(uint8 type) const override;
  bool hands_settings_to_members() const override;
  bool allows_sub_interfaces_of_switched_ports() const override;
  uint32 create_interfaces(machine& model, std::span<const if_index_t> interfaces) override;
  uint32 delete_interfaces(machine& model, std::span<const if_index_t> interfaces) override;
  uint32 restore_interface(machine& model, const interface& deleted) override;
  std::unique_ptr<table_reader> open_table(const machine& model, table_id table,
                                           const std::vector<if_index_t>& interfaces) override;
  std::unique_ptr<event_reader> open_events() override;
  std::optional<std::vector<kernel_device>> devices() const override;
  std::optional<kernel_system> system() const override;
  bool may_have_device(std::string_view name) const override;
  std::optional<kernel_device> find_device(if_index_t if_index) const override;
  // Including lower devices: parents, members of bridges and bonds.
  std::vector<if_index_t> interfaces_towards(const std::string& address) const override;

 protected:
  // The interfaces of devices; `management` is the number of the management port's device, or 0.
  virtual std::vector<mapped_device> map(const std::vector<kernel_link>& links, uint32 management);

  // Whether counters may be read without the rest: a capture has the requests of whole readings.
  virtual bool may_read_counters_alone() const { return true; }

  // The stored baseline of a device that counts from one; null for others.
  virtual const counter_baseline* find_baseline(const kernel_link& link) const;

  // The name of the switch.
  virtual std::string name() const;

 private:
  struct device_reading {
    if_index_t if_index = 0;
    uint32 number = 0;  // of the device
    device_counters counted;
    device_counters cleared_at;
    uint32 cleared_sec = 0;
  };

  // The counters at a moment.
  struct counter_reading {
    double at_sec = 0;                    // since 1970
    std::vector<device_reading> counted;  // sorted by interface

    const device_reading* find(const device_reading& of) const;  // of the same device
  };

  // Stores when the session sees that the link of a device changed.
  void note_link_change(const kernel_link& before, const kernel_link& now);
  void note_link_changes(const std::vector<kernel_link>& before);

  // What a device counted in a time.
  struct measurement {
    device_counters counted;
    double seconds;
  };

  void keep_reading();
  std::optional<measurement> measured(const device_reading& now) const;

  kernel_device device_named(const mapped_device& it) const;
  machine read_again();
  machine model_of_devices() const;
  void take_readings();
  bool count_again();
  device_reading reading_of(const kernel_link& link, if_index_t if_index);
  device_reading* find_reading(if_index_t if_index);
  const device_reading* find_reading(if_index_t if_index) const;
  const mapped_device* device_of(if_index_t if_index) const;
  std::optional<setting_target> target_of(const interface& port) const;
  const kernel_link* link_of(if_index_t if_index);
  uint32 create_interface(if_index_t if_index);
  uint32 delete_interface(if_index_t if_index);
  void delete_created_device(if_index_t if_index);

  requested_interfaces requested_;
  stored_names names_;
  uint32 management_ = 0;  // the kernel's number of the management port's device: that of the first default route, as
                           // long as it exists, also when its route is lost; 0: none
  std::vector<kernel_link> links_;
  std::vector<mapped_device> mapped_;
  std::vector<device_reading> counted_;        // as the kernel reported it last, sorted by interface
  double counted_sec_ = 0;                     // when it did
  std::deque<counter_reading> earlier_;        // for rates: of the last minute, and one that is older
  std::map<uint32, uint32> link_changed_sec_;  // by the device's number; of changes that the session saw
  std::map<if_index_t, port_settings> at_start_;
  counter_baselines baselines_;
  device_details details_;
  device_list list_;
  bool is_fresh_ = false;
  bool is_listed_ = false;  // the model is that of read_counters()
};

// Makes a machine from devices. Values that the kernel does not report keep the default, which is shown as absent.
machine machine_of_devices(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped);

}  // namespace host
