// Switch files: what they say, and how a wrong one is refused.
#include "source/chassis/switch_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <set>
#include <span>
#include <string>

#include "host/base/temporary_file.h"
#include "platform/card_config.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

constexpr std::time_t kReadAt = 1'700'000'000;
constexpr if_index_t kNothing = 0;

machine load(const std::string& content) {
  const temporary_file file(content);
  return load_switch_file(file.path(), kReadAt);
}

// The head of a small file, lines 1 to 4; interfaces start in line 5.
const std::string kHead =
    "switch: {name: small, chassis-type: 10, slots: 4, base-mac: '02:00:00:00:00:f0', uptime: 10m}\n"
    "profiles: {plain: {speeds: [100, 1000], duplex: [full]}, optical: {speeds: [10000], transceiver: 10Gbase-SR}}\n"
    "cards: [{slot: 1, model: COPPER, profile: plain}, {slot: 2, model: OPTICS, type: 7, profile: optical}]\n"
    "interfaces:\n";

machine load_interfaces(const std::string& entries) { return load(kHead + entries); }

// "LINE: reason" of a file that is refused.
std::string refusal(const std::string& content) {
  const temporary_file file(content);
  try {
    load_switch_file(file.path(), kReadAt);
  } catch (const yaml_file_error& error) {
    const std::string text = error.what();
    EXPECT_EQ(text.substr(0, file.path().size() + 1), file.path() + ":");
    return text.substr(file.path().size() + 1);
  }
  return "accepted";
}

if_index_t port(if_index_type_t kind, uint32 slot, uint32 number, uint32 sub_interface = 0) {
  return ethernet_index(kind, slot - 1, number - 1, sub_interface);
}

// What a file says.

TEST(SwitchFile, UsersSeeAllVsansUnlessAListIsGiven) {
  const machine it = load(
      "switch: {name: small}\n"
      "users:\n"
      "  - {name: root}\n"
      "  - {name: other, vsans: all, clear-in-band: yes}\n"
      "  - {name: some, vsans: '10-12,3', counters: no}\n"
      "  - {name: none, vsans: none}\n");
  ASSERT_EQ(it.users.size(), 4U);
  EXPECT_EQ(it.users[0].name, "root");
  EXPECT_FALSE(it.users[0].vsans);
  EXPECT_TRUE(it.users[0].sees_counters);
  EXPECT_FALSE(it.users[0].may_clear_inband);
  EXPECT_FALSE(it.users[1].vsans);
  EXPECT_TRUE(it.users[1].may_clear_inband);
  EXPECT_EQ(it.users[2].vsans, (std::vector<uint16>{3, 10, 11, 12}));
  EXPECT_FALSE(it.users[2].sees_counters);
  EXPECT_EQ(it.users[3].vsans, std::vector<uint16>{});
}

TEST(SwitchFile, FibreChannelPortsHaveVsansAndAutomaticModes) {
  const machine it = load_interfaces(
      "- {range: fc 1/1, vsan: 12, trunk-vsans: '7,1-3', oper-mode: te, speed: 4000}\n"
      "- {range: bay 1-3}\n"
      "- {range: ext 2, description: 'uplink {port}'}\n"
      "- {range: fcip 9}\n"
      "- {range: server 4}\n"
      "- {range: sup-fc 0}\n");
  const interface& port = *it.find(ethernet_index(IF_TYPE_FC, 0, 0));
  EXPECT_EQ(port.vsan, 12U);
  EXPECT_EQ(port.trunk_vsans, (std::vector<uint16>{1, 2, 3, 7}));
  EXPECT_EQ(port.settings.admin_mode, 0x1U);
  EXPECT_EQ(port.oper_mode, 0x8U);
  EXPECT_EQ(port.oper_speed_mbps, 4000U);
  EXPECT_NE(it.find(named_fc_index(name_family::bay, 2)), nullptr);
  EXPECT_EQ(it.find(named_fc_index(name_family::external, 1))->settings.description, "uplink 2");
  EXPECT_EQ(it.find(numbered_index(IF_TYPE_FCIP, 9))->settings.admin_mode, 0x1U);
  EXPECT_EQ(it.find(numbered_index(IF_TYPE_SERVER, 4))->settings.admin_mode, 0x1U);
  EXPECT_NE(it.find(if_index_inband_get_active_sup_priority_hi()), nullptr);
}

TEST(SwitchFile, DescribesTheMachine) {
  const machine it = load(
      "switch: {name: edge-7, chassis-type: 22, slots: 9, management-device: eth1, management-device2: eth2}\n"
      "cards:\n"
      "  - {slot: 5, model: SUPERVISOR, type: 1}\n"
      "  - {slot: 1, model: LINE-CARD, type: 42}\n");
  EXPECT_EQ(it.name, "edge-7");
  EXPECT_EQ(it.chassis_type, 22U);
  EXPECT_EQ(it.num_slots, 9U);
  EXPECT_EQ(it.mgmt_device, "eth1");
  EXPECT_EQ(it.mgmt_device2, "eth2");
  ASSERT_EQ(it.cards.size(), 2U);
  EXPECT_EQ(it.cards[0].slot, 0U);
  EXPECT_EQ(it.cards[0].model, "LINE-CARD");
  EXPECT_EQ(it.cards[0].card_type, 42U);
  EXPECT_EQ(it.cards[1].slot, 4U);
  EXPECT_TRUE(it.interfaces.empty());
}

TEST(SwitchFile, EveryInterfaceOfARangeHasTheAttributes) {
  const machine it = load_interfaces(
      "- range: ethernet 1/1-3, 1/9\n"
      "  description: desk {port}\n"
      "  mode: trunk\n"
      "  speed: 100\n"
      "  duplex: half\n"
      "  flow-control: {receive: on, send: desired}\n"
      "  mtu: 9000\n"
      "  bandwidth: 777\n"
      "  delay: 30\n"
      "  debounce: 200\n"
      "  rate-mode: shared\n"
      "  mdix: no\n"
      "  beacon: yes\n"
      "  span-monitor: yes\n"
      "  resets: 5\n"
      "  vsan: 3\n"
      "  out-of-service: yes\n"
      "  fc-layer: 1\n"
      "  record-error: 9\n"
      "  unit: 101\n"
      "  multi-chassis: both up\n"
      "  vlan: {access: 11, native: 12, allowed: '4,1-3,2'}\n"
      "  storm-control: {broadcast: 12.34, multicast: off, unicast: 100}\n");
  ASSERT_EQ(it.interfaces.size(), 4U);
  const interface* ninth = it.find(port(IF_TYPE_ETHERNET, 1, 9));
  ASSERT_NE(ninth, nullptr);
  EXPECT_EQ(ninth->settings.description, "desk 9");
  EXPECT_EQ(ninth->settings.admin_mode, PM_PORT_MODE_TRUNK);
  EXPECT_EQ(ninth->oper_mode, PM_PORT_MODE_TRUNK);
  EXPECT_EQ(ninth->settings.admin_speed_mbps, 100U);
  EXPECT_EQ(ninth->oper_speed_mbps, 100U);
  EXPECT_EQ(ninth->settings.admin_duplex, 2);
  EXPECT_EQ(ninth->oper_duplex, 2);
  EXPECT_EQ(ninth->settings.admin_flow_control, 0x2 | 0x4);
  EXPECT_EQ(ninth->oper_flow_control, 0x2 | 0x1) << "the partner agrees to what is desired";
  EXPECT_EQ(ninth->settings.mtu_bytes, 9000);
  EXPECT_EQ(ninth->bandwidth_kbps, 777U);
  EXPECT_EQ(ninth->delay_usec, 30U);
  EXPECT_EQ(ninth->debounce_ms, 200);
  EXPECT_EQ(ninth->rate_mode, 2);
  EXPECT_EQ(ninth->mdix_on, false);
  EXPECT_TRUE(ninth->settings.beacon_on);
  EXPECT_TRUE(ninth->settings.span_monitor);
  EXPECT_EQ(ninth->resets, 5U);
  EXPECT_EQ(ninth->vsan, 3U);
  EXPECT_EQ(ninth->settings.service_state, 1U);
  EXPECT_EQ(ninth->fc_layer, 1);
  EXPECT_EQ(ninth->record_error, 9U);
  EXPECT_EQ(ninth->satellite_unit, 101U);
  EXPECT_EQ(ninth->multi_chassis_status, "both up");
  EXPECT_EQ(ninth->settings.access_vlan, 11);
  EXPECT_EQ(ninth->settings.native_vlan, 12);
  EXPECT_EQ(ninth->settings.allowed_vlans, (std::vector<uint16>{1, 2, 3, 4}));
  EXPECT_EQ((*ninth->storm_control)[PM_STORM_BROADCAST].percent, 12);
  EXPECT_EQ((*ninth->storm_control)[PM_STORM_BROADCAST].hundredths, 34);
  EXPECT_EQ((*ninth->storm_control)[PM_STORM_BROADCAST].mode, 1);
  EXPECT_EQ((*ninth->storm_control)[PM_STORM_MULTICAST].mode, 0);
  EXPECT_EQ((*ninth->storm_control)[PM_STORM_MULTICAST].percent, 100);
  EXPECT_EQ((*ninth->storm_control)[PM_STORM_UNICAST].mode, 1);
  EXPECT_EQ((*ninth->storm_control)[PM_STORM_UNICAST].percent, 100);
  EXPECT_EQ(it.interfaces[1].settings.description, "desk 2");
  EXPECT_EQ(it.find(port(IF_TYPE_ETHERNET, 1, 4)), nullptr);
  EXPECT_EQ(it.find(kNothing), nullptr);
}

struct state_case {
  const char* word;
  int admin_state, oper_state, reason;
};

TEST(SwitchFile, StatesAreWordsOrNumbers) {
  constexpr state_case kStates[] = {
      {"up", 1, 1, 2},
      {"admin-down", 2, 2, 12},
      {"not-connected", 1, 2, 7},
      {"error-disabled", 1, 2, 5},
      {"sfp-absent", 1, 2, 29},
      {"suspended", 1, 2, 14},
      {"inactive", 1, 2, 11},
      {"notConnected", 1, 2, 7},
      {"BoundIfDown", 1, 2, 176},
      {"isolated", 1, 2, 17},
      {"30", 1, 2, 30},
      {"12", 2, 2, 12},
      {"255", 1, 2, 255},
  };
  for (const state_case& it : kStates) {
    const machine loaded = load_interfaces(std::string("- {range: ethernet 1/1, state: ") + it.word + "}\n");
    ASSERT_EQ(loaded.interfaces.size(), 1U);
    EXPECT_EQ(loaded.interfaces[0].settings.admin_state, it.admin_state) << it.word;
    EXPECT_EQ(loaded.interfaces[0].oper_state, it.oper_state) << it.word;
    EXPECT_EQ(loaded.interfaces[0].state_reason, it.reason) << it.word;
  }
}

TEST(SwitchFile, OperationFollowsFromStateAndCapabilities) {
  const machine it = load_interfaces(
      "- {range: ethernet 1/1}\n"
      "- {range: ethernet 1/2, state: not-connected}\n"
      "- {range: ethernet 1/3, mode: trunk, oper-mode: access, oper-speed: 10, oper-duplex: half}\n");
  const interface& up = it.interfaces[0];
  EXPECT_EQ(up.oper_speed_mbps, 1000U);
  EXPECT_EQ(up.oper_duplex, 1);
  EXPECT_EQ(up.settings.admin_duplex, 3);
  EXPECT_EQ(up.bandwidth_kbps, 1'000'000U);
  EXPECT_EQ(up.oper_mode, PM_PORT_MODE_ACCESS);
  const interface& down = it.interfaces[1];
  EXPECT_EQ(down.oper_speed_mbps, 0U);
  EXPECT_EQ(down.oper_duplex, 3);
  EXPECT_EQ(down.bandwidth_kbps, 1'000'000U);
  const interface& explicit_one = it.interfaces[2];
  EXPECT_EQ(explicit_one.settings.admin_mode, PM_PORT_MODE_TRUNK);
  EXPECT_EQ(explicit_one.oper_mode, PM_PORT_MODE_ACCESS);
  EXPECT_EQ(explicit_one.oper_speed_mbps, 10U);
  EXPECT_EQ(explicit_one.oper_duplex, 2);
  EXPECT_EQ(explicit_one.settings.allowed_vlans.size(), 4094U);
}

TEST(SwitchFile, CapabilitiesComeFromTheProfileOfTheCardOrOfThePort) {
  const machine it = load(
      "switch: {name: s}\n"
      "profiles:\n"
      "  copper:\n"
      "    media: 10/100/1000BaseT\n"
      "    speeds: [10, 100, 1000, auto]\n"
      "    duplex: [full, half]\n"
      "    flow-control: {receive: [on, off], send: desired}\n"
      "    rate-modes: [dedicated, shared]\n"
      "    qos: {receive: 2q4t, send: 1p3q8t}\n"
      "    mdix: yes\n"
      "    span: no\n"
      "  own: {model: SAT, speeds: [10000], transceiver: yes}\n"
      "cards: [{slot: 1, model: CARD-A, profile: copper}]\n"
      "interfaces:\n"
      "  - range: ethernet 1/1\n"
      "  - {range: ethernet 101/1/1, profile: own}\n");
  const port_capabilities& copper = it.interfaces[0].capabilities;
  EXPECT_EQ(copper.model, "CARD-A");
  EXPECT_EQ(copper.type, "10/100/1000BaseT");
  EXPECT_EQ(copper.speeds, 1 | 2 | 4 | 16);
  EXPECT_EQ(copper.duplexes, 1 | 2);
  EXPECT_EQ(copper.rx_flow_control, 1 | 2);
  EXPECT_EQ(copper.tx_flow_control, 4);
  EXPECT_EQ(copper.rate_modes, 1 | 2);
  EXPECT_EQ(copper.qos->rx_priorities, 0);
  EXPECT_EQ(copper.qos->rx_queues, 2);
  EXPECT_EQ(copper.qos->rx_thresholds, 4);
  EXPECT_EQ(copper.qos->tx_priorities, 1);
  EXPECT_EQ(copper.qos->tx_queues, 3);
  EXPECT_EQ(copper.qos->tx_thresholds, 8);
  EXPECT_TRUE(copper.mdix);
  EXPECT_FALSE(copper.span);
  EXPECT_FALSE(copper.transceiver);
  const interface& satellite = it.interfaces[1];
  EXPECT_EQ(satellite.if_index, satellite_index(101, 0, 0));
  EXPECT_EQ(satellite.satellite_unit, 101U);
  EXPECT_EQ(satellite.capabilities.model, "SAT");
  EXPECT_TRUE(satellite.capabilities.transceiver);
  EXPECT_FALSE(satellite.module_in_port);
}

TEST(SwitchFile, TransceiversAreThoseOfTheProfileUnlessThePortSaysOtherwise) {
  const machine it = load_interfaces(
      "- {range: ethernet 2/1, kind: 26}\n"
      "- {range: ethernet 2/2, kind: 26, transceiver: 10Gbase-LX4}\n"
      "- {range: ethernet 2/3, kind: 26, transceiver: absent}\n"
      "- {range: ethernet 2/4, kind: 26, transceiver: unsupported}\n"
      "- {range: ethernet 2/5, kind: 26, state: sfp-absent}\n"
      "- {range: ethernet 2/1.5, kind: 26}\n");
  const auto at = [&](uint32 number) -> const interface& { return *it.find(port(IF_TYPE_ETHERNET_L3, 2, number)); };
  ASSERT_TRUE(at(1).module_in_port);
  EXPECT_EQ(at(1).module_in_port->type, FCOT_TYPE_SFP);
  EXPECT_EQ(at(1).capabilities.type, "10Gbase-SR");
  ASSERT_TRUE(at(2).module_in_port);
  EXPECT_EQ(at(2).module_in_port->type, FCOT_TYPE_X2);
  EXPECT_EQ(at(2).capabilities.type, "10Gbase-LX4");
  EXPECT_FALSE(at(3).module_in_port);
  ASSERT_TRUE(at(4).module_in_port);
  EXPECT_FALSE(at(4).module_in_port->supported);
  EXPECT_FALSE(at(5).module_in_port);
  EXPECT_FALSE(it.find(port(IF_TYPE_ETHERNET_L3, 2, 1, 5))->module_in_port);
}

TEST(SwitchFile, LayersFollowFromKindsAndAddresses) {
  const machine it = load_interfaces(
      "- {range: ethernet 1/1}\n"
      "- {range: ethernet 2/1, kind: 26}\n"
      "- {range: ethernet 2/2, kind: 26, layer: 3}\n"
      "- {range: ethernet 2/3, kind: 26, addresses: [192.0.2.1/30, '2001:db8::5/64']}\n"
      "- {range: ethernet 2/3.7, kind: 26, dot1q: 700}\n"
      "- {range: loopback 1}\n"
      "- {range: mgmt 0}\n");
  const auto layer = [&](if_index_t if_index) { return it.find(if_index)->settings.layer; };
  EXPECT_EQ(layer(port(IF_TYPE_ETHERNET, 1, 1)), 2U);
  EXPECT_EQ(layer(port(IF_TYPE_ETHERNET_L3, 2, 1)), 2U);
  EXPECT_EQ(layer(port(IF_TYPE_ETHERNET_L3, 2, 2)), 3U);
  EXPECT_EQ(layer(port(IF_TYPE_ETHERNET_L3, 2, 3)), 3U);
  EXPECT_EQ(layer(port(IF_TYPE_ETHERNET_L3, 2, 3, 7)), 3U);
  EXPECT_EQ(layer(numbered_index(IF_TYPE_LOOPBACK, 1)), 3U);
  EXPECT_EQ(layer(ethernet_index(IF_TYPE_MGMT, 0, 0)), 3U);
  EXPECT_EQ(it.find(port(IF_TYPE_ETHERNET_L3, 2, 3, 7))->encapsulation_vlan, 700);

  const interface& routed = *it.find(port(IF_TYPE_ETHERNET_L3, 2, 3));
  ASSERT_EQ(routed.addresses.size(), 2U);
  EXPECT_FALSE(routed.addresses[0].is_ipv6);
  EXPECT_EQ(routed.addresses[0].bytes[0], 192);
  EXPECT_EQ(routed.addresses[0].bytes[3], 1);
  EXPECT_EQ(routed.addresses[0].prefix_length, 30U);
  EXPECT_TRUE(routed.addresses[1].is_ipv6);
  EXPECT_EQ(routed.addresses[1].bytes[1], 0x01);
  EXPECT_EQ(routed.addresses[1].bytes[15], 5);
  EXPECT_EQ(routed.addresses[1].prefix_length, 64U);
}

TEST(SwitchFile, ReferencesPointToInterfaces) {
  const machine it = load_interfaces(
      "- {range: ethernet 1/1-2, channel: 7, tracked: 'port-channel 4, ethernet 2/1'}\n"
      "- {range: ethernet 1/3, channel: port-channel 4}\n"
      "- {range: ethernet 1/4, channel: 7, state: not-connected}\n"
      "- {range: ethernet 2/1, kind: 26}\n"
      "- {range: port-channel 7, kind: 22}\n"
      "- {range: port-channel 4, kind: 4}\n"
      "- {range: vethernet 1, bound-to: ethernet 2/1}\n");
  const if_index_t seven = channel_index(IF_TYPE_ETH_PORT_CHANNEL, 7);
  const if_index_t four = channel_index(IF_TYPE_PORT_CHANNEL, 4);
  const if_index_t first = port(IF_TYPE_ETHERNET, 1, 1);
  EXPECT_EQ(it.members_of(seven),
            (std::vector<if_index_t>{first, port(IF_TYPE_ETHERNET, 1, 2), port(IF_TYPE_ETHERNET, 1, 4)}));
  EXPECT_EQ(it.members_of(four), (std::vector<if_index_t>{port(IF_TYPE_ETHERNET, 1, 3)}));
  EXPECT_TRUE(it.members_of(kNothing).empty());
  EXPECT_EQ(it.find(first)->tracked, (std::vector<if_index_t>{four, port(IF_TYPE_ETHERNET_L3, 2, 1)}));
  EXPECT_EQ(it.find(numbered_index(IF_TYPE_VETHERNET, 1))->bound_to, port(IF_TYPE_ETHERNET_L3, 2, 1));
  EXPECT_EQ(it.find(seven)->bandwidth_kbps, 2'000'000U) << "two of three members are up";
}

TEST(SwitchFile, HardwareAddressesFollowFromTheBaseUnlessGiven) {
  const machine it = load_interfaces(
      "- {range: ethernet 1/1-2}\n"
      "- {range: ethernet 2/1, kind: 26}\n"
      "- {range: ethernet 2/1.5, kind: 26}\n"
      "- {range: ethernet 2/2, kind: 26, mac: '0a:0B:0c:0d:0e:0f', router-mac: '02:aa:00:00:00:01'}\n"
      "- {range: port-channel 1}\n");
  // The base address ends in 00:00:f0; ports count from 0x100 on, 0x100 a slot.
  EXPECT_EQ(it.find(port(IF_TYPE_ETHERNET, 1, 1))->burned_in_mac, (mac_address{2, 0, 0, 0, 0x01, 0xf0}));
  EXPECT_EQ(it.find(port(IF_TYPE_ETHERNET, 1, 2))->burned_in_mac, (mac_address{2, 0, 0, 0, 0x01, 0xf1}));
  EXPECT_EQ(it.find(port(IF_TYPE_ETHERNET_L3, 2, 1))->burned_in_mac, (mac_address{2, 0, 0, 0, 0x02, 0xf0}));
  EXPECT_EQ(it.find(port(IF_TYPE_ETHERNET_L3, 2, 1, 5))->burned_in_mac, (mac_address{2, 0, 0, 0, 0x02, 0xf0}));
  EXPECT_EQ(it.find(port(IF_TYPE_ETHERNET_L3, 2, 1))->router_mac, (mac_address{2, 0, 0, 0, 0, 0xf0}));
  EXPECT_EQ(it.find(port(IF_TYPE_ETHERNET_L3, 2, 2))->burned_in_mac, (mac_address{0x0a, 0x0b, 0x0c, 0x0d, 0x0e, 0x0f}));
  EXPECT_EQ(it.find(port(IF_TYPE_ETHERNET_L3, 2, 2))->router_mac, (mac_address{2, 0xaa, 0, 0, 0, 1}));
  EXPECT_EQ(it.find(channel_index(IF_TYPE_ETH_PORT_CHANNEL, 1))->burned_in_mac, (mac_address{2, 0, 0, 1, 0, 0xf1}));
}

TEST(SwitchFile, TotalsFollowFromRatesAndUptime) {
  const machine it = load_interfaces(
      "- range: ethernet 1/1\n"
      "  traffic:\n"
      "    uptime: 1h\n"
      "    in: {mbps: 8, packet-bytes: 1000, multicast-percent: 10, broadcast-percent: 2.5, errors: 6, discards: 7}\n"
      "    out: {mbps: 0.8, packet-bytes: 100, bytes: 5000, unicast: 40}\n"
      "    errors: {crc: 1, runts: 2, giants: 3, jabber: 4, overruns: 5, underruns: 6, collisions: 7, late-collisions: "
      "8,\n"
      "             deferred: 9, lost-carrier: 10, no-carrier: 11, pause-received: 12, pause-sent: 13}\n");
  const statistics& stats = it.interfaces[0].stats;
  EXPECT_EQ(stats.in_bytes_per_second, 1'000'000U);
  EXPECT_EQ(stats.in_packets_per_second, 1000U);
  EXPECT_EQ(stats.in.bytes, 3'600'000'000U);
  EXPECT_EQ(stats.in.unicast_packets, 3'150'000U);
  EXPECT_EQ(stats.in.multicast_packets, 360'000U);
  EXPECT_EQ(stats.in.broadcast_packets, 90'000U);
  EXPECT_EQ(stats.in.errors, 6U);
  EXPECT_EQ(stats.in.discards, 7U);
  EXPECT_EQ(stats.out_bytes_per_second, 100'000U);
  EXPECT_EQ(stats.out.bytes, 5000U);
  EXPECT_EQ(stats.out.unicast_packets, 40U);
  const error_counters& errors = stats.errors;
  EXPECT_EQ(errors.crc, 1U);
  EXPECT_EQ(errors.runts, 2U);
  EXPECT_EQ(errors.giants, 3U);
  EXPECT_EQ(errors.jabber, 4U);
  EXPECT_EQ(errors.overruns, 5U);
  EXPECT_EQ(errors.underruns, 6U);
  EXPECT_EQ(errors.collisions, 7U);
  EXPECT_EQ(errors.late_collisions, 8U);
  EXPECT_EQ(errors.deferred, 9U);
  EXPECT_EQ(errors.lost_carrier, 10U);
  EXPECT_EQ(errors.no_carrier, 11U);
  EXPECT_EQ(errors.pause_received, 12U);
  EXPECT_EQ(errors.pause_sent, 13U);

  // The ring holds the totals of the last minutes: the newest sample in front of the slot that is written next.
  const rate_sample& newest = stats.rate_ring->samples[(stats.rate_ring->next + 7) % 8];
  const rate_sample& five_minutes_older = stats.rate_ring->samples[(stats.rate_ring->next + 2) % 8];
  EXPECT_EQ(newest.in_bytes, 3'600'000'000U);
  EXPECT_EQ(newest.in_frames, 3'600'000U);
  EXPECT_EQ(newest.in_bytes - five_minutes_older.in_bytes, 300'000'000U);
  EXPECT_EQ(newest.in_frames - five_minutes_older.in_frames, 300'000U);
  EXPECT_EQ(newest.out_bytes - five_minutes_older.out_bytes, 30'000'000U);
  EXPECT_EQ(newest.out_frames - five_minutes_older.out_frames, 300'000U);
}

TEST(SwitchFile, CountersRunSinceTheyWereCleared) {
  const machine it = load_interfaces(
      "- {range: ethernet 1/1, traffic: {in: {mbps: 8}}}\n"
      "- {range: ethernet 1/2, traffic: {in: {mbps: 8}}, last-clear: 30s}\n"
      "- {range: ethernet 1/3, traffic: {in: {mbps: 8}}, last-clear: 2h}\n");
  EXPECT_EQ(it.interfaces[0].stats.in.bytes, 600'000'000U) << "the switch is up for ten minutes";
  EXPECT_EQ(it.interfaces[1].stats.in.bytes, 30'000'000U);
  EXPECT_EQ(it.interfaces[2].stats.in.bytes, 600'000'000U);
  EXPECT_EQ(it.interfaces[0].stats.last_clear_sec, 0U);
  EXPECT_EQ(it.interfaces[1].stats.last_clear_sec, 1'699'999'970U);
}

TEST(SwitchFile, MomentsAreNumbersDurationsOrNever) {
  const machine it = load_interfaces(
      "- {range: ethernet 1/1, link-change: 1w2d3h4m5s}\n"
      "- {range: ethernet 1/2, link-change: 1600000000}\n"
      "- {range: ethernet 1/3, link-change: never}\n");
  EXPECT_EQ(it.interfaces[0].link_change_sec, 1'699'211'355U);
  EXPECT_EQ(it.interfaces[1].link_change_sec, 1'600'000'000U);
  EXPECT_EQ(it.interfaces[2].link_change_sec, 0U);
}

// Files that are refused.

struct wrong_file {
  const char* content;
  const char* refusal;
};

// Each content behind a head is refused with its own words.
void expect_refusals(const std::string& head, std::span<const wrong_file> files) {
  for (const wrong_file& it : files) EXPECT_EQ(refusal(head + it.content), it.refusal) << it.content;
}

TEST(WrongSwitchFile, MissingFileAndFolderAreRefused) {
  try {
    load_switch_file("no/such/file.yaml", kReadAt);
    ADD_FAILURE() << "accepted";
  } catch (const yaml_file_error& error) {
    EXPECT_STREQ(error.what(), "no/such/file.yaml: No such file or directory");
  }
  try {
    load_switch_file("/", kReadAt);
    ADD_FAILURE() << "accepted";
  } catch (const yaml_file_error& error) {
    EXPECT_STREQ(error.what(), "/: Is a directory");
  }
}

TEST(WrongSwitchFile, WhatIsNotYamlIsRefusedWithItsLine) {
  EXPECT_EQ(refusal("switch: {name: a\ncards: ]\n").substr(0, 12), "2: not YAML:");
  EXPECT_EQ(refusal("a: 1\n\tb: 2\n").substr(0, 12), "2: not YAML:");
  EXPECT_EQ(refusal("a: *nowhere\n").substr(0, 12), "1: not YAML:");
}

TEST(WrongSwitchFile, FileAndSwitchAreChecked) {
  constexpr wrong_file kWrong[] = {
      {"", " the file is empty"},
      {"# nothing\n", " the file is empty"},
      {"just words\n", "1: 'the switch file' needs keys with values, not a value"},
      {"- a\n- b\n", "1: 'the switch file' needs keys with values, not a list"},
      {"cards: []\n", "1: a switch file needs a 'switch' with a 'name'"},
      {"switch: {name: a}\n---\nswitch: {name: b}\n", "3: a second document"},
      {"switch: {name: a}\ninterface: []\n",
       "2: unknown key 'interface' in 'the switch file', did you mean 'interfaces'?"},
      {"switch: {name: a}\nfoo: []\n", "2: unknown key 'foo' in 'the switch file'"},
      {"switch:\n  name: a\n  name: b\n", "3: 'name' is given twice"},
      {"switch: {name: a, chasis-type: 10}\n",
       "1: unknown key 'chasis-type' in 'switch', did you mean 'chassis-type'?"},
      {"switch: {name: [a]}\n", "1: 'name' needs a value, not a list"},
      {"switch: {name: a}\nusers: [{vsans: 10}]\n", "2: a user needs a 'name'"},
      {"switch: {name: a}\nusers: [{name: ''}]\n", "2: a user needs a 'name'"},
      {"switch: {name: a}\nusers:\n- {name: b}\n- {name: c}\n- {name: b}\n", "5: user 'b' is given twice"},
      {"switch: {name: a}\nusers: [{name: a-user-name-of-more-than-31-chars}]\n",
       "2: 'name' is longer than 31 characters"},
      {"switch: {name: a}\nusers: [{name: b, vsan: 10}]\n", "2: unknown key 'vsan' in 'a user', did you mean 'vsans'?"},
      {"switch: {name: a}\nusers: [{name: b, vsans: 10-}]\n",
       "2: vsans '10-' is not a list of VSANs from 1 to 4094, such as 1-10,20"},
      {"switch: {name: a}\nusers: [{name: b, counters: perhaps}]\n", "2: counters 'perhaps' is neither yes nor no"},
      {"switch: {name: }\n", "1: 'name' needs a value, not nothing"},
      {"switch: {name: a, slots: many}\n", "1: slots 'many' is not a whole number"},
      {"switch: {name: a, slots: -1}\n", "1: slots '-1' is not a whole number"},
      {"switch: {name: a, slots: 65}\n", "1: slots '65' is not from 1 to 64"},
      {"switch: {name: a, base-mac: 02-00}\n", "1: base-mac '02-00' is not a MAC address such as 02:00:00:00:00:00"},
      {"switch: {name: a, uptime: 5x}\n", "1: uptime '5x' is not a duration such as 3d4h or 90s"},
      {"switch: {name: a, uptime: 4294967295w}\n", "1: uptime '4294967295w' is longer than 136 years"},
      {"switch: {name: a, management-device: a-name-of-16-chr}\n",
       "1: 'management-device' is longer than 15 characters"},
  };
  expect_refusals("", kWrong);
}

TEST(WrongSwitchFile, CardsAndProfilesAreChecked) {
  constexpr wrong_file kWrong[] = {
      {"cards:\n- {slot: 1}\n- {slot: 1}\n", "4: slot 1 is taken already in line 3"},
      {"cards:\n- {slot: 5}\n", "3: slot 5 is beyond the 4 slots of the switch"},
      {"cards:\n- {model: A}\n", "3: a card needs a 'slot'"},
      {"cards:\n- {slot: 0}\n", "3: slot '0' is not from 1 to 64"},
      {"cards:\n- 5\n", "3: 'a card' needs keys with values, not a value"},
      {"cards:\n- {slot: 1, profile: none}\n", "3: there is no profile 'none'"},
      {"cards:\n- {slot: 1, model: 12345678901234567890123456789012}\n", "3: 'model' is longer than 31 characters"},
      {"profiles:\n  a: {}\n  a: {}\n", "4: profile 'a' is given twice"},
      {"profiles:\n  a: {speeds: [10, 25]}\n", "3: speeds '25' is not known"},
      {"profiles:\n  a: {speed: 10}\n", "3: unknown key 'speed' in 'a', did you mean 'speeds'?"},
      {"profiles:\n  a: {duplex: ful}\n", "3: duplex 'ful' is not known, did you mean 'full'?"},
      {"profiles:\n  a: {qos: {send: 3x}}\n", "3: send '3x' is not a queue structure such as 1p3q4t"},
      {"profiles:\n  a: {qos: {send: 300q}}\n", "3: send '300q' is not a queue structure such as 1p3q4t"},
      {"profiles:\n  a: {mdix: perhaps}\n", "3: mdix 'perhaps' is neither yes nor no"},
      {"profiles: 5\n", "2: 'profiles' needs keys with values, not a value"},
  };
  expect_refusals("switch: {name: s, slots: 4}\n", kWrong);
}

TEST(WrongSwitchFile, AttributesAreChecked) {
  constexpr wrong_file kWrong[] = {
      {"- {kind: 2}\n", "5: an interface needs a 'range'"},
      {"- {range: ethernet 1/1, mtuu: 1500}\n", "5: unknown key 'mtuu' in 'an interface', did you mean 'mtu'?"},
      {"- {range: ethernet 1/1, mtu: 70000}\n", "5: mtu '70000' is not from 64 to 65535"},
      {"- {range: ethernet 1/1, mtu: big}\n", "5: mtu 'big' is not a whole number"},
      {"- range: ethernet 1/1\n  mtu: [1500]\n", "6: 'mtu' needs a value, not a list"},
      {"- {range: ethernet 1/1, state: upp}\n", "5: state 'upp' is not known, did you mean 'up'?"},
      {"- {range: ethernet 1/1, state: 256}\n", "5: state '256' is not from 1 to 255"},
      {"- {range: ethernet 1/1, mode: trnk}\n", "5: mode 'trnk' is not known, did you mean 'trunk'?"},
      {"- {range: ethernet 1/1, speed: 11}\n", "5: speed '11' is not known, did you mean '10'?"},
      {"- {range: ethernet 1/1, beacon: maybe}\n", "5: beacon 'maybe' is neither yes nor no"},
      {"- {range: ethernet 1/1, vlan: {access: 4095}}\n", "5: access '4095' is not from 1 to 4094"},
      {"- {range: fc 1/1, vsan: 0}\n", "5: vsan '0' is not from 1 to 4094"},
      {"- {range: fc 1/1, trunk-vsans: 4095}\n",
       "5: trunk-vsans '4095' is not a list of VSANs from 1 to 4094, such as 1-10,20"},
      {"- {range: ethernet 1/1, vlan: {allowed: 1-}}\n",
       "5: allowed '1-' is not a list of VLANs from 1 to 4094, such as 1-10,20"},
      {"- {range: ethernet 1/1, vlan: {allowed: '9-3'}}\n",
       "5: allowed '9-3' is not a list of VLANs from 1 to 4094, such as 1-10,20"},
      {"- {range: ethernet 1/1, vlan: {allowed: '1,5000'}}\n",
       "5: allowed '1,5000' is not a list of VLANs from 1 to 4094, such as 1-10,20"},
      {"- {range: ethernet 1/1, storm-control: {unicast: 100.5}}\n", "5: unicast '100.5' is more than 100"},
      {"- {range: ethernet 1/1, storm-control: {unicast: 1.2345}}\n",
       "5: unicast '1.2345' is not a number of at most three decimals"},
      {"- {range: ethernet 1/1, traffic: {in: {mbps: fast}}}\n",
       "5: mbps 'fast' is not a number of at most three decimals"},
      {"- {range: ethernet 1/1, traffic: {in: {packet-bytes: 0}}}\n", "5: packet-bytes '0' is not from 64 to 65535"},
      {"- {range: ethernet 1/1, traffic: {in: {multicast-percent: 60, broadcast-percent: 41}}}\n",
       "5: multicast and broadcast are more than 100 percent"},
      {"- {range: ethernet 1/1, traffic: {in: {mbps: 1, pps: 2}}}\n", "5: 'mbps' and 'pps' exclude each other"},
      {"- {range: ethernet 1/1, traffic: {in: {packet-bytes: 64, packet-sizes: {64: 100}}}}\n",
       "5: 'packet-bytes' and 'packet-sizes' exclude each other"},
      {"- {range: ethernet 1/1, traffic: {in: {pps: 2000000001}}}\n",
       "5: pps '2000000001' is not from 0 to 2000000000"},
      {"- {range: ethernet 1/1, traffic: {in: {line-rate-percent: 101}}}\n",
       "5: line-rate-percent '101' is more than 100"},
      {"- {range: ethernet 1/1, traffic: {in: {packet-sizes: {64: 50, 512: 49.9}}}}\n",
       "5: the shares of the packet sizes do not add up to 100 percent"},
      {"- {range: ethernet 1/1, traffic: {in: {packet-sizes: {63: 100}}}}\n",
       "5: packet size '63' is not from 64 to 65535"},
      {"- {range: ethernet 1/1, traffic: {in: {packet-sizes: []}}}\n",
       "5: 'packet-sizes' needs keys with values, not a list"},
      {"- {range: ethernet 1/1, traffic: {in: {burst: {every: 5m, mbps: 1}}}}\n", "5: a burst needs 'every' and 'for'"},
      {"- {range: ethernet 1/1, traffic: {in: {burst: {every: 5m, for: 5m1s}}}}\n",
       "5: a burst lasts longer than its 'every'"},
      {"- {range: ethernet 1/1, traffic: {in: {burst: {every: 5m, for: 1m, mbps: 1, line-rate-percent: 5}}}}\n",
       "5: 'mbps' and 'line-rate-percent' exclude each other"},
      {"- {range: ethernet 1/1, traffic: {in: {discards-per-million: 1000001}}}\n",
       "5: discards-per-million '1000001' is not from 0 to 1000000"},
      {"- {range: ethernet 1/1, traffic: {errors-per-million: {crcs: 1}}}\n",
       "5: unknown key 'crcs' in 'errors-per-million', did you mean 'crc'?"},
      {"- {range: ethernet 1/1, traffic: {profile: office}}\n", "5: there is no traffic profile 'office'"},
      {"- {range: ethernet 1/1, traffic: office}\n", "5: there is no traffic profile 'office'"},
      {"- {range: ethernet 1/1, traffic: {errors: {crcs: 1}}}\n",
       "5: unknown key 'crcs' in 'errors', did you mean 'crc'?"},
      {"- {range: ethernet 1/1, link-change: yesterday}\n",
       "5: link-change 'yesterday' is not a duration such as 3d4h or 90s"},
      {"- {range: ethernet 1/1, last-clear: 3000w}\n", "5: last-clear '3000w' looks back to before 1970"},
      {"- {range: mgmt 0, addresses: 10.1.2.3}\n",
       "5: addresses '10.1.2.3' is not an address with its prefix length, such as 10.1.2.3/24"},
      {"- {range: mgmt 0, addresses: 10.1.2.3/33}\n",
       "5: addresses '10.1.2.3/33' is not an address with its prefix length, such as 10.1.2.3/24"},
      {"- {range: mgmt 0, addresses: 10.1.2.300/24}\n",
       "5: addresses '10.1.2.300/24' is not an address with its prefix length, such as 10.1.2.3/24"},
      {"- {range: loopback 1-2, addresses: 10.1.2.3/32}\n",
       "5: 'addresses' belong to a single interface, not to a range"},
      {"- {range: ethernet 1/1, transceiver: 10Gbase-SR}\n", "5: Ethernet1/1 has no receptacle for a transceiver"},
      {"- {range: ethernet 2/1, transceiver: 10Gbase-XR}\n",
       "5: transceiver '10Gbase-XR' is not known, did you mean '10Gbase-SR'?"},
      {"- {range: ethernet 1/1, layer: 3}\n", "5: Ethernet1/1 cannot be routed"},
      {"- {range: ethernet 1/1, layer: 4}\n", "5: layer '4' is not from 2 to 3"},
      {"- {range: ethernet 1/1, profile: missing}\n", "5: there is no profile 'missing'"},
  };
  expect_refusals(kHead, kWrong);
}

TEST(WrongSwitchFile, InterfacesAreChecked) {
  constexpr wrong_file kWrong[] = {
      {"- {range: ethernot 1/1}\n", "5: unknown interface 'ethernot' at character 1"},
      {"- {range: ethernet 1/4-1}\n", "5: reversed range '1/4-1' at character 10"},
      {"- {range: ''}\n", "5: empty range at character 1"},
      {"- {range: ethernet 1/1-2/4}\n", "5: a range of a switch file stays within one slot"},
      {"- {range: loopback 0-65536}\n", "5: more than 65536 interfaces"},
      {"- {range: ethernet 3/1}\n", "5: Ethernet3/1: slot 3 holds no card"},
      {"- {range: ethernet 1/1-4}\n- {range: ethernet 2/1}\n- {range: ethernet 1/4-6}\n",
       "7: 'ethernet 1/4' is described already in line 5"},
      {"- {range: ethernet 1/1}\n- {range: ethernet 1/1, kind: 26}\n",
       "6: 'ethernet 1/1' is described already in line 5"},
      {"- {range: bay 1-4}\n- {range: bay 3}\n", "6: 'bay 3' is described already in line 5"},
      {"- {range: bay 1}\n- {range: ext 1}\n- {range: fc 1/1}\n- {range: fc 3/1}\n", "8: fc3/1: slot 3 holds no card"},
      {"- {range: bay 1, kind: 2}\n", "5: 'bay 1' cannot be of kind 2"},
      {"- {range: 'ethernet 1/1, 1/1'}\n", "5: 'ethernet 1/1' is described already in line 5"},
      {"- {range: port-channel 4, kind: 4}\n- {range: port-channel 4, kind: 22}\n",
       "6: 'port-channel 4' is described already in line 5"},
      {"- {range: ethernet 1/1, kind: 22}\n", "5: 'ethernet 1/1' cannot be of kind 22"},
      {"- {range: ethernet 1/1, kind: 31}\n", "5: 'ethernet 1/1' cannot be of kind 31"},
      {"- {range: ethernet 101/1/1, kind: 2}\n", "5: 'ethernet 101/1/1' cannot be of kind 2"},
      {"- {range: ethernet 1/1, kind: 255}\n", "5: kind '255' is not from 1 to 254"},
      {"- {range: ethernet 1/1.5, kind: 26}\n",
       "5: Ethernet1/1.5 has no parent: Ethernet1/1 of kind 26 does not exist"},
      {"- {range: ethernet 1/1}\n- {range: ethernet 1/1.5, kind: 26}\n",
       "6: Ethernet1/1.5 has no parent: Ethernet1/1 of kind 26 does not exist"},
      {"- {range: ethernet 1/1, dot1q: 5}\n", "5: Ethernet1/1: only a sub-interface has 'dot1q'"},
  };
  expect_refusals(kHead, kWrong);
}

TEST(WrongSwitchFile, ReferencesAreChecked) {
  constexpr wrong_file kWrong[] = {
      {"- {range: ethernet 1/1, channel: 9}\n", "5: 'port-channel 9' does not exist"},
      {"- range: ethernet 1/1\n  channel: ethernet 1/1\n", "6: Ethernet1/1 is not a port-channel"},
      {"- {range: port-channel 1-2}\n- {range: ethernet 1/1, channel: port-channel 1-2}\n",
       "6: 'port-channel 1-2' is not a single interface"},
      {"- {range: ethernet 1/1, channel: chan 9}\n", "5: unknown interface 'chan' at character 1"},
      {"- {range: port-channel 1}\n- {range: loopback 1, channel: 1}\n",
       "6: loopback1 cannot join port-channel1: a port-channel of kind 22 takes no interface of kind 20"},
      {"- {range: port-channel 1, kind: 4}\n- {range: ethernet 2/1, kind: 26, channel: 1}\n",
       "6: Ethernet2/1 cannot join port-channel1: a port-channel of kind 4 takes no interface of kind 26"},
      {"- {range: port-channel 1}\n- {range: ethernet 2/1, kind: 26}\n- {range: ethernet 2/1.5, kind: 26, channel: "
       "1}\n",
       "7: Ethernet2/1.5: a sub-interface cannot join a port-channel"},
      {"- {range: port-channel 1}\n- {range: port-channel 2, channel: 1}\n",
       "6: port-channel2 cannot join port-channel1: a port-channel of kind 22 takes no interface of kind 22"},
      {"- {range: port-channel 1}\n- {range: ethernet 1/1, channel: 1}\n- {range: ethernet 2/1, kind: 26, channel: "
       "1}\n",
       "7: Ethernet2/1 and Ethernet1/1 in port-channel1 are of different kinds"},
      {"- {range: ethernet 1/1, tracked: ethernet 1/1-2}\n", "5: 'ethernet 1/2' does not exist"},
      {"- {range: vethernet 1, bound-to: ethernet 1/1}\n", "5: 'ethernet 1/1' does not exist"},
      {"- {range: ethernet 1/1, bound-to: ethernet 1/1}\n",
       "5: Ethernet1/1: only a virtual Ethernet interface has 'bound-to'"},
  };
  expect_refusals(kHead, kWrong);
}

// The first row of the kernel's table that is not the loopback's; empty when there is none.
std::string first_device_of_this_machine() {
  std::ifstream table("/proc/net/dev");
  std::string line;
  while (std::getline(table, line)) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos) continue;
    const std::size_t begin = line.find_first_not_of(' ');
    if (const std::string device = line.substr(begin, colon - begin); device != "lo") return device;
  }
  return "";
}

TEST(SwitchFile, ManagementDeviceIsTheFirstOfTheMachineUnlessTheFileNamesOne) {
  EXPECT_EQ(load("switch: {name: a}\n").mgmt_device, first_device_of_this_machine());
  EXPECT_EQ(load("switch: {name: a}\n").mgmt_device2, "");

  const machine named = load("switch: {name: a}\nmanagement: {device: veth0, second-device: veth1}\n");
  EXPECT_EQ(named.mgmt_device, "veth0");
  EXPECT_EQ(named.mgmt_device2, "veth1");
}

// The demonstration switch.

class CampusSwitch : public testing::Test {
 protected:
  template <class Wanted>
  auto count(Wanted requested) const {
    return std::count_if(campus_.interfaces.begin(), campus_.interfaces.end(), requested);
  }
  static bool is_kind(const interface& it, if_index_type_t kind) { return decode_index(it.if_index).type == kind; }
  static bool is_sub_interface(const interface& it) { return if_index_is_sub_intf(it.if_index) != 0; }

  const machine campus_ = load_switch_file(PMCLI_SWITCHES "/campus.yaml", kReadAt);
};

TEST_F(CampusSwitch, IsAModularEthernetSwitch) {
  EXPECT_EQ(campus_.chassis_type, 10U);
  EXPECT_GE(campus_.cards.size(), 2U);
  EXPECT_EQ(campus_.mgmt_device, first_device_of_this_machine());
  EXPECT_TRUE(std::is_sorted(campus_.interfaces.begin(), campus_.interfaces.end(),
                             [](const interface& a, const interface& b) { return a.if_index < b.if_index; }));
}

TEST_F(CampusSwitch, HasEveryKindThatAReaderMayMeet) {
  EXPECT_EQ(count([](const interface& it) { return is_kind(it, IF_TYPE_ETHERNET); }), 48);
  const auto layer_of_ports = [&](uint32 layer) {
    return count([&](const interface& it) {
      return is_kind(it, IF_TYPE_ETHERNET_L3) && !is_sub_interface(it) && it.settings.layer == layer;
    });
  };
  EXPECT_GE(layer_of_ports(2), 1);
  EXPECT_GE(layer_of_ports(3), 1);
  EXPECT_GE(count([](const interface& it) { return is_kind(it, IF_TYPE_SATELLITE); }), 1);
  EXPECT_GE(count([](const interface& it) { return is_kind(it, IF_TYPE_ETHERNET_L3) && is_sub_interface(it); }), 1);
  EXPECT_GE(count([](const interface& it) { return is_kind(it, IF_TYPE_ETH_PORT_CHANNEL) && is_sub_interface(it); }),
            1);
  EXPECT_GE(count([](const interface& it) { return is_kind(it, IF_TYPE_LOOPBACK); }), 1);
  EXPECT_EQ(count([](const interface& it) { return is_kind(it, IF_TYPE_MGMT); }), 1);
  const auto virtual_ports = [&](bool bound) {
    return count([&](const interface& it) { return is_kind(it, IF_TYPE_VETHERNET) && (it.bound_to != 0) == bound; });
  };
  EXPECT_GE(virtual_ports(true), 1);
  EXPECT_GE(virtual_ports(false), 1);
  EXPECT_GE(count([](const interface& it) { return it.oper_mode == PM_PORT_MODE_IPS; }), 1);
}

TEST_F(CampusSwitch, BothFamiliesOfPortChannelsHaveMembers) {
  for (const if_index_type_t kind : {IF_TYPE_PORT_CHANNEL, IF_TYPE_ETH_PORT_CHANNEL})
    EXPECT_GE(count([&](const interface& it) { return is_kind(it, kind) && !campus_.members_of(it.if_index).empty(); }),
              1)
        << int{kind};
}

TEST_F(CampusSwitch, MostTrunksAreOfKindTwo) {
  const auto trunks = [&](bool of_kind_two) {
    return count([&](const interface& it) {
      return it.settings.admin_mode == PM_PORT_MODE_TRUNK && is_kind(it, IF_TYPE_ETHERNET) == of_kind_two;
    });
  };
  EXPECT_GT(trunks(true), trunks(false));
}

TEST_F(CampusSwitch, HasEveryStateThatAReaderMayMeet) {
  std::set<int> reasons;
  for (const interface& it : campus_.interfaces) reasons.insert(it.state_reason);
  for (const int reason : {2 /* up */, 12 /* administratively down */, 7 /* not connected */, 5 /* error-disabled */,
                           29 /* SFP absent */, 14 /* suspended */, 11 /* inactive */})
    EXPECT_TRUE(reasons.contains(reason)) << reason;
  EXPECT_GE(count([](const interface& it) { return it.settings.channel != 0; }), 1);
}

TEST_F(CampusSwitch, PortsHaveTheirOwnHardwareAddresses) {
  std::set<mac_address> addresses;
  for (const interface& it : campus_.interfaces)
    EXPECT_NE(addresses.insert(it.burned_in_mac).second, is_sub_interface(it)) << it.if_index;
}

}  // namespace
}  // namespace host
