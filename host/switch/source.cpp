#include "switch/source.h"

#include <algorithm>
#include <utility>

#include "platform/interface_manager.h"
#include "platform/port_manager.h"
#include "switch/if_index_layout.h"
#include "switch/operation.h"

namespace host {
namespace {

enum : uint8 { kReasonNone = PM_REASON_NONE, kReasonParentDown = 26 };

// A new sub-interface operates as its parent.
interface new_sub_interface(const interface& parent, if_index_t if_index) {
  interface made;
  made.if_index = if_index;
  made.settings.layer = IF_LAYER_3;
  made.oper_state = parent.oper_state;
  made.state_reason = parent.oper_state == PM_PORT_STATE_UP ? kReasonNone : kReasonParentDown;
  made.oper_speed_mbps = parent.oper_speed_mbps;
  made.oper_duplex = parent.oper_duplex;
  made.partner.speed_mbps = parent.oper_speed_mbps;
  made.bandwidth_kbps = parent.bandwidth_kbps;
  made.delay_usec = parent.delay_usec;
  made.burned_in_mac = parent.burned_in_mac;
  made.router_mac = parent.router_mac;
  return made;
}

interface new_loopback(if_index_t if_index) {
  interface made;
  made.if_index = if_index;
  made.settings.layer = IF_LAYER_3;
  made.oper_state = PM_PORT_STATE_UP;
  made.state_reason = kReasonNone;
  made.bandwidth_kbps = 8'000'000;
  made.delay_usec = 5000;
  return made;
}

std::unique_ptr<switch_source>& owned_source() {
  static std::unique_ptr<switch_source> only = std::make_unique<switch_source>();
  return only;
}

}  // namespace

void switch_source::refresh(machine&) {}

bool switch_source::refresh_counters(machine&) { return false; }

bool switch_source::may_have_device(std::string_view) const { return true; }
void switch_source::complete(interface&, detail) {}
bool switch_source::knows_all_fields() const { return true; }
bool switch_source::update_statistics(interface&, uint32) { return true; }
void switch_source::clear_counters(interface&, uint32) {}
bool switch_source::counts_at_refresh() const { return false; }
std::optional<std::string> switch_source::baseline_file() const { return std::nullopt; }
int switch_source::write_baselines() { return 0; }

uint32 switch_source::check_settings(const interface&, const port_settings&) const { return 0; }

uint32 switch_source::apply_settings(interface& port, const port_settings& before) {
  follow_settings(port, before);
  return 0;
}

bool switch_source::applies_setting(uint8) const { return true; }
bool switch_source::hands_settings_to_members() const { return false; }

bool switch_source::allows_sub_interfaces_of_switched_ports() const { return false; }

uint32 switch_source::create_interfaces(machine& model, std::span<const if_index_t> interfaces) {
  for (const if_index_t it : interfaces) {
    const bool is_sub_interface = if_index_is_sub_intf(it) != 0;
    interface made = is_sub_interface ? new_sub_interface(*model.find(parent_of(it)), it) : new_loopback(it);
    made.is_created = true;
    made.at_start = made.settings;
    model.add(std::move(made));
  }
  return 0;
}

uint32 switch_source::delete_interfaces(machine& model, std::span<const if_index_t> interfaces) {
  for (const if_index_t it : interfaces) {
    const interface* const found = model.find(it);
    const auto place = std::lower_bound(model.deleted.begin(), model.deleted.end(), it);
    const bool is_noted = place != model.deleted.end() && *place == it;
    if (found != nullptr && !found->is_created && !is_noted) model.deleted.insert(place, it);
    model.remove(it);
  }
  return 0;
}

uint32 switch_source::restore_interface(machine& model, const interface& deleted) {
  if (!deleted.is_created) std::erase(model.deleted, deleted.if_index);
  model.add(deleted);
  return 0;
}

uint32 switch_source::store_changes(machine&) { return 0; }
uint32 switch_source::store_waiting_commit(machine&, uint32) { return 0; }
uint32 switch_source::store_confirmation(machine&, uint32) { return 0; }
void switch_source::store_rollback(machine&, uint32) {}

std::optional<double> switch_source::rate_seconds() const { return std::nullopt; }

std::unique_ptr<event_reader> switch_source::open_events() { return nullptr; }

std::unique_ptr<table_reader> switch_source::open_table(const machine& model, table_id table,
                                                        const std::vector<if_index_t>& interfaces) {
  if (table == table_id::ipv4_addresses || table == table_id::ipv6_addresses)
    return addresses_of(model, table == table_id::ipv6_addresses, interfaces);
  return nullptr;
}

std::optional<std::vector<kernel_device>> switch_source::devices() const { return std::nullopt; }
std::optional<kernel_system> switch_source::system() const { return std::nullopt; }
std::optional<kernel_device> switch_source::find_device(if_index_t) const { return std::nullopt; }
std::vector<if_index_t> switch_source::interfaces_towards(const std::string&) const { return {}; }

switch_source& the_source() { return *owned_source(); }

void set_source(std::unique_ptr<switch_source> source) { owned_source() = std::move(source); }

void swap_source(std::unique_ptr<switch_source>& other) { owned_source().swap(other); }

}  // namespace host
