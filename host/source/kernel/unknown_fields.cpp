#include "source/kernel/unknown_fields.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "platform/interface_manager.h"

namespace host {
namespace {

// ---- Fields that no device has --------------------------------------------------------------------------------------

constexpr std::string_view kNeverTold[] = {
    "alignment_errors",
    "auto_mdix",
    "babble_errors",
    "bad_encapsulation_errors",
    "bad_ethertype_drops",
    "bad_protocol_drops",
    "broadcast_level_percent",
    "debounce",
    "debounce_msec",
    "delay_usec",
    "dribble_errors",
    "ecc_errors",
    "ignored_errors",
    "input_drop_events",
    "input_internal_mac_errors",
    "input_jumbo_packets",
    "input_overruns",
    "input_trunk_packets",
    "interface_down_drops",
    "interface_resets",
    "last_link_flapped",
    "multicast_level_percent",
    "no_buffer_errors",
    "no_carrier_errors",
    "output_bpdu_lost",
    "output_cos0_lost",
    "output_cos1_lost",
    "output_cos2_lost",
    "output_cos3_lost",
    "output_cos4_lost",
    "output_cos5_lost",
    "output_cos6_lost",
    "output_cos7_lost",
    "output_crc_errors",
    "output_discards",
    "output_internal_mac_errors",
    "output_jumbo_packets",
    "output_trunk_packets",
    "output_underruns",
    "overrun_errors",
    "qos_scheduling",
    "rate_mode",
    "runt_errors",
    "runts",
    "sqe_test_errors",
    "storm_suppressed_packets",
    "suppressed_packets",
    "switchport_monitor",
    "underrun_errors",
    "unicast_level_percent",
    "vdc_input_broadcast_packets",
    "vdc_input_unicast_packets",
    "vdc_interval_input_bytes",
    "vdc_interval_input_packets",
    "vdc_interval_output_bytes",
    "vdc_interval_output_packets",
    "vdc_output_broadcast_packets",
    "vdc_output_multicast_packets",
    "vdc_output_unicast_packets",
    "watchdog_errors",
    "wrong_encapsulation",
};

// Whole families: what a switch counts where it routes.
constexpr std::string_view kNeverToldBegin = "layer3_";

// ---- Averages -------------------------------------------------------------------------------------------------------

constexpr std::string_view kRates[] = {
    "input_rate_bps",
    "input_rate_mbytes_per_sec",
    "input_rate_pps",
    "output_rate_bps",
    "output_rate_mbytes_per_sec",
    "output_rate_pps",
    "vdc_input_bytes_per_sec",
    "vdc_input_packets_per_sec",
    "vdc_output_bytes_per_sec",
    "vdc_output_packets_per_sec",
};

// ---- Counters that some drivers have --------------------------------------------------------------------------------

struct driver_field {
  std::string_view field;
  told_counter counter;
};

constexpr driver_field kToldByDrivers[] = {
    {"deferred", kToldDeferred},
    {"deferred_errors", kToldDeferred},
    {"excess_collision_errors", kToldExcessiveCollisions},
    {"excessive_collisions", kToldExcessiveCollisions},
    {"giant_errors", kToldTooLong},
    {"giants", kToldTooLong},
    {"input_broadcast_packets", kToldBroadcastsReceived},
    {"input_pause_frames", kToldPausesReceived},
    {"jabber_errors", kToldJabber},
    {"late_collision_errors", kToldLateCollisions},
    {"late_collisions", kToldLateCollisions},
    {"multi_collision_errors", kToldMultipleCollisions},
    {"multiple_collisions", kToldMultipleCollisions},
    {"output_broadcast_packets", kToldBroadcastsSent},
    {"output_multicast_packets", kToldMulticastsSent},
    {"output_pause_frames", kToldPausesSent},
    {"short_frame_errors", kToldUndersized},
    {"single_collision_errors", kToldSingleCollisions},
    {"single_collisions", kToldSingleCollisions},
    {"symbol_errors", kToldSymbolErrors},
    {"undersize_errors", kToldUndersized},
};

// Packets by size: "input_packets_65_to_127_bytes" and so on, in the order of the classes.
constexpr std::string_view kSizes[] = {
    "packets_0_to_64_bytes",     "packets_65_to_127_bytes",    "packets_128_to_255_bytes",  "packets_256_to_511_bytes",
    "packets_512_to_1023_bytes", "packets_1024_to_1518_bytes", "packets_1519_to_1548_bytes"};

std::optional<told_counter> size_counter(std::string_view field) {
  const bool is_sent = field.starts_with("output_");
  for (std::size_t i = 0; i < std::size(kSizes); ++i)
    if (field.ends_with(kSizes[i])) return told_counter((is_sent ? kToldSentBySize : kToldReceivedBySize) + i);
  return std::nullopt;
}

std::optional<told_counter> counter_of(std::string_view field) {
  for (const driver_field& row : kToldByDrivers)
    if (row.field == field) return row.counter;
  return size_counter(field);
}

// Packets of one kind are what the others leave.
bool separates(const told_device& device, told_counter multicasts, told_counter broadcasts) {
  return device.if_index != 0 && device.details.is_told_by_driver(device.if_index, multicasts) &&
         device.details.is_told_by_driver(device.if_index, broadcasts);
}

bool separates_received(const told_device& device) {
  return separates(device, kToldMulticastsReceived, kToldBroadcastsReceived);
}
bool separates_sent(const told_device& device) { return separates(device, kToldMulticastsSent, kToldBroadcastsSent); }

// ---- What the model knows
// --------------------------------------------------------------------------------------------

template <auto Member>
bool knows(const told_device& device) {
  return device.port != nullptr && (device.port->*Member).has_value();
}

template <auto Member>
bool knows_ability(const told_device& device) {
  return device.port != nullptr && (device.port->capabilities.*Member).has_value();
}

bool knows_vlan(const told_device& device) {
  return device.port != nullptr && (device.port->layer != IF_LAYER_2 || device.port->access_vlan.has_value());
}

using able = port_capabilities;
constexpr struct {
  std::string_view field;
  bool (*is_known)(const told_device& device);
} kPerhapsKnown[] = {
    {"admin_input_flow_control", knows<&interface::admin_flow_control>},
    {"admin_output_flow_control", knows<&interface::admin_flow_control>},
    {"bandwidth_kbps", knows<&interface::bandwidth_kbps>},
    {"duplex", knows<&interface::oper_duplex>},
    {"flow_control", knows_ability<&able::rx_flow_control>},
    {"input_flow_control", knows<&interface::admin_flow_control>},
    {"input_unicast_packets", separates_received},
    {"layer2_unicast_packets", separates_received},
    {"layer2_broadcast_packets", separates_received},
    {"mtu_bytes", knows<&interface::mtu_bytes>},
    {"native_vlan", knows<&interface::native_vlan>},
    {"oper_input_flow_control", knows<&interface::oper_flow_control>},
    {"oper_output_flow_control", knows<&interface::oper_flow_control>},
    {"output_flow_control", knows<&interface::admin_flow_control>},
    {"output_unicast_packets", separates_sent},
    {"port_mode", knows<&interface::oper_mode>},
    {"speed_mbps", knows<&interface::oper_speed_mbps>},
    {"speeds_mbps", knows_ability<&able::speeds>},
    {"vlan", knows_vlan},
};

template <std::size_t Count>
bool is_in(const std::string_view (&fields)[Count], std::string_view field) {
  return std::find(std::begin(fields), std::end(fields), field) != std::end(fields);
}

}  // namespace

bool is_unknown_field(const told_device& device, std::string_view field) {
  if (field.starts_with(kNeverToldBegin) || is_in(kNeverTold, field)) return true;
  if (is_in(kRates, field)) return !device.has_rates;
  for (const auto& row : kPerhapsKnown)
    if (row.field == field) return !row.is_known(device);
  const auto counter = counter_of(field);
  return counter && (device.if_index == 0 || !device.details.is_told_by_driver(device.if_index, *counter));
}

}  // namespace host
