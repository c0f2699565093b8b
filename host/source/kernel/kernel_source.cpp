#include "source/kernel/kernel_source.h"

#include <linux/if_bridge.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "base/port_status.h"
#include "platform/interface_manager.h"
#include "platform/platform_data.h"
#include "platform/port_config.h"
#include "platform/port_manager.h"
#include "platform/syserr.h"
#include "source/kernel/abilities.h"
#include "source/kernel/creation.h"
#include "source/kernel/device_counters.h"
#include "source/kernel/device_type.h"
#include "source/kernel/events.h"
#include "source/kernel/identify.h"
#include "source/kernel/settings.h"
#include "source/kernel/sorted_records.h"
#include "source/kernel/tables.h"
#include "source/kernel/way.h"
#include "switch/clock.h"
#include "switch/if_index_layout.h"
#include "switch/live_statistics.h"

namespace host {
namespace {

// The kernel's IF_OPER_* values; its header of that name clashes with libc's.
enum : uint8 { kOperUnknown = 0, kOperNotPresent = 1, kOperLowerLayerDown = 3, kOperDormant = 5, kOperUp = 6 };
enum : uint8 { kReasonInit = 10, kReasonInactive = 11, kReasonSuspended = 14, kReasonParentDown = 26 };
constexpr uint32 kCardType = 1;

// ---- State ----------------------------------------------------------------------------------------------------------

bool has_carrier(const kernel_link& link) {
  return link.operation == kOperUp || (link.operation == kOperUnknown && (link.flags & IFF_RUNNING) != 0);
}

uint8 reason_of(const kernel_link& link) {
  if ((link.flags & IFF_UP) == 0) return PM_REASON_ADMIN_DOWN;
  switch (link.operation) {
    case kOperNotPresent: return kReasonInactive;
    case kOperLowerLayerDown: return kReasonParentDown;
    case kOperDormant: return kReasonInit;
    default: break;
  }
  if (!has_carrier(link)) return kReasonNotConnected;
  if (link.bridge_state == BR_STATE_DISABLED) return kReasonSuspended;
  return PM_REASON_NONE;
}

void set_state(const kernel_link& link, interface& port) {
  port.settings.admin_state = (link.flags & IFF_UP) != 0 ? uint8{PM_PORT_STATE_UP} : uint8{PM_PORT_STATE_DOWN};
  port.state_reason = reason_of(link);
  port.oper_state = port.state_reason == PM_REASON_NONE ? uint8{PM_PORT_STATE_UP} : uint8{PM_PORT_STATE_DOWN};
}

// ---- VLANs ----------------------------------------------------------------------------------------------------------

// A port of a bridge that knows VLANs: a trunk when it carries some with tags. Of other devices the kernel reports
// none.
void set_vlans(const kernel_link& link, interface& port) {
  const bool is_trunk = link.has_tagged_vlans;
  port.settings.layer = link.slave_kind == "bridge" || decode_index(port.if_index).type == IF_TYPE_ETHERNET
                            ? uint32{IF_LAYER_2}
                            : uint32{IF_LAYER_3};
  port.settings.admin_mode =
      is_trunk ? uint32{PM_PORT_MODE_TRUNK} : default_port_mode(decode_index(port.if_index).type, port.settings.layer);
  if (!link.vlans.empty()) {
    port.oper_mode = port.settings.admin_mode;
    port.settings.native_vlan = port.settings.access_vlan = link.native_vlan;
  }
  if (is_trunk) port.settings.allowed_vlans = link.vlans;
  if (link.bridge_state && *link.bridge_state != BR_STATE_FORWARDING) port.blocked_vlans = link.vlans;
  port.encapsulation_vlan = static_cast<uint16>(link.vlan);
}

// ---- Interfaces -----------------------------------------------------------------------------------------------------

// Values that simulated switches always have, but devices only when the kernel reports them.
void forget_usual_values(interface& port) {
  port.oper_mode = port.oper_speed_mbps = port.settings.span_monitor = std::nullopt;
  port.oper_duplex.reset();
  port.settings.mtu_bytes = port.settings.access_vlan = port.settings.native_vlan = port.settings.admin_flow_control =
      port.oper_flow_control = std::nullopt;
  port.bandwidth_kbps = port.delay_usec = port.resets = port.link_change_sec = std::nullopt;
  port.debounce_ms.reset();
  port.rate_mode.reset();
  port.mdix_on.reset();
  port.storm_control.reset();
  port_capabilities& able = port.capabilities;
  able.speeds = able.duplexes = able.rx_flow_control = able.tx_flow_control = able.rate_modes = std::nullopt;
  able.qos.reset();
}

// Capabilities of line cards that the kernel's devices do not have, or not through this shell.
void take_away_abilities(port_capabilities& port) {
  port.suppression = port.cos_rewrite = port.tos_rewrite = port.span = port.udld = port.debounce = port.mdix = false;
}

void fill_interface(const kernel_link& link, const std::vector<mapped_device>& mapped, if_index_t if_index,
                    interface& port) {
  constexpr std::size_t kLongest = PM_PORT_NAME_BYTES - 1;
  forget_usual_values(port);
  port.if_index = if_index;
  port.settings.description = link.alias.substr(0, kLongest);
  if (link.mtu_bytes <= UINT16_MAX)
    port.settings.mtu_bytes = static_cast<uint16>(link.mtu_bytes);  // a port's MTU has 16 bits
  port.burned_in_mac = port.router_mac = link.mac;
  port.oper_speed_mbps = link.speed_mbps;
  if (link.speed_mbps) port.bandwidth_kbps = *link.speed_mbps * 1000;
  if (link.is_full_duplex)
    port.oper_duplex = *link.is_full_duplex ? uint8{PM_PORT_DUPLEX_FULL} : uint8{PM_PORT_DUPLEX_HALF};
  port.addresses = link.addresses;
  take_away_abilities(port.capabilities);
  port.settings.beacon_on = is_identifying(link.number);
  set_state(link, port);
  set_vlans(link, port);
  const mapped_device* const master = find_by<&mapped_device::number>(mapped, link.master);
  if (link.slave_kind == "bond" && master != nullptr && decode_index(master->if_index).type == IF_TYPE_ETH_PORT_CHANNEL)
    port.settings.channel = master->if_index;
  set_abilities(link, port);
  port.num_link_changes = link.carrier_changes;
  port.is_created = is_created_by_command(link, if_index);
}

// A device with its interface.
struct placed_device {
  if_index_t if_index;
  const kernel_link* link;
};

std::vector<placed_device> in_order_of_interfaces(const std::vector<kernel_link>& links,
                                                  const std::vector<mapped_device>& mapped) {
  std::vector<placed_device> placed;
  placed.reserve(mapped.size());
  for_each_mapped(links, mapped, [&](const mapped_device& it, const kernel_link& link) {
    placed.push_back({it.if_index, &link});
  });
  sort_by<&placed_device::if_index>(placed);
  return placed;
}

// The name of the VRF that a device is in; empty when it is in none.
std::string vrf_of(const std::vector<kernel_link>& links, const kernel_link& link) {
  const kernel_link* const master = find_by<&kernel_link::number>(links, link.master);
  return master != nullptr && master->kind == "vrf" ? master->name : std::string();
}

device_rates rates_of(const device_counters& counted, double seconds) {
  const auto rate = [=](uint64 count) { return static_cast<uint64>(static_cast<double>(count) / seconds); };
  return {rate(counted.rx_bytes), rate(counted.rx_packets), rate(counted.tx_bytes), rate(counted.tx_packets)};
}

std::string host_name() {
  std::array<char, 256> name{};
  return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "linux";
}

}  // namespace

machine machine_of_devices(const std::vector<kernel_link>& links, const std::vector<mapped_device>& mapped) {
  machine made;
  made.name = host_name();
  made.chassis_type = CHASSIS_10;
  made.interfaces.reserve(mapped.size());
  for (const placed_device& it : in_order_of_interfaces(links, mapped)) {
    fill_interface(*it.link, mapped, it.if_index, made.interfaces.emplace_back());
    made.interfaces.back().vrf = vrf_of(links, *it.link);
    const index_fields fields = decode_index(it.if_index);
    if (fields.type == IF_TYPE_MGMT) made.mgmt_device = it.link->name;
    if (fields.shape == index_shape::slot_port) made.num_slots = std::max(made.num_slots, fields.slot + 1);
  }
  for (uint32 slot = 0; slot < made.num_slots; ++slot)
    made.cards.push_back({.slot = slot, .card_type = kCardType, .model = "kernel"});
  made.save_startup();
  return made;
}

// ---- The source -----------------------------------------------------------------------------------------------------

kernel_source::kernel_source(requested_interfaces requested, const std::string& baseline_file,
                             const std::string& names_file, const std::string& list_file)
    : requested_(std::move(requested)) {
  baselines_.keep_in(baseline_file);
  names_.keep_in(names_file);
  if (requested_.empty()) list_.keep_in(list_file);
}

machine kernel_source::read() {
  machine made = read_again();
  is_fresh_ = true;
  if (names_.fault().empty()) list_.write(links_, mapped_, management_);
  return made;
}

machine kernel_source::read_again() {
  is_listed_ = false;
  netlink_socket route(NETLINK_ROUTE);
  note_link_changes(std::exchange(links_, read_links(route)));
  if (find_link(links_, management_) == nullptr) management_ = default_route_device(route);
  mapped_ = map(links_, management_);
  baselines_.read();
  take_readings();
  machine made = model_of_devices();
  for (interface& port : made.interfaces) port.at_start = at_start_.emplace(port.if_index, port.settings).first->second;
  return made;
}

machine kernel_source::model_of_devices() const {
  machine made = machine_of_devices(links_, mapped_);
  made.name = name();
  for (const auto& [number, changed_sec] : link_changed_sec_)
    if (const mapped_device* const it = find_by<&mapped_device::number>(mapped_, number))
      made.find(it->if_index)->link_change_sec = changed_sec;
  return made;
}

// The counters of the devices, as they were read last.
void kernel_source::take_readings() {
  details_.begin(links_, mapped_);
  keep_reading();
  counted_.reserve(mapped_.size());
  for_each_mapped(links_, mapped_, [&](const mapped_device& it, const kernel_link& link) {
    counted_.push_back(reading_of(link, it.if_index));
  });
  sort_by<&device_reading::if_index>(counted_);
}

std::optional<machine> kernel_source::read_counters() {
  if (!may_read_counters_alone()) return std::nullopt;
  auto listed = list_.read();
  if (!listed) return std::nullopt;
  links_ = std::move(listed->links);
  mapped_ = std::move(listed->mapped);
  management_ = listed->management;
  if (!count_again()) {
    links_.clear();
    mapped_.clear();
    management_ = 0;
    return std::nullopt;
  }
  is_fresh_ = is_listed_ = true;
  return model_of_devices();
}

// Reads the counters of the known devices. False, and nothing is changed, when the kernel has others by now, and when
// counters were cleared: a baseline belongs to a hardware address, which this does not read.
bool kernel_source::count_again() {
  baselines_.read();
  if (!baselines_.is_empty()) return false;
  const auto counted = read_device_counters();
  const bool has_same_devices = counted && std::equal(links_.begin(), links_.end(), counted->begin(), counted->end(),
                                                      [](const kernel_link& link, const counted_device& device) {
                                                        return link.number == device.number && link.name == device.name;
                                                      });
  if (!has_same_devices) return false;
  for (std::size_t i = 0; i < links_.size(); ++i) links_[i].counted = (*counted)[i].counted;
  if (std::any_of(links_.begin(), links_.end(), is_physical)) {
    ethtool_socket ethtool;
    read_pause_settings(ethtool, links_);
  }
  take_readings();
  return true;
}

// A device that counts less than before is another one with the same number.
void kernel_source::note_link_change(const kernel_link& before, const kernel_link& now) {
  if (!before.carrier_changes || !now.carrier_changes || *now.carrier_changes == *before.carrier_changes) return;
  if (*now.carrier_changes > *before.carrier_changes)
    link_changed_sec_[now.number] = static_cast<uint32>(clock_now());
  else
    link_changed_sec_.erase(now.number);
}

void kernel_source::note_link_changes(const std::vector<kernel_link>& before) {
  for (const kernel_link& it : before) {
    if (const kernel_link* const now = find_link(links_, it.number))
      note_link_change(it, *now);
    else
      link_changed_sec_.erase(it.number);
  }
}

std::vector<mapped_device> kernel_source::map(const std::vector<kernel_link>& links, uint32 management) {
  return names_.map(links, management, requested_);
}

const counter_baseline* kernel_source::find_baseline(const kernel_link& link) const {
  return baselines_.find(link.number, link.mac, link.counted);
}

std::string kernel_source::name() const { return host_name(); }

std::optional<kernel_system> kernel_source::system() const {
  utsname kernel{};
  uname(&kernel);
  return kernel_system{kernel.sysname, kernel.release};
}

// The counters of a device, and the time of their last clear.
kernel_source::device_reading kernel_source::reading_of(const kernel_link& link, if_index_t if_index) {
  device_reading reading;
  reading.if_index = if_index;
  reading.number = link.number;
  reading.counted = link.counted;
  const counter_baseline* const baseline = find_baseline(link);
  if (baseline == nullptr) return reading;
  reading.cleared_at = baseline->counted;
  reading.cleared_sec = baseline->cleared_sec;
  begin_kernel_counters_at(link.name, baseline->counted);
  details_.begin_at(if_index, baseline->reported);
  return reading;
}

kernel_source::device_reading* kernel_source::find_reading(if_index_t if_index) {
  return find_by<&device_reading::if_index>(counted_, if_index);
}

const kernel_source::device_reading* kernel_source::find_reading(if_index_t if_index) const {
  return find_by<&device_reading::if_index>(counted_, if_index);
}

const mapped_device* kernel_source::device_of(if_index_t if_index) const {
  const device_reading* const reading = find_reading(if_index);
  return reading == nullptr ? nullptr : find_by<&mapped_device::number>(mapped_, reading->number);
}

const kernel_link* kernel_source::link_of(if_index_t if_index) {
  const device_reading* const reading = find_reading(if_index);
  return reading == nullptr ? nullptr : find_link(links_, reading->number);
}

uint32 kernel_source::create_interface(if_index_t if_index) {
  const index_fields fields = decode_index(if_index);
  if (fields.type == IF_TYPE_LOOPBACK) {
    if (fields.number == 0) return status_of_text("the kernel numbers its devices from 1");
    const kernel_link* const other = find_link(links_, fields.number);
    if (other != nullptr)
      return status_of_text("the kernel's device " + std::to_string(fields.number) + " is " + other->name);
    return create_dummy(fields.number);
  }
  const kernel_link* const parent = link_of(parent_of(if_index));
  if (parent == nullptr) return PM_ERR_NO_SUCH_INTERFACE;
  return create_vlan_device(*parent, static_cast<uint16>(fields.sub_interface));
}

uint32 kernel_source::delete_interface(if_index_t if_index) {
  const kernel_link* const link = link_of(if_index);
  return link == nullptr ? uint32{PM_ERR_NO_SUCH_INTERFACE} : delete_device(link->number);
}

// The device may have another interface by the map.
void kernel_source::delete_created_device(if_index_t if_index) {
  const index_fields fields = decode_index(if_index);
  if (fields.type == IF_TYPE_LOOPBACK) {
    delete_device(fields.number);
    return;
  }
  const kernel_link* const parent = link_of(parent_of(if_index));
  for (const kernel_link& it : links_)
    if (parent != nullptr && it.kind == "vlan" && it.parent == parent->number && it.vlan == fields.sub_interface)
      delete_device(it.number);
}

void kernel_source::refresh(machine& model) {
  if (!is_fresh_ || is_listed_) model = read_again();
  is_fresh_ = false;
}

bool kernel_source::refresh_counters(machine&) {
  if (std::exchange(is_fresh_, false)) return true;
  return may_read_counters_alone() && !links_.empty() && count_again();
}

void kernel_source::complete(interface& port, detail needed) { details_.complete(port, needed); }

bool kernel_source::knows_all_fields() const { return false; }

// Few readings cover the minute, so that they take little memory.
void kernel_source::keep_reading() {
  constexpr double kAverageSeconds = 60, kDistanceSeconds = 5;
  const double now_sec = clock_now_exactly();
  if (!earlier_.empty() && earlier_.back().at_sec > now_sec) earlier_.clear();  // the clock was moved back
  const bool is_first = earlier_.empty() || counted_sec_ >= earlier_.back().at_sec + kDistanceSeconds;
  if (counted_sec_ != 0 && counted_sec_ <= now_sec && is_first) earlier_.push_back({counted_sec_, std::move(counted_)});
  while (earlier_.size() > 1 && earlier_[1].at_sec <= now_sec - kAverageSeconds) earlier_.pop_front();
  counted_.clear();
  counted_sec_ = now_sec;
}

const kernel_source::device_reading* kernel_source::counter_reading::find(const device_reading& of) const {
  const device_reading* const found = find_by<&device_reading::if_index>(counted, of.if_index);
  return found != nullptr && found->number == of.number ? found : nullptr;
}

// Since the earliest reading of the device as it is now. Within a second a rate says little.
std::optional<kernel_source::measurement> kernel_source::measured(const device_reading& now) const {
  for (const counter_reading& it : earlier_) {
    const device_reading* const then = it.find(now);
    const double seconds = counted_sec_ - it.at_sec;
    if (then == nullptr || seconds < 1) continue;
    if (const auto counted = counted_since(now.counted, then->counted)) return measurement{*counted, seconds};
  }
  return std::nullopt;
}

std::optional<double> kernel_source::rate_seconds() const {
  const double seconds = earlier_.empty() ? 0 : counted_sec_ - earlier_.front().at_sec;
  return seconds >= 1 ? std::optional(seconds) : std::nullopt;
}

bool kernel_source::update_statistics(interface& port, uint32) {
  const device_reading* const found = find_reading(port.if_index);
  if (found == nullptr) return false;
  const device_reading& reading = *found;
  const std::optional<measurement> recent = measured(reading);
  take_device_counters(counted_since(reading.counted, reading.cleared_at).value_or(reading.counted),
                       recent ? rates_of(recent->counted, recent->seconds) : device_rates(), port.stats);
  port.stats.rates_of_sec = recent ? std::optional(recent->seconds) : std::nullopt;
  port.stats.last_clear_sec = reading.cleared_sec;
  port.stats.is_cleared_here = reading.cleared_sec != 0;
  return true;
}

void kernel_source::clear_counters(interface& port, uint32 now_sec) {
  device_reading* const reading = find_reading(port.if_index);
  if (reading == nullptr) return;
  reading->cleared_at = reading->counted;
  reading->cleared_sec = now_sec;
  baselines_.put(reading->number, {port.burned_in_mac, now_sec, reading->counted, details_.clear(port)});
}

bool kernel_source::counts_at_refresh() const { return true; }

std::optional<std::string> kernel_source::baseline_file() const { return baselines_.path(); }

int kernel_source::write_baselines() { return baselines_.write(); }

std::optional<setting_target> kernel_source::target_of(const interface& port) const {
  const mapped_device* const it = device_of(port.if_index);
  if (it == nullptr) return std::nullopt;
  const mapped_device* const bond = device_of(port.settings.channel);
  return setting_target{.number = it->number,
                        .name = it->device,
                        .is_bridge_port = it->is_bridge_port,
                        .bond = bond == nullptr ? 0 : bond->number};
}

uint32 kernel_source::check_settings(const interface& port, const port_settings& before) const {
  const auto target = target_of(port);
  return target ? check_device(*target, port.settings, before) : 0;  // a trial may have created the port
}

uint32 kernel_source::apply_settings(interface& port, const port_settings& before) {
  const auto target = target_of(port);
  return target ? apply_to_device(*target, port.settings, before) : uint32{PM_ERR_NO_SUCH_INTERFACE};
}

bool kernel_source::applies_setting(uint8 type) const { return makes_kernel_setting(type); }

// A bond passes its settings to its members itself.
bool kernel_source::hands_settings_to_members() const { return true; }

bool kernel_source::allows_sub_interfaces_of_switched_ports() const { return true; }

// When one of them is refused, those before it are deleted again.
uint32 kernel_source::create_interfaces(machine& model, std::span<const if_index_t> interfaces) {
  uint32 status = 0;
  std::size_t count = 0;
  while (count < interfaces.size() && (status = create_interface(interfaces[count])) == 0) ++count;
  if (count == 0) return status;
  model = read_again();
  const auto created = interfaces.first(count);
  const bool are_all_here =
      std::all_of(created.begin(), created.end(), [this](if_index_t it) { return link_of(it) != nullptr; });
  if (status == 0 && !are_all_here) status = status_of_text("the map gives the new device another interface");
  if (status == 0) return 0;
  for (const if_index_t it : created) delete_created_device(it);
  model = read_again();
  return status;
}

uint32 kernel_source::delete_interfaces(machine& model, std::span<const if_index_t> interfaces) {
  for (const if_index_t it : interfaces) {
    const kernel_link* const link = link_of(it);
    if (link == nullptr) return PM_ERR_NO_SUCH_INTERFACE;
    if (!is_created_by_command(*link, it))
      return status_of_text("the device " + link->name + " is not one that commands create");
  }
  uint32 status = 0;
  for (const if_index_t it : interfaces)
    if ((status = delete_interface(it)) != 0) break;
  model = read_again();
  return status;
}

uint32 kernel_source::restore_interface(machine& model, const interface& deleted) {
  if (const uint32 status = create_interfaces(model, {&deleted.if_index, 1}); status != 0) return status;
  interface& made = *model.find(deleted.if_index);
  const port_settings now = made.settings;
  made.settings = deleted.settings;
  const uint32 status = apply_settings(made, now);
  if (status == 0) return 0;
  delete_created_device(deleted.if_index);
  model = read_again();
  return status;
}

std::unique_ptr<table_reader> kernel_source::open_table(const machine&, table_id table,
                                                        const std::vector<if_index_t>& interfaces) {
  return open_kernel_table(table, table_devices(links_, mapped_, interfaces));
}

std::unique_ptr<event_reader> kernel_source::open_events() {
  return open_kernel_events([this](const std::vector<kernel_link>& links) { return map(links, management_); },
                            [this](const kernel_link& now) {
                              kernel_link* const known = find_link(links_, now.number);
                              if (known == nullptr) return;
                              note_link_change(*known, now);
                              known->carrier_changes = now.carrier_changes;
                            });
}

kernel_device kernel_source::device_named(const mapped_device& it) const {
  kernel_device device{it.device, it.if_index, it.number, it.reason};
  const kernel_link* const link = find_link(links_, it.number);
  if (link == nullptr) return device;
  const auto name_of = [this](uint32 number) {
    const kernel_link* const found = number == 0 ? nullptr : find_link(links_, number);
    return found == nullptr ? std::string() : found->name;
  };
  if (has_device_below(*link)) device.parent = name_of(link->parent);
  device.master = name_of(link->master);
  device.type = device_type(*link, device.parent);
  device.alternative_names = link->alternative_names;
  return device;
}

std::optional<std::vector<kernel_device>> kernel_source::devices() const {
  std::vector<kernel_device> devices;
  for (const mapped_device& it : mapped_) devices.push_back(device_named(it));
  return devices;
}

// While only counters were read, the kernel is asked: it may have had new names since.
bool kernel_source::may_have_device(std::string_view name) const {
  if (!may_read_counters_alone() || links_.empty()) return true;
  netlink_socket route(NETLINK_ROUTE);
  return has_device_named(route, name);
}

std::optional<kernel_device> kernel_source::find_device(if_index_t if_index) const {
  const mapped_device* const found = device_of(if_index);
  return found == nullptr ? std::nullopt : std::optional(device_named(*found));
}

std::vector<if_index_t> kernel_source::interfaces_towards(const std::string& address) const {
  netlink_socket route(NETLINK_ROUTE);
  const uint32 device = device_towards(route, address);
  const std::set<uint32> way = devices_below(links_, device != 0 ? device : default_route_device(route));
  std::vector<if_index_t> interfaces;
  for (const mapped_device& it : mapped_)
    if (way.contains(it.number)) interfaces.push_back(it.if_index);
  std::sort(interfaces.begin(), interfaces.end());
  return interfaces;
}

}  // namespace host
