// The only list of settings of interfaces, one row each.
#pragma once

#include <type_traits>

#include "platform/interface_manager.h"
#include "platform/port_config.h"
#include "platform/port_manager.h"
#include "pmcli/displays.h"
#include "settings/settings.h"
#include "settings/wire.h"
#include "switch/interface_name.h"
#include "switch/port_settings.h"

namespace host {

// ---- Which kinds of interface have a setting

bool is_any_but_inband(if_index_type_t kind);
bool is_ethernet_or_channel(if_index_type_t kind);
bool is_fibre_channel(if_index_type_t kind);
bool is_fibre_channel_port(if_index_type_t kind);
bool can_monitor(if_index_type_t kind);
bool has_layer(if_index_type_t kind);  // those that can be routed
bool has_mode(if_index_type_t kind);   // Ethernet ports, Fibre Channel ports, port-channels
bool has_speed(if_index_type_t kind);  // and management ports
bool is_port(if_index_type_t kind);

// ---- Checks of values, and settings that follow from others

uint32 refuses_layer(const interface& port, const setting_value& value);
uint32 refuses_mode(const interface& port, const setting_value& value);
uint32 refuses_speed(const interface& port, const setting_value& value);
uint32 refuses_mtu(const interface& port, const setting_value& value);
uint32 refuses_receive_buffer(const interface& port, const setting_value& value);
uint32 refuses_channel(const interface& port, const setting_value& value);
void follow_mode(interface& port);
void follow_layer(interface& port);
setting_value usual_layer(const interface& port);
setting_value usual_mode(const interface& port);
setting_value usual_allowed_vlans(const interface& port);

// ---- Where a setting is kept

template <auto Member>
std::optional<setting_value> get_number(const port_settings& from) {
  if constexpr (requires { (from.*Member).has_value(); }) {
    if (!(from.*Member).has_value()) return std::nullopt;
    return setting_value(uint32{*(from.*Member)});
  } else {
    return setting_value(uint32{from.*Member});
  }
}

template <auto Member>
void put_number(interface& to, const setting_value& value) {
  auto& member = to.settings.*Member;
  if constexpr (requires { member.emplace(); })
    member = static_cast<typename std::remove_reference_t<decltype(member)>::value_type>(std::get<uint32>(value));
  else
    member = static_cast<std::remove_reference_t<decltype(member)>>(std::get<uint32>(value));
}

std::optional<setting_value> get_description(const port_settings& from);
void put_description(interface& to, const setting_value& value);
std::optional<setting_value> get_beacon(const port_settings& from);
void put_beacon(interface& to, const setting_value& value);
std::optional<setting_value> get_allowed_vlans(const port_settings& from);
void put_allowed_vlans(interface& to, const setting_value& value);
// The number of the port-channel, as it is written; 0 is none.
std::optional<setting_value> get_channel(const port_settings& from);
void put_channel(interface& to, const setting_value& value);

// Flow control of a side (PM_FLOW_CTRL_*): FLOW_CONTROL_...
enum : uint8 { kFlowControlOff = 0, kFlowControlOn = 1, kFlowControlDesired = 2 };
std::optional<setting_value> get_flow_control(const port_settings& from, uint16 side);
void put_flow_control(interface& to, uint16 side, const setting_value& value);
template <uint16 kSide>
std::optional<setting_value> get_side(const port_settings& from) {
  return get_flow_control(from, kSide);
}
template <uint16 kSide>
void put_side(interface& to, const setting_value& value) {
  put_flow_control(to, kSide, value);
}

// ---- Forms

namespace form {

using tokens = setting_tokens;

constexpr setting_form word(std::string_view syntax, uint32 value, std::string_view help, tokens given = {}) {
  return {form_kind::word, syntax, help, given, value};
}
// A word that the command library does not know.
constexpr setting_form host_word(std::string_view syntax, uint32 value, std::string_view help) {
  return {form_kind::word, syntax, help, {}, value, true};
}
constexpr setting_form argument(std::string_view syntax, std::string_view help, tokens given = {}, uint32 bits = 0) {
  return {form_kind::argument, syntax, help, given, bits};
}
constexpr setting_form on(uint32 value, std::string_view help) { return word("", value, help); }
constexpr setting_form off(uint32 value, std::string_view help) { return {form_kind::off, "", help, {}, value}; }
constexpr setting_form usual(std::string_view help, tokens given = {}) { return {form_kind::usual, "", help, given}; }

// The value of the form, as a token without a word.
inline constexpr setting_token kValue = {0, token_value::of_form};
inline constexpr setting_token kNumber = {0, token_value::number};
inline constexpr setting_token kText = {0, token_value::text};

// clang-format off
inline constexpr setting_form kDescriptionForms[] = {
    argument("TEXT", "Describe the interfaces", {kText}),
    usual("Remove the description"),
};
inline constexpr setting_form kLayerForms[] = {
    on(IF_LAYER_2, "Switch frames"),
    off(IF_LAYER_3, "Route packets"),
};
inline constexpr setting_form kModeForms[] = {
    word("access", PM_PORT_MODE_ACCESS, "Ports of one VLAN", {kValue}),
    word("trunk", PM_PORT_MODE_TRUNK, "Ports of several VLANs", {kValue}),
    word("fabric", PM_PORT_MODE_FABRIC, "Ports to satellite units", {kValue}),
    word("private-vlan host", PM_PORT_MODE_PVLAN_HOST, "Host ports of a private VLAN", {{TOKEN_MODE_BY_NUMBER}, kValue}),
    word("private-vlan promiscuous", PM_PORT_MODE_PVLAN_PROMISCUOUS, "Ports that all of a private VLAN reach", {{TOKEN_MODE_BY_NUMBER}, kValue}),
    word("auto", PM_PORT_MODE_AUTO, "Negotiate the Fibre Channel mode", {kValue}),
    word("e", PM_PORT_MODE_E, "Fibre Channel ports to switches", {kValue}),
    word("f", PM_PORT_MODE_F, "Fibre Channel ports to hosts", {kValue}),
    word("fl", PM_PORT_MODE_FL, "Fibre Channel ports to loops", {kValue}),
    word("fx", PM_PORT_MODE_FX, "Fibre Channel ports to hosts or loops", {kValue}),
    word("np", PM_PORT_MODE_NP, "Fibre Channel uplinks that log hosts in", {kValue}),
    word("sd", PM_PORT_MODE_SD, "Destination ports of mirrored Fibre Channel frames", {kValue}),
    word("st", PM_PORT_MODE_ST, "Tunnel ends for mirrored Fibre Channel frames", {kValue}),
    word("tl", PM_PORT_MODE_TL, "Fibre Channel ports to private loops", {kValue}),
    host_word("te", PM_PORT_MODE_TE, "Fibre Channel trunks to switches"),
    host_word("tf", PM_PORT_MODE_TF, "Fibre Channel trunks to hosts"),
    host_word("tnp", PM_PORT_MODE_TNP, "Fibre Channel trunk uplinks that log hosts in"),
    host_word("ips", PM_PORT_MODE_IPS, "IP storage ports"),
    host_word("iscsi", PM_PORT_MODE_ISCSI, "iSCSI ports"),
    usual("Restore the usual mode"),
};
inline constexpr setting_form kSpeedForms[] = {
    word("auto", 0, "Fastest speed that both ends support", {{TOKEN_SPEED_AUTO}}),
    word("auto max 2000", 1, "Negotiate up to 2 Gbit/s", {{TOKEN_SPEED_AUTO}, {TOKEN_AUTO_MAX}, {TOKEN_AUTO_MAX_2000}}),
    word("auto max 4000", 2, "Negotiate up to 4 Gbit/s", {{TOKEN_SPEED_AUTO}, {TOKEN_AUTO_MAX}, {TOKEN_AUTO_MAX_4000}}),
    word("10", 10, "10 Mbit/s", {{TOKEN_SPEED_10}}),
    word("100", 100, "100 Mbit/s", {{TOKEN_SPEED_100}}),
    word("1000", 1000, "1 Gbit/s", {{TOKEN_SPEED_1000}}),
    word("2000", 2000, "2 Gbit/s", {{TOKEN_SPEED_2000}}),
    host_word("2500", 2500, "2.5 Gbit/s"),
    word("4000", 4000, "4 Gbit/s", {{TOKEN_SPEED_4000}}),
    host_word("5000", 5000, "5 Gbit/s"),
    word("8000", 8000, "8 Gbit/s", {{TOKEN_SPEED_8000}}),
    host_word("10000", 10000, "10 Gbit/s"),
    host_word("25000", 25000, "25 Gbit/s"),
    host_word("40000", 40000, "40 Gbit/s"),
    host_word("50000", 50000, "50 Gbit/s"),
    host_word("100000", 100000, "100 Gbit/s"),
    host_word("200000", 200000, "200 Gbit/s"),
    host_word("400000", 400000, "400 Gbit/s"),
    usual("Restore the usual speed"),
};
inline constexpr setting_form kDuplexForms[] = {
    word("auto", PM_PORT_DUPLEX_AUTO, "Negotiate the duplex mode", {{TOKEN_DUPLEX_AUTO}}),
    word("full", PM_PORT_DUPLEX_FULL, "Send and receive at the same time", {{TOKEN_DUPLEX_FULL}}),
    word("half", PM_PORT_DUPLEX_HALF, "One direction at a time", {{TOKEN_DUPLEX_HALF}}),
    usual("Restore the usual duplex mode"),
};
inline constexpr setting_form kAccessVlanForms[] = {
    argument("VLAN", "VLAN of access ports"),
    usual("Restore VLAN 1"),
};
inline constexpr setting_form kNativeVlanForms[] = {
    argument("VLAN", "Untagged VLAN of trunks"),
    usual("Restore VLAN 1"),
};
// Adding to a list and removing from it have the action as their value.
inline constexpr setting_form kAllowedVlansForms[] = {
    argument("VLANS", "VLANs that trunks carry", {}, static_cast<uint32>(vlan_action::set)),
    argument("add VLANS", "Add VLANs", {}, static_cast<uint32>(vlan_action::add)),
    argument("remove VLANS", "Remove VLANs", {}, static_cast<uint32>(vlan_action::remove)),
    word("all", 1, "All VLANs"),
    word("none", 0, "No VLANs"),
    {form_kind::usual, "", "Restore all VLANs", {}, 1},
};
inline constexpr setting_form kReceivePauseForms[] = {
    word("on", kFlowControlOn, "Obey received pause frames"),
    word("off", kFlowControlOff, "Ignore received pause frames"),
    word("desired", kFlowControlDesired, "Negotiate received pause frames"),
    usual("Ignore received pause frames"),
};
inline constexpr setting_form kSendPauseForms[] = {
    word("on", kFlowControlOn, "Send pause frames"),
    word("off", kFlowControlOff, "Send no pause frames"),
    word("desired", kFlowControlDesired, "Negotiate sent pause frames"),
    usual("Send no pause frames"),
};
inline constexpr setting_form kChannelForms[] = {
    argument("CHANNEL", "Add the ports to a port-channel"),
    usual("Remove the ports from their port-channel"),
};
inline constexpr setting_form kMtuForms[] = {
    argument("BYTES", "Largest packet", {{TOKEN_MTU_BYTES, token_value::number}}),
    usual("Restore 1500 bytes"),
};
inline constexpr setting_form kTrunkModeForms[] = {
    word("off", 1, "No trunk of VSANs", {{TOKEN_TRUNK_MODE_WORD}, kValue}),
    word("on", 2, "Trunk of VSANs", {{TOKEN_TRUNK_MODE_WORD}, kValue}),
    word("auto", 3, "Trunk when the other end has one", {{TOKEN_TRUNK_MODE_WORD}, kValue}),
};
inline constexpr setting_form kEncapsulationForms[] = {
    word("normal", 1, "Frames without their VSAN", {{TOKEN_ENCAP_NORMAL}}),
    word("eisl", 2, "Frames with their VSAN", {{TOKEN_ENCAP_EISL}}),
    word("internal", 3, "Frames as the switch carries them", {{TOKEN_ENCAP_INTERNAL}}),
    usual("Restore the usual encapsulation"),
};
inline constexpr setting_form kBeaconForms[] = {
    on(1, "Blink the port LEDs"),
    off(2, "Stop blinking the port LEDs"),
};
// The two highest bits of the number are the mode that it is for.
inline constexpr setting_form kCreditForms[] = {
    argument("COUNT", "Credits for received frames", {{TOKEN_CREDIT_COUNT, token_value::number}}),
    argument("COUNT mode e", "Credits of ports to switches", {{TOKEN_CREDIT_COUNT, token_value::number}, {}, {TOKEN_CREDIT_MODE_E}}, 0x40000000),
    argument("COUNT mode fx", "Credits of ports to hosts", {{TOKEN_CREDIT_COUNT, token_value::number}, {}, {TOKEN_CREDIT_MODE_FX}}, 0x80000000),
    {form_kind::usual, "default", "Usual number of credits", {{TOKEN_CREDIT_DEFAULT}}},
    usual("Restore the usual credits"),
};
inline constexpr setting_form kBuffersForms[] = {
    word("default", UINT32_MAX, "Number of buffers that the card chooses", {{TOKEN_PERFORMANCE_BUFFERS_2}}),
    argument("COUNT", "Buffers for fast ports", {{TOKEN_PERFORMANCE_BUFFERS_1}, kNumber}),
    usual("Restore the card's own number", {{TOKEN_PERFORMANCE_BUFFERS_3}}),
};
inline constexpr setting_form kExtendedCreditForms[] = {
    argument("COUNT", "Credits for long distances", {{TOKEN_CREDIT_EXTENDED}, {TOKEN_CREDIT_EXTENDED_COUNT, token_value::number}}),
    usual("Restore none for long distances", {{TOKEN_CREDIT_EXTENDED}}),
};
inline constexpr setting_form kMultiplierForms[] = {
    argument("COUNT", "Frames for each credit", {{TOKEN_CREDIT_MULTIPLIER}, kNumber}),
    usual("Restore a credit for each frame", {{TOKEN_CREDIT_MULTIPLIER}}),
};
inline constexpr setting_form kCreditCheckForms[] = {
    on(1, "Detect lost credits"),
    off(2, "Ignore lost credits"),
};
inline constexpr setting_form kReceiveBufferForms[] = {
    argument("BYTES", "Largest frame, a multiple of 4", {{TOKEN_RXBUFSIZE_BYTES, token_value::half_number}}),
    usual("Restore 2112 bytes"),
};
inline constexpr setting_form kPromiscuousForms[] = {
    word("on", 1, "Accept all frames", {{TOKEN_PROMISCUOUS_ON}}),
    word("off", 2, "Accept only frames addressed to the port", {{TOKEN_PROMISCUOUS_OFF}}),
    usual("Accept only frames addressed to the port"),
};
inline constexpr setting_form kBitErrorsForms[] = {
    on(1, "Keep ports up that have bit errors"),
    off(2, "Shut ports that have bit errors"),
};
inline constexpr setting_form kMonitorForms[] = {
    word("", 1, "Destination ports of mirrored packets"),
    word("ingress", 2, "Mirror destinations that also receive packets", {{}}),
    word("ingress learning", 3, "Mirror destinations that also learn addresses", {{}, {}}),
    off(0, "No mirror destination"),
};
inline constexpr setting_form kLinkFailureForms[] = {
    on(3, "Keep a port down after its link failed"),
    off(4, "Let a port come up again"),
};
inline constexpr setting_form kServiceStateForms[] = {
    on(1, "Take the ports out of service"),
    off(0, "Return the ports to service"),
};
inline constexpr setting_form kStateForms[] = {
    on(PM_PORT_STATE_DOWN, "Disable the interfaces"),
    off(PM_PORT_STATE_UP, "Enable the interfaces"),
};

using set = port_settings;
constexpr uint32 kLastVlan = 4094;
constexpr uint16 kVlansBytes = sizeof(allowed_vlans_value);
constexpr setting_tokens switchport(uint32 sub_command) { return {{TOKEN_SWITCHPORT}, {sub_command}}; }
constexpr setting_tokens kCredit = switchport(TOKEN_SWITCHPORT_BB_CREDIT);
constexpr auto kWord = setting_kind::word;
constexpr auto kNumbers = setting_kind::number;

inline constexpr setting kSettings[] = {
    {PM_CFG_NAME, "description", kDescriptionForms, switchport(TOKEN_SWITCHPORT_NAME), setting_kind::text, PM_PORT_NAME_BYTES, 0, PM_PORT_NAME_BYTES - 1,
     is_any_but_inband, get_description, put_description, {.step = kernel_step::alias, .key = "description"}},
    {PM_CFG_SWITCHPORT, "switchport", kLayerForms, {{TOKEN_SWITCHPORT}}, kWord, 4, 0, 0,
     has_layer, get_number<&set::layer>, put_number<&set::layer>, {.usual = usual_layer, .refuses = refuses_layer, .follow = follow_layer, .of_channel = true}},
    {PM_CFG_PORT_MODE, "switchport mode", kModeForms, switchport(TOKEN_SWITCHPORT_MODE), kWord, 4, 0, 0,
     has_mode, get_number<&set::admin_mode>, put_number<&set::admin_mode>, {.usual = usual_mode, .refuses = refuses_mode, .follow = follow_mode,
     .of_channel = true, .cuts = may_cut::always, .step = kernel_step::vlans, .key = "mode", .asks_for_usual = 0x80000000}},
    {PM_CFG_SPEED, "switchport speed", kSpeedForms, switchport(TOKEN_SWITCHPORT_SPEED), kWord, 4, 0, 0,
     has_speed, get_number<&set::admin_speed_mbps>, put_number<&set::admin_speed_mbps>, {.refuses = refuses_speed,
     .of_channel = true, .of_parent = true, .cuts = may_cut::always, .step = kernel_step::speed, .key = "speed"}},
    {PM_CFG_DUPLEX, "switchport duplex", kDuplexForms, switchport(TOKEN_SWITCHPORT_DUPLEX), kWord, 1, 0, 0,
     has_speed, get_number<&set::admin_duplex>, put_number<&set::admin_duplex>,
     {.of_channel = true, .of_parent = true, .cuts = may_cut::always, .step = kernel_step::speed, .key = "duplex"}},
    {HOST_CFG_ACCESS_VLAN, "switchport access vlan", kAccessVlanForms, {}, kNumbers, 2, 1, kLastVlan,
     is_ethernet_or_channel, get_number<&set::access_vlan>, put_number<&set::access_vlan>,
     {.of_channel = true, .cuts = may_cut::always, .step = kernel_step::vlans, .key = "vlan access"}},
    {HOST_CFG_NATIVE_VLAN, "switchport trunk native vlan", kNativeVlanForms, {}, kNumbers, 2, 1, kLastVlan,
     is_ethernet_or_channel, get_number<&set::native_vlan>, put_number<&set::native_vlan>,
     {.of_channel = true, .cuts = may_cut::always, .step = kernel_step::vlans, .key = "vlan native"}},
    {HOST_CFG_ALLOWED_VLANS, "switchport trunk allowed vlan", kAllowedVlansForms, {}, setting_kind::vlans, kVlansBytes, 1, kLastVlan,
     is_ethernet_or_channel, get_allowed_vlans, put_allowed_vlans, {.usual = usual_allowed_vlans,
     .of_channel = true, .cuts = may_cut::always, .step = kernel_step::vlans, .key = "vlan allowed"}},
    {HOST_CFG_RECEIVE_PAUSE, "flowcontrol receive", kReceivePauseForms, {}, kWord, 1, 0, 0,
     is_ethernet_or_channel, get_side<PM_FLOW_CTRL_RECEIVE>, put_side<PM_FLOW_CTRL_RECEIVE>,
     {.of_channel = true, .cuts = may_cut::always, .step = kernel_step::flow_control, .key = "flow-control receive"}},
    {HOST_CFG_SEND_PAUSE, "flowcontrol send", kSendPauseForms, {}, kWord, 1, 0, 0,
     is_ethernet_or_channel, get_side<PM_FLOW_CTRL_SEND>, put_side<PM_FLOW_CTRL_SEND>,
     {.of_channel = true, .cuts = may_cut::always, .step = kernel_step::flow_control, .key = "flow-control send"}},
    {HOST_CFG_CHANNEL, "channel-group", kChannelForms, {}, kNumbers, 2, 1, kMaxChannel,
     is_port, get_channel, put_channel, {.refuses = refuses_channel,
     .cuts = may_cut::always, .step = kernel_step::bond}},
    {PM_CFG_MTU, "switchport mtu", kMtuForms, switchport(TOKEN_SWITCHPORT_MTU), kNumbers, 4, 64, UINT16_MAX,
     is_ethernet_or_channel, get_number<&set::mtu_bytes>, put_number<&set::mtu_bytes>, {.refuses = refuses_mtu,
     .of_channel = true, .of_parent = true, .step = kernel_step::mtu, .key = "mtu"}},
    {PM_CFG_TRUNKING_MODE, "switchport trunk mode", kTrunkModeForms, switchport(TOKEN_SWITCHPORT_TRUNK_MODE), kWord, 1, 0, 0,
     has_mode, get_number<&set::trunking_mode>, put_number<&set::trunking_mode>, {.of_channel = true}},
    {PM_CFG_ENCAP, "switchport encapsulation", kEncapsulationForms, switchport(TOKEN_SWITCHPORT_ENCAP), kWord, 1, 0, 0,
     has_mode, get_number<&set::encapsulation>, put_number<&set::encapsulation>, {.of_channel = true}},
    {PM_CFG_BEACON, "switchport beacon", kBeaconForms, switchport(TOKEN_SWITCHPORT_BEACON), kWord, 1, 0, 0,
     is_port, get_beacon, put_beacon, {.step = kernel_step::beacon, .key = "beacon"}},
    {PM_CFG_RX_BB_CREDIT, "switchport bb-credit", kCreditForms, kCredit, kNumbers, 4, 0, 255,
     is_fibre_channel, get_number<&set::receive_credit>, put_number<&set::receive_credit>, {.of_channel = true}},
    {PM_CFG_PERFORMANCE_BUFFERS, "switchport bb-credit performance-buffers", kBuffersForms, kCredit, kNumbers, 4, 0, UINT16_MAX,
     is_fibre_channel, get_number<&set::performance_buffers>, put_number<&set::performance_buffers>, {.of_channel = true}},
    {PM_CFG_BB_CREDIT_EXTENDED, "switchport bb-credit extended", kExtendedCreditForms, kCredit, kNumbers, 4, 0, 4095,
     is_fibre_channel, get_number<&set::extended_credit>, put_number<&set::extended_credit>, {.of_channel = true}},
    {PM_CFG_BB_CREDIT_MULTIPLIER, "switchport bb-credit multiplier", kMultiplierForms, kCredit, kNumbers, 4, 0, 255,
     is_fibre_channel, get_number<&set::credit_multiplier>, put_number<&set::credit_multiplier>, {.of_channel = true}},
    {PM_CFG_BB_SCN, "switchport bb-scn", kCreditCheckForms, switchport(TOKEN_SWITCHPORT_BB_SCN), kWord, 1, 0, 0,
     is_fibre_channel_port, get_number<&set::bb_scn>, put_number<&set::bb_scn>, {.of_channel = true}},
    {PM_CFG_RXBUFSIZE, "switchport receive-buffer-size", kReceiveBufferForms, switchport(TOKEN_SWITCHPORT_RXBUFSIZE), kNumbers, 2, 256, 2112,
     is_fibre_channel, get_number<&set::receive_buffer_bytes>, put_number<&set::receive_buffer_bytes>, {.refuses = refuses_receive_buffer, .of_channel = true}},
    {PM_CFG_PROMISCUOUS, "switchport promiscuous-mode", kPromiscuousForms, switchport(TOKEN_SWITCHPORT_PROMISCUOUS), kWord, 4, 0, 0,
     has_mode, get_number<&set::promiscuous_mode>, put_number<&set::promiscuous_mode>},
    {PM_CFG_IGNORE, "switchport ignore bit-errors", kBitErrorsForms, {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_IGNORE}, {TOKEN_BIT_ERRORS}}, kWord, 1, 0, 0,
     is_fibre_channel, get_number<&set::ignore_bit_errors>, put_number<&set::ignore_bit_errors>},
    {PM_CFG_MONITOR, "switchport monitor", kMonitorForms, switchport(TOKEN_SWITCHPORT_MONITOR), kWord, 4, 0, 0,
     can_monitor, get_number<&set::span_monitor>, put_number<&set::span_monitor>, {.key = "span-monitor"}},
    {PM_CFG_PORT_DOWN_ON_LINK_FAILURE, "port down on link failure", kLinkFailureForms, {{TOKEN_PORT_DOWN_ON_LINK_FAILURE}}, kWord, 4, 0, 0,
     is_port, get_number<&set::down_on_link_failure>, put_number<&set::down_on_link_failure>, {.of_channel = true}},
    {PM_CFG_SERVICE_STATE, "out-of-service", kServiceStateForms, {{TOKEN_OUT_OF_SERVICE}}, kWord, 4, 0, 0,
     is_port, get_number<&set::service_state>, put_number<&set::service_state>, {.key = "out-of-service"}},
    {PM_CFG_PORT_STATE, "shutdown", kStateForms, {{TOKEN_SHUTDOWN}}, kWord, 1, 0, 0,
     is_any_but_inband, get_number<&set::admin_state>, put_number<&set::admin_state>, {.cuts = may_cut::unless_off, .step = kernel_step::state}},

    // Attributes without a command.
    {PM_CFG_31, "", {}, {}, kNumbers, 4, 1, 2, is_any_but_inband, get_number<&set::attribute_31>, put_number<&set::attribute_31>},
    {PM_CFG_36, "", {}, {}, kNumbers, 4, 1, 2, has_mode, get_number<&set::attribute_36>, put_number<&set::attribute_36>},
    {PM_CFG_44, "", {}, {}, kNumbers, 1, 0, 3, has_mode, get_number<&set::attribute_44>, put_number<&set::attribute_44>},
    {PM_CFG_84, "", {}, {}, kNumbers, 1, 1, 2, is_port, get_number<&set::attribute_84>, put_number<&set::attribute_84>},
    {PM_CFG_85, "", {}, {}, kNumbers, 1, 0, 1, is_any_but_inband, get_number<&set::attribute_85>, put_number<&set::attribute_85>},
};
// clang-format on

}  // namespace form

using form::kSettings;

}  // namespace host
