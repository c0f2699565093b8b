#include "shell/output/schema.h"

#include <array>
#include <iterator>

namespace host {
namespace {

using enum field_type;

constexpr auto kDetailed = kDetailedDisplay;
constexpr auto kCapabilities = kCapabilityDisplay;
constexpr auto kSwitchport = kSwitchportDisplay;
constexpr auto kBrief = kBriefDisplay;
constexpr auto kPlain = enum_words::number;

constexpr field kFields[] = {
    // The interface itself: the first field of every record.
    {0x0085, "interface", interface_name, kPlain, kNoDisplay},
    {0x01D8, "interface", interface_name, kPlain, kDetailed | kSwitchport},
    {0x01F4, "interface", interface_name, kPlain, kBrief},
    {0x01FF, "interface", interface_name, kPlain, kCapabilities},
    {0x0602, "interface", interface_name, kPlain, kNoDisplay},

    // State.
    {0x01D9, "state", enumeration, enum_words::port_state, kDetailed | kSwitchport},
    {0x01F8, "state", enumeration, enum_words::port_state, kBrief},
    {0x0614, "state", enumeration, enum_words::port_state, kNoDisplay},
    {0x061B, "state", enumeration, enum_words::port_state, kNoDisplay},
    {0x01DB, "state_reason", enumeration, enum_words::state_reason, kDetailed | kSwitchport},
    {0x061D, "state_reason", enumeration, enum_words::state_reason, kNoDisplay},
    {0x01DA, "state_reason", enumeration, enum_words::state_reason_short, kNoDisplay},

    // What the interface is.
    {0x01DC, "description", string, kPlain, kDetailed | kSwitchport},
    {0x0339, "description", string, kPlain, kBrief},
    {0x0271, "member_of", string, kPlain, kSwitchport},
    {0x0239, "bound_interface", interface_name, kPlain, kDetailed},
    {0x0272, "multi_chassis_status", string, kPlain, kDetailed},
    {0x0273, "hardware", string, kPlain, kDetailed},
    {0x01DD, "hardware", string, kPlain, kSwitchport},
    {0x0274, "address", mac, kPlain, kDetailed | kSwitchport},
    {0x01DE, "address", mac, kPlain, kSwitchport},
    {0x0275, "burned_in_address", mac, kPlain, kDetailed},
    {0x0276, "ip_address", ipv4, kPlain, kDetailed},
    {0x033C, "ip_address", ipv4, kPlain, kBrief},
    {0x0277, "prefix_length_bits", number, kPlain, kDetailed},

    // Settings.
    {0x0278, "mtu_bytes", number, kPlain, kDetailed | kSwitchport},
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
    {0x0616, "duplex", enumeration, enum_words::duplex, kNoDisplay},
    {0x0282, "speed_mbps", number_or_auto, enum_words::speed_mbps, kDetailed | kSwitchport},
    {0x01E2, "speed_mbps", number, kPlain, kSwitchport},
    {0x01FA, "speed_mbps", number, kPlain, kBrief},
    {0x0617, "speed_mbps", number_or_auto, enum_words::speed_mbps, kNoDisplay},
    {0x0287, "media_type", string, kPlain, kDetailed},
    {0x0288, "input_flow_control", enumeration, enum_words::flow_control, kDetailed},
    {0x0289, "output_flow_control", enumeration, enum_words::flow_control, kDetailed},
    {0x0603, "admin_output_flow_control", enumeration, enum_words::flow_control, kNoDisplay},
    {0x0604, "oper_output_flow_control", enumeration, enum_words::flow_control, kNoDisplay},
    {0x0605, "admin_input_flow_control", enumeration, enum_words::flow_control, kNoDisplay},
    {0x0606, "oper_input_flow_control", enumeration, enum_words::flow_control, kNoDisplay},
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
    {0x01E4, "kernel_input_packets", number, kPlain, kDetailed},
    {0x01E5, "kernel_input_bytes", number, kPlain, kDetailed},
    {0x01E6, "kernel_input_multicast_packets", number, kPlain, kDetailed},
    {0x01E7, "kernel_input_compressed", number, kPlain, kDetailed},
    {0x01E8, "kernel_input_errors", number, kPlain, kDetailed},
    {0x01E9, "kernel_input_frame_errors", number, kPlain, kDetailed},
    {0x01EA, "kernel_input_overruns", number, kPlain, kDetailed},
    {0x01EB, "kernel_input_fifo_errors", number, kPlain, kDetailed},
    {0x01EC, "kernel_output_packets", number, kPlain, kDetailed},
    {0x01ED, "kernel_output_bytes", number, kPlain, kDetailed},
    {0x01EE, "kernel_output_underruns", number, kPlain, kDetailed},
    {0x01EF, "kernel_output_errors", number, kPlain, kDetailed},
    {0x01F0, "kernel_output_collisions", number, kPlain, kDetailed},
    {0x01F1, "kernel_output_fifo_errors", number, kPlain, kDetailed},
    {0x01F2, "kernel_output_carrier_errors", number, kPlain, kDetailed},

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

    // How a measured value of a transceiver stands to its thresholds.
    {0x0021, "temperature_mark", enumeration, enum_words::mark, kNoDisplay},
    {0x0027, "voltage_mark", enumeration, enum_words::mark, kNoDisplay},
    {0x002D, "current_mark", enumeration, enum_words::mark, kNoDisplay},
    {0x0033, "tx_power_mark", enumeration, enum_words::mark, kNoDisplay},
    {0x0039, "rx_power_mark", enumeration, enum_words::mark, kNoDisplay},

    // Messages of this process.
    {kTagMessagesSent, "sent", number, kPlain, kTransportDisplay},
    {kTagMessagesReceived, "received", number, kPlain, kTransportDisplay},
    {kTagMessagesDropped, "dropped", number, kPlain, kTransportDisplay},
    {kTagMessagesDroppedTwice, "dropped_twice", number, kPlain, kTransportDisplay},
    {kTagMessagesNeverDropped, "never_dropped", number, kPlain, kTransportDisplay},
};

constexpr std::size_t kTags = 0x800;

// Row of each tag, counted from 1; 0 is none.
constexpr auto kRowOfTag = [] {
  std::array<uint8, kTags> rows{};
  static_assert(std::size(kFields) < 0xFF);
  for (std::size_t row = 0; row < std::size(kFields); ++row) {
    if (rows[kFields[row].tag] != 0) throw "a tag has two meanings";
    rows[kFields[row].tag] = static_cast<uint8>(row + 1);
  }
  return rows;
}();

}  // namespace

std::span<const field> schema() { return kFields; }

const field* find_field(uint16 tag) {
  const std::size_t row = tag < kTags ? kRowOfTag[tag] : 0;
  return row == 0 ? nullptr : &kFields[row - 1];
}

}  // namespace host
