#include "host/switch/small_machine.h"

#include <algorithm>

#include "platform/card_config.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "switch/if_index_layout.h"
#include "switch/source.h"

namespace host {
namespace {

// Bytes 1, 2, 3, ...
std::vector<uint8> counting_bytes(std::size_t size) {
  std::vector<uint8> bytes(size);
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8>(i + 1);
  return bytes;
}

statistics busy() {
  statistics stats;
  stats.in = {.bytes = 0x1'0000'2001,
              .packets = 0x1'0000'0017,
              .unicast_packets = 0x1'0000'0000,
              .multicast_packets = 20,
              .broadcast_packets = 3,
              .trunk_packets = 0x1'0000'0017,
              .errors = 2002,
              .discards = 2003};
  stats.out = {.bytes = 3001,
               .packets = 9123,
               .unicast_packets = 3100,
               .multicast_packets = 3020,
               .broadcast_packets = 3003,
               .trunk_packets = 9123,
               .errors = 3004,
               .discards = 3005};
  stats.errors = {.crc = 4001,
                  .runts = 4002,
                  .giants = 4003,
                  .jabber = 4004,
                  .overruns = 4005,
                  .underruns = 4006,
                  .collisions = 4007,
                  .late_collisions = 4008,
                  .deferred = 4009,
                  .lost_carrier = 4010,
                  .no_carrier = 4011,
                  .pause_received = 4012,
                  .pause_sent = 4013};
  stats.in_bytes_per_second = 5001;
  stats.out_bytes_per_second = 5002;
  stats.in_packets_per_second = 5003;
  stats.out_packets_per_second = 5004;
  rate_samples& ring = stats.rate_ring.emplace();
  for (uint32 i = 0; i < ring.samples.size(); ++i) ring.samples[i] = {6000 + i, 6100 + i, 6200 + i, 6300 + i};
  ring.next = 3;
  stats.last_clear_sec = 1'700'000'000;
  return stats;
}

interface trunk_port(const small_machine& names) {
  interface port;
  port.if_index = names.first_port;
  port.settings.description = "uplink to core";
  port.settings.admin_mode = PM_PORT_MODE_TRUNK;
  port.oper_mode = PM_PORT_MODE_TRUNK;
  port.settings.admin_speed_mbps = 100;
  port.oper_speed_mbps = 1000;
  port.settings.admin_duplex = 2;
  port.oper_duplex = 1;
  port.settings.admin_flow_control = 0x0A;
  port.oper_flow_control = 0x05;
  port.settings.admin_state = 1;
  port.oper_state = 1;
  port.state_reason = 9;
  port.settings.mtu_bytes = 9216;
  port.bandwidth_kbps = 1'000'000;
  port.delay_usec = 120;
  port.debounce_ms = 300;
  port.rate_mode = 2;
  port.settings.beacon_on = true;
  port.settings.span_monitor = 1;
  port.resets = 11;
  port.link_change_sec = 1'600'000'000;
  port.vsan = 17;
  port.record_error = 0x40290003;
  port.burned_in_mac = {0x02, 0x11, 0x22, 0x33, 0x44, 0x55};
  port.router_mac = {0x02, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE};
  port.settings.access_vlan = 12;
  port.settings.native_vlan = 13;
  port.settings.channel = names.channel;
  port.tracked = {names.third_port, names.routed_port};
  port.storm_control = interface::storm_levels {
    {
      {1, 30, 5}, {2, 40, 6}, { 3, 50, 7 }
    }
  };
  port.capabilities.model = "MODEL-48X";
  port.capabilities.type = "10/100/1000BASE-T, a text of more than 32 bytes";
  port.capabilities.speeds = CRDCFG_SPEED_100M | CRDCFG_SPEED_1G | CRDCFG_SPEED_AUTO;
  port.capabilities.duplexes = CRDCFG_DUPLEX_FULL | CRDCFG_DUPLEX_HALF;
  port.capabilities.rx_flow_control = CRDCFG_FLOW_ON | CRDCFG_FLOW_OFF;
  port.capabilities.tx_flow_control = CRDCFG_FLOW_DESIRED;
  port.capabilities.rate_modes = CRDCFG_RATE_SHARED;
  port.capabilities.udld = false;
  port.capabilities.transceiver = true;
  port.capabilities.qos = {.rx_priorities = 21,
                           .rx_queues = 22,
                           .rx_thresholds = 23,
                           .tx_priorities = 24,
                           .tx_queues = 25,
                           .tx_thresholds = 26};
  port.module_in_port = transceiver{.supported = true, .type = FCOT_TYPE_SFP, .eeprom = counting_bytes(300)};
  port.stats = busy();
  return port;
}

interface plain(if_index_t if_index) {
  interface it;
  it.if_index = if_index;
  return it;
}

interface routed_port(const small_machine& names) {
  interface port = plain(names.routed_port);
  port.settings.layer = 3;
  port.addresses = {
      {.bytes = {192, 0, 2, 1}, .prefix_length = 24},
      {.is_ipv6 = true, .bytes = {0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}, .prefix_length = 64}};
  port.stats = busy();
  return port;
}

}  // namespace

small_machine install_small_machine() {
  const small_machine names{
      .first_port = ethernet_index(IF_TYPE_ETHERNET, 0, 0),
      .second_port = ethernet_index(IF_TYPE_ETHERNET, 0, 1),
      .third_port = ethernet_index(IF_TYPE_ETHERNET, 0, 2),
      .routed_port = ethernet_index(IF_TYPE_ETHERNET_L3, 1, 0),
      .sub_port = ethernet_index(IF_TYPE_ETHERNET_L3, 1, 0, 7),
      .channel = channel_index(IF_TYPE_ETH_PORT_CHANNEL, 5),
      .old_channel = channel_index(IF_TYPE_PORT_CHANNEL, 6),
      .loopback = numbered_index(IF_TYPE_LOOPBACK, 3),
      .mgmt = ethernet_index(IF_TYPE_MGMT, 0, 0),
      .nobody = ethernet_index(IF_TYPE_ETHERNET, 0, 40),
  };
  machine small;
  small.name = "small";
  small.chassis_type = 11;
  small.num_slots = 4;
  small.mgmt_device = "eth-mgmt0";
  small.mgmt_device2 = "a-name-of-seventeen";
  small.cards = {{.slot = 0, .card_type = 77, .model = "MODEL-48X"}};
  small.interfaces = {trunk_port(names),        plain(names.second_port), plain(names.third_port),
                      routed_port(names),       plain(names.sub_port),    plain(names.channel),
                      plain(names.old_channel), plain(names.loopback),    plain(names.mgmt)};
  std::sort(small.interfaces.begin(), small.interfaces.end(),
            [](const interface& a, const interface& b) { return a.if_index < b.if_index; });
  the_machine() = std::move(small);
  set_source();

  interface& second = *the_machine().find(names.second_port);
  second.settings.channel = names.channel;
  second.module_in_port = transceiver{.supported = false, .type = FCOT_TYPE_X2, .eeprom = counting_bytes(20)};
  second.capabilities.speeds = CRDCFG_SPEED_10G;
  the_machine().find(names.sub_port)->encapsulation_vlan = 70;
  the_machine().find(names.channel)->multi_chassis_status = "peer is alive";
  the_machine().find(names.old_channel)->fc_layer = 1;
  the_machine().find(names.old_channel)->trunk_vsans = {1, 15, 4094};
  the_machine().save_startup();
  the_machine().find(names.loopback)->stats = busy();
  the_machine().find(names.mgmt)->stats = busy();
  return names;
}

}  // namespace host
