#include "shell/output/schema.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "platform/tags.h"

namespace host {
namespace {

using enum field_type;

constexpr auto kDetailed = kDetailedDisplay;
constexpr auto kCapabilities = kCapabilityDisplay;
constexpr auto kSwitchport = kSwitchportDisplay;
constexpr auto kBrief = kBriefDisplay;
constexpr auto kStatus = kStatusDisplay;
constexpr auto kErrorStatus = kErrorStatusDisplay;
constexpr auto kCounters = kCountersDisplay;
constexpr auto kRates = kRatesDisplay;
constexpr auto kErrorCounters = kErrorCountersDisplay;
constexpr auto kTrunkCounters = kTrunkCountersDisplay;
constexpr auto kStormControl = kStormControlDisplay;
constexpr auto kFlowControl = kFlowControlDisplay;
constexpr auto kDetailedCounters = kDetailedCountersDisplay;
constexpr auto kAllCounters = kAllCountersDisplay;
constexpr auto kTransceivers = kTransceiverDisplay | kTransceiverDetailsDisplay;
constexpr auto kTrunks = kTrunkDisplay | kAllowedVlansDisplay | kForwardingVlansDisplay;
constexpr auto kPlain = enum_words::number;

constexpr field kFields[] = {
    // The interface itself: the first field of every record.
    {tag::nonzero_interface, "interface", interface_name, kPlain, kDetailedCounters},
    {tag::interface, "interface", interface_name, kPlain, kDetailed | kSwitchport | kBrief},
    {tag::brief_interface, "interface", interface_name, kPlain, kBrief},
    {tag::capability_interface, "interface", interface_name, kPlain, kCapabilities},
    {tag::flow_control_interface, "interface", interface_name, kPlain, kFlowControl},
    {tag::status_interface, "interface", interface_name, kPlain, kStatus},
    {tag::error_status_interface, "interface", interface_name, kPlain, kErrorStatus},
    {tag::description_interface, "interface", interface_name, kPlain, kDescriptionDisplay},
    {tag::mac_interface, "interface", interface_name, kPlain, kMacAddressDisplay},
    {tag::ifindex_interface, "interface", interface_name, kPlain, kIfIndexDisplay},
    {tag::debounce_interface, "interface", interface_name, kPlain, kDebounceDisplay},
    {tag::counters_interface, "interface", interface_name, kPlain, kCounters},
    {tag::rates_interface, "interface", interface_name, kPlain, kRates},
    {tag::error_counters_interface, "interface", interface_name, kPlain, kErrorCounters},
    {tag::trunk_counters_interface, "interface", interface_name, kPlain, kTrunkCounters},
    {tag::storm_control_interface, "interface", interface_name, kPlain, kStormControl},
    {tag::all_interface, "interface", interface_name, kPlain, kAllCounters},

    // State.
    {tag::state, "state", enumeration, enum_words::port_state, kDetailed | kSwitchport | kBrief},
    {tag::brief_state, "state", enumeration, enum_words::port_state, kBrief},
    {tag::status_state, "state", enumeration, enum_words::port_state, kStatus},
    {tag::error_status_state, "state", enumeration, enum_words::port_state, kErrorStatus},
    {tag::state_reason, "state_reason", enumeration, enum_words::state_reason, kDetailed | kSwitchport},
    {tag::error_status_state_reason, "state_reason", enumeration, enum_words::state_reason, kErrorStatus},
    {tag::brief_state_reason, "state_reason", enumeration, enum_words::state_reason_short, kBrief},

    // What the interface is.
    {tag::description, "description", string, kPlain, kDetailed | kSwitchport},
    {tag::brief_description, "description", string, kPlain, kBrief},
    {tag::status_description, "description", string, kPlain, kStatus},
    {tag::error_status_description, "description", string, kPlain, kErrorStatus},
    {tag::description_text, "description", string, kPlain, kDescriptionDisplay},
    {tag::ifindex, "ifindex", number, kPlain, kIfIndexDisplay},
    {tag::ifindex_hex, "ifindex_hex", hexadecimal, kPlain, kIfIndexDisplay},
    {tag::member_of, "member_of", string, kPlain, kSwitchport},
    {tag::bound_interface, "bound_interface", interface_name, kPlain, kDetailed},
    {tag::multi_chassis_status, "multi_chassis_status", string, kPlain, kDetailed},
    {tag::hardware, "hardware", string, kPlain, kDetailed},
    {tag::management_hardware, "hardware", string, kPlain, kSwitchport},
    {tag::address, "address", mac, kPlain, kDetailed | kSwitchport},
    {tag::management_address, "address", mac, kPlain, kSwitchport},
    {tag::mac_address, "address", mac, kPlain, kMacAddressDisplay},
    {tag::burned_in_address, "burned_in_address", mac, kPlain, kDetailed},
    {tag::mac_burned_in_address, "burned_in_address", mac, kPlain, kMacAddressDisplay},
    {tag::ip_address, "ip_address", ipv4, kPlain, kDetailed | kBrief},
    {tag::brief_ip_address, "ip_address", ipv4, kPlain, kBrief},
    {tag::prefix_length, "prefix_length_bits", number, kPlain, kDetailed},

    // Settings. A VLAN is a number, or "routed" or "trunk".
    {tag::status_vlan, "vlan", string, kPlain, kStatus},
    {tag::mtu, "mtu_bytes", number, kPlain, kDetailed | kSwitchport | kBrief},
    {tag::management_mtu, "mtu_bytes", number, kPlain, kSwitchport},
    {tag::brief_mtu, "mtu_bytes", number, kPlain, kBrief},
    {tag::bandwidth, "bandwidth_kbps", number, kPlain, kDetailed | kSwitchport},
    {tag::delay, "delay_usec", number, kPlain, kDetailed | kSwitchport},
    {tag::reliability, "reliability_per_255", number_from_text, kPlain, kDetailed},
    {tag::tx_load, "tx_load_per_255", number_from_text, kPlain, kDetailed},
    {tag::rx_load, "rx_load_per_255", number_from_text, kPlain, kDetailed},
    {tag::port_mode, "port_mode", enumeration, enum_words::port_mode, kDetailed | kSwitchport},
    {tag::duplex, "duplex", enumeration, enum_words::duplex, kDetailed | kSwitchport},
    {tag::management_duplex, "duplex", enumeration, enum_words::duplex, kSwitchport},
    {tag::status_duplex, "duplex", enumeration, enum_words::duplex, kStatus},
    {tag::speed, "speed_mbps", number_or_auto, enum_words::speed_mbps, kDetailed | kSwitchport | kBrief},
    {tag::management_speed, "speed_mbps", number, kPlain, kSwitchport},
    {tag::brief_speed, "speed_mbps", number, kPlain, kBrief},
    {tag::status_speed, "speed_mbps", number_or_auto, enum_words::speed_mbps, kStatus},
    {tag::media_type, "media_type", string, kPlain, kDetailed},
    {tag::status_type, "type", string, kPlain, kStatus},
    {tag::debounce, "debounce", string, kPlain, kDebounceDisplay},
    {tag::debounce_msec, "debounce_msec", number, kPlain, kDebounceDisplay},
    {tag::input_flow_control, "input_flow_control", enumeration, enum_words::flow_control, kDetailed},
    {tag::output_flow_control, "output_flow_control", enumeration, enum_words::flow_control, kDetailed},
    {tag::flow_control_admin_output, "admin_output_flow_control", enumeration, enum_words::flow_control, kFlowControl},
    {tag::flow_control_oper_output, "oper_output_flow_control", enumeration, enum_words::flow_control, kFlowControl},
    {tag::flow_control_admin_input, "admin_input_flow_control", enumeration, enum_words::flow_control, kFlowControl},
    {tag::flow_control_oper_input, "oper_input_flow_control", enumeration, enum_words::flow_control, kFlowControl},
    {tag::auto_mdix, "auto_mdix", enumeration, enum_words::on_off, kDetailed},
    {tag::rate_mode, "rate_mode", enumeration, enum_words::rate_mode, kDetailed},
    {tag::switchport_monitor, "switchport_monitor", enumeration, enum_words::on_off, kDetailed},

    // Events.
    {tag::last_link_flapped, "last_link_flapped", string, kPlain, kDetailed},
    {tag::last_counters_cleared, "last_counters_cleared", string, kPlain, kDetailed},
    {tag::interface_resets, "interface_resets", number, kPlain, kDetailed},

    // Traffic of the management port, then of loopbacks.
    {tag::management_input_rate_bps, "input_rate_bps", number, kPlain, kDetailed},
    {tag::management_input_rate_pps, "input_rate_pps", number, kPlain, kDetailed},
    {tag::management_output_rate_bps, "output_rate_bps", number, kPlain, kDetailed},
    {tag::management_output_rate_pps, "output_rate_pps", number, kPlain, kDetailed},
    {tag::management_input_packets, "input_packets", number, kPlain, kDetailed},
    {tag::management_input_unicast_packets, "input_unicast_packets", number, kPlain, kDetailed},
    {tag::management_input_multicast_packets, "input_multicast_packets", number, kPlain, kDetailed},
    {tag::management_input_broadcast_packets, "input_broadcast_packets", number, kPlain, kDetailed},
    {tag::management_input_bytes, "input_bytes", number, kPlain, kDetailed},
    {tag::management_output_packets, "output_packets", number, kPlain, kDetailed},
    {tag::management_output_unicast_packets, "output_unicast_packets", number, kPlain, kDetailed},
    {tag::management_output_multicast_packets, "output_multicast_packets", number, kPlain, kDetailed},
    {tag::management_output_broadcast_packets, "output_broadcast_packets", number, kPlain, kDetailed},
    {tag::management_output_bytes, "output_bytes", number, kPlain, kDetailed},
    {tag::loopback_input_packets, "input_packets", number, kPlain, kDetailed},
    {tag::loopback_input_bytes, "input_bytes", number, kPlain, kDetailed},
    {tag::loopback_input_multicast_packets, "input_multicast_packets", number, kPlain, kDetailed},
    {tag::loopback_input_compressed, "input_compressed", number, kPlain, kDetailed},
    {tag::loopback_input_errors, "input_errors", number, kPlain, kDetailed},
    {tag::loopback_input_frame_errors, "input_frame_errors", number, kPlain, kDetailed},
    {tag::loopback_input_overruns, "input_overruns", number, kPlain, kDetailed},
    {tag::loopback_input_fifo_errors, "input_fifo_errors", number, kPlain, kDetailed},
    {tag::loopback_output_packets, "output_packets", number, kPlain, kDetailed},
    {tag::loopback_output_bytes, "output_bytes", number, kPlain, kDetailed},
    {tag::loopback_output_underruns, "output_underruns", number, kPlain, kDetailed},
    {tag::loopback_output_errors, "output_errors", number, kPlain, kDetailed},
    {tag::loopback_output_collisions, "output_collisions", number, kPlain, kDetailed},
    {tag::loopback_output_fifo_errors, "output_fifo_errors", number, kPlain, kDetailed},
    {tag::loopback_output_carrier_errors, "output_carrier_errors", number, kPlain, kDetailed},

    // The kernel's own counters of the management device.
    {tag::kernel_input_packets, "kernel_input_packets", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_input_bytes, "kernel_input_bytes", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_input_multicast_packets, "kernel_input_multicast_packets", number, kPlain,
     kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_input_compressed, "kernel_input_compressed", number, kPlain,
     kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_input_errors, "kernel_input_errors", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_input_frame_errors, "kernel_input_frame_errors", number, kPlain,
     kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_input_overruns, "kernel_input_overruns", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_input_fifo_errors, "kernel_input_fifo_errors", number, kPlain,
     kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_output_packets, "kernel_output_packets", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_output_bytes, "kernel_output_bytes", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_output_underruns, "kernel_output_underruns", number, kPlain,
     kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_output_errors, "kernel_output_errors", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_output_collisions, "kernel_output_collisions", number, kPlain,
     kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_output_fifo_errors, "kernel_output_fifo_errors", number, kPlain,
     kDetailed | kDetailedCounters | kAllCounters},
    {tag::kernel_output_carrier_errors, "kernel_output_carrier_errors", number, kPlain,
     kDetailed | kDetailedCounters | kAllCounters},

    // Pause frames.
    {tag::flow_control_input_pause_frames, "input_pause_frames", number, kPlain, kFlowControl},
    {tag::flow_control_output_pause_frames, "output_pause_frames", number, kPlain, kFlowControl},

    // Rates, as their columns say: whole megabytes.
    {tag::rates_input_mbytes_per_sec, "input_rate_mbytes_per_sec", number, kPlain, kRates},
    {tag::rates_input_pps, "input_rate_pps", number, kPlain, kRates},
    {tag::rates_output_mbytes_per_sec, "output_rate_mbytes_per_sec", number, kPlain, kRates},
    {tag::rates_output_pps, "output_rate_pps", number, kPlain, kRates},

    // The counter tables.
    {tag::counters_input_bytes, "input_bytes", number, kPlain, kCounters},
    {tag::counters_input_unicast_packets, "input_unicast_packets", number, kPlain, kCounters},
    {tag::counters_input_multicast_packets, "input_multicast_packets", number, kPlain, kCounters},
    {tag::counters_input_broadcast_packets, "input_broadcast_packets", number, kPlain, kCounters},
    {tag::counters_output_bytes, "output_bytes", number, kPlain, kCounters},
    {tag::counters_output_unicast_packets, "output_unicast_packets", number, kPlain, kCounters},
    {tag::counters_output_multicast_packets, "output_multicast_packets", number, kPlain, kCounters},
    {tag::counters_output_broadcast_packets, "output_broadcast_packets", number, kPlain, kCounters},
    {tag::error_counters_alignment_errors, "alignment_errors", number, kPlain, kErrorCounters},
    {tag::error_counters_frame_check_errors, "frame_check_errors", number, kPlain, kErrorCounters},
    {tag::error_counters_output_errors, "output_errors", number, kPlain, kErrorCounters},
    {tag::error_counters_input_errors, "input_errors", number, kPlain, kErrorCounters},
    {tag::error_counters_undersize_errors, "undersize_errors", number, kPlain, kErrorCounters},
    {tag::error_counters_output_discards, "output_discards", number, kPlain, kErrorCounters},
    {tag::error_counters_single_collisions, "single_collisions", number, kPlain, kErrorCounters},
    {tag::error_counters_multiple_collisions, "multiple_collisions", number, kPlain, kErrorCounters},
    {tag::error_counters_late_collisions, "late_collisions", number, kPlain, kErrorCounters},
    {tag::error_counters_excessive_collisions, "excessive_collisions", number, kPlain, kErrorCounters},
    {tag::error_counters_carrier_errors, "carrier_errors", number, kPlain, kErrorCounters},
    {tag::error_counters_runts, "runts", number, kPlain, kErrorCounters},
    {tag::error_counters_giants, "giants", number, kPlain, kErrorCounters},
    {tag::error_counters_sqe_test_errors, "sqe_test_errors", number, kPlain, kErrorCounters},
    {tag::error_counters_deferred, "deferred", number, kPlain, kErrorCounters},
    {tag::error_counters_output_internal_mac_errors, "output_internal_mac_errors", number, kPlain, kErrorCounters},
    {tag::error_counters_input_internal_mac_errors, "input_internal_mac_errors", number, kPlain, kErrorCounters},
    {tag::error_counters_symbol_errors, "symbol_errors", number, kPlain, kErrorCounters},
    {tag::trunk_counters_output_packets, "output_trunk_packets", number, kPlain, kTrunkCounters},
    {tag::trunk_counters_input_packets, "input_trunk_packets", number, kPlain, kTrunkCounters},
    {tag::trunk_counters_wrong_encapsulation, "wrong_encapsulation", number, kPlain, kTrunkCounters},
    {tag::storm_control_unicast_level, "unicast_level_percent", decimal_from_text, kPlain, kStormControl},
    {tag::storm_control_multicast_level, "multicast_level_percent", decimal_from_text, kPlain, kStormControl},
    {tag::storm_control_broadcast_level, "broadcast_level_percent", decimal_from_text, kPlain, kStormControl},
    {tag::storm_control_suppressed_packets, "suppressed_packets", number, kPlain, kStormControl},

    // Every counter. Those of loopbacks are called as those of Ethernet ports.
    {tag::nonzero_input_packets, "input_packets", number, kPlain, kDetailedCounters},
    {tag::high_capacity_input_packets, "input_packets", number, kPlain, kAllCounters},
    {tag::all_input_packets, "input_packets", number, kPlain, kAllCounters},
    {tag::all_loopback_input_packets, "input_packets", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_input_packets, "input_packets", number, kPlain, kDetailedCounters},
    {tag::nonzero_input_unicast_packets, "input_unicast_packets", number, kPlain, kDetailedCounters},
    {tag::high_capacity_input_unicast_packets, "input_unicast_packets", number, kPlain, kAllCounters},
    {tag::all_input_unicast_packets, "input_unicast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_input_multicast_packets, "input_multicast_packets", number, kPlain, kDetailedCounters},
    {tag::high_capacity_input_multicast_packets, "input_multicast_packets", number, kPlain, kAllCounters},
    {tag::all_input_multicast_packets, "input_multicast_packets", number, kPlain, kAllCounters},
    {tag::all_loopback_input_multicast_packets, "input_multicast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_input_multicast_packets, "input_multicast_packets", number, kPlain, kDetailedCounters},
    {tag::nonzero_input_broadcast_packets, "input_broadcast_packets", number, kPlain, kDetailedCounters},
    {tag::high_capacity_input_broadcast_packets, "input_broadcast_packets", number, kPlain, kAllCounters},
    {tag::all_input_broadcast_packets, "input_broadcast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_input_jumbo_packets, "input_jumbo_packets", number, kPlain, kDetailedCounters},
    {tag::all_input_jumbo_packets, "input_jumbo_packets", number, kPlain, kAllCounters},
    {tag::nonzero_input_bytes, "input_bytes", number, kPlain, kDetailedCounters},
    {tag::high_capacity_input_bytes, "input_bytes", number, kPlain, kAllCounters},
    {tag::all_input_bytes, "input_bytes", number, kPlain, kAllCounters},
    {tag::all_loopback_input_bytes, "input_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_input_bytes, "input_bytes", number, kPlain, kDetailedCounters},
    {tag::nonzero_storm_suppressed_packets, "storm_suppressed_packets", number, kPlain, kDetailedCounters},
    {tag::all_storm_suppressed_packets, "storm_suppressed_packets", number, kPlain, kAllCounters},
    {tag::nonzero_input_packets_0_to_64, "input_packets_0_to_64_bytes", number, kPlain, kDetailedCounters},
    {tag::all_input_packets_0_to_64, "input_packets_0_to_64_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_input_packets_65_to_127, "input_packets_65_to_127_bytes", number, kPlain, kDetailedCounters},
    {tag::all_input_packets_65_to_127, "input_packets_65_to_127_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_input_packets_128_to_255, "input_packets_128_to_255_bytes", number, kPlain, kDetailedCounters},
    {tag::all_input_packets_128_to_255, "input_packets_128_to_255_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_input_packets_256_to_511, "input_packets_256_to_511_bytes", number, kPlain, kDetailedCounters},
    {tag::all_input_packets_256_to_511, "input_packets_256_to_511_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_input_packets_512_to_1023, "input_packets_512_to_1023_bytes", number, kPlain, kDetailedCounters},
    {tag::all_input_packets_512_to_1023, "input_packets_512_to_1023_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_input_packets_1024_to_1518, "input_packets_1024_to_1518_bytes", number, kPlain, kDetailedCounters},
    {tag::all_input_packets_1024_to_1518, "input_packets_1024_to_1518_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_input_packets_1519_to_1548, "input_packets_1519_to_1548_bytes", number, kPlain, kDetailedCounters},
    {tag::all_input_packets_1519_to_1548, "input_packets_1519_to_1548_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_input_trunk_packets, "input_trunk_packets", number, kPlain, kDetailedCounters},
    {tag::high_capacity_input_trunk_packets, "input_trunk_packets", number, kPlain, kAllCounters},
    {tag::all_input_trunk_packets, "input_trunk_packets", number, kPlain, kAllCounters},
    {tag::nonzero_output_packets, "output_packets", number, kPlain, kDetailedCounters},
    {tag::high_capacity_output_packets, "output_packets", number, kPlain, kAllCounters},
    {tag::all_output_packets, "output_packets", number, kPlain, kAllCounters},
    {tag::all_loopback_output_packets, "output_packets", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_output_packets, "output_packets", number, kPlain, kDetailedCounters},
    {tag::nonzero_output_unicast_packets, "output_unicast_packets", number, kPlain, kDetailedCounters},
    {tag::high_capacity_output_unicast_packets, "output_unicast_packets", number, kPlain, kAllCounters},
    {tag::all_output_unicast_packets, "output_unicast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_output_multicast_packets, "output_multicast_packets", number, kPlain, kDetailedCounters},
    {tag::high_capacity_output_multicast_packets, "output_multicast_packets", number, kPlain, kAllCounters},
    {tag::all_output_multicast_packets, "output_multicast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_output_broadcast_packets, "output_broadcast_packets", number, kPlain, kDetailedCounters},
    {tag::high_capacity_output_broadcast_packets, "output_broadcast_packets", number, kPlain, kAllCounters},
    {tag::all_output_broadcast_packets, "output_broadcast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_output_jumbo_packets, "output_jumbo_packets", number, kPlain, kDetailedCounters},
    {tag::all_output_jumbo_packets, "output_jumbo_packets", number, kPlain, kAllCounters},
    {tag::nonzero_output_bytes, "output_bytes", number, kPlain, kDetailedCounters},
    {tag::high_capacity_output_bytes, "output_bytes", number, kPlain, kAllCounters},
    {tag::all_output_bytes, "output_bytes", number, kPlain, kAllCounters},
    {tag::all_loopback_output_bytes, "output_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_output_bytes, "output_bytes", number, kPlain, kDetailedCounters},
    {tag::nonzero_output_packets_0_to_64, "output_packets_0_to_64_bytes", number, kPlain, kDetailedCounters},
    {tag::all_output_packets_0_to_64, "output_packets_0_to_64_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_output_packets_65_to_127, "output_packets_65_to_127_bytes", number, kPlain, kDetailedCounters},
    {tag::all_output_packets_65_to_127, "output_packets_65_to_127_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_output_packets_128_to_255, "output_packets_128_to_255_bytes", number, kPlain, kDetailedCounters},
    {tag::all_output_packets_128_to_255, "output_packets_128_to_255_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_output_packets_256_to_511, "output_packets_256_to_511_bytes", number, kPlain, kDetailedCounters},
    {tag::all_output_packets_256_to_511, "output_packets_256_to_511_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_output_packets_512_to_1023, "output_packets_512_to_1023_bytes", number, kPlain, kDetailedCounters},
    {tag::all_output_packets_512_to_1023, "output_packets_512_to_1023_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_output_packets_1024_to_1518, "output_packets_1024_to_1518_bytes", number, kPlain, kDetailedCounters},
    {tag::all_output_packets_1024_to_1518, "output_packets_1024_to_1518_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_output_packets_1519_to_1548, "output_packets_1519_to_1548_bytes", number, kPlain, kDetailedCounters},
    {tag::all_output_packets_1519_to_1548, "output_packets_1519_to_1548_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_output_trunk_packets, "output_trunk_packets", number, kPlain, kDetailedCounters},
    {tag::high_capacity_output_trunk_packets, "output_trunk_packets", number, kPlain, kAllCounters},
    {tag::all_output_trunk_packets, "output_trunk_packets", number, kPlain, kAllCounters},
    {tag::nonzero_no_buffer_errors, "no_buffer_errors", number, kPlain, kDetailedCounters},
    {tag::all_no_buffer_errors, "no_buffer_errors", number, kPlain, kAllCounters},
    {tag::nonzero_runt_errors, "runt_errors", number, kPlain, kDetailedCounters},
    {tag::all_runt_errors, "runt_errors", number, kPlain, kAllCounters},
    {tag::nonzero_input_crc_errors, "input_crc_errors", number, kPlain, kDetailedCounters},
    {tag::all_input_crc_errors, "input_crc_errors", number, kPlain, kAllCounters},
    {tag::nonzero_ecc_errors, "ecc_errors", number, kPlain, kDetailedCounters},
    {tag::all_ecc_errors, "ecc_errors", number, kPlain, kAllCounters},
    {tag::nonzero_overrun_errors, "overrun_errors", number, kPlain, kDetailedCounters},
    {tag::all_overrun_errors, "overrun_errors", number, kPlain, kAllCounters},
    {tag::all_loopback_overrun_errors, "overrun_errors", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_overrun_errors, "overrun_errors", number, kPlain, kDetailedCounters},
    {tag::nonzero_underrun_errors, "underrun_errors", number, kPlain, kDetailedCounters},
    {tag::all_underrun_errors, "underrun_errors", number, kPlain, kAllCounters},
    {tag::all_loopback_underrun_errors, "underrun_errors", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_underrun_errors, "underrun_errors", number, kPlain, kDetailedCounters},
    {tag::nonzero_ignored_errors, "ignored_errors", number, kPlain, kDetailedCounters},
    {tag::all_ignored_errors, "ignored_errors", number, kPlain, kAllCounters},
    {tag::nonzero_bad_ethertype_drops, "bad_ethertype_drops", number, kPlain, kDetailedCounters},
    {tag::all_bad_ethertype_drops, "bad_ethertype_drops", number, kPlain, kAllCounters},
    {tag::nonzero_bad_protocol_drops, "bad_protocol_drops", number, kPlain, kDetailedCounters},
    {tag::all_bad_protocol_drops, "bad_protocol_drops", number, kPlain, kAllCounters},
    {tag::nonzero_interface_down_drops, "interface_down_drops", number, kPlain, kDetailedCounters},
    {tag::all_interface_down_drops, "interface_down_drops", number, kPlain, kAllCounters},
    {tag::nonzero_collision_errors, "collision_errors", number, kPlain, kDetailedCounters},
    {tag::all_collision_errors, "collision_errors", number, kPlain, kAllCounters},
    {tag::all_loopback_collision_errors, "collision_errors", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_collision_errors, "collision_errors", number, kPlain, kDetailedCounters},
    {tag::nonzero_late_collision_errors, "late_collision_errors", number, kPlain, kDetailedCounters},
    {tag::all_late_collision_errors, "late_collision_errors", number, kPlain, kAllCounters},
    {tag::nonzero_lost_carrier_errors, "lost_carrier_errors", number, kPlain, kDetailedCounters},
    {tag::all_lost_carrier_errors, "lost_carrier_errors", number, kPlain, kAllCounters},
    {tag::all_loopback_lost_carrier_errors, "lost_carrier_errors", number, kPlain, kAllCounters},
    {tag::nonzero_no_carrier_errors, "no_carrier_errors", number, kPlain, kDetailedCounters},
    {tag::all_no_carrier_errors, "no_carrier_errors", number, kPlain, kAllCounters},
    {tag::nonzero_babble_errors, "babble_errors", number, kPlain, kDetailedCounters},
    {tag::all_babble_errors, "babble_errors", number, kPlain, kAllCounters},
    {tag::nonzero_watchdog_errors, "watchdog_errors", number, kPlain, kDetailedCounters},
    {tag::all_watchdog_errors, "watchdog_errors", number, kPlain, kAllCounters},
    {tag::nonzero_dribble_errors, "dribble_errors", number, kPlain, kDetailedCounters},
    {tag::all_dribble_errors, "dribble_errors", number, kPlain, kAllCounters},
    {tag::nonzero_input_errors, "input_errors", number, kPlain, kDetailedCounters},
    {tag::all_input_errors, "input_errors", number, kPlain, kAllCounters},
    {tag::all_loopback_input_errors, "input_errors", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_input_errors, "input_errors", number, kPlain, kDetailedCounters},
    {tag::nonzero_output_errors, "output_errors", number, kPlain, kDetailedCounters},
    {tag::all_output_errors, "output_errors", number, kPlain, kAllCounters},
    {tag::all_loopback_output_errors, "output_errors", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_output_errors, "output_errors", number, kPlain, kDetailedCounters},
    {tag::nonzero_deferred_errors, "deferred_errors", number, kPlain, kDetailedCounters},
    {tag::all_deferred_errors, "deferred_errors", number, kPlain, kAllCounters},
    {tag::nonzero_jabber_errors, "jabber_errors", number, kPlain, kDetailedCounters},
    {tag::all_jabber_errors, "jabber_errors", number, kPlain, kAllCounters},
    {tag::nonzero_short_frame_errors, "short_frame_errors", number, kPlain, kDetailedCounters},
    {tag::all_short_frame_errors, "short_frame_errors", number, kPlain, kAllCounters},
    {tag::nonzero_single_collision_errors, "single_collision_errors", number, kPlain, kDetailedCounters},
    {tag::all_single_collision_errors, "single_collision_errors", number, kPlain, kAllCounters},
    {tag::nonzero_multi_collision_errors, "multi_collision_errors", number, kPlain, kDetailedCounters},
    {tag::all_multi_collision_errors, "multi_collision_errors", number, kPlain, kAllCounters},
    {tag::nonzero_excess_collision_errors, "excess_collision_errors", number, kPlain, kDetailedCounters},
    {tag::all_excess_collision_errors, "excess_collision_errors", number, kPlain, kAllCounters},
    {tag::nonzero_input_discards, "input_discards", number, kPlain, kDetailedCounters},
    {tag::all_input_discards, "input_discards", number, kPlain, kAllCounters},
    {tag::nonzero_bad_encapsulation_errors, "bad_encapsulation_errors", number, kPlain, kDetailedCounters},
    {tag::all_bad_encapsulation_errors, "bad_encapsulation_errors", number, kPlain, kAllCounters},
    {tag::nonzero_output_crc_errors, "output_crc_errors", number, kPlain, kDetailedCounters},
    {tag::all_output_crc_errors, "output_crc_errors", number, kPlain, kAllCounters},
    {tag::nonzero_symbol_errors, "symbol_errors", number, kPlain, kDetailedCounters},
    {tag::all_symbol_errors, "symbol_errors", number, kPlain, kAllCounters},
    {tag::nonzero_output_drops, "output_drops", number, kPlain, kDetailedCounters},
    {tag::all_output_drops, "output_drops", number, kPlain, kAllCounters},
    {tag::nonzero_output_bpdu_lost, "output_bpdu_lost", number, kPlain, kDetailedCounters},
    {tag::all_output_bpdu_lost, "output_bpdu_lost", number, kPlain, kAllCounters},
    {tag::nonzero_output_cos0_lost, "output_cos0_lost", number, kPlain, kDetailedCounters},
    {tag::all_output_cos0_lost, "output_cos0_lost", number, kPlain, kAllCounters},
    {tag::nonzero_output_cos1_lost, "output_cos1_lost", number, kPlain, kDetailedCounters},
    {tag::all_output_cos1_lost, "output_cos1_lost", number, kPlain, kAllCounters},
    {tag::nonzero_output_cos2_lost, "output_cos2_lost", number, kPlain, kDetailedCounters},
    {tag::all_output_cos2_lost, "output_cos2_lost", number, kPlain, kAllCounters},
    {tag::nonzero_output_cos3_lost, "output_cos3_lost", number, kPlain, kDetailedCounters},
    {tag::all_output_cos3_lost, "output_cos3_lost", number, kPlain, kAllCounters},
    {tag::nonzero_output_cos4_lost, "output_cos4_lost", number, kPlain, kDetailedCounters},
    {tag::all_output_cos4_lost, "output_cos4_lost", number, kPlain, kAllCounters},
    {tag::nonzero_output_cos5_lost, "output_cos5_lost", number, kPlain, kDetailedCounters},
    {tag::all_output_cos5_lost, "output_cos5_lost", number, kPlain, kAllCounters},
    {tag::nonzero_output_cos6_lost, "output_cos6_lost", number, kPlain, kDetailedCounters},
    {tag::all_output_cos6_lost, "output_cos6_lost", number, kPlain, kAllCounters},
    {tag::nonzero_output_cos7_lost, "output_cos7_lost", number, kPlain, kDetailedCounters},
    {tag::all_output_cos7_lost, "output_cos7_lost", number, kPlain, kAllCounters},
    {tag::nonzero_input_pause_frames, "input_pause_frames", number, kPlain, kDetailedCounters},
    {tag::all_input_pause_frames, "input_pause_frames", number, kPlain, kAllCounters},
    {tag::nonzero_output_pause_frames, "output_pause_frames", number, kPlain, kDetailedCounters},
    {tag::all_output_pause_frames, "output_pause_frames", number, kPlain, kAllCounters},
    {tag::nonzero_interface_resets, "interface_resets", number, kPlain, kDetailedCounters},
    {tag::all_interface_resets, "interface_resets", number, kPlain, kAllCounters},
    {tag::nonzero_sqe_test_errors, "sqe_test_errors", number, kPlain, kDetailedCounters},
    {tag::all_sqe_test_errors, "sqe_test_errors", number, kPlain, kAllCounters},
    {tag::high_capacity_packets_0_to_64, "packets_0_to_64_bytes", number, kPlain, kAllCounters},
    {tag::high_capacity_packets_65_to_127, "packets_65_to_127_bytes", number, kPlain, kAllCounters},
    {tag::high_capacity_packets_128_to_255, "packets_128_to_255_bytes", number, kPlain, kAllCounters},
    {tag::high_capacity_packets_256_to_511, "packets_256_to_511_bytes", number, kPlain, kAllCounters},
    {tag::high_capacity_packets_512_to_1023, "packets_512_to_1023_bytes", number, kPlain, kAllCounters},
    {tag::high_capacity_packets_1024_to_1518, "packets_1024_to_1518_bytes", number, kPlain, kAllCounters},
    {tag::high_capacity_packets_1519_to_1548, "packets_1519_to_1548_bytes", number, kPlain, kAllCounters},
    {tag::high_capacity_input_drop_events, "input_drop_events", number, kPlain, kAllCounters},
    {tag::all_giant_errors, "giant_errors", number, kPlain, kAllCounters},
    {tag::all_loopback_input_compressed, "input_compressed", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_input_compressed, "input_compressed", number, kPlain, kDetailedCounters},
    {tag::all_loopback_input_frame_errors, "input_frame_errors", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_input_frame_errors, "input_frame_errors", number, kPlain, kDetailedCounters},
    {tag::all_loopback_input_fifo_errors, "input_fifo_errors", number, kPlain, kAllCounters},
    {tag::nonzero_loopback_input_fifo_errors, "input_fifo_errors", number, kPlain, kDetailedCounters},
    {tag::all_loopback_output_fifo_errors, "output_fifo_errors", number, kPlain, kAllCounters},

    // By layer. The first two are also what a routed interface received.
    {tag::nonzero_layer2_unicast_packets, "layer2_unicast_packets", number, kPlain, kDetailedCounters},
    {tag::nonzero_layer2_multicast_packets, "layer2_multicast_packets", number, kPlain, kDetailedCounters},
    {tag::nonzero_layer2_broadcast_packets, "layer2_broadcast_packets", number, kPlain, kDetailedCounters},
    {tag::nonzero_layer3_unicast_packets, "layer3_unicast_packets", number, kPlain, kDetailedCounters},
    {tag::nonzero_layer3_multicast_packets, "layer3_multicast_packets", number, kPlain, kDetailedCounters},
    {tag::nonzero_layer3_broadcast_packets, "layer3_broadcast_packets", number, kPlain, kDetailedCounters},
    {tag::nonzero_layer3_input_routed_packets, "layer3_input_routed_packets", number, kPlain, kDetailedCounters},
    {tag::all_layer3_input_routed_packets, "layer3_input_routed_packets", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_input_routed_bytes, "layer3_input_routed_bytes", number, kPlain, kDetailedCounters},
    {tag::all_layer3_input_routed_bytes, "layer3_input_routed_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_output_routed_packets, "layer3_output_routed_packets", number, kPlain, kDetailedCounters},
    {tag::all_layer3_output_routed_packets, "layer3_output_routed_packets", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_output_routed_bytes, "layer3_output_routed_bytes", number, kPlain, kDetailedCounters},
    {tag::all_layer3_output_routed_bytes, "layer3_output_routed_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_input_unicast_bytes, "layer3_input_unicast_bytes", number, kPlain, kDetailedCounters},
    {tag::all_layer3_input_unicast_bytes, "layer3_input_unicast_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_input_multicast_bytes, "layer3_input_multicast_bytes", number, kPlain, kDetailedCounters},
    {tag::all_layer3_input_multicast_bytes, "layer3_input_multicast_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_output_unicast_packets, "layer3_output_unicast_packets", number, kPlain, kDetailedCounters},
    {tag::all_layer3_output_unicast_packets, "layer3_output_unicast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_output_unicast_bytes, "layer3_output_unicast_bytes", number, kPlain, kDetailedCounters},
    {tag::all_layer3_output_unicast_bytes, "layer3_output_unicast_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_output_multicast_packets, "layer3_output_multicast_packets", number, kPlain,
     kDetailedCounters},
    {tag::all_layer3_output_multicast_packets, "layer3_output_multicast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_output_multicast_bytes, "layer3_output_multicast_bytes", number, kPlain, kDetailedCounters},
    {tag::all_layer3_output_multicast_bytes, "layer3_output_multicast_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_average_input_packets, "layer3_average_input_packets", number, kPlain, kDetailedCounters},
    {tag::all_layer3_average_input_packets, "layer3_average_input_packets", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_average_input_bytes, "layer3_average_input_bytes", number, kPlain, kDetailedCounters},
    {tag::all_layer3_average_input_bytes, "layer3_average_input_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_average_output_packets, "layer3_average_output_packets", number, kPlain, kDetailedCounters},
    {tag::all_layer3_average_output_packets, "layer3_average_output_packets", number, kPlain, kAllCounters},
    {tag::nonzero_layer3_average_output_bytes, "layer3_average_output_bytes", number, kPlain, kDetailedCounters},
    {tag::all_layer3_average_output_bytes, "layer3_average_output_bytes", number, kPlain, kAllCounters},
    {tag::all_layer3_input_unicast_packets, "layer3_input_unicast_packets", number, kPlain, kAllCounters},
    {tag::all_layer3_input_multicast_packets, "layer3_input_multicast_packets", number, kPlain, kAllCounters},

    // What the port manager counts at the management port.
    {tag::nonzero_vdc_input_packets, "vdc_input_packets", number, kPlain, kDetailedCounters},
    {tag::all_vdc_input_packets, "vdc_input_packets", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_input_bytes, "vdc_input_bytes", number, kPlain, kDetailedCounters},
    {tag::all_vdc_input_bytes, "vdc_input_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_input_unicast_packets, "vdc_input_unicast_packets", number, kPlain, kDetailedCounters},
    {tag::all_vdc_input_unicast_packets, "vdc_input_unicast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_input_multicast_packets, "vdc_input_multicast_packets", number, kPlain, kDetailedCounters},
    {tag::all_vdc_input_multicast_packets, "vdc_input_multicast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_input_broadcast_packets, "vdc_input_broadcast_packets", number, kPlain, kDetailedCounters},
    {tag::all_vdc_input_broadcast_packets, "vdc_input_broadcast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_input_bytes_per_sec, "vdc_input_bytes_per_sec", number, kPlain, kDetailedCounters},
    {tag::all_vdc_input_bytes_per_sec, "vdc_input_bytes_per_sec", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_input_packets_per_sec, "vdc_input_packets_per_sec", number, kPlain, kDetailedCounters},
    {tag::all_vdc_input_packets_per_sec, "vdc_input_packets_per_sec", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_interval_input_packets, "vdc_interval_input_packets", number, kPlain, kDetailedCounters},
    {tag::all_vdc_interval_input_packets, "vdc_interval_input_packets", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_interval_input_bytes, "vdc_interval_input_bytes", number, kPlain, kDetailedCounters},
    {tag::all_vdc_interval_input_bytes, "vdc_interval_input_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_output_packets, "vdc_output_packets", number, kPlain, kDetailedCounters},
    {tag::all_vdc_output_packets, "vdc_output_packets", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_output_bytes, "vdc_output_bytes", number, kPlain, kDetailedCounters},
    {tag::all_vdc_output_bytes, "vdc_output_bytes", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_output_unicast_packets, "vdc_output_unicast_packets", number, kPlain, kDetailedCounters},
    {tag::all_vdc_output_unicast_packets, "vdc_output_unicast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_output_multicast_packets, "vdc_output_multicast_packets", number, kPlain, kDetailedCounters},
    {tag::all_vdc_output_multicast_packets, "vdc_output_multicast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_output_broadcast_packets, "vdc_output_broadcast_packets", number, kPlain, kDetailedCounters},
    {tag::all_vdc_output_broadcast_packets, "vdc_output_broadcast_packets", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_output_bytes_per_sec, "vdc_output_bytes_per_sec", number, kPlain, kDetailedCounters},
    {tag::all_vdc_output_bytes_per_sec, "vdc_output_bytes_per_sec", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_output_packets_per_sec, "vdc_output_packets_per_sec", number, kPlain, kDetailedCounters},
    {tag::all_vdc_output_packets_per_sec, "vdc_output_packets_per_sec", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_interval_output_packets, "vdc_interval_output_packets", number, kPlain, kDetailedCounters},
    {tag::all_vdc_interval_output_packets, "vdc_interval_output_packets", number, kPlain, kAllCounters},
    {tag::nonzero_vdc_interval_output_bytes, "vdc_interval_output_bytes", number, kPlain, kDetailedCounters},
    {tag::all_vdc_interval_output_bytes, "vdc_interval_output_bytes", number, kPlain, kAllCounters},

    // What the kernel counts there.
    {tag::all_kernel_input_packets, "kernel_input_packets", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_input_bytes, "kernel_input_bytes", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_input_multicast_packets, "kernel_input_multicast_packets", number, kPlain,
     kDetailedCounters | kAllCounters},
    {tag::all_kernel_input_compressed, "kernel_input_compressed", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_input_errors, "kernel_input_errors", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_input_frame_errors, "kernel_input_frame_errors", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_input_overruns, "kernel_input_overruns", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_input_fifo_errors, "kernel_input_fifo_errors", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_output_packets, "kernel_output_packets", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_output_bytes, "kernel_output_bytes", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_output_underruns, "kernel_output_underruns", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_output_errors, "kernel_output_errors", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_output_collisions, "kernel_output_collisions", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_output_fifo_errors, "kernel_output_fifo_errors", number, kPlain, kDetailedCounters | kAllCounters},
    {tag::all_kernel_output_carrier_errors, "kernel_output_carrier_errors", number, kPlain,
     kDetailedCounters | kAllCounters},

    // Capabilities.
    {tag::capability_model, "model", string, kPlain, kCapabilities},
    {tag::capability_media_type, "media_type", string, kPlain, kCapabilities},
    {tag::capability_speeds, "speeds_mbps", string, kPlain, kCapabilities},
    {tag::capability_duplex, "duplex", string, kPlain, kCapabilities},
    {tag::capability_trunk_encapsulation, "trunk_encapsulation", string, kPlain, kCapabilities},
    {tag::capability_channel, "channel", enumeration, enum_words::yes_no, kCapabilities},
    {tag::capability_broadcast_suppression, "broadcast_suppression", string, kPlain, kCapabilities},
    {tag::capability_flow_control, "flow_control", string, kPlain, kCapabilities},
    {tag::capability_rate_mode, "rate_mode", string, kPlain, kCapabilities},
    {tag::capability_qos_scheduling, "qos_scheduling", string, kPlain, kCapabilities},
    {tag::capability_cos_rewrite, "cos_rewrite", enumeration, enum_words::yes_no, kCapabilities},
    {tag::capability_tos_rewrite, "tos_rewrite", enumeration, enum_words::yes_no, kCapabilities},
    {tag::capability_span, "span", enumeration, enum_words::yes_no, kCapabilities},
    {tag::capability_udld, "udld", enumeration, enum_words::yes_no, kCapabilities},
    {tag::capability_link_debounce, "link_debounce", enumeration, enum_words::yes_no, kCapabilities},
    {tag::capability_link_debounce_time, "link_debounce_time", enumeration, enum_words::yes_no, kCapabilities},
    {tag::capability_mdix, "mdix", enumeration, enum_words::yes_no, kCapabilities},

    // The identity of a transceiver.
    {tag::transceiver_interface, "interface", interface_name, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_presence, "presence", string, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_vendor, "vendor", string, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_part_number, "part_number", string, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_revision, "revision", string, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_serial_number, "serial_number", string, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_bit_rate, "bit_rate_mbps", number, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_length_9um, "length_9um_km", number, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_length_50um, "length_50um_m", number, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_length_62um, "length_62um_m", number, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_vendor_id, "vendor_id", string, kPlain, kTransceivers | kCalibrationDisplay},
    {tag::transceiver_extended_id, "extended_id", number, kPlain, kTransceivers | kCalibrationDisplay},

    // What it measures, and how that stands to its limits.
    {tag::transceiver_temperature, "temperature_c", decimal, kPlain, kTransceivers},
    {tag::transceiver_temperature_mark, "temperature_mark", enumeration, enum_words::mark, kTransceivers},
    {tag::transceiver_temperature_high_alarm, "temperature_high_alarm_c", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_temperature_low_alarm, "temperature_low_alarm_c", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_temperature_high_warning, "temperature_high_warning_c", decimal, kPlain,
     kTransceiverDetailsDisplay},
    {tag::transceiver_temperature_low_warning, "temperature_low_warning_c", decimal, kPlain,
     kTransceiverDetailsDisplay},
    {tag::transceiver_voltage, "voltage_v", decimal, kPlain, kTransceivers},
    {tag::transceiver_voltage_mark, "voltage_mark", enumeration, enum_words::mark, kTransceivers},
    {tag::transceiver_voltage_high_alarm, "voltage_high_alarm_v", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_voltage_low_alarm, "voltage_low_alarm_v", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_voltage_high_warning, "voltage_high_warning_v", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_voltage_low_warning, "voltage_low_warning_v", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_current, "current_ma", decimal, kPlain, kTransceivers},
    {tag::transceiver_current_mark, "current_mark", enumeration, enum_words::mark, kTransceivers},
    {tag::transceiver_current_high_alarm, "current_high_alarm_ma", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_current_low_alarm, "current_low_alarm_ma", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_current_high_warning, "current_high_warning_ma", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_current_low_warning, "current_low_warning_ma", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_tx_power, "tx_power_dbm", decimal, kPlain, kTransceivers},
    {tag::transceiver_tx_power_mark, "tx_power_mark", enumeration, enum_words::mark, kTransceivers},
    {tag::transceiver_tx_power_high_alarm, "tx_power_high_alarm_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_tx_power_low_alarm, "tx_power_low_alarm_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_tx_power_high_warning, "tx_power_high_warning_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_tx_power_low_warning, "tx_power_low_warning_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_rx_power, "rx_power_dbm", decimal, kPlain, kTransceivers},
    {tag::transceiver_rx_power_mark, "rx_power_mark", enumeration, enum_words::mark, kTransceivers},
    {tag::transceiver_rx_power_high_alarm, "rx_power_high_alarm_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_rx_power_low_alarm, "rx_power_low_alarm_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_rx_power_high_warning, "rx_power_high_warning_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {tag::transceiver_rx_power_low_warning, "rx_power_low_warning_dbm", decimal, kPlain, kTransceiverDetailsDisplay},

    // External calibration constants.
    {tag::calibration_temperature_slope, "temperature_slope", number, kPlain, kCalibrationDisplay},
    {tag::calibration_temperature_offset, "temperature_offset", number, kPlain, kCalibrationDisplay},
    {tag::calibration_voltage_slope, "voltage_slope", number, kPlain, kCalibrationDisplay},
    {tag::calibration_voltage_offset, "voltage_offset", number, kPlain, kCalibrationDisplay},
    {tag::calibration_current_slope, "current_slope", number, kPlain, kCalibrationDisplay},
    {tag::calibration_current_offset, "current_offset", number, kPlain, kCalibrationDisplay},
    {tag::calibration_tx_power_slope, "tx_power_slope", number, kPlain, kCalibrationDisplay},
    {tag::calibration_tx_power_offset, "tx_power_offset", number, kPlain, kCalibrationDisplay},
    {tag::calibration_rx_power_4, "rx_power_4", number, kPlain, kCalibrationDisplay},
    {tag::calibration_rx_power_3, "rx_power_3", number, kPlain, kCalibrationDisplay},
    {tag::calibration_rx_power_2, "rx_power_2", number, kPlain, kCalibrationDisplay},
    {tag::calibration_rx_power_1, "rx_power_1", number, kPlain, kCalibrationDisplay},
    {tag::calibration_rx_power_0, "rx_power_0", number, kPlain, kCalibrationDisplay},

    // Trunks.
    {tag::trunk_interface, "interface", interface_name, kPlain, kTrunks},
    {tag::trunk_native_vlan, "native_vlan", number, kPlain, kTrunkDisplay | kSwitchport},
    {tag::trunk_status, "trunk_status", string, kPlain, kTrunkDisplay},
    {tag::trunk_port_channel, "port_channel", string, kPlain, kTrunkDisplay},
    {tag::trunk_allowed_vlans, "allowed_vlans", string, kPlain, kAllowedVlansDisplay | kSwitchport},
    {tag::trunk_forwarding_vlans, "forwarding_vlans", string, kPlain, kForwardingVlansDisplay},

    // Messages of this process.
    {kTagMessagesSent, "sent", number, kPlain, kTransportDisplay},
    {kTagMessagesReceived, "received", number, kPlain, kTransportDisplay},
    {kTagMessagesDropped, "dropped", number, kPlain, kTransportDisplay},
    {kTagMessagesDroppedTwice, "dropped_twice", number, kPlain, kTransportDisplay},
    {kTagMessagesNeverDropped, "never_dropped", number, kPlain, kTransportDisplay},

    // A port that refused a setting.
    {kTagSettingInterface, "interface", interface_name, kPlain, kSettingDisplay},
    {kTagSettingStatus, "status", number, kPlain, kSettingDisplay},
    {kTagSettingText, "text", string, kPlain, kSettingDisplay},
};

constexpr std::size_t kTags = 0x800;

// Row of each tag, counted from 1; 0 is none.
constexpr auto kRowOfTag = [] {
  std::array<uint16, kTags> rows{};
  for (std::size_t row = 0; row < std::size(kFields); ++row) {
    if (rows[kFields[row].tag] != 0) throw "a tag has two meanings";
    rows[kFields[row].tag] = static_cast<uint16>(row + 1);
  }
  return rows;
}();

enum : uint8 { kComponentOfShell = 0 };

// The table, and behind it what was added.
std::vector<field>& all_rows() {
  static std::vector<field> rows(std::begin(kFields), std::end(kFields));
  return rows;
}

uint64 all_displays() {
  uint64 displays = 0;
  for (const field& row : all_rows()) displays |= row.displays;
  return displays;
}

}  // namespace

std::span<const field> schema() { return all_rows(); }

const field* find_field(uint32 tuple_id) {
  const auto tag = static_cast<uint16>(tuple_id);
  const auto component = static_cast<uint8>(tuple_id >> 16);
  const std::vector<field>& rows = all_rows();
  const bool is_ours = component == kComponentOfLibrary || component == kComponentOfShell;
  if (const std::size_t row = is_ours && tag < kTags ? kRowOfTag[tag] : 0; row != 0) return &rows[row - 1];
  const auto added = std::find_if(rows.begin() + std::size(kFields), rows.end(),
                                  [=](const field& row) { return row.tag == tag && row.component == component; });
  return added == rows.end() ? nullptr : &*added;
}

display_bit add_display(std::span<const field> fields, std::string& error) {
  static uint64 last = kTrunkDisplay;  // the last of display_bit
  while ((last & all_displays()) != 0) last <<= 1;
  if (last == 0) {
    error = "there are too many displays";
    return kNoDisplay;
  }
  std::vector<field>& rows = all_rows();
  for (const field& added : fields) {
    const field* const known = find_field(uint32{added.component} << 16 | added.tag);
    if (known != nullptr && (known->name != added.name || known->type != added.type)) {
      error =
          "the tuple id of '" + std::string(added.name) + "' belongs to the field '" + std::string(known->name) + "'";
      return kNoDisplay;
    }
    if (known == nullptr) rows.push_back(added);
    rows[known != nullptr ? static_cast<std::size_t>(known - rows.data()) : rows.size() - 1].displays |= last;
  }
  return static_cast<display_bit>(last);
}

}  // namespace host
