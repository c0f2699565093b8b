#include "source/kernel/unknown_fields.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace host {
namespace {

// ---- Fields that no device has --------------------------------------------------------------------------------------

constexpr std::string_view kNeverTold[] = {
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
    "input_internal_mac_errors",
    "input_jumbo_packets",
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
    "output_internal_mac_errors",
    "output_jumbo_packets",
    "overrun_errors",
    "runt_errors",
    "runts",
    "sqe_test_errors",
    "storm_suppressed_packets",
    "suppressed_packets",
    "switchport_monitor",
    "underrun_errors",
    "unicast_level_percent",
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

// ---- What links tell ------------------------------------------------------------------------------------------------

bool tells_speed(const kernel_link& link) { return link.speed_mbps.has_value(); }
bool tells_duplex(const kernel_link& link) { return link.is_full_duplex.has_value(); }
bool tells_mtu(const kernel_link& link) { return link.mtu_bytes <= UINT16_MAX; }  // as far as the port manager counts

constexpr struct {
  std::string_view field;
  bool (*is_told)(const kernel_link& link);
} kToldByLinks[] = {
    {"bandwidth_kbps", tells_speed},
    {"duplex", tells_duplex},
    {"mtu_bytes", tells_mtu},
    {"speed_mbps", tells_speed},
};

template <std::size_t Count>
bool is_in(const std::string_view (&fields)[Count], std::string_view field) {
  return std::find(std::begin(fields), std::end(fields), field) != std::end(fields);
}

}  // namespace

bool is_unknown_field(const told_device& device, std::string_view field) {
  if (field.starts_with(kNeverToldBegin) || is_in(kNeverTold, field)) return true;
  if (is_in(kRates, field)) return !device.has_rates;
  for (const auto& row : kToldByLinks)
    if (row.field == field) return device.link == nullptr || !row.is_told(*device.link);
  const auto counter = counter_of(field);
  return counter && (device.if_index == 0 || !device.details.is_told_by_driver(device.if_index, *counter));
}

}  // namespace host
