// The settings of interfaces: how each is written, and the tokens that the command library gets for it.
//
// The command library finds its settings by these numbers, counted from the range: the keyword, for switchport the
// sub-command, then words and values.
#pragma once

#include "service/port_manager_messages.h"
#include "shell/commands.h"
#include "shell/grammar.h"

namespace host {

inline constexpr display kSettingShown = {kSettingDisplay, {}, "settings"};

inline constexpr uint32 kSwitchport = 0x01030002;
inline constexpr setting_token kNumber = {0, token_value::number};

// A mode of ports, as the value without a word.
constexpr setting_token port_mode(uint32 mode) { return {0, token_value::fixed, mode}; }

// Settings that may take a link down: the state of a port, and its mode, speed and duplex.
constexpr bool may_cut(const setting_tokens& tokens) {
  constexpr uint32 kShutdown = 3, kMode = 4, kSpeed = 16, kDuplex = 56;
  const uint32 keyword = tokens.token[0].id, sub_command = tokens.token[1].id;
  return keyword == kShutdown ||
         (keyword == kSwitchport && (sub_command == kMode || sub_command == kSpeed || sub_command == kDuplex));
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
    setting("[no] shutdown", "Switch the interfaces off", {{3}}),
    setting("[no] out-of-service", "Take the ports out of service", {{5}}),
    setting("[no] port down on link failure", "A port whose link fails stays down", {{127}}),
    setting("description TEXT", "Describe the interfaces", {{kSwitchport}, {2}, {0, token_value::text}}),
    setting("no description", "Take the description away", {{kSwitchport}, {2}}),
    setting("[no] switchport", "Switched ports; with 'no' routed ones", {{kSwitchport}}),
    setting("switchport name TEXT", "The same as 'description'", {{kSwitchport}, {2}, {0, token_value::text}}),
    setting("no switchport name", "The same as 'no description'", {{kSwitchport}, {2}}),
    setting("switchport mode access", "Ports of one VLAN", {{kSwitchport}, {4}, port_mode(0x80000)}),
    setting("switchport mode trunk", "Ports of many VLANs", {{kSwitchport}, {4}, port_mode(0x100000)}),
    setting("switchport mode fabric", "Ports to satellite units", {{kSwitchport}, {4}, port_mode(0x2000000)}),
    setting("switchport mode private-vlan host", "Ports to hosts in a private VLAN", {{kSwitchport}, {4}, {109}, port_mode(0x400000)}),
    setting("switchport mode private-vlan promiscuous", "Ports that all of a private VLAN reach", {{kSwitchport}, {4}, {109}, port_mode(0x800000)}),
    setting("switchport mode auto", "Let the Fibre-Channel ports find their mode", {{kSwitchport}, {4}, port_mode(0x1)}),
    setting("switchport mode e", "Fibre-Channel ports to switches", {{kSwitchport}, {4}, port_mode(0x4)}),
    setting("switchport mode f", "Fibre-Channel ports to hosts", {{kSwitchport}, {4}, port_mode(0x20)}),
    setting("switchport mode fl", "Fibre-Channel ports to loops", {{kSwitchport}, {4}, port_mode(0x40)}),
    setting("switchport mode fx", "Fibre-Channel ports to hosts or loops", {{kSwitchport}, {4}, port_mode(0x60)}),
    setting("switchport mode np", "Fibre-Channel ports to a switch that logs in for them", {{kSwitchport}, {4}, port_mode(0x4000)}),
    setting("switchport mode sd", "Fibre-Channel ports that copies are sent to", {{kSwitchport}, {4}, port_mode(0x2)}),
    setting("switchport mode st", "Ends of tunnels for such copies", {{kSwitchport}, {4}, port_mode(0x8000)}),
    setting("switchport mode tl", "Fibre-Channel ports to private loops", {{kSwitchport}, {4}, port_mode(0x10)}),
    setting("no switchport mode", "The usual mode", {{kSwitchport}, {4}}),
    setting("[no] switchport beacon", "Let the ports blink", {{kSwitchport}, {15}}),
    setting("switchport speed 10", "10 Mbit/s", {{kSwitchport}, {16}, {18}}),
    setting("switchport speed 100", "100 Mbit/s", {{kSwitchport}, {16}, {19}}),
    setting("switchport speed 1000", "1 Gbit/s", {{kSwitchport}, {16}, {20}}),
    setting("switchport speed 2000", "2 Gbit/s", {{kSwitchport}, {16}, {21}}),
    setting("switchport speed 4000", "4 Gbit/s", {{kSwitchport}, {16}, {67}}),
    setting("switchport speed 8000", "8 Gbit/s", {{kSwitchport}, {16}, {75}}),
    setting("switchport speed auto", "The fastest that both ends have", {{kSwitchport}, {16}, {17}}),
    setting("switchport speed auto max 2000", "The same, up to 2 Gbit/s", {{kSwitchport}, {16}, {17}, {71}, {72}}),
    setting("switchport speed auto max 4000", "The same, up to 4 Gbit/s", {{kSwitchport}, {16}, {17}, {71}, {76}}),
    setting("no switchport speed", "The usual speed", {{kSwitchport}, {16}}),
    setting("switchport duplex auto", "The better that both ends have", {{kSwitchport}, {56}, {57}}),
    setting("switchport duplex full", "Both directions at once", {{kSwitchport}, {56}, {58}}),
    setting("switchport duplex half", "One direction at a time", {{kSwitchport}, {56}, {59}}),
    setting("no switchport duplex", "The usual duplex", {{kSwitchport}, {56}}),
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
    setting("switchport mtu BYTES", "The largest packet", {{kSwitchport}, {39}, {40, token_value::number}}),
    setting("no switchport mtu", "The usual 1500 bytes", {{kSwitchport}, {39}}),
    setting("switchport trunk mode", "The same as 'switchport trunk mode on'", {{kSwitchport}, {22}, {23}}),
    setting("switchport trunk mode off", "No trunk of VSANs", {{kSwitchport}, {22}, {23}, {0, token_value::fixed, 1}}),
    setting("switchport trunk mode on", "A trunk of VSANs", {{kSwitchport}, {22}, {23}, {0, token_value::fixed, 2}}),
    setting("switchport trunk mode auto", "A trunk when the other end has one", {{kSwitchport}, {22}, {23}, {0, token_value::fixed, 3}}),
    setting("switchport trunk encapsulation dot1q", "VLAN tags on trunks", {{kSwitchport}, {22}, {107}}),
    setting("switchport dot1q ethertype", "The number of VLAN tags", {{kSwitchport}, {77}}),
    setting("switchport encapsulation normal", "Frames as they are", {{kSwitchport}, {34}, {35}}),
    setting("switchport encapsulation eisl", "Frames with their VSAN", {{kSwitchport}, {34}, {36}}),
    setting("switchport encapsulation internal", "Frames as the switch carries them", {{kSwitchport}, {34}, {37}}),
    setting("no switchport encapsulation", "The usual encapsulation", {{kSwitchport}, {34}}),
    setting("switchport bb-credit COUNT", "Credits for frames received", {{kSwitchport}, {29}, {31, token_value::number}}),
    setting("switchport bb-credit COUNT mode e", "The same, of ports to switches", {{kSwitchport}, {29}, {31, token_value::number}, {}, {48}}),
    setting("switchport bb-credit COUNT mode fx", "The same, of ports to hosts", {{kSwitchport}, {29}, {31, token_value::number}, {}, {47}}),
    setting("switchport bb-credit default", "The usual credits", {{kSwitchport}, {29}, {30}}),
    setting("switchport bb-credit performance-buffers COUNT", "Buffers for fast ports", {{kSwitchport}, {29}, {49}, kNumber}),
    setting("switchport bb-credit performance-buffers default", "The card's own number of them", {{kSwitchport}, {29}, {50}}),
    setting("switchport bb-credit extended COUNT", "Credits for long distances", {{kSwitchport}, {29}, {53}, {55, token_value::number}}),
    setting("switchport bb-credit multiplier COUNT", "A credit for so many frames", {{kSwitchport}, {29}, {64}, kNumber}),
    setting("no switchport bb-credit", "The usual credits", {{kSwitchport}, {29}}),
    setting("no switchport bb-credit performance-buffers", "The card's own number of them", {{kSwitchport}, {29}, {52}}),
    setting("no switchport bb-credit extended", "None for long distances", {{kSwitchport}, {29}, {53}}),
    setting("no switchport bb-credit multiplier", "A credit for each frame", {{kSwitchport}, {29}, {64}}),
    setting("[no] switchport bb-scn", "Count credits that were lost", {{kSwitchport}, {73}}),
    setting("switchport receive-buffer-size BYTES", "The largest frame, a multiple of 4", {{kSwitchport}, {32}, {33, token_value::half_number}}),
    setting("no switchport receive-buffer-size", "The usual 2112 bytes", {{kSwitchport}, {32}}),
    setting("switchport promiscuous-mode on", "Take packets for anybody", {{kSwitchport}, {41}, {42}}),
    setting("switchport promiscuous-mode off", "Take packets for the port", {{kSwitchport}, {41}, {43}}),
    setting("no switchport promiscuous-mode", "Take packets for the port", {{kSwitchport}, {41}}),
    setting("[no] switchport ignore bit-errors", "Leave a port up that has bit errors", {{kSwitchport}, {65}, {66}}),
    setting("[no] switchport host", "Ports to hosts: no channel, access mode, edge of the spanning tree", {{kSwitchport}, {80}}),
    setting("[no] switchport monitor", "Ports that copies of packets are sent to", {{kSwitchport}, {123}}),
    setting("switchport monitor ingress", "The same; they also take packets", {{kSwitchport}, {123}, {}}),
    setting("switchport monitor ingress learning", "The same; they also learn addresses", {{kSwitchport}, {123}, {}, {}}),
};
// clang-format on

}  // namespace host
