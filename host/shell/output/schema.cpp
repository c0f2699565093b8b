#include "shell/output/schema.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

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
    {0x0085, "interface", interface_name, kPlain, kDetailedCounters},
    {0x01D8, "interface", interface_name, kPlain, kDetailed | kSwitchport | kBrief},
    {0x01F4, "interface", interface_name, kPlain, kBrief},
    {0x01FF, "interface", interface_name, kPlain, kCapabilities},
    {0x0602, "interface", interface_name, kPlain, kFlowControl},
    {0x0612, "interface", interface_name, kPlain, kStatus},
    {0x0619, "interface", interface_name, kPlain, kErrorStatus},
    {0x0001, "interface", interface_name, kPlain, kDescriptionDisplay},
    {0x007B, "interface", interface_name, kPlain, kMacAddressDisplay},
    {0x05E9, "interface", interface_name, kPlain, kIfIndexDisplay},
    {0x05E6, "interface", interface_name, kPlain, kDebounceDisplay},
    {0x0696, "interface", interface_name, kPlain, kCounters},
    {0x0217, "interface", interface_name, kPlain, kRates},
    {0x05C2, "interface", interface_name, kPlain, kErrorCounters},
    {0x05E2, "interface", interface_name, kPlain, kTrunkCounters},
    {0x05D6, "interface", interface_name, kPlain, kStormControl},
    {0x0408, "interface", interface_name, kPlain, kAllCounters},

    // State.
    {0x01D9, "state", enumeration, enum_words::port_state, kDetailed | kSwitchport | kBrief},
    {0x01F8, "state", enumeration, enum_words::port_state, kBrief},
    {0x0614, "state", enumeration, enum_words::port_state, kStatus},
    {0x061B, "state", enumeration, enum_words::port_state, kErrorStatus},
    {0x01DB, "state_reason", enumeration, enum_words::state_reason, kDetailed | kSwitchport},
    {0x061D, "state_reason", enumeration, enum_words::state_reason, kErrorStatus},
    {0x01DA, "state_reason", enumeration, enum_words::state_reason_short, kBrief},

    // What the interface is.
    {0x01DC, "description", string, kPlain, kDetailed | kSwitchport},
    {0x0339, "description", string, kPlain, kBrief},
    {0x0613, "description", string, kPlain, kStatus},
    {0x061A, "description", string, kPlain, kErrorStatus},
    {0x0006, "description", string, kPlain, kDescriptionDisplay},
    {0x05EB, "ifindex", number, kPlain, kIfIndexDisplay},
    {0x05EA, "ifindex_hex", hexadecimal, kPlain, kIfIndexDisplay},
    {0x0271, "member_of", string, kPlain, kSwitchport},
    {0x0239, "bound_interface", interface_name, kPlain, kDetailed},
    {0x0272, "multi_chassis_status", string, kPlain, kDetailed},
    {0x0273, "hardware", string, kPlain, kDetailed},
    {0x01DD, "hardware", string, kPlain, kSwitchport},
    {0x0274, "address", mac, kPlain, kDetailed | kSwitchport},
    {0x01DE, "address", mac, kPlain, kSwitchport},
    {0x007C, "address", mac, kPlain, kMacAddressDisplay},
    {0x0275, "burned_in_address", mac, kPlain, kDetailed},
    {0x007D, "burned_in_address", mac, kPlain, kMacAddressDisplay},
    {0x0276, "ip_address", ipv4, kPlain, kDetailed | kBrief},
    {0x033C, "ip_address", ipv4, kPlain, kBrief},
    {0x0277, "prefix_length_bits", number, kPlain, kDetailed},

    // Settings. A VLAN is a number, or "routed" or "trunk".
    {0x0615, "vlan", string, kPlain, kStatus},
    {0x0278, "mtu_bytes", number, kPlain, kDetailed | kSwitchport | kBrief},
    {0x01E1, "mtu_bytes", number, kPlain, kSwitchport},
    {0x033D, "mtu_bytes", number, kPlain, kBrief},
    {0x0279, "bandwidth_kbps", number, kPlain, kDetailed | kSwitchport},
    {0x027B, "delay_usec", number, kPlain, kDetailed | kSwitchport},
    {0x027C, "reliability_per_255", number_from_text, kPlain, kDetailed},
    {0x027D, "tx_load_per_255", number_from_text, kPlain, kDetailed},
    {0x027E, "rx_load_per_255", number_from_text, kPlain, kDetailed},
    {0x0283, "port_mode", enumeration, enum_words::port_mode, kDetailed | kSwitchport},
    {0x0281, "duplex", enumeration, enum_words::duplex, kDetailed | kSwitchport},
    {0x01E3, "duplex", enumeration, enum_words::duplex, kSwitchport},
    {0x0616, "duplex", enumeration, enum_words::duplex, kStatus},
    {0x0282, "speed_mbps", number_or_auto, enum_words::speed_mbps, kDetailed | kSwitchport | kBrief},
    {0x01E2, "speed_mbps", number, kPlain, kSwitchport},
    {0x01FA, "speed_mbps", number, kPlain, kBrief},
    {0x0617, "speed_mbps", number_or_auto, enum_words::speed_mbps, kStatus},
    {0x0287, "media_type", string, kPlain, kDetailed},
    {0x0618, "type", string, kPlain, kStatus},
    {0x05E7, "debounce", string, kPlain, kDebounceDisplay},
    {0x05E8, "debounce_msec", number, kPlain, kDebounceDisplay},
    {0x0288, "input_flow_control", enumeration, enum_words::flow_control, kDetailed},
    {0x0289, "output_flow_control", enumeration, enum_words::flow_control, kDetailed},
    {0x0603, "admin_output_flow_control", enumeration, enum_words::flow_control, kFlowControl},
    {0x0604, "oper_output_flow_control", enumeration, enum_words::flow_control, kFlowControl},
    {0x0605, "admin_input_flow_control", enumeration, enum_words::flow_control, kFlowControl},
    {0x0606, "oper_input_flow_control", enumeration, enum_words::flow_control, kFlowControl},
    {0x028A, "auto_mdix", enumeration, enum_words::on_off, kDetailed},
    {0x0284, "rate_mode", enumeration, enum_words::rate_mode, kDetailed},
    {0x028B, "switchport_monitor", enumeration, enum_words::on_off, kDetailed},

    // Events.
    {0x0293, "last_link_flapped", string, kPlain, kDetailed},
    {0x0292, "last_counters_cleared", string, kPlain, kDetailed},
    {0x029C, "interface_resets", number, kPlain, kDetailed},

    // Traffic of the management port, then of loopbacks.
    {0x0258, "input_rate_bps", number, kPlain, kDetailed},
    {0x0257, "input_rate_pps", number, kPlain, kDetailed},
    {0x0261, "output_rate_bps", number, kPlain, kDetailed},
    {0x0260, "output_rate_pps", number, kPlain, kDetailed},
    {0x0250, "input_packets", number, kPlain, kDetailed},
    {0x0252, "input_unicast_packets", number, kPlain, kDetailed},
    {0x0253, "input_multicast_packets", number, kPlain, kDetailed},
    {0x0254, "input_broadcast_packets", number, kPlain, kDetailed},
    {0x0251, "input_bytes", number, kPlain, kDetailed},
    {0x0259, "output_packets", number, kPlain, kDetailed},
    {0x025B, "output_unicast_packets", number, kPlain, kDetailed},
    {0x025C, "output_multicast_packets", number, kPlain, kDetailed},
    {0x025D, "output_broadcast_packets", number, kPlain, kDetailed},
    {0x025A, "output_bytes", number, kPlain, kDetailed},
    {0x023A, "input_packets", number, kPlain, kDetailed},
    {0x023B, "input_bytes", number, kPlain, kDetailed},
    {0x023C, "input_multicast_packets", number, kPlain, kDetailed},
    {0x023D, "input_compressed", number, kPlain, kDetailed},
    {0x023E, "input_errors", number, kPlain, kDetailed},
    {0x023F, "input_frame_errors", number, kPlain, kDetailed},
    {0x0240, "input_overruns", number, kPlain, kDetailed},
    {0x0241, "input_fifo_errors", number, kPlain, kDetailed},
    {0x0242, "output_packets", number, kPlain, kDetailed},
    {0x0243, "output_bytes", number, kPlain, kDetailed},
    {0x0244, "output_underruns", number, kPlain, kDetailed},
    {0x0245, "output_errors", number, kPlain, kDetailed},
    {0x0246, "output_collisions", number, kPlain, kDetailed},
    {0x0247, "output_fifo_errors", number, kPlain, kDetailed},
    {0x0248, "output_carrier_errors", number, kPlain, kDetailed},

    // The kernel's own counters of the management device.
    {0x01E4, "kernel_input_packets", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01E5, "kernel_input_bytes", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01E6, "kernel_input_multicast_packets", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01E7, "kernel_input_compressed", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01E8, "kernel_input_errors", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01E9, "kernel_input_frame_errors", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01EA, "kernel_input_overruns", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01EB, "kernel_input_fifo_errors", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01EC, "kernel_output_packets", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01ED, "kernel_output_bytes", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01EE, "kernel_output_underruns", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01EF, "kernel_output_errors", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01F0, "kernel_output_collisions", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01F1, "kernel_output_fifo_errors", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},
    {0x01F2, "kernel_output_carrier_errors", number, kPlain, kDetailed | kDetailedCounters | kAllCounters},

    // Pause frames.
    {0x0607, "input_pause_frames", number, kPlain, kFlowControl},
    {0x0608, "output_pause_frames", number, kPlain, kFlowControl},

    // Rates, as their columns say: whole megabytes.
    {0x0218, "input_rate_mbytes_per_sec", number, kPlain, kRates},
    {0x0219, "input_rate_pps", number, kPlain, kRates},
    {0x021A, "output_rate_mbytes_per_sec", number, kPlain, kRates},
    {0x021B, "output_rate_pps", number, kPlain, kRates},

    // The counter tables.
    {0x0697, "input_bytes", number, kPlain, kCounters},
    {0x0698, "input_unicast_packets", number, kPlain, kCounters},
    {0x0699, "input_multicast_packets", number, kPlain, kCounters},
    {0x069A, "input_broadcast_packets", number, kPlain, kCounters},
    {0x069B, "output_bytes", number, kPlain, kCounters},
    {0x069C, "output_unicast_packets", number, kPlain, kCounters},
    {0x069D, "output_multicast_packets", number, kPlain, kCounters},
    {0x069E, "output_broadcast_packets", number, kPlain, kCounters},
    {0x05C3, "alignment_errors", number, kPlain, kErrorCounters},
    {0x05C4, "frame_check_errors", number, kPlain, kErrorCounters},
    {0x05C5, "output_errors", number, kPlain, kErrorCounters},
    {0x05C6, "input_errors", number, kPlain, kErrorCounters},
    {0x05C7, "undersize_errors", number, kPlain, kErrorCounters},
    {0x05C8, "output_discards", number, kPlain, kErrorCounters},
    {0x05C9, "single_collisions", number, kPlain, kErrorCounters},
    {0x05CA, "multiple_collisions", number, kPlain, kErrorCounters},
    {0x05CB, "late_collisions", number, kPlain, kErrorCounters},
    {0x05CC, "excessive_collisions", number, kPlain, kErrorCounters},
    {0x05CD, "carrier_errors", number, kPlain, kErrorCounters},
    {0x05CE, "runts", number, kPlain, kErrorCounters},
    {0x05CF, "giants", number, kPlain, kErrorCounters},
    {0x05D0, "sqe_test_errors", number, kPlain, kErrorCounters},
    {0x05D1, "deferred", number, kPlain, kErrorCounters},
    {0x05D3, "output_internal_mac_errors", number, kPlain, kErrorCounters},
    {0x05D2, "input_internal_mac_errors", number, kPlain, kErrorCounters},
    {0x05D4, "symbol_errors", number, kPlain, kErrorCounters},
    {0x05E3, "output_trunk_packets", number, kPlain, kTrunkCounters},
    {0x05E4, "input_trunk_packets", number, kPlain, kTrunkCounters},
    {0x05E5, "wrong_encapsulation", number, kPlain, kTrunkCounters},
    {0x05D9, "unicast_level_percent", decimal_from_text, kPlain, kStormControl},
    {0x05D8, "multicast_level_percent", decimal_from_text, kPlain, kStormControl},
    {0x05D7, "broadcast_level_percent", decimal_from_text, kPlain, kStormControl},
    {0x05DA, "suppressed_packets", number, kPlain, kStormControl},

    // Every counter. Those of loopbacks are called as those of Ethernet ports.
    {0x00D0, "input_packets", number, kPlain, kDetailedCounters},
    {0x0439, "input_packets", number, kPlain, kAllCounters},
    {0x046C, "input_packets", number, kPlain, kAllCounters},
    {0x042A, "input_packets", number, kPlain, kAllCounters},
    {0x00A7, "input_packets", number, kPlain, kDetailedCounters},
    {0x00D5, "input_unicast_packets", number, kPlain, kDetailedCounters},
    {0x043B, "input_unicast_packets", number, kPlain, kAllCounters},
    {0x0471, "input_unicast_packets", number, kPlain, kAllCounters},
    {0x00D4, "input_multicast_packets", number, kPlain, kDetailedCounters},
    {0x043C, "input_multicast_packets", number, kPlain, kAllCounters},
    {0x0470, "input_multicast_packets", number, kPlain, kAllCounters},
    {0x042C, "input_multicast_packets", number, kPlain, kAllCounters},
    {0x00A9, "input_multicast_packets", number, kPlain, kDetailedCounters},
    {0x00D3, "input_broadcast_packets", number, kPlain, kDetailedCounters},
    {0x043D, "input_broadcast_packets", number, kPlain, kAllCounters},
    {0x046F, "input_broadcast_packets", number, kPlain, kAllCounters},
    {0x0181, "input_jumbo_packets", number, kPlain, kDetailedCounters},
    {0x0472, "input_jumbo_packets", number, kPlain, kAllCounters},
    {0x00D1, "input_bytes", number, kPlain, kDetailedCounters},
    {0x043E, "input_bytes", number, kPlain, kAllCounters},
    {0x046D, "input_bytes", number, kPlain, kAllCounters},
    {0x042B, "input_bytes", number, kPlain, kAllCounters},
    {0x00A8, "input_bytes", number, kPlain, kDetailedCounters},
    {0x00DB, "storm_suppressed_packets", number, kPlain, kDetailedCounters},
    {0x0477, "storm_suppressed_packets", number, kPlain, kAllCounters},
    {0x01B5, "input_packets_0_to_64_bytes", number, kPlain, kDetailedCounters},
    {0x04A6, "input_packets_0_to_64_bytes", number, kPlain, kAllCounters},
    {0x01B6, "input_packets_65_to_127_bytes", number, kPlain, kDetailedCounters},
    {0x04A7, "input_packets_65_to_127_bytes", number, kPlain, kAllCounters},
    {0x01B7, "input_packets_128_to_255_bytes", number, kPlain, kDetailedCounters},
    {0x04A8, "input_packets_128_to_255_bytes", number, kPlain, kAllCounters},
    {0x01B8, "input_packets_256_to_511_bytes", number, kPlain, kDetailedCounters},
    {0x04A9, "input_packets_256_to_511_bytes", number, kPlain, kAllCounters},
    {0x01B9, "input_packets_512_to_1023_bytes", number, kPlain, kDetailedCounters},
    {0x04AA, "input_packets_512_to_1023_bytes", number, kPlain, kAllCounters},
    {0x01BA, "input_packets_1024_to_1518_bytes", number, kPlain, kDetailedCounters},
    {0x04AB, "input_packets_1024_to_1518_bytes", number, kPlain, kAllCounters},
    {0x01BB, "input_packets_1519_to_1548_bytes", number, kPlain, kDetailedCounters},
    {0x04AC, "input_packets_1519_to_1548_bytes", number, kPlain, kAllCounters},
    {0x01BC, "input_trunk_packets", number, kPlain, kDetailedCounters},
    {0x044B, "input_trunk_packets", number, kPlain, kAllCounters},
    {0x04AD, "input_trunk_packets", number, kPlain, kAllCounters},
    {0x00EC, "output_packets", number, kPlain, kDetailedCounters},
    {0x043A, "output_packets", number, kPlain, kAllCounters},
    {0x0489, "output_packets", number, kPlain, kAllCounters},
    {0x0432, "output_packets", number, kPlain, kAllCounters},
    {0x00AF, "output_packets", number, kPlain, kDetailedCounters},
    {0x00E6, "output_unicast_packets", number, kPlain, kDetailedCounters},
    {0x0440, "output_unicast_packets", number, kPlain, kAllCounters},
    {0x0482, "output_unicast_packets", number, kPlain, kAllCounters},
    {0x00E5, "output_multicast_packets", number, kPlain, kDetailedCounters},
    {0x0441, "output_multicast_packets", number, kPlain, kAllCounters},
    {0x0481, "output_multicast_packets", number, kPlain, kAllCounters},
    {0x00E4, "output_broadcast_packets", number, kPlain, kDetailedCounters},
    {0x0442, "output_broadcast_packets", number, kPlain, kAllCounters},
    {0x0480, "output_broadcast_packets", number, kPlain, kAllCounters},
    {0x0192, "output_jumbo_packets", number, kPlain, kDetailedCounters},
    {0x0483, "output_jumbo_packets", number, kPlain, kAllCounters},
    {0x00ED, "output_bytes", number, kPlain, kDetailedCounters},
    {0x0443, "output_bytes", number, kPlain, kAllCounters},
    {0x048A, "output_bytes", number, kPlain, kAllCounters},
    {0x0433, "output_bytes", number, kPlain, kAllCounters},
    {0x00B0, "output_bytes", number, kPlain, kDetailedCounters},
    {0x01BD, "output_packets_0_to_64_bytes", number, kPlain, kDetailedCounters},
    {0x04AE, "output_packets_0_to_64_bytes", number, kPlain, kAllCounters},
    {0x01BE, "output_packets_65_to_127_bytes", number, kPlain, kDetailedCounters},
    {0x04AF, "output_packets_65_to_127_bytes", number, kPlain, kAllCounters},
    {0x01BF, "output_packets_128_to_255_bytes", number, kPlain, kDetailedCounters},
    {0x04B0, "output_packets_128_to_255_bytes", number, kPlain, kAllCounters},
    {0x01C0, "output_packets_256_to_511_bytes", number, kPlain, kDetailedCounters},
    {0x04B1, "output_packets_256_to_511_bytes", number, kPlain, kAllCounters},
    {0x01C1, "output_packets_512_to_1023_bytes", number, kPlain, kDetailedCounters},
    {0x04B2, "output_packets_512_to_1023_bytes", number, kPlain, kAllCounters},
    {0x01C2, "output_packets_1024_to_1518_bytes", number, kPlain, kDetailedCounters},
    {0x04B3, "output_packets_1024_to_1518_bytes", number, kPlain, kAllCounters},
    {0x01C3, "output_packets_1519_to_1548_bytes", number, kPlain, kDetailedCounters},
    {0x04B4, "output_packets_1519_to_1548_bytes", number, kPlain, kAllCounters},
    {0x01C4, "output_trunk_packets", number, kPlain, kDetailedCounters},
    {0x043F, "output_trunk_packets", number, kPlain, kAllCounters},
    {0x04B5, "output_trunk_packets", number, kPlain, kAllCounters},
    {0x00D2, "no_buffer_errors", number, kPlain, kDetailedCounters},
    {0x046E, "no_buffer_errors", number, kPlain, kAllCounters},
    {0x00D9, "runt_errors", number, kPlain, kDetailedCounters},
    {0x0476, "runt_errors", number, kPlain, kAllCounters},
    {0x00DE, "input_crc_errors", number, kPlain, kDetailedCounters},
    {0x047A, "input_crc_errors", number, kPlain, kAllCounters},
    {0x00DF, "ecc_errors", number, kPlain, kDetailedCounters},
    {0x047B, "ecc_errors", number, kPlain, kAllCounters},
    {0x00E1, "overrun_errors", number, kPlain, kDetailedCounters},
    {0x047D, "overrun_errors", number, kPlain, kAllCounters},
    {0x0430, "overrun_errors", number, kPlain, kAllCounters},
    {0x00AD, "overrun_errors", number, kPlain, kDetailedCounters},
    {0x00EE, "underrun_errors", number, kPlain, kDetailedCounters},
    {0x048B, "underrun_errors", number, kPlain, kAllCounters},
    {0x0434, "underrun_errors", number, kPlain, kAllCounters},
    {0x00B1, "underrun_errors", number, kPlain, kDetailedCounters},
    {0x00E2, "ignored_errors", number, kPlain, kDetailedCounters},
    {0x047E, "ignored_errors", number, kPlain, kAllCounters},
    {0x00EA, "bad_ethertype_drops", number, kPlain, kDetailedCounters},
    {0x0487, "bad_ethertype_drops", number, kPlain, kAllCounters},
    {0x00EB, "bad_protocol_drops", number, kPlain, kDetailedCounters},
    {0x0488, "bad_protocol_drops", number, kPlain, kAllCounters},
    {0x00E9, "interface_down_drops", number, kPlain, kDetailedCounters},
    {0x0486, "interface_down_drops", number, kPlain, kAllCounters},
    {0x00F2, "collision_errors", number, kPlain, kDetailedCounters},
    {0x048F, "collision_errors", number, kPlain, kAllCounters},
    {0x0436, "collision_errors", number, kPlain, kAllCounters},
    {0x00B3, "collision_errors", number, kPlain, kDetailedCounters},
    {0x00F5, "late_collision_errors", number, kPlain, kDetailedCounters},
    {0x0492, "late_collision_errors", number, kPlain, kAllCounters},
    {0x00F7, "lost_carrier_errors", number, kPlain, kDetailedCounters},
    {0x0494, "lost_carrier_errors", number, kPlain, kAllCounters},
    {0x0438, "lost_carrier_errors", number, kPlain, kAllCounters},
    {0x00F8, "no_carrier_errors", number, kPlain, kDetailedCounters},
    {0x0495, "no_carrier_errors", number, kPlain, kAllCounters},
    {0x00F4, "babble_errors", number, kPlain, kDetailedCounters},
    {0x0491, "babble_errors", number, kPlain, kAllCounters},
    {0x00E3, "watchdog_errors", number, kPlain, kDetailedCounters},
    {0x047F, "watchdog_errors", number, kPlain, kAllCounters},
    {0x00E8, "dribble_errors", number, kPlain, kDetailedCounters},
    {0x0485, "dribble_errors", number, kPlain, kAllCounters},
    {0x00DD, "input_errors", number, kPlain, kDetailedCounters},
    {0x0479, "input_errors", number, kPlain, kAllCounters},
    {0x042E, "input_errors", number, kPlain, kAllCounters},
    {0x00AB, "input_errors", number, kPlain, kDetailedCounters},
    {0x00F1, "output_errors", number, kPlain, kDetailedCounters},
    {0x048E, "output_errors", number, kPlain, kAllCounters},
    {0x0435, "output_errors", number, kPlain, kAllCounters},
    {0x00B2, "output_errors", number, kPlain, kDetailedCounters},
    {0x00F6, "deferred_errors", number, kPlain, kDetailedCounters},
    {0x0493, "deferred_errors", number, kPlain, kAllCounters},
    {0x0101, "jabber_errors", number, kPlain, kDetailedCounters},
    {0x049E, "jabber_errors", number, kPlain, kAllCounters},
    {0x01AE, "short_frame_errors", number, kPlain, kDetailedCounters},
    {0x049F, "short_frame_errors", number, kPlain, kAllCounters},
    {0x00FE, "single_collision_errors", number, kPlain, kDetailedCounters},
    {0x049B, "single_collision_errors", number, kPlain, kAllCounters},
    {0x00FF, "multi_collision_errors", number, kPlain, kDetailedCounters},
    {0x049C, "multi_collision_errors", number, kPlain, kAllCounters},
    {0x0100, "excess_collision_errors", number, kPlain, kDetailedCounters},
    {0x049D, "excess_collision_errors", number, kPlain, kAllCounters},
    {0x0102, "input_discards", number, kPlain, kDetailedCounters},
    {0x04A0, "input_discards", number, kPlain, kAllCounters},
    {0x0103, "bad_encapsulation_errors", number, kPlain, kDetailedCounters},
    {0x04A1, "bad_encapsulation_errors", number, kPlain, kAllCounters},
    {0x0104, "output_crc_errors", number, kPlain, kDetailedCounters},
    {0x04A2, "output_crc_errors", number, kPlain, kAllCounters},
    {0x01B2, "symbol_errors", number, kPlain, kDetailedCounters},
    {0x04A3, "symbol_errors", number, kPlain, kAllCounters},
    {0x01B3, "output_drops", number, kPlain, kDetailedCounters},
    {0x04A4, "output_drops", number, kPlain, kAllCounters},
    {0x01C5, "output_bpdu_lost", number, kPlain, kDetailedCounters},
    {0x04B6, "output_bpdu_lost", number, kPlain, kAllCounters},
    {0x01C6, "output_cos0_lost", number, kPlain, kDetailedCounters},
    {0x04B7, "output_cos0_lost", number, kPlain, kAllCounters},
    {0x01C7, "output_cos1_lost", number, kPlain, kDetailedCounters},
    {0x04B8, "output_cos1_lost", number, kPlain, kAllCounters},
    {0x01C8, "output_cos2_lost", number, kPlain, kDetailedCounters},
    {0x04B9, "output_cos2_lost", number, kPlain, kAllCounters},
    {0x01C9, "output_cos3_lost", number, kPlain, kDetailedCounters},
    {0x04BA, "output_cos3_lost", number, kPlain, kAllCounters},
    {0x01CA, "output_cos4_lost", number, kPlain, kDetailedCounters},
    {0x04BB, "output_cos4_lost", number, kPlain, kAllCounters},
    {0x01CB, "output_cos5_lost", number, kPlain, kDetailedCounters},
    {0x04BC, "output_cos5_lost", number, kPlain, kAllCounters},
    {0x01CC, "output_cos6_lost", number, kPlain, kDetailedCounters},
    {0x04BD, "output_cos6_lost", number, kPlain, kAllCounters},
    {0x01CD, "output_cos7_lost", number, kPlain, kDetailedCounters},
    {0x04BE, "output_cos7_lost", number, kPlain, kAllCounters},
    {0x00E7, "input_pause_frames", number, kPlain, kDetailedCounters},
    {0x0484, "input_pause_frames", number, kPlain, kAllCounters},
    {0x00F9, "output_pause_frames", number, kPlain, kDetailedCounters},
    {0x0496, "output_pause_frames", number, kPlain, kAllCounters},
    {0x00F3, "interface_resets", number, kPlain, kDetailedCounters},
    {0x0490, "interface_resets", number, kPlain, kAllCounters},
    {0x01B4, "sqe_test_errors", number, kPlain, kDetailedCounters},
    {0x04A5, "sqe_test_errors", number, kPlain, kAllCounters},
    {0x0444, "packets_0_to_64_bytes", number, kPlain, kAllCounters},
    {0x0445, "packets_65_to_127_bytes", number, kPlain, kAllCounters},
    {0x0446, "packets_128_to_255_bytes", number, kPlain, kAllCounters},
    {0x0447, "packets_256_to_511_bytes", number, kPlain, kAllCounters},
    {0x0448, "packets_512_to_1023_bytes", number, kPlain, kAllCounters},
    {0x0449, "packets_1024_to_1518_bytes", number, kPlain, kAllCounters},
    {0x044A, "packets_1519_to_1548_bytes", number, kPlain, kAllCounters},
    {0x044C, "input_drop_events", number, kPlain, kAllCounters},
    {0x044D, "giant_errors", number, kPlain, kAllCounters},
    {0x042D, "input_compressed", number, kPlain, kAllCounters},
    {0x00AA, "input_compressed", number, kPlain, kDetailedCounters},
    {0x042F, "input_frame_errors", number, kPlain, kAllCounters},
    {0x00AC, "input_frame_errors", number, kPlain, kDetailedCounters},
    {0x0431, "input_fifo_errors", number, kPlain, kAllCounters},
    {0x00AE, "input_fifo_errors", number, kPlain, kDetailedCounters},
    {0x0437, "output_fifo_errors", number, kPlain, kAllCounters},

    // By layer. The first two are also what a routed interface received.
    {0x00BA, "layer2_unicast_packets", number, kPlain, kDetailedCounters},
    {0x00BE, "layer2_multicast_packets", number, kPlain, kDetailedCounters},
    {0x00BC, "layer2_broadcast_packets", number, kPlain, kDetailedCounters},
    {0x00C0, "layer3_unicast_packets", number, kPlain, kDetailedCounters},
    {0x00C2, "layer3_multicast_packets", number, kPlain, kDetailedCounters},
    {0x00C4, "layer3_broadcast_packets", number, kPlain, kDetailedCounters},
    {0x00CC, "layer3_input_routed_packets", number, kPlain, kDetailedCounters},
    {0x0464, "layer3_input_routed_packets", number, kPlain, kAllCounters},
    {0x00CD, "layer3_input_routed_bytes", number, kPlain, kDetailedCounters},
    {0x0465, "layer3_input_routed_bytes", number, kPlain, kAllCounters},
    {0x00CE, "layer3_output_routed_packets", number, kPlain, kDetailedCounters},
    {0x0466, "layer3_output_routed_packets", number, kPlain, kAllCounters},
    {0x00CF, "layer3_output_routed_bytes", number, kPlain, kDetailedCounters},
    {0x0467, "layer3_output_routed_bytes", number, kPlain, kAllCounters},
    {0x00C1, "layer3_input_unicast_bytes", number, kPlain, kDetailedCounters},
    {0x0459, "layer3_input_unicast_bytes", number, kPlain, kAllCounters},
    {0x00C3, "layer3_input_multicast_bytes", number, kPlain, kDetailedCounters},
    {0x045B, "layer3_input_multicast_bytes", number, kPlain, kAllCounters},
    {0x00C6, "layer3_output_unicast_packets", number, kPlain, kDetailedCounters},
    {0x045E, "layer3_output_unicast_packets", number, kPlain, kAllCounters},
    {0x00C7, "layer3_output_unicast_bytes", number, kPlain, kDetailedCounters},
    {0x045F, "layer3_output_unicast_bytes", number, kPlain, kAllCounters},
    {0x00C8, "layer3_output_multicast_packets", number, kPlain, kDetailedCounters},
    {0x0460, "layer3_output_multicast_packets", number, kPlain, kAllCounters},
    {0x00C9, "layer3_output_multicast_bytes", number, kPlain, kDetailedCounters},
    {0x0461, "layer3_output_multicast_bytes", number, kPlain, kAllCounters},
    {0x0178, "layer3_average_input_packets", number, kPlain, kDetailedCounters},
    {0x0469, "layer3_average_input_packets", number, kPlain, kAllCounters},
    {0x0177, "layer3_average_input_bytes", number, kPlain, kDetailedCounters},
    {0x0468, "layer3_average_input_bytes", number, kPlain, kAllCounters},
    {0x017A, "layer3_average_output_packets", number, kPlain, kDetailedCounters},
    {0x046B, "layer3_average_output_packets", number, kPlain, kAllCounters},
    {0x0179, "layer3_average_output_bytes", number, kPlain, kDetailedCounters},
    {0x046A, "layer3_average_output_bytes", number, kPlain, kAllCounters},
    {0x0458, "layer3_input_unicast_packets", number, kPlain, kAllCounters},
    {0x045A, "layer3_input_multicast_packets", number, kPlain, kAllCounters},

    // What the port manager counts at the management port.
    {0x0086, "vdc_input_packets", number, kPlain, kDetailedCounters},
    {0x0409, "vdc_input_packets", number, kPlain, kAllCounters},
    {0x0087, "vdc_input_bytes", number, kPlain, kDetailedCounters},
    {0x040A, "vdc_input_bytes", number, kPlain, kAllCounters},
    {0x0088, "vdc_input_unicast_packets", number, kPlain, kDetailedCounters},
    {0x040B, "vdc_input_unicast_packets", number, kPlain, kAllCounters},
    {0x0089, "vdc_input_multicast_packets", number, kPlain, kDetailedCounters},
    {0x040C, "vdc_input_multicast_packets", number, kPlain, kAllCounters},
    {0x008A, "vdc_input_broadcast_packets", number, kPlain, kDetailedCounters},
    {0x040D, "vdc_input_broadcast_packets", number, kPlain, kAllCounters},
    {0x008B, "vdc_input_bytes_per_sec", number, kPlain, kDetailedCounters},
    {0x040E, "vdc_input_bytes_per_sec", number, kPlain, kAllCounters},
    {0x008C, "vdc_input_packets_per_sec", number, kPlain, kDetailedCounters},
    {0x040F, "vdc_input_packets_per_sec", number, kPlain, kAllCounters},
    {0x008D, "vdc_interval_input_packets", number, kPlain, kDetailedCounters},
    {0x0410, "vdc_interval_input_packets", number, kPlain, kAllCounters},
    {0x008E, "vdc_interval_input_bytes", number, kPlain, kDetailedCounters},
    {0x0411, "vdc_interval_input_bytes", number, kPlain, kAllCounters},
    {0x008F, "vdc_output_packets", number, kPlain, kDetailedCounters},
    {0x0412, "vdc_output_packets", number, kPlain, kAllCounters},
    {0x0090, "vdc_output_bytes", number, kPlain, kDetailedCounters},
    {0x0413, "vdc_output_bytes", number, kPlain, kAllCounters},
    {0x0091, "vdc_output_unicast_packets", number, kPlain, kDetailedCounters},
    {0x0414, "vdc_output_unicast_packets", number, kPlain, kAllCounters},
    {0x0092, "vdc_output_multicast_packets", number, kPlain, kDetailedCounters},
    {0x0415, "vdc_output_multicast_packets", number, kPlain, kAllCounters},
    {0x0093, "vdc_output_broadcast_packets", number, kPlain, kDetailedCounters},
    {0x0416, "vdc_output_broadcast_packets", number, kPlain, kAllCounters},
    {0x0094, "vdc_output_bytes_per_sec", number, kPlain, kDetailedCounters},
    {0x0417, "vdc_output_bytes_per_sec", number, kPlain, kAllCounters},
    {0x0095, "vdc_output_packets_per_sec", number, kPlain, kDetailedCounters},
    {0x0418, "vdc_output_packets_per_sec", number, kPlain, kAllCounters},
    {0x0096, "vdc_interval_output_packets", number, kPlain, kDetailedCounters},
    {0x0419, "vdc_interval_output_packets", number, kPlain, kAllCounters},
    {0x0097, "vdc_interval_output_bytes", number, kPlain, kDetailedCounters},
    {0x041A, "vdc_interval_output_bytes", number, kPlain, kAllCounters},

    // What the kernel counts there.
    {0x041B, "kernel_input_packets", number, kPlain, kDetailedCounters | kAllCounters},
    {0x041C, "kernel_input_bytes", number, kPlain, kDetailedCounters | kAllCounters},
    {0x041D, "kernel_input_multicast_packets", number, kPlain, kDetailedCounters | kAllCounters},
    {0x041E, "kernel_input_compressed", number, kPlain, kDetailedCounters | kAllCounters},
    {0x041F, "kernel_input_errors", number, kPlain, kDetailedCounters | kAllCounters},
    {0x0420, "kernel_input_frame_errors", number, kPlain, kDetailedCounters | kAllCounters},
    {0x0421, "kernel_input_overruns", number, kPlain, kDetailedCounters | kAllCounters},
    {0x0422, "kernel_input_fifo_errors", number, kPlain, kDetailedCounters | kAllCounters},
    {0x0423, "kernel_output_packets", number, kPlain, kDetailedCounters | kAllCounters},
    {0x0424, "kernel_output_bytes", number, kPlain, kDetailedCounters | kAllCounters},
    {0x0425, "kernel_output_underruns", number, kPlain, kDetailedCounters | kAllCounters},
    {0x0426, "kernel_output_errors", number, kPlain, kDetailedCounters | kAllCounters},
    {0x0427, "kernel_output_collisions", number, kPlain, kDetailedCounters | kAllCounters},
    {0x0428, "kernel_output_fifo_errors", number, kPlain, kDetailedCounters | kAllCounters},
    {0x0429, "kernel_output_carrier_errors", number, kPlain, kDetailedCounters | kAllCounters},

    // Capabilities.
    {0x0200, "model", string, kPlain, kCapabilities},
    {0x0201, "media_type", string, kPlain, kCapabilities},
    {0x0202, "speeds_mbps", string, kPlain, kCapabilities},
    {0x0203, "duplex", string, kPlain, kCapabilities},
    {0x0204, "trunk_encapsulation", string, kPlain, kCapabilities},
    {0x0205, "channel", enumeration, enum_words::yes_no, kCapabilities},
    {0x0206, "broadcast_suppression", string, kPlain, kCapabilities},
    {0x0207, "flow_control", string, kPlain, kCapabilities},
    {0x0208, "rate_mode", string, kPlain, kCapabilities},
    {0x020A, "qos_scheduling", string, kPlain, kCapabilities},
    {0x020B, "cos_rewrite", enumeration, enum_words::yes_no, kCapabilities},
    {0x020C, "tos_rewrite", enumeration, enum_words::yes_no, kCapabilities},
    {0x020E, "span", enumeration, enum_words::yes_no, kCapabilities},
    {0x020F, "udld", enumeration, enum_words::yes_no, kCapabilities},
    {0x0211, "link_debounce", enumeration, enum_words::yes_no, kCapabilities},
    {0x0212, "link_debounce_time", enumeration, enum_words::yes_no, kCapabilities},
    {0x0210, "mdix", enumeration, enum_words::yes_no, kCapabilities},

    // The identity of a transceiver.
    {0x0007, "interface", interface_name, kPlain, kTransceivers | kCalibrationDisplay},
    {0x0008, "presence", string, kPlain, kTransceivers | kCalibrationDisplay},
    {0x0009, "vendor", string, kPlain, kTransceivers | kCalibrationDisplay},
    {0x000A, "part_number", string, kPlain, kTransceivers | kCalibrationDisplay},
    {0x000B, "revision", string, kPlain, kTransceivers | kCalibrationDisplay},
    {0x000C, "serial_number", string, kPlain, kTransceivers | kCalibrationDisplay},
    {0x000D, "bit_rate_mbps", number, kPlain, kTransceivers | kCalibrationDisplay},
    {0x000E, "length_9um_km", number, kPlain, kTransceivers | kCalibrationDisplay},
    {0x000F, "length_50um_m", number, kPlain, kTransceivers | kCalibrationDisplay},
    {0x0010, "length_62um_m", number, kPlain, kTransceivers | kCalibrationDisplay},
    {0x0011, "vendor_id", string, kPlain, kTransceivers | kCalibrationDisplay},
    {0x0012, "extended_id", number, kPlain, kTransceivers | kCalibrationDisplay},

    // What it measures, and how that stands to its limits.
    {0x0020, "temperature_c", decimal, kPlain, kTransceivers},
    {0x0021, "temperature_mark", enumeration, enum_words::mark, kTransceivers},
    {0x0022, "temperature_high_alarm_c", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0023, "temperature_low_alarm_c", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0024, "temperature_high_warning_c", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0025, "temperature_low_warning_c", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0026, "voltage_v", decimal, kPlain, kTransceivers},
    {0x0027, "voltage_mark", enumeration, enum_words::mark, kTransceivers},
    {0x0028, "voltage_high_alarm_v", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0029, "voltage_low_alarm_v", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x002A, "voltage_high_warning_v", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x002B, "voltage_low_warning_v", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x002C, "current_ma", decimal, kPlain, kTransceivers},
    {0x002D, "current_mark", enumeration, enum_words::mark, kTransceivers},
    {0x002E, "current_high_alarm_ma", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x002F, "current_low_alarm_ma", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0030, "current_high_warning_ma", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0031, "current_low_warning_ma", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0032, "tx_power_dbm", decimal, kPlain, kTransceivers},
    {0x0033, "tx_power_mark", enumeration, enum_words::mark, kTransceivers},
    {0x0034, "tx_power_high_alarm_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0035, "tx_power_low_alarm_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0036, "tx_power_high_warning_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0037, "tx_power_low_warning_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x0038, "rx_power_dbm", decimal, kPlain, kTransceivers},
    {0x0039, "rx_power_mark", enumeration, enum_words::mark, kTransceivers},
    {0x003A, "rx_power_high_alarm_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x003B, "rx_power_low_alarm_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x003C, "rx_power_high_warning_dbm", decimal, kPlain, kTransceiverDetailsDisplay},
    {0x003D, "rx_power_low_warning_dbm", decimal, kPlain, kTransceiverDetailsDisplay},

    // External calibration constants.
    {0x003E, "temperature_slope", number, kPlain, kCalibrationDisplay},
    {0x003F, "temperature_offset", number, kPlain, kCalibrationDisplay},
    {0x0040, "voltage_slope", number, kPlain, kCalibrationDisplay},
    {0x0041, "voltage_offset", number, kPlain, kCalibrationDisplay},
    {0x0042, "current_slope", number, kPlain, kCalibrationDisplay},
    {0x0043, "current_offset", number, kPlain, kCalibrationDisplay},
    {0x0044, "tx_power_slope", number, kPlain, kCalibrationDisplay},
    {0x0045, "tx_power_offset", number, kPlain, kCalibrationDisplay},
    {0x0046, "rx_power_4", number, kPlain, kCalibrationDisplay},
    {0x0047, "rx_power_3", number, kPlain, kCalibrationDisplay},
    {0x0048, "rx_power_2", number, kPlain, kCalibrationDisplay},
    {0x0049, "rx_power_1", number, kPlain, kCalibrationDisplay},
    {0x004A, "rx_power_0", number, kPlain, kCalibrationDisplay},

    // Trunks.
    {0x0075, "interface", interface_name, kPlain, kTrunks},
    {0x0076, "native_vlan", number, kPlain, kTrunkDisplay | kSwitchport},
    {0x0077, "trunk_status", string, kPlain, kTrunkDisplay},
    {0x0078, "port_channel", string, kPlain, kTrunkDisplay},
    {0x0079, "allowed_vlans", string, kPlain, kAllowedVlansDisplay | kSwitchport},
    {0x007A, "forwarding_vlans", string, kPlain, kForwardingVlansDisplay},

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
