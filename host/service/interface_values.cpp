// The values of an interface by property: one table has their origin. Values that the model does not have are absent.
#include "messages/interface_values.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <string>
#include <utility>

#include "platform/card_config.h"
#include "platform/eth_statistics.h"
#include "platform/interface_manager.h"
#include "platform/platform_data.h"
#include "platform/port_manager.h"
#include "service/answers.h"
#include "service/optics.h"
#include "service/port_record.h"
#include "service/services.h"
#include "service/spanning_tree.h"
#include "switch/if_index_layout.h"
#include "switch/kernel_device.h"

namespace host {
namespace {

// ---- Whom a request is about ----------------------------------------------------------------------------------------

class subject {
 public:
  explicit subject(interface& it) : port(it) {}

  interface& port;
  bool is_about_unknown = false;  // values are not requested, only whether they are unknown

  if_index_type_t kind() const { return kind_; }
  bool is_sub_interface() const { return if_index_is_sub_intf(port.if_index) != 0; }
  bool is_any_of(std::initializer_list<if_index_type_t> kinds) const {
    return std::find(kinds.begin(), kinds.end(), kind()) != kinds.end();
  }
  bool is_ethernet() const { return is_any_of({IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE}); }
  bool is_channel() const { return is_any_of({IF_TYPE_PORT_CHANNEL, IF_TYPE_ETH_PORT_CHANNEL}); }
  bool is_up() const { return port.oper_state == PM_PORT_STATE_UP; }
  bool has_statistics() const { return has_statistics_; }

  // The counters of the kernel device of a management port, read once.
  const std::optional<device_counters>& device() {
    if (!device_) device_ = kernel_counters(management_device(the_machine(), port.if_index));
    return *device_;
  }

  // The kernel's device of the interface, asked for once.
  const std::optional<kernel_device>& kernel() {
    if (!kernel_) kernel_ = the_source().find_device(port.if_index);
    return *kernel_;
  }

  void update_statistics() { has_statistics_ = refresh_statistics(port); }

 private:
  if_index_type_t kind_ = decode_index(port.if_index).type;
  bool has_statistics_ = false;
  std::optional<std::optional<kernel_device>> kernel_;
  std::optional<std::optional<device_counters>> device_;
};

// Writes the value of a property, or the reason for its absence.
using reader = void (*)(subject& it, property of, value_writer& to);

void write_number(property of, std::optional<uint64> value, value_writer& to) {
  if (value)
    to.number(of, *value);
  else
    to.absent(of, absence::not_supported);
}

void write_text(property of, std::string_view text, value_writer& to) {
  if (text.empty())
    to.absent(of, absence::none);
  else
    to.text(of, text);
}

void write_interface(property of, if_index_t if_index, value_writer& to) {
  if (if_index == 0)
    to.absent(of, absence::none);
  else
    to.interface(of, if_index);
}

std::optional<uint64> widened(counter value) { return value ? std::optional(*value) : std::nullopt; }
template <typename Number>
std::optional<uint64> widened(const std::optional<Number>& value) {
  return value ? std::optional<uint64>(*value) : std::nullopt;
}
std::optional<uint64> widened(uint64 value) { return value; }

// ---- Members of the model that are shown as they are ----------------------------------------------------------------

// A member of the port, or of its settings.
template <auto Member>
const auto& member_of(const interface& port) {
  if constexpr (requires { port.*Member; })
    return port.*Member;
  else
    return port.settings.*Member;
}

template <auto Member>
void own_number(subject& it, property of, value_writer& to) {
  write_number(of, widened(member_of<Member>(it.port)), to);
}

template <auto Member>
void own_text(subject& it, property of, value_writer& to) {
  write_text(of, member_of<Member>(it.port), to);
}

template <auto Member>
void own_interface(subject& it, property of, value_writer& to) {
  write_interface(of, member_of<Member>(it.port), to);
}

template <auto Member>
void own_mac(subject& it, property of, value_writer& to) {
  to.mac(of, member_of<Member>(it.port));
}

// A number; 0 means none.
template <auto Member>
void own_number_but_zero(subject& it, property of, value_writer& to) {
  const auto value = widened(member_of<Member>(it.port));
  if (value == 0U)
    to.absent(of, absence::none);
  else
    write_number(of, value, to);
}

void write_moment(property of, std::optional<uint32> moment_sec, value_writer& to) {
  if (!moment_sec)
    to.absent(of, absence::not_supported);
  else if (*moment_sec == 0)
    to.absent(of, absence::none);
  else
    to.time(of, *moment_sec);
}

// ---- Identity -------------------------------------------------------------------------------------------------------

void read_index(subject& it, property of, value_writer& to) { to.number(of, it.port.if_index); }
void read_interface(subject& it, property of, value_writer& to) { to.interface(of, it.port.if_index); }

// Empty for an interface that is not a device of the kernel.
template <std::string kernel_device::*kMember>
void device_text(subject& it, property of, value_writer& to) {
  if (it.is_about_unknown) return;  // an interface that is no device has none
  const auto& device = it.kernel();
  write_text(of, device ? (*device).*kMember : std::string(), to);
}

void read_device_number(subject& it, property of, value_writer& to) {
  if (it.is_about_unknown) return;
  const auto& device = it.kernel();
  if (device)
    to.number(of, device->number);
  else
    to.absent(of, absence::none);
}

struct bit_word {
  uint8 bit;
  const char* word;
};
constexpr bit_word kSpeedWords[] = {
    {CRDCFG_SPEED_10M, "10"}, {CRDCFG_SPEED_100M, "100"}, {CRDCFG_SPEED_1G, "1000"}, {CRDCFG_SPEED_10G, "10000"}};
constexpr bit_word kDuplexWords[] = {
    {CRDCFG_DUPLEX_HALF, "half"}, {CRDCFG_DUPLEX_FULL, "full"}, {CRDCFG_DUPLEX_AUTO, "auto"}};
constexpr bit_word kFlowWords[] = {{CRDCFG_FLOW_OFF, "off"}, {CRDCFG_FLOW_ON, "on"}, {CRDCFG_FLOW_DESIRED, "desired"}};
constexpr bit_word kRateWords[] = {{CRDCFG_RATE_DEDICATED, "dedicated"}, {CRDCFG_RATE_SHARED, "shared"}};

template <std::size_t Count>
std::string joined(const bit_word (&words)[Count], uint32 bits, const char* between) {
  std::string text;
  for (const bit_word& it : words) {
    if ((bits & it.bit) == 0) continue;
    if (!text.empty()) text += between;
    text += it.word;
  }
  return text;
}

void read_hardware(subject& it, property of, value_writer& to) {
  if (it.is_ethernet()) {
    const auto& speeds = it.port.capabilities.speeds;
    if (!speeds) return to.absent(of, absence::not_supported);
    return to.text(of, joined(kSpeedWords, *speeds, "/") + " Ethernet");
  }
  switch (it.kind()) {
    case IF_TYPE_MGMT: return to.text(of, the_machine().chassis_type == CHASSIS_17 ? "Ethernet" : "GigabitEthernet");
    case IF_TYPE_LOOPBACK: return to.text(of, "Loopback");
    case IF_TYPE_ETH_PORT_CHANNEL: return to.text(of, "Port-Channel");
    case IF_TYPE_VETHERNET: return to.text(of, "VEthernet");
    default: return to.absent(of, absence::none);
  }
}

// Switched interfaces use their burned-in address, routed ones their router's.
void read_address(subject& it, property of, value_writer& to) {
  const bool is_always_switched = it.is_any_of({IF_TYPE_ETHERNET, IF_TYPE_SATELLITE});
  to.mac(of, is_always_switched || it.port.settings.layer == IF_LAYER_2 ? it.port.burned_in_mac : it.port.router_mac);
}

// Displays show the first address, when it is one of IPv4.
const ip_address* shown_address(const subject& it) {
  const auto& addresses = it.port.addresses;
  return addresses.empty() || addresses.front().is_ipv6 ? nullptr : &addresses.front();
}

void read_ip_address(subject& it, property of, value_writer& to) {
  if (const ip_address* const address = shown_address(it))
    to.ipv4(of, address->bytes);
  else
    to.absent(of, absence::none);
}

void read_prefix_length(subject& it, property of, value_writer& to) {
  if (const ip_address* const address = shown_address(it))
    to.number(of, address->prefix_length);
  else
    to.absent(of, absence::none);
}

void read_link_change(subject& it, property of, value_writer& to) { write_moment(of, it.port.link_change_sec, to); }

// Simulated switches do not count them.
void read_link_changes(subject& it, property of, value_writer& to) {
  if (it.port.num_link_changes)
    to.number(of, *it.port.num_link_changes);
  else
    to.absent(of, the_source().knows_all_fields() ? absence::none : absence::not_supported);
}

void read_members(subject& it, property of, value_writer& to) {
  if (it.is_channel() && !it.is_sub_interface())
    to.interfaces(of, the_machine().members_of(it.port.if_index));
  else
    to.absent(of, absence::none);
}

// ---- Settings -------------------------------------------------------------------------------------------------------

bool is_trunk(const interface& port) { return port.oper_mode == PM_PORT_MODE_TRUNK; }

void read_membership(subject& it, property of, value_writer& to) {
  const interface& port = it.port;
  if (port.settings.layer != IF_LAYER_2 || it.is_any_of({IF_TYPE_LOOPBACK, IF_TYPE_MGMT}))
    return to.membership(of, {vlan_mode::routed, 0, 0, 0}, {});
  if (it.is_any_of({IF_TYPE_FC, IF_TYPE_FCIP})) return to.absent(of, absence::none);
  if (!port.oper_mode || !port.settings.access_vlan || !port.settings.native_vlan)
    return to.absent(of, absence::not_supported);
  if (is_trunk(port))
    return to.membership(of, {vlan_mode::trunk, 0, 0, *port.settings.native_vlan}, port.settings.allowed_vlans);
  to.membership(of, {vlan_mode::access, 0, *port.settings.access_vlan, 0}, {});
}

void read_encapsulation(subject& it, property of, value_writer& to) {
  if (it.port.encapsulation_vlan != 0)
    return to.text(of, fmt::format("802.1Q Virtual LAN, Vlan ID {}", it.port.encapsulation_vlan));
  if (it.kind() == IF_TYPE_LOOPBACK) return to.text(of, "LOOPBACK");
  const bool is_arpa = it.is_ethernet() || it.is_any_of({IF_TYPE_MGMT, IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_VETHERNET});
  write_text(of, is_arpa ? "ARPA" : "", to);
}

// Ports keep it in tens of microseconds.
void read_delay(subject& it, property of, value_writer& to) {
  const auto delay = it.port.delay_usec;
  write_number(of, delay ? std::optional<uint64>(*delay / 10 * 10) : std::nullopt, to);
}

// A link that is up has no reason.
void read_state_reason(subject& it, property of, value_writer& to) {
  if (it.port.state_reason == PM_REASON_NONE) return to.absent(of, absence::none);
  to.number(of, it.port.state_reason);
}

// For a trunk the configured one.
void read_port_mode(subject& it, property of, value_writer& to) {
  if (!is_trunk(it.port) && it.port.oper_mode == 0) return to.absent(of, absence::none);
  write_number(of, is_trunk(it.port) ? std::optional<uint64>(it.port.settings.admin_mode) : widened(it.port.oper_mode),
               to);
}

// Without a link the configured one.
void read_duplex(subject& it, property of, value_writer& to) {
  const auto duplex = it.port.oper_duplex;
  write_number(of, duplex && !it.is_up() ? std::optional<uint64>(it.port.settings.admin_duplex) : widened(duplex), to);
}

void read_debounce(subject& it, property of, value_writer& to) {
  if (it.port.debounce_ms)
    to.text(of, *it.port.debounce_ms != 0 ? "enable" : "disable");
  else
    to.absent(of, absence::not_supported);
}

template <auto Member, uint16 kSide>
void read_flow_control(subject& it, property of, value_writer& to) {
  const std::optional<uint16>& bits = member_of<Member>(it.port);
  write_number(of, bits ? std::optional<uint64>(*bits & kSide) : std::nullopt, to);
}

void read_monitor(subject& it, property of, value_writer& to) {
  const auto& monitor = it.port.settings.span_monitor;
  write_number(of, monitor ? std::optional<uint64>(*monitor != 0 ? 1 : 0) : std::nullopt, to);
}

template <std::size_t kClass>
void read_storm_level(subject& it, property of, value_writer& to) {
  if (!it.port.storm_control) return to.absent(of, absence::not_supported);
  const interface::storm_level& level = (*it.port.storm_control)[kClass];
  char digits[16];
  std::snprintf(digits, sizeof digits, "%.2f", level.percent + level.hundredths / 100.0);
  to.decimal(of, digits);
}

// ---- Trunks ---------------------------------------------------------------------------------------------------------

void read_trunk_status(subject& it, property of, value_writer& to) {
  if (!it.port.oper_mode) return to.absent(of, absence::not_supported);
  if (it.port.settings.channel != 0) return to.text(of, is_trunk(it.port) ? "trnk-bndl" : "notrnk-bndl");
  to.text(of, is_trunk(it.port) ? "trunking" : "not-trunking");
}

void read_allowed_vlans(subject& it, property of, value_writer& to) {
  if (!it.port.oper_mode)
    to.absent(of, absence::not_supported);
  else if (it.port.settings.allowed_vlans.empty())
    to.absent(of, absence::none);
  else
    to.vlans(of, it.port.settings.allowed_vlans);
}

void read_forwarding_vlans(subject& it, property of, value_writer& to) {
  if (!it.port.oper_mode) return to.absent(of, absence::not_supported);
  const std::vector<uint16> vlans = forwarding_vlans(it.port);
  if (vlans.empty())
    to.absent(of, absence::none);
  else
    to.vlans(of, vlans);
}

// ---- Loads and rates ------------------------------------------------------------------------------------------------

constexpr uint32 kFullScale = 255;

// Computed in the width of the counters, where products wrap.
template <typename Count>
uint16 reliability(Count packets, Count errors) {
  return static_cast<uint16>(packets == 0 ? kFullScale : kFullScale - errors * Count{kFullScale} / packets);
}

// For a management port from its kernel device, whose record has counters of 32 bits.
void read_reliability(subject& it, property of, value_writer& to) {
  if (it.kind() == IF_TYPE_MGMT) {
    const device_counters counted = it.device().value_or(device_counters{});
    return to.number(of, reliability(in_32_bits(counted.rx_packets) + in_32_bits(counted.tx_packets),
                                     in_32_bits(counted.rx_errors) + in_32_bits(counted.tx_errors)));
  }
  const counter packets = it.port.stats.in.packets + it.port.stats.out.packets;
  const counter errors = it.port.stats.in.errors + it.port.stats.out.errors;
  write_number(of, packets && errors ? std::optional<uint64>(reliability(*packets, *errors)) : std::nullopt, to);
}

// The quotient loses its high bits first and is clamped then. Displays have no loads of management ports and loopbacks:
// these are 1.
template <auto BytesPerSecond>
void read_load(subject& it, property of, value_writer& to) {
  constexpr uint16 kIdle = 1;
  const counter rate = it.port.stats.*BytesPerSecond;
  const auto bandwidth = it.port.bandwidth_kbps;
  if (!rate || !bandwidth) return to.absent(of, absence::not_supported);
  if (it.is_any_of({IF_TYPE_MGMT, IF_TYPE_LOOPBACK}) || *bandwidth == 0) return to.number(of, kIdle);
  const auto load = static_cast<uint16>(*rate * 8 * kFullScale / (uint64{*bandwidth} * 1000));
  to.number(of, std::clamp<uint16>(load, kIdle, kFullScale));
}

// Bytes and packets per second.
struct rates {
  counter bytes;
  counter packets;
};

constexpr uint32 kRingSteps = 5;
constexpr uint32 kRingSeconds = kRingSteps * ETH_RATE_SAMPLE_SECONDS;

// The seconds over which displays average the traffic of an interface; 0 when it has no rates. Management ports
// and ports that can be routed have averages of their own, others those of the ring; without a ring there are those of
// the last minute.
uint32 average_seconds(const subject& it) {
  constexpr uint32 kHalfMinute = 30;
  if (it.kind() == IF_TYPE_LOOPBACK) return 0;
  if (!it.port.stats.rate_ring) return ETH_RATE_SAMPLE_SECONDS;
  switch (it.kind()) {
    case IF_TYPE_MGMT: return ETH_RATE_SAMPLE_SECONDS;
    case IF_TYPE_ETHERNET_L3: return it.port.oper_mode == PM_PORT_MODE_IPS ? kRingSeconds : kHalfMinute;
    default: return kRingSeconds;
  }
}

template <bool kIsReceived>
rates rates_of(const subject& it) {
  const statistics& stats = it.port.stats;
  if (average_seconds(it) != kRingSeconds)
    return kIsReceived ? rates{stats.in_bytes_per_second, stats.in_packets_per_second}
                       : rates{stats.out_bytes_per_second, stats.out_packets_per_second};
  const auto& [samples, next] = *stats.rate_ring;
  const uint32 newest = next - 1;
  const rate_sample& now = samples[newest % samples.size()];
  const rate_sample& then = samples[(newest - kRingSteps) % samples.size()];
  const uint64 bytes = kIsReceived ? now.in_bytes - then.in_bytes : now.out_bytes - then.out_bytes;
  const uint32 frames = kIsReceived ? now.in_frames - then.in_frames : now.out_frames - then.out_frames;
  return {bytes / kRingSeconds, frames / kRingSeconds};
}

void read_load_interval(subject& it, property of, value_writer& to) {
  if (const uint32 seconds = average_seconds(it); seconds != 0)
    to.number(of, seconds);
  else
    to.absent(of, absence::none);
}

// Of tables of rates, which have the averages of the model. Those of a source's own readings cover the time between
// them.
void read_rate_interval(subject& it, property of, value_writer& to) {
  constexpr uint32 kHalfMinute = 30;
  if (average_seconds(it) == 0) return to.absent(of, absence::none);
  if (!the_source().counts_at_refresh())
    return to.number(of, it.kind() == IF_TYPE_MGMT ? uint32{ETH_RATE_SAMPLE_SECONDS} : kHalfMinute);
  const auto& measured = it.port.stats.rates_of_sec;
  write_number(of, measured ? std::optional<uint64>(std::llround(*measured)) : std::nullopt, to);
}

template <bool kIsReceived, auto Rate, uint32 kFactor>
void read_rate(subject& it, property of, value_writer& to) {
  if (average_seconds(it) == 0) return to.absent(of, absence::none);
  const counter rate = rates_of<kIsReceived>(it).*Rate;
  write_number(of, rate ? std::optional<uint64>(*rate * kFactor) : std::nullopt, to);
}

template <bool kIsReceived>
void read_megabytes(subject& it, property of, value_writer& to) {
  constexpr uint64 kMega = 1'000'000;
  if (average_seconds(it) == 0) return to.absent(of, absence::none);
  const counter rate = rates_of<kIsReceived>(it).bytes;
  write_number(of, rate ? std::optional<uint64>(*rate / kMega) : std::nullopt, to);
}

// ---- Counters -------------------------------------------------------------------------------------------------------

// An interface whose device is gone has none.
void write_count(subject& it, property of, counter count, value_writer& to) {
  if (it.has_statistics())
    write_number(of, widened(count), to);
  else
    to.absent(of, absence::none);
}

template <auto... Members>
void received(subject& it, property of, value_writer& to) {
  write_count(it, of, (... + (it.port.stats.in.*Members)), to);
}

template <auto... Members>
void sent(subject& it, property of, value_writer& to) {
  write_count(it, of, (... + (it.port.stats.out.*Members)), to);
}

template <auto... Members>
void error(subject& it, property of, value_writer& to) {
  write_count(it, of, (... + (it.port.stats.errors.*Members)), to);
}

template <std::size_t kClass>
void received_by_size(subject& it, property of, value_writer& to) {
  write_count(it, of, it.port.stats.in.packets_by_size[kClass], to);
}

template <std::size_t kClass>
void sent_by_size(subject& it, property of, value_writer& to) {
  write_count(it, of, it.port.stats.out.packets_by_size[kClass], to);
}

template <std::size_t kClass>
void all_by_size(subject& it, property of, value_writer& to) {
  write_count(it, of, it.port.stats.in.packets_by_size[kClass] + it.port.stats.out.packets_by_size[kClass], to);
}

void read_carrier_errors(subject& it, property of, value_writer& to) {
  const error_counters& errors = it.port.stats.errors;
  write_count(it, of, errors.no_carrier ? errors.lost_carrier + errors.no_carrier : errors.lost_carrier, to);
}

// The newest minute of the ring.
template <auto Member>
void read_interval(subject& it, property of, value_writer& to) {
  const auto& ring = it.port.stats.rate_ring;
  if (!ring) return to.absent(of, absence::not_supported);
  const std::size_t slots = ring->samples.size();
  const auto& end = ring->samples[(ring->next + slots - 1) % slots];
  const auto& begin = ring->samples[(ring->next + slots - 2) % slots];
  using number = std::remove_cvref_t<decltype(end.*Member)>;
  to.number(of, static_cast<number>(end.*Member - begin.*Member));
}

void read_last_clear(subject& it, property of, value_writer& to) { write_moment(of, it.port.stats.last_clear_sec, to); }

// Values that displays always show as 0: simulated switches have no such traffic, for a device it is unknown.
void read_always_zero(subject&, property of, value_writer& to) {
  write_number(of, the_source().knows_all_fields() ? std::optional<uint64>(0) : std::nullopt, to);
}

template <auto Column>
void read_device_counter(subject& it, property of, value_writer& to) {
  if (it.kind() == IF_TYPE_MGMT && it.device())
    to.number(of, (*it.device()).*Column);
  else
    to.absent(of, absence::none);
}

// ---- Capabilities ---------------------------------------------------------------------------------------------------

using able = port_capabilities;

void read_model(subject& it, property of, value_writer& to) { write_text(of, it.port.capabilities.model, to); }

template <auto Member>
void read_ability(subject& it, property of, value_writer& to) {
  to.number(of, it.port.capabilities.*Member ? 1 : 0);
}

// Fixed values of displays for the management port, which has no card.
template <typename Bits>
std::optional<Bits> management_or(subject& it, const std::optional<Bits>& own, uint8 of_management) {
  return it.kind() == IF_TYPE_MGMT && the_source().knows_all_fields() ? of_management : own;
}

void read_speeds(subject& it, property of, value_writer& to) {
  constexpr uint8 kOfManagement = CRDCFG_SPEED_10M | CRDCFG_SPEED_100M | CRDCFG_SPEED_1G;
  const auto bits = management_or(it, it.port.capabilities.speeds, kOfManagement);
  if (!bits) return to.absent(of, absence::not_supported);
  std::vector<uint32> speeds;
  for (const auto& [bit, mbps] : known_speeds())
    if ((*bits & bit) != 0) speeds.push_back(mbps);
  to.numbers(of, speeds);
}

void read_rate_modes(subject& it, property of, value_writer& to) {
  const std::optional<uint8>& bits = it.port.capabilities.rate_modes;
  if (!bits) return to.absent(of, absence::not_supported);
  write_text(of, joined(kRateWords, *bits, ","), to);
}

void read_duplexes(subject& it, property of, value_writer& to) {
  constexpr uint8 kOfManagement = CRDCFG_DUPLEX_HALF | CRDCFG_DUPLEX_FULL | CRDCFG_DUPLEX_AUTO;
  const auto bits = management_or(it, it.port.capabilities.duplexes, kOfManagement);
  if (!bits) return to.absent(of, absence::not_supported);
  write_text(of, joined(kDuplexWords, *bits, ","), to);
}

void read_trunk_encapsulation(subject&, property of, value_writer& to) { to.text(of, "802.1Q"); }

// Displays of simulated switches always show it.
void read_suppression(subject& it, property of, value_writer& to) {
  if (it.port.capabilities.suppression || the_source().knows_all_fields())
    to.text(of, "percentage(0-100)");
  else
    to.absent(of, absence::not_supported);
}

void read_flow_modes(subject& it, property of, value_writer& to) {
  const able& port = it.port.capabilities;
  if (!port.rx_flow_control || !port.tx_flow_control) return to.absent(of, absence::not_supported);
  const auto words = [](uint8 bits) { return bits == 0 ? "none" : joined(kFlowWords, bits, "/"); };
  to.text(of, fmt::format("rx-({}),tx-({})", words(*port.rx_flow_control), words(*port.tx_flow_control)));
}

void read_qos(subject& it, property of, value_writer& to) {
  const auto& qos = it.port.capabilities.qos;
  if (!qos) return to.absent(of, absence::not_supported);
  to.text(of, fmt::format("rx-({}q{}t),tx-({}p{}q{}t)", qos->rx_queues, qos->rx_thresholds, qos->tx_priorities,
                          qos->tx_queues, qos->tx_thresholds));
}

// ---- Transceivers ---------------------------------------------------------------------------------------------------

// Whether there is a module whose identity can be read; otherwise writes why there is none.
bool has_module(const subject& it, property of, value_writer& to) {
  if (it.port.module_in_port) return true;
  to.absent(of, it.port.is_module_protected ? absence::no_permission : absence::none);
  return false;
}

void read_presence(subject& it, property of, value_writer& to) {
  if (it.port.is_module_protected) return to.absent(of, absence::no_permission);
  if (!it.port.capabilities.transceiver) return to.text(of, "not applicable");
  if (!it.port.module_in_port) return to.text(of, "not present");
  const uint8 type = it.port.module_in_port->type;
  const bool is_known = type == FCOT_TYPE_SFP || type == FCOT_TYPE_SFP_PLUS || type == FCOT_TYPE_X2;
  to.text(of, is_known ? "present" : "present but not supported");
}

// The text at a place of an image, without padding.
template <std::size_t Size>
std::string_view filled_text(const char (&field)[Size]) {
  std::string_view text(field, Size);
  text = text.substr(0, text.find('\0'));
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

// A text of the image, in either layout.
template <auto OfSfp, auto OfX2>
void read_module_text(subject& it, property of, value_writer& to) {
  if (!has_module(it, of, to)) return;
  const pm_fcot_res_t record = transceiver_record(it.port);
  const bool is_x2 = record.fcot_type == FCOT_TYPE_X2;
  write_text(of, is_x2 ? filled_text(record.fi.x2_fcot_info.*OfX2) : filled_text(record.fi.fcot_info.*OfSfp), to);
}

// The medium of the line card, or else the vendor of the module.
void read_media_type(subject& it, property of, value_writer& to) {
  if (!it.port.capabilities.type.empty()) return to.text(of, it.port.capabilities.type);
  read_module_text<&lc_fcot_info_t::VendorName, &lc_fcot_x2_info_t::vendor_name>(it, of, to);
}

// Modules with one lane have none.
void read_lanes(subject& it, property of, value_writer& to) {
  if (!has_module(it, of, to)) return;
  const optical_diagnostics& module = it.port.module_in_port->diagnostics;
  if (module.lanes.empty() || module.is_silent) return to.absent(of, absence::none);
  std::vector<lane_value> values;
  for (const optical_lane& lane : module.lanes) {
    const auto [alarms, warnings] = exceeded_by(lane, module);
    lane_value& value = values.emplace_back();
    in_milliamperes(lane.bias_ua).copy(value.current_ma, sizeof value.current_ma);
    in_dbm(lane.tx_uw).copy(value.tx_power_dbm, sizeof value.tx_power_dbm);
    in_dbm(lane.rx_uw).copy(value.rx_power_dbm, sizeof value.rx_power_dbm);
    value.current_mark = static_cast<uint8>(mark_of_bits(alarms, warnings, kBiasHigh));
    value.tx_power_mark = static_cast<uint8>(mark_of_bits(alarms, warnings, kTxHigh));
    value.rx_power_mark = static_cast<uint8>(mark_of_bits(alarms, warnings, kRxHigh));
  }
  to.lanes(of, values);
}

// A number of the image of an SFP; 0 is none. An X2 has another layout.
template <uint32 (*OfImage)(const lc_fcot_info_t& image)>
void read_module_length(subject& it, property of, value_writer& to) {
  if (!has_module(it, of, to)) return;
  const pm_fcot_res_t record = transceiver_record(it.port);
  const uint32 length = record.fcot_type == FCOT_TYPE_X2 ? 0 : OfImage(record.fi.fcot_info);
  if (length == 0)
    to.absent(of, absence::none);
  else
    to.number(of, length);
}

// A code of the image whose length differs from its number.
struct special_length {
  uint8 code;
  uint32 metres;
};
constexpr special_length k50Lengths[] = {{8, 82}, {22, 220}, {5, 50}};
constexpr special_length k62Lengths[] = {{2, 26}, {3, 26}, {22, 220}};

template <std::size_t Count>
uint32 metres_of(const special_length (&special)[Count], uint8 code) {
  const auto* const found = std::find_if(std::begin(special), std::end(special),
                                         [code](const special_length& length) { return length.code == code; });
  return found != std::end(special) ? found->metres : code * 10U;
}

uint32 length_9um_km(const lc_fcot_info_t& image) {
  if (image.distaneIn100mFor9u == 100) return 10;
  return image.distInKmFor9u != 0 ? image.distInKmFor9u : image.distaneIn100mFor9u / 10U;
}
uint32 length_50um_m(const lc_fcot_info_t& image) { return metres_of(k50Lengths, image.distaneIn10mFor50u); }
uint32 length_62um_m(const lc_fcot_info_t& image) { return metres_of(k62Lengths, image.distaneIn10mFor60u); }

void read_bit_rate(subject& it, property of, value_writer& to) {
  if (!has_module(it, of, to)) return;
  const pm_fcot_res_t record = transceiver_record(it.port);
  const bool is_x2 = record.fcot_type == FCOT_TYPE_X2;
  to.number(of, is_x2 ? uint32{record.fi.x2_fcot_info.max_speed} : record.fi.fcot_info.brIn100Mhz * 100U);
}

// Displays show a dash.
void read_vendor_id(subject& it, property of, value_writer& to) {
  if (has_module(it, of, to)) to.absent(of, absence::none);
}

void read_extended_id(subject& it, property of, value_writer& to) {
  if (!has_module(it, of, to)) return;
  const pm_fcot_res_t record = transceiver_record(it.port);
  to.number(of, record.fcot_type == FCOT_TYPE_X2 ? 0U : record.fi.fcot_info.xcvrExtdId);
}

// The vendor's code of the identity page, in either layout.
void read_vendor_extended_id(subject& it, property of, value_writer& to) {
  constexpr std::size_t kOfSfp = 96, kOfX2 = 206;
  if (!has_module(it, of, to)) return;
  const transceiver& module = *it.port.module_in_port;
  const std::size_t at = module.type == FCOT_TYPE_X2 ? kOfX2 : kOfSfp;
  to.number(of, at < module.eeprom.size() ? module.eeprom[at] : 0U);
}

template <auto Member>
void read_module_state(subject& it, property of, value_writer& to) {
  if (has_module(it, of, to)) to.number(of, transceiver_state(it.port).*Member);
}

// ---- The table ------------------------------------------------------------------------------------------------------

// The updates and details that a value needs before it is read.
enum class need : uint8 { nothing, link_fault, driver, module, module_state, totals, counters };

struct row {
  property of;
  reader read;
  need needed = need::nothing;
};

using enum need;
using in = traffic_counters;
using out = traffic_counters;
using err = error_counters;
using dev = device_counters;
using state = port_xcvr_info_t;

constexpr row kRows[] = {
    {property::interface, read_interface},
    {property::device, device_text<&kernel_device::name>},
    {property::ifindex, read_device_number},
    {property::device_type, device_text<&kernel_device::type>},
    {property::parent_device, device_text<&kernel_device::parent>},
    {property::master_device, device_text<&kernel_device::master>},
    {property::interface_index, read_index},
    {property::interface_index_hex, read_index},
    {property::description, own_text<&port_settings::description>},
    {property::hardware, read_hardware},
    {property::address, read_address},
    {property::burned_in_address, own_mac<&interface::burned_in_mac>},
    {property::ip_address, read_ip_address},
    {property::prefix_length_bits, read_prefix_length},

    {property::state, own_number<&interface::oper_state>},
    {property::state_reason, read_state_reason, link_fault},
    {property::last_link_flapped, read_link_change},
    {property::link_changes, read_link_changes},
    {property::interface_resets, own_number<&interface::resets>},

    {property::member_of, own_interface<&port_settings::channel>},
    {property::members, read_members},
    {property::bound_interface, own_interface<&interface::bound_to>},
    {property::multi_chassis_status, own_text<&interface::multi_chassis_status>},
    {property::port_channel, own_interface<&port_settings::channel>},
    {property::vrf, own_text<&interface::vrf>},

    {property::vlan, read_membership},
    {property::encapsulation, read_encapsulation},
    {property::encapsulation_vlan, own_number_but_zero<&interface::encapsulation_vlan>},
    {property::mtu_bytes, own_number<&port_settings::mtu_bytes>},
    {property::bandwidth_kbps, own_number<&interface::bandwidth_kbps>},
    {property::delay_usec, read_delay},
    {property::port_mode, read_port_mode},
    {property::duplex, read_duplex},
    {property::speed_mbps, own_number_but_zero<&interface::oper_speed_mbps>},
    {property::media_type, read_media_type, module},
    {property::debounce, read_debounce},
    {property::debounce_msec, own_number<&interface::debounce_ms>},
    {property::input_flow_control, read_flow_control<&interface::oper_flow_control, PM_FLOW_CTRL_RECEIVE>},
    {property::output_flow_control, read_flow_control<&interface::oper_flow_control, PM_FLOW_CTRL_SEND>},
    {property::admin_input_flow_control, read_flow_control<&port_settings::admin_flow_control, PM_FLOW_CTRL_RECEIVE>},
    {property::admin_output_flow_control, read_flow_control<&port_settings::admin_flow_control, PM_FLOW_CTRL_SEND>},
    {property::auto_mdix, own_number<&interface::mdix_on>},
    {property::rate_mode, own_number<&interface::rate_mode>},
    {property::switchport_monitor, read_monitor},
    {property::unicast_level_percent, read_storm_level<PM_STORM_UNICAST>},
    {property::multicast_level_percent, read_storm_level<PM_STORM_MULTICAST>},
    {property::broadcast_level_percent, read_storm_level<PM_STORM_BROADCAST>},

    {property::native_vlan, own_number_but_zero<&port_settings::native_vlan>},
    {property::trunk_status, read_trunk_status},
    {property::allowed_vlans, read_allowed_vlans},
    {property::forwarding_vlans, read_forwarding_vlans},

    {property::reliability_per_255, read_reliability, totals},
    {property::tx_load_per_255, read_load<&statistics::out_bytes_per_second>, totals},
    {property::rx_load_per_255, read_load<&statistics::in_bytes_per_second>, totals},
    {property::load_interval_seconds, read_load_interval},
    {property::rate_interval_seconds, read_rate_interval, totals},
    {property::input_bits_per_second, read_rate<true, &rates::bytes, 8>, totals},
    {property::input_bytes_per_second, read_rate<true, &rates::bytes, 1>, totals},
    {property::input_megabytes_per_second, read_megabytes<true>, totals},
    {property::input_packets_per_second, read_rate<true, &rates::packets, 1>, totals},
    {property::output_bits_per_second, read_rate<false, &rates::bytes, 8>, totals},
    {property::output_bytes_per_second, read_rate<false, &rates::bytes, 1>, totals},
    {property::output_megabytes_per_second, read_megabytes<false>, totals},
    {property::output_packets_per_second, read_rate<false, &rates::packets, 1>, totals},

    {property::last_counters_cleared, read_last_clear, totals},
    {property::input_packets, received<&in::packets>, totals},
    {property::input_unicast_packets, received<&in::unicast_packets>, counters},
    {property::input_multicast_packets, received<&in::multicast_packets>, counters},
    {property::input_broadcast_packets, received<&in::broadcast_packets>, counters},
    {property::input_jumbo_packets, received_by_size<7>, counters},
    {property::input_bytes, received<&in::bytes>, totals},
    {property::input_trunk_packets, received<&in::trunk_packets>, totals},
    {property::input_packets_0_to_64_bytes, received_by_size<0>, counters},
    {property::input_packets_65_to_127_bytes, received_by_size<1>, counters},
    {property::input_packets_128_to_255_bytes, received_by_size<2>, counters},
    {property::input_packets_256_to_511_bytes, received_by_size<3>, counters},
    {property::input_packets_512_to_1023_bytes, received_by_size<4>, counters},
    {property::input_packets_1024_to_1518_bytes, received_by_size<5>, counters},
    {property::input_packets_1519_to_1548_bytes, received_by_size<6>, counters},
    {property::output_packets, sent<&out::packets>, totals},
    {property::output_unicast_packets, sent<&out::unicast_packets>, counters},
    {property::output_multicast_packets, sent<&out::multicast_packets>, counters},
    {property::output_broadcast_packets, sent<&out::broadcast_packets>, counters},
    {property::output_jumbo_packets, sent_by_size<7>, counters},
    {property::output_bytes, sent<&out::bytes>, totals},
    {property::output_trunk_packets, sent<&out::trunk_packets>, totals},
    {property::output_packets_0_to_64_bytes, sent_by_size<0>, counters},
    {property::output_packets_65_to_127_bytes, sent_by_size<1>, counters},
    {property::output_packets_128_to_255_bytes, sent_by_size<2>, counters},
    {property::output_packets_256_to_511_bytes, sent_by_size<3>, counters},
    {property::output_packets_512_to_1023_bytes, sent_by_size<4>, counters},
    {property::output_packets_1024_to_1518_bytes, sent_by_size<5>, counters},
    {property::output_packets_1519_to_1548_bytes, sent_by_size<6>, counters},
    {property::packets_0_to_64_bytes, all_by_size<0>, counters},
    {property::packets_65_to_127_bytes, all_by_size<1>, counters},
    {property::packets_128_to_255_bytes, all_by_size<2>, counters},
    {property::packets_256_to_511_bytes, all_by_size<3>, counters},
    {property::packets_512_to_1023_bytes, all_by_size<4>, counters},
    {property::packets_1024_to_1518_bytes, all_by_size<5>, counters},
    {property::packets_1519_to_1548_bytes, all_by_size<6>, counters},
    {property::input_pause_frames, error<&err::pause_received>, counters},
    {property::output_pause_frames, error<&err::pause_sent>, counters},
    {property::interval_input_packets, read_interval<&rate_sample::in_frames>, totals},
    {property::interval_input_bytes, read_interval<&rate_sample::in_bytes>, totals},
    {property::interval_output_packets, read_interval<&rate_sample::out_frames>, totals},
    {property::interval_output_bytes, read_interval<&rate_sample::out_bytes>, totals},

    {property::input_errors, received<&in::errors>, totals},
    {property::output_errors, sent<&out::errors>, totals},
    {property::input_discards, received<&in::discards>, totals},
    {property::output_discards, sent<&out::discards>, totals},
    {property::input_drop_events, error<&err::bad_ethertype, &err::bad_protocol, &err::dropped_while_down>, counters},
    {property::alignment_errors, error<&err::runts, &err::jabber>, counters},
    {property::input_crc_errors, error<&err::crc>, counters},
    {property::output_crc_errors, error<&err::crc_sent>, counters},
    {property::runts, error<&err::runts>, counters},
    {property::giants, error<&err::giants>, counters},
    {property::jabbers, error<&err::jabber>, counters},
    {property::short_frames, error<&err::short_frames>, counters},
    {property::ecc_errors, error<&err::ecc>, counters},
    {property::ignored_errors, error<&err::ignored>, counters},
    {property::no_buffer_errors, error<&err::no_buffer>, counters},
    {property::input_overruns, error<&err::overruns>, counters},
    {property::output_underruns, error<&err::underruns>, counters},
    {property::input_fifo_errors, error<&err::receive_fifo>, totals},
    {property::output_fifo_errors, error<&err::send_fifo>, totals},
    {property::input_compressed, error<&err::compressed>, totals},
    {property::bad_ethertype_drops, error<&err::bad_ethertype>, counters},
    {property::bad_protocol_drops, error<&err::bad_protocol>, counters},
    {property::interface_down_drops, error<&err::dropped_while_down>, counters},
    {property::bad_encapsulation_errors, error<&err::bad_encapsulation>, counters},
    {property::dribble_errors, error<&err::dribble>, counters},
    {property::watchdog_errors, error<&err::watchdog>, counters},
    {property::symbol_errors, error<&err::symbol>, counters},
    {property::storm_suppressed_packets, error<&err::storm_suppressed>, counters},
    {property::collisions, error<&err::collisions>, totals},
    {property::single_collisions, error<&err::single_collisions>, counters},
    {property::multiple_collisions, error<&err::multiple_collisions>, counters},
    {property::excessive_collisions, error<&err::excessive_collisions>, counters},
    {property::late_collisions, error<&err::late_collisions>, counters},
    {property::deferred, error<&err::deferred>, counters},
    {property::carrier_errors, read_carrier_errors, counters},
    {property::lost_carrier_errors, error<&err::lost_carrier>, counters},
    {property::no_carrier_errors, error<&err::no_carrier>, counters},
    {property::babble_errors, error<&err::babble>, counters},
    {property::sqe_test_errors, error<&err::sqe_test>, counters},
    {property::input_internal_mac_errors, read_always_zero},
    {property::output_internal_mac_errors, read_always_zero},
    {property::output_bpdu_lost, error<&err::bpdu_lost>, counters},
    {property::output_cos0_lost, error<&err::cos0_lost>, counters},
    {property::output_cos1_lost, error<&err::cos1_lost>, counters},
    {property::output_cos2_lost, error<&err::cos2_lost>, counters},
    {property::output_cos3_lost, error<&err::cos3_lost>, counters},
    {property::output_cos4_lost, error<&err::cos4_lost>, counters},
    {property::output_cos5_lost, error<&err::cos5_lost>, counters},
    {property::output_cos6_lost, error<&err::cos6_lost>, counters},
    {property::output_cos7_lost, error<&err::cos7_lost>, counters},

    {property::layer3_input_routed_packets, read_always_zero},
    {property::layer3_input_routed_bytes, read_always_zero},
    {property::layer3_output_routed_packets, read_always_zero},
    {property::layer3_output_routed_bytes, read_always_zero},
    {property::layer3_input_unicast_packets, read_always_zero},
    {property::layer3_input_unicast_bytes, read_always_zero},
    {property::layer3_input_multicast_packets, read_always_zero},
    {property::layer3_input_multicast_bytes, read_always_zero},
    {property::layer3_output_unicast_packets, read_always_zero},
    {property::layer3_output_unicast_bytes, read_always_zero},
    {property::layer3_output_multicast_packets, read_always_zero},
    {property::layer3_output_multicast_bytes, read_always_zero},
    {property::layer3_average_input_packets, read_always_zero},
    {property::layer3_average_input_bytes, read_always_zero},
    {property::layer3_average_output_packets, read_always_zero},
    {property::layer3_average_output_bytes, read_always_zero},

    // A device's dropped packets are shown as overruns and underruns.
    {property::kernel_input_packets, read_device_counter<&dev::rx_packets>},
    {property::kernel_input_bytes, read_device_counter<&dev::rx_bytes>},
    {property::kernel_input_multicast_packets, read_device_counter<&dev::rx_multicast>},
    {property::kernel_input_compressed, read_device_counter<&dev::rx_compressed>},
    {property::kernel_input_errors, read_device_counter<&dev::rx_errors>},
    {property::kernel_input_frame_errors, read_device_counter<&dev::rx_frame_errors>},
    {property::kernel_input_overruns, read_device_counter<&dev::rx_dropped>},
    {property::kernel_input_fifo_errors, read_device_counter<&dev::rx_fifo_errors>},
    {property::kernel_output_packets, read_device_counter<&dev::tx_packets>},
    {property::kernel_output_bytes, read_device_counter<&dev::tx_bytes>},
    {property::kernel_output_underruns, read_device_counter<&dev::tx_dropped>},
    {property::kernel_output_errors, read_device_counter<&dev::tx_errors>},
    {property::kernel_output_collisions, read_device_counter<&dev::tx_collisions>},
    {property::kernel_output_fifo_errors, read_device_counter<&dev::tx_fifo_errors>},
    {property::kernel_output_carrier_errors, read_device_counter<&dev::tx_carrier_errors>},

    {property::model, read_model, driver},
    {property::speeds_mbps, read_speeds},
    {property::duplex_modes, read_duplexes},
    {property::trunk_encapsulation, read_trunk_encapsulation},
    {property::channel_capable, read_ability<&able::channel>},
    {property::broadcast_suppression, read_suppression},
    {property::flow_control_modes, read_flow_modes},
    {property::rate_modes, read_rate_modes},
    {property::qos_scheduling, read_qos},
    {property::cos_rewrite, read_ability<&able::cos_rewrite>},
    {property::tos_rewrite, read_ability<&able::tos_rewrite>},
    {property::span, read_ability<&able::span>},
    {property::udld, read_ability<&able::udld>},
    {property::link_debounce, read_ability<&able::debounce>},
    {property::link_debounce_time, read_ability<&able::debounce>},
    {property::mdix, read_ability<&able::mdix>},

    {property::presence, read_presence, module},
    {property::vendor, read_module_text<&lc_fcot_info_t::VendorName, &lc_fcot_x2_info_t::vendor_name>, module},
    {property::part_number, read_module_text<&lc_fcot_info_t::VendorPN, &lc_fcot_x2_info_t::vendor_pn>, module},
    {property::revision, read_module_text<&lc_fcot_info_t::VendorRev, &lc_fcot_x2_info_t::vendor_rev>, module},
    {property::serial_number, read_module_text<&lc_fcot_info_t::VendorSN, &lc_fcot_x2_info_t::vendor_ser_no>, module},
    {property::bit_rate_mbps, read_bit_rate, module},
    {property::length_9um_km, read_module_length<length_9um_km>, module},
    {property::length_50um_m, read_module_length<length_50um_m>, module},
    {property::length_62um_m, read_module_length<length_62um_m>, module},
    {property::vendor_id, read_vendor_id, module},
    {property::extended_id, read_extended_id, module},
    {property::vendor_extended_id, read_vendor_extended_id, module},
    {property::tx_fault, read_module_state<&state::tx_fault>, module_state},
    {property::rx_loss, read_module_state<&state::rx_loss>, module_state},
    {property::in_sync, read_module_state<&state::sync_state>, module_state},
    {property::diagnostic_monitoring_type, read_module_state<&state::diag_mon_type>, module_state},
    {property::base_checksum_ok, read_module_state<&state::csum_base_ok>, module_state},
    {property::extended_checksum_ok, read_module_state<&state::csum_ext_ok>, module_state},
    {property::lanes, read_lanes, module_state},
};

// Properties that displays bind without a request: readings and constants of transceivers, columns of tables.
constexpr property kFirstOfDisplays = property::temperature_c;

constexpr bool has_a_row_for_each() {
  uint16 next = 1;
  for (const row& it : kRows)
    if (static_cast<uint16>(it.of) != next++) return false;
  return next == static_cast<uint16>(kFirstOfDisplays);
}
static_assert(has_a_row_for_each(), "in the order of the properties");

const row* row_of(property of) {
  const auto number = static_cast<std::size_t>(of);
  return number == 0 || number > std::size(kRows) ? nullptr : &kRows[number - 1];
}

// The errors that the record of a medium has: a management port has none, a loopback those of the IP stack.
bool has_error_counter(const subject& it, property of) {
  if (of < property::input_errors || of > property::output_cos7_lost) return true;
  if (it.kind() == IF_TYPE_MGMT) return false;
  if (it.kind() != IF_TYPE_LOOPBACK) return true;
  constexpr property kOfLoopbacks[] = {
      property::input_errors,       property::output_errors,     property::input_discards,
      property::output_discards,    property::input_crc_errors,  property::input_overruns,
      property::output_underruns,   property::input_fifo_errors, property::collisions,
      property::output_fifo_errors, property::input_compressed,  property::carrier_errors,
      property::bad_protocol_drops};
  return std::find(std::begin(kOfLoopbacks), std::end(kOfLoopbacks), of) != std::end(kOfLoopbacks);
}

// ---- The service ----------------------------------------------------------------------------------------------------

void prepare(subject& it, const requested_properties& asked) {
  std::array<bool, static_cast<std::size_t>(counters) + 1> is_needed{};
  for (std::size_t i = 0; i < asked.size(); ++i)
    if (const row* const found = row_of(asked[i])) is_needed[static_cast<std::size_t>(found->needed)] = true;
  const auto needs = [&](need which) { return is_needed[static_cast<std::size_t>(which)]; };
  if (needs(link_fault)) the_source().complete(it.port, detail::link_fault);
  if (needs(driver)) the_source().complete(it.port, detail::driver);
  if (needs(module) || needs(module_state)) the_source().complete(it.port, detail::module);
  if (needs(module_state)) the_source().complete(it.port, detail::diagnostics);
  if (needs(totals) || needs(counters)) it.update_statistics();
  if (needs(counters)) the_source().complete(it.port, detail::counters);
}

void read_all(subject& it, const requested_properties& asked, value_writer& to) {
  for (std::size_t i = 0; i < asked.size(); ++i) {
    const property of = asked[i];
    const row* const found = row_of(of);
    if (found == nullptr) continue;
    if (has_error_counter(it, of))
      found->read(it, of, to);
    else
      to.absent(of, absence::none);
  }
}

// Answers a request about values of an interface with what `answer` returns for the interface and what is asked.
template <typename Answer>
reply answer_about(std::span<const std::byte> bytes, Answer answer) {
  const auto asked = read_properties(bytes);
  if (!asked) return reject();
  values_request request;
  std::memcpy(&request, bytes.data(), sizeof request);
  interface* const port = the_machine().find(request.if_index);
  if (port == nullptr) return answer_error(PM_ERR_NO_SUCH_INTERFACE);
  subject it(*port);
  prepare(it, *asked);
  return answer(it, *asked, request.only_absent != 0);
}

reply answer_values(subject& it, const requested_properties& asked, bool only_absent) {
  reply answer{reply::kind::answer, transport_take_buffer()};
  answer.payload.reserve(sizeof(reply_head) + asked.size() * (sizeof(value_head) + sizeof(be64)));
  append_bytes(answer, reply_head{0, 0});
  value_writer to(answer.payload, only_absent);
  read_all(it, asked, to);
  const reply_head head{0, to.count()};
  std::memcpy(answer.payload.data(), &head, sizeof head);
  return answer;
}

reply answer_unknown(subject& it, const requested_properties& asked, bool) {
  it.is_about_unknown = true;
  unknown_answer unknown{};
  std::vector<std::byte> no_values;
  value_writer to(no_values, unknown);
  read_all(it, asked, to);
  return answer_record(unknown);
}

}  // namespace

reply serve_interface_values(mts_opc_t opcode, std::span<const std::byte> request) {
  switch (opcode) {
    case VALUES_OPC_INTERFACE: return answer_about(request, answer_values);
    case VALUES_OPC_UNKNOWN: return answer_about(request, answer_unknown);
    case VALUES_OPC_SOURCE:
      if (!request.empty()) return reject();
      return answer_record(source_answer{static_cast<uint8>(the_source().knows_all_fields() ? 1 : 0)});
    default: return reject_opcode();
  }
}

}  // namespace host
