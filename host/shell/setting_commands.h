// The settings of interfaces: how each is written, and the tokens that the command library gets for it.
//
// The command library finds its settings by these numbers, counted from the range: the keyword, for switchport the
// sub-command, then words and values.
#pragma once

#include "pmcli/displays.h"
#include "service/port_manager_messages.h"
#include "shell/commands.h"
#include "shell/grammar.h"

namespace host {

inline constexpr display kSettingShown = {kSettingDisplay, {}, "settings"};

inline constexpr setting_token kNumber = {0, token_value::number};

// A mode of ports, as the value without a word.
constexpr setting_token port_mode(uint32 mode) { return {0, token_value::fixed, mode}; }

// Settings that may take a link down: the state of a port, and its mode, speed and duplex.
constexpr bool may_cut(const setting_tokens& tokens) {
  const uint32 keyword = tokens.token[0].id, sub_command = tokens.token[1].id;
  return keyword == TOKEN_SHUTDOWN || (keyword == TOKEN_SWITCHPORT &&
                                       (sub_command == TOKEN_SWITCHPORT_MODE || sub_command == TOKEN_SWITCHPORT_SPEED ||
                                        sub_command == TOKEN_SWITCHPORT_DUPLEX));
}

constexpr command setting(command_syntax syntax, std::string_view help, setting_tokens tokens) {
  return {syntax, help, set_ports, kSettingShown, 0, kInterfaceMode, tokens, 0, may_cut(tokens)};
}

// A setting that the command library does not make: its type, and its value. A list of VLANs has the id ALLOWED_VLANS_*
// and is the text of the line, or fixed.
constexpr command of_host(command_syntax syntax, std::string_view help, host_setting type, setting_token value) {
  return {syntax, help, set_ports_of_host, kSettingShown, 0, kInterfaceMode, {value}, type, true};
}

constexpr setting_token fixed(uint32 value) { return {0, token_value::fixed, value}; }
inline constexpr setting_token kVlansNone = {ALLOWED_VLANS_SET, token_value::fixed, 0};
inline constexpr setting_token kVlansAll = {ALLOWED_VLANS_SET, token_value::fixed, 1};
constexpr setting_token vlans(uint32 action) { return {action, token_value::text}; }

// clang-format off
inline constexpr command kSettingCommands[] = {
    setting("[no] shutdown", "Switch the interfaces off", {{TOKEN_SHUTDOWN}}),
    setting("[no] out-of-service", "Take the ports out of service", {{TOKEN_OUT_OF_SERVICE}}),
    setting("[no] port down on link failure", "A port whose link fails stays down", {{TOKEN_PORT_DOWN_ON_LINK_FAILURE}}),
    setting("description TEXT", "Describe the interfaces", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_NAME}, {0, token_value::text}}),
    setting("no description", "Take the description away", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_NAME}}),
    setting("[no] switchport", "Switched ports; with 'no' routed ones", {{TOKEN_SWITCHPORT}}),
    setting("switchport name TEXT", "The same as 'description'", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_NAME}, {0, token_value::text}}),
    setting("no switchport name", "The same as 'no description'", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_NAME}}),
    setting("switchport mode access", "Ports of one VLAN", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_ACCESS)}),
    setting("switchport mode trunk", "Ports of many VLANs", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_TRUNK)}),
    setting("switchport mode fabric", "Ports to satellite units", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_FABRIC)}),
    setting("switchport mode private-vlan host", "Ports to hosts in a private VLAN", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, {TOKEN_MODE_BY_NUMBER}, port_mode(PM_PORT_MODE_PVLAN_HOST)}),
    setting("switchport mode private-vlan promiscuous", "Ports that all of a private VLAN reach", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, {TOKEN_MODE_BY_NUMBER}, port_mode(PM_PORT_MODE_PVLAN_PROMISCUOUS)}),
    setting("switchport mode auto", "Let the Fibre-Channel ports find their mode", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_AUTO)}),
    setting("switchport mode e", "Fibre-Channel ports to switches", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_E)}),
    setting("switchport mode f", "Fibre-Channel ports to hosts", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_F)}),
    setting("switchport mode fl", "Fibre-Channel ports to loops", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_FL)}),
    setting("switchport mode fx", "Fibre-Channel ports to hosts or loops", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_FX)}),
    setting("switchport mode np", "Fibre-Channel ports to a switch that logs in for them", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_NP)}),
    setting("switchport mode sd", "Fibre-Channel ports that copies are sent to", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_SD)}),
    setting("switchport mode st", "Ends of tunnels for such copies", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_ST)}),
    setting("switchport mode tl", "Fibre-Channel ports to private loops", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}, port_mode(PM_PORT_MODE_TL)}),
    setting("no switchport mode", "The usual mode", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MODE}}),
    setting("[no] switchport beacon", "Let the ports blink", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BEACON}}),
    setting("switchport speed 10", "10 Mbit/s", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_SPEED}, {TOKEN_SPEED_10}}),
    setting("switchport speed 100", "100 Mbit/s", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_SPEED}, {TOKEN_SPEED_100}}),
    setting("switchport speed 1000", "1 Gbit/s", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_SPEED}, {TOKEN_SPEED_1000}}),
    setting("switchport speed 2000", "2 Gbit/s", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_SPEED}, {TOKEN_SPEED_2000}}),
    setting("switchport speed 4000", "4 Gbit/s", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_SPEED}, {TOKEN_SPEED_4000}}),
    setting("switchport speed 8000", "8 Gbit/s", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_SPEED}, {TOKEN_SPEED_8000}}),
    setting("switchport speed auto", "The fastest that both ends have", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_SPEED}, {TOKEN_SPEED_AUTO}}),
    setting("switchport speed auto max 2000", "The same, up to 2 Gbit/s", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_SPEED}, {TOKEN_SPEED_AUTO}, {TOKEN_AUTO_MAX}, {TOKEN_AUTO_MAX_2000}}),
    setting("switchport speed auto max 4000", "The same, up to 4 Gbit/s", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_SPEED}, {TOKEN_SPEED_AUTO}, {TOKEN_AUTO_MAX}, {TOKEN_AUTO_MAX_4000}}),
    setting("no switchport speed", "The usual speed", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_SPEED}}),
    setting("switchport duplex auto", "The better that both ends have", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_DUPLEX}, {TOKEN_DUPLEX_AUTO}}),
    setting("switchport duplex full", "Both directions at once", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_DUPLEX}, {TOKEN_DUPLEX_FULL}}),
    setting("switchport duplex half", "One direction at a time", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_DUPLEX}, {TOKEN_DUPLEX_HALF}}),
    setting("no switchport duplex", "The usual duplex", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_DUPLEX}}),
    of_host("switchport access vlan VLAN", "The VLAN of access ports", HOST_CFG_ACCESS_VLAN, kNumber),
    of_host("no switchport access vlan", "VLAN 1", HOST_CFG_ACCESS_VLAN, fixed(1)),
    of_host("switchport trunk native vlan VLAN", "The VLAN without tags of trunks", HOST_CFG_NATIVE_VLAN, kNumber),
    of_host("no switchport trunk native vlan", "VLAN 1", HOST_CFG_NATIVE_VLAN, fixed(1)),
    of_host("switchport trunk allowed vlan VLANS", "The VLANs that trunks carry", HOST_CFG_ALLOWED_VLANS, vlans(ALLOWED_VLANS_SET)),
    of_host("switchport trunk allowed vlan add VLANS", "These as well", HOST_CFG_ALLOWED_VLANS, vlans(ALLOWED_VLANS_ADD)),
    of_host("switchport trunk allowed vlan remove VLANS", "These no more", HOST_CFG_ALLOWED_VLANS, vlans(ALLOWED_VLANS_REMOVE)),
    of_host("switchport trunk allowed vlan all", "All of them", HOST_CFG_ALLOWED_VLANS, kVlansAll),
    of_host("switchport trunk allowed vlan none", "None of them", HOST_CFG_ALLOWED_VLANS, kVlansNone),
    of_host("no switchport trunk allowed vlan", "All of them", HOST_CFG_ALLOWED_VLANS, kVlansAll),
    of_host("flowcontrol receive on", "Stop sending when the other end asks for it", HOST_CFG_RECEIVE_PAUSE, fixed(FLOW_CONTROL_ON)),
    of_host("flowcontrol receive off", "Send on whatever it asks", HOST_CFG_RECEIVE_PAUSE, fixed(FLOW_CONTROL_OFF)),
    of_host("flowcontrol receive desired", "As both ends agree", HOST_CFG_RECEIVE_PAUSE, fixed(FLOW_CONTROL_DESIRED)),
    of_host("flowcontrol send on", "Ask the other end to stop when there is too much", HOST_CFG_SEND_PAUSE, fixed(FLOW_CONTROL_ON)),
    of_host("flowcontrol send off", "Never ask it", HOST_CFG_SEND_PAUSE, fixed(FLOW_CONTROL_OFF)),
    of_host("flowcontrol send desired", "As both ends agree", HOST_CFG_SEND_PAUSE, fixed(FLOW_CONTROL_DESIRED)),
    of_host("channel-group CHANNEL", "Put the ports into a port-channel", HOST_CFG_CHANNEL, kNumber),
    of_host("no channel-group", "Take them out of it", HOST_CFG_CHANNEL, fixed(0)),
    setting("switchport mtu BYTES", "The largest packet", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MTU}, {TOKEN_MTU_BYTES, token_value::number}}),
    setting("no switchport mtu", "The usual 1500 bytes", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MTU}}),
    setting("switchport trunk mode", "The same as 'switchport trunk mode on'", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_TRUNK_MODE}, {TOKEN_TRUNK_MODE_WORD}}),
    setting("switchport trunk mode off", "No trunk of VSANs", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_TRUNK_MODE}, {TOKEN_TRUNK_MODE_WORD}, {0, token_value::fixed, 1}}),
    setting("switchport trunk mode on", "A trunk of VSANs", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_TRUNK_MODE}, {TOKEN_TRUNK_MODE_WORD}, {0, token_value::fixed, 2}}),
    setting("switchport trunk mode auto", "A trunk when the other end has one", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_TRUNK_MODE}, {TOKEN_TRUNK_MODE_WORD}, {0, token_value::fixed, 3}}),
    setting("switchport trunk encapsulation dot1q", "VLAN tags on trunks", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_TRUNK_MODE}, {TOKEN_TRUNK_ENCAPSULATION_DOT1Q}}),
    setting("switchport dot1q ethertype", "The number of VLAN tags", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_DOT1Q_ETHERTYPE}}),
    setting("switchport encapsulation normal", "Frames as they are", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_ENCAP}, {TOKEN_ENCAP_NORMAL}}),
    setting("switchport encapsulation eisl", "Frames with their VSAN", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_ENCAP}, {TOKEN_ENCAP_EISL}}),
    setting("switchport encapsulation internal", "Frames as the switch carries them", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_ENCAP}, {TOKEN_ENCAP_INTERNAL}}),
    setting("no switchport encapsulation", "The usual encapsulation", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_ENCAP}}),
    setting("switchport bb-credit COUNT", "Credits for frames received", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_CREDIT_COUNT, token_value::number}}),
    setting("switchport bb-credit COUNT mode e", "The same, of ports to switches", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_CREDIT_COUNT, token_value::number}, {}, {TOKEN_CREDIT_MODE_E}}),
    setting("switchport bb-credit COUNT mode fx", "The same, of ports to hosts", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_CREDIT_COUNT, token_value::number}, {}, {TOKEN_CREDIT_MODE_FX}}),
    setting("switchport bb-credit default", "The usual credits", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_CREDIT_DEFAULT}}),
    setting("switchport bb-credit performance-buffers COUNT", "Buffers for fast ports", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_PERFORMANCE_BUFFERS_1}, kNumber}),
    setting("switchport bb-credit performance-buffers default", "The card's own number of them", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_PERFORMANCE_BUFFERS_2}}),
    setting("switchport bb-credit extended COUNT", "Credits for long distances", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_CREDIT_EXTENDED}, {TOKEN_CREDIT_EXTENDED_COUNT, token_value::number}}),
    setting("switchport bb-credit multiplier COUNT", "A credit for so many frames", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_CREDIT_MULTIPLIER}, kNumber}),
    setting("no switchport bb-credit", "The usual credits", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}}),
    setting("no switchport bb-credit performance-buffers", "The card's own number of them", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_PERFORMANCE_BUFFERS_3}}),
    setting("no switchport bb-credit extended", "None for long distances", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_CREDIT_EXTENDED}}),
    setting("no switchport bb-credit multiplier", "A credit for each frame", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_CREDIT}, {TOKEN_CREDIT_MULTIPLIER}}),
    setting("[no] switchport bb-scn", "Count credits that were lost", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_BB_SCN}}),
    setting("switchport receive-buffer-size BYTES", "The largest frame, a multiple of 4", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_RXBUFSIZE}, {TOKEN_RXBUFSIZE_BYTES, token_value::half_number}}),
    setting("no switchport receive-buffer-size", "The usual 2112 bytes", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_RXBUFSIZE}}),
    setting("switchport promiscuous-mode on", "Take packets for anybody", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_PROMISCUOUS}, {TOKEN_PROMISCUOUS_ON}}),
    setting("switchport promiscuous-mode off", "Take packets for the port", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_PROMISCUOUS}, {TOKEN_PROMISCUOUS_OFF}}),
    setting("no switchport promiscuous-mode", "Take packets for the port", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_PROMISCUOUS}}),
    setting("[no] switchport ignore bit-errors", "Leave a port up that has bit errors", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_IGNORE}, {TOKEN_BIT_ERRORS}}),
    setting("[no] switchport host", "Ports to hosts: no channel, access mode, edge of the spanning tree", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_HOST}}),
    setting("[no] switchport monitor", "Ports that copies of packets are sent to", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MONITOR}}),
    setting("switchport monitor ingress", "The same; they also take packets", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MONITOR}, {}}),
    setting("switchport monitor ingress learning", "The same; they also learn addresses", {{TOKEN_SWITCHPORT}, {TOKEN_SWITCHPORT_MONITOR}, {}, {}}),
};
// clang-format on

}  // namespace host
