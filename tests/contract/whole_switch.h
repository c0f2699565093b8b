// A switch on which everything is there and every service answers, one interface of each kind, and the commands that
// show them.
#pragma once

#include <gtest/gtest.h>

#include "contract/sample_ports.h"
#include "contract/transceiver/transceiver_images.h"
#include "pmcli/command.h"
#include "pmcli/displays.h"
#include "support/vlan_libraries.h"

namespace pmcli_test {

// The largest command id in pmcli/displays.h.
inline constexpr uint32 kLastDisplay = DISPLAY_NOTHING_106;

// An interface of the switch, and the handler that shows it.
struct shown_kind {
  const char* name;
  uint32 (*handler)(paraminfo_t*);
  if_index_t if_index;
  uint32 port_mode = PM_PORT_MODE_ACCESS;
  uint32 layer = IF_LAYER_2;
};

inline uint32 show_inband(paraminfo_t* param) { return static_cast<uint32>(pm_cli_show_inband_port_config(param)); }

inline constexpr shown_kind kAccessPort = {"Ethernet port in access mode", pm_cli_show_eth_port_config, kPort};
inline constexpr shown_kind kTrunk = {"Ethernet port in trunk mode", pm_cli_show_eth_port_config, kPort,
                                      PM_PORT_MODE_TRUNK};
inline constexpr shown_kind kRouted = {"Routed Ethernet port", pm_cli_show_eth_port_config, kRoutablePort,
                                       PM_PORT_MODE_ACCESS, IF_LAYER_3};
inline constexpr shown_kind kSubInterface = {"Sub-interface", pm_cli_show_eth_port_config,
                                             sub_interface(kRoutablePort, 100), PM_PORT_MODE_ACCESS, IF_LAYER_3};
inline constexpr shown_kind kSatellitePort = {"Port of a satellite unit", pm_cli_show_sat_eth_port_config,
                                              satellite(100, 1, 1)};
inline constexpr shown_kind kEthernetChannel = {"Ethernet port-channel", pm_cli_show_eth_port_config, kChannel,
                                                PM_PORT_MODE_TRUNK};
inline constexpr shown_kind kVethernet = {"Virtual Ethernet interface", pm_cli_show_eth_port_config, vethernet(1)};
inline constexpr shown_kind kManagement = {"Management port", pm_cli_show_mgmt_port_config, mgmt()};
inline constexpr shown_kind kLoopback = {"Loopback", pm_cli_show_loopback_config, loopback(0)};
inline constexpr shown_kind kInband = {"In-band interface", show_inband, numbered(IF_TYPE_INBAND, 0)};
inline constexpr shown_kind kKinds[] = {
    kAccessPort,      kTrunk,     kRouted,     kSubInterface, kSatellitePort,
    kEthernetChannel, kVethernet, kManagement, kLoopback,     kInband,
};

// A switch on which the interface exists, is up, and every service answers.
inline void prepare(RecordingPlatform& platform, const shown_kind& shown) {
  install_vlan_libraries(platform);
  answers_of_vlans.memberships = {membership(shown.if_index, 1, {1, 10})};
  answers_of_vlans.forwarding.resize(1);
  platform.on_request = [if_index = shown.if_index](const mts_request& request) {
    return mts_reply{request.node == MTS_NODE_LOCAL ? octets{1, 2, 3, 4}
                                                    : misc_info(if_index, state_entry(kGoodState))};
  };
  platform.ports[shown.if_index] = port_record_in_mode(shown.port_mode);
  platform.layers[shown.if_index] = shown.layer;
  platform.capabilities[shown.if_index] = port_capabilities("SFP");
  platform.transceivers[shown.if_index] = sfp_record();
  platform.diagnostics[shown.if_index] = healthy_diagnostics();
  platform.fabric_ports[shown.if_index] = {};
  platform.port_stats[shown.if_index] = {};
  platform.snmp_port_stats[shown.if_index] = {};
  platform.eth_stats[shown.if_index] = {};
  platform.channel_eth_stats[shown.if_index] = {};
  platform.interface_counters[shown.if_index] = {};
  platform.loopback_stats[shown.if_index] = {};
  platform.addresses[shown.if_index] = {ipv4_address(10, 1, 2, 3, 24)};
  platform.channel_members[shown.if_index] = {ethernet(1, 2)};
  platform.tracked_ports[shown.if_index] = {};
  for (const char* const device : {"eth1", "eth2"}) {
    platform.kernel_devices[device] = {};
    platform.kernel_interfaces[device] = {.hardware_address = {2, 0, 0, 0, 0, 1}};
  }
}

// What a command has after its interface. It stays the test's.
struct display_arguments {
  uint32 module = 1;
  vsh_int_multi_range_t vlans{.size = sizeof vlans, .range_count = 1, .range = {{1, 4094}}};
};

inline paraminfo_t* display_command(RecordingPlatform& platform, const shown_kind& shown, uint32 display,
                                    display_arguments& arguments) {
  paraminfo_t* const param = platform.show_command(display, shown.if_index);
  if (display == DISPLAY_TRUNK_DETAIL_OF_VLANS)
    platform.add_argument(param, PARAM_TYPE_INT_RANGES, &arguments.vlans);
  else
    platform.add_argument(param, PARAM_TYPE_UINT32, &arguments.module);
  return param;
}

}  // namespace pmcli_test
