// The origin of a switch: what it does besides its model.
//
// The default implementations are those of a switch that only has its model: all values are known, and a change is
// complete when the model has it. A source overrides what differs.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "switch/events.h"
#include "switch/model.h"
#include "switch/tables.h"

namespace host {

// Data of an interface that a source may omit until a service needs it.
enum class detail : uint8 {
  link_fault,   // state_reason of a port that is up and has no link
  driver,       // capabilities.model
  module,       // module_in_port with its identity page, capabilities.transceiver
  diagnostics,  // of the module: needs it
  counters      // of stats, once these are up to date: those that not every device has
};

// Why a device of the kernel has its interface.
enum class name_reason : uint8 {
  map_file,       // the user's file names it
  stored,         // an earlier session gave it to the device
  default_route,  // the device that the default route leads to is the management port
  loopback,       // the kernel's own loopback
  bond,           // a bond is the port-channel with the kernel's number
  vlan,           // a VLAN device is a sub-interface of its parent
  device_index    // the kernel's number counts the interfaces
};

// A network device of the kernel and its interface.
struct kernel_device {
  std::string name;
  if_index_t if_index;
  uint32 number = 0;  // the kernel's
  name_reason reason = name_reason::device_index;
  std::string parent = {};  // the device below, empty when there is none
  std::string master = {};  // the bridge, bond or VRF that it is a port of
  std::string type = {};    // such as "veth" or "vxlan 42 over eth1"
  std::vector<std::string> alternative_names = {};
};

// The name and the release of a kernel.
struct kernel_system {
  std::string name;
  std::string release;
};

class switch_source {
 public:
  switch_source() = default;
  virtual ~switch_source() = default;
  switch_source(const switch_source&) = delete;
  switch_source& operator=(const switch_source&) = delete;

  // ---- Values

  // Updates the model for a command.
  virtual void refresh(machine& model);

  // Updates the counters of the model alone, for a command that shows nothing else: the rest stays as it was. False
  // when the source has to update all of the model.
  virtual bool refresh_counters(machine& model);

  // Completes an omitted detail of an interface. A second call changes nothing.
  virtual void complete(interface& port, detail needed);

  // Whether the model has every value of every interface: displays then do not ask which are absent.
  virtual bool knows_all_fields() const;

  // ---- Statistics

  // Updates the statistics of an interface to a time (seconds since 1970). False when the source has none for it.
  virtual bool update_statistics(interface& port, uint32 now_sec);

  // Makes the counters that the source supplies start from 0 at a time. The caller sets those of the model to 0.
  virtual void clear_counters(interface& port, uint32 now_sec);

  // Whether the source reads its counters in refresh(). Otherwise they are read by the update.
  virtual bool counts_at_refresh() const;

  // The seconds that the rates of such a source cover. None before it has read twice.
  virtual std::optional<double> rate_seconds() const;

  // The file with the baselines of a source whose counters cannot be set to 0: it subtracts them. Empty when only this
  // process has them; nothing for a source whose counters start from 0.
  virtual std::optional<std::string> baseline_file() const;

  // Writes that file, when counters were cleared since the last time. Returns 0 or an errno.
  virtual int write_baselines();

  // ---- Settings

  // The status with which apply_settings() would refuse, if the source knows it without trying; else 0.
  virtual uint32 check_settings(const interface& port, const port_settings& before) const;

  // Applies the settings that a port just got in the model; `before` has the previous ones. Returns 0, or the status
  // with which the source refuses: then nothing has changed, and the caller restores the settings.
  virtual uint32 apply_settings(interface& port, const port_settings& before);

  // Whether the source applies a setting (PM_CFG_... or HOST_CFG_...) of some port.
  virtual bool applies_setting(uint8 type) const;

  // Whether the source checks settings of port-channel members and passes them the settings of their channel. Otherwise
  // the services do: a member then refuses settings that its channel has.
  virtual bool hands_settings_to_members() const;

  // ---- Interfaces that commands create and delete

  // Whether a switched port may have sub-interfaces.
  virtual bool allows_sub_interfaces_of_switched_ports() const;

  // Creates loopbacks and sub-interfaces that do not exist, the latter of existing ports, and updates the model: all or
  // none, if the source can check this in advance. Returns 0, or the status with which it refuses.
  virtual uint32 create_interfaces(machine& model, std::span<const if_index_t> interfaces);

  // The same, to delete interfaces that exist.
  virtual uint32 delete_interfaces(machine& model, std::span<const if_index_t> interfaces);

  // Creates a deleted interface again with its settings, and updates the model. Returns as above.
  virtual uint32 restore_interface(machine& model, const interface& deleted);

  // ---- Changes that outlive the process. A source that stores none needs none of these.

  // Stores what settings, creations, deletions and clears changed since the last call: all or nothing. Returns 0, or
  // the status with which the source refuses: then the model is as it was at that call. It invalidates references to
  // interfaces.
  virtual uint32 store_changes(machine& model);

  // The same for the changes of a commit that waits for its confirmation: they are reverted when the switch starts
  // again, unless the confirmation or the rollback was stored. A session has one commit at a time; `commit` is its
  // number.
  virtual uint32 store_waiting_commit(machine& model, uint32 commit);
  virtual uint32 store_confirmation(machine& model, uint32 commit);

  // Stores the changes of a rollback. They stay in the model when they cannot be stored now.
  virtual void store_rollback(machine& model, uint32 commit);

  // ---- Tables

  // Begins to read a table: of `interfaces`, sorted, or of everything when there are none. Null when the source has no
  // such table. Throws std::runtime_error with the reason when it cannot be read.
  virtual std::unique_ptr<table_reader> open_table(const machine& model, table_id table,
                                                   const std::vector<if_index_t>& interfaces);

  // ---- Events

  // Begins to read the changes that the source publishes from now on. Null when it publishes none. Throws
  // std::runtime_error with the reason when they cannot be read.
  virtual std::unique_ptr<event_reader> open_events();

  // ---- Network devices of the kernel

  // The devices of the switch; nothing for a switch that is not the kernel's.
  virtual std::optional<std::vector<kernel_device>> devices() const;

  // The kernel that these devices are of.
  virtual std::optional<kernel_system> system() const;

  // False when no device has this name, or it as an alternative one, as far as that can be said without a refresh.
  virtual bool may_have_device(std::string_view name) const;

  // The device of an interface.
  virtual std::optional<kernel_device> find_device(if_index_t if_index) const;

  // The interfaces that packets to an address take, sorted. An empty or invalid address uses the default route.
  virtual std::vector<if_index_t> interfaces_towards(const std::string& address) const;
};

// The source of the_machine(). It is set together with it, and owned here; until then it has the defaults above.
switch_source& the_source();
void set_source(std::unique_ptr<switch_source> source = std::make_unique<switch_source>());

// Replaces the source.
void swap_source(std::unique_ptr<switch_source>& other);

}  // namespace host
