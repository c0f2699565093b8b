#include "source/chassis/giant.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "platform/card_config.h"
#include "platform/interface_manager.h"
#include "platform/platform_data.h"
#include "platform/port_manager.h"
#include "platform/transceiver.h"
#include "source/chassis/hardware_address.h"
#include "source/chassis/traffic.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

constexpr uint32 kSlots = kMaxSlot + 1;
constexpr uint32 kUsualPortsOfACard = 48;
constexpr uint32 kMaxChannels = 8;
constexpr uint32 kMembersOfAChannel = 2;
constexpr uint32 kPortsForAChannel = 16;  // a switch has one port-channel for as many ports
constexpr uint32 kDaySec = 86400;
constexpr mac_address kBaseMac = {0x02, 0x1C, 0x73, 0x00, 0x00, 0x00};
static_assert(kSlots * (kMaxPort + 1) >= kMaxGiantPorts);

// The duty of a port. The ports of a card take turns.
struct duty {
  const char* description;
  uint8 state_reason;
  uint32 mode;  // 0: routed
  uint32 admin_speed_mbps;
  uint32 in_kbps;
  uint32 out_kbps;
  uint64 crc_errors;
};

constexpr uint32 kAccess = PM_PORT_MODE_ACCESS;
constexpr uint32 kTrunk = PM_PORT_MODE_TRUNK;
constexpr uint8 kUp = PM_REASON_NONE;
enum : uint8 { kNotConnected = 7, kSuspended = 14, kSfpAbsent = 29 };

constexpr duty kDuties[] = {
    {"server", kUp, kAccess, 0, 812'300, 644'800, 0},
    {"server", kUp, kAccess, 1000, 51'200, 30'700, 0},
    {"storage", kUp, kTrunk, 0, 2'110'000, 1'954'000, 0},
    {"", kNotConnected, kAccess, 0, 0, 0, 0},
    {"uplink", kUp, 0, 0, 3'120'400, 2'210'900, 2},
    {"desk", kUp, kAccess, 100, 3200, 18'600, 0},
    {"reserved", PM_REASON_ADMIN_DOWN, kAccess, 0, 0, 0, 0},
    {"camera", PM_REASON_ERROR_DISABLED, kAccess, 100, 0, 0, 1733},
    {"desk", kUp, kAccess, 0, 700, 1100, 17},
    {"", kSfpAbsent, kAccess, 0, 0, 0, 0},
    {"wireless", kUp, kTrunk, 1000, 44'100, 120'700, 0},
    {"lab", PM_REASON_INACTIVE, kAccess, 0, 0, 0, 0},
    {"desk", kSuspended, kAccess, 1000, 0, 0, 0},
};

// The switch as a grid of slots and ports.
struct grid {
  uint32 ports;
  uint32 ports_of_a_card;

  uint32 slots() const { return (ports + ports_of_a_card - 1) / ports_of_a_card; }
  uint32 ports_in(uint32 slot) const { return std::min(ports - slot * ports_of_a_card, ports_of_a_card); }
  uint32 channels() const { return std::min({ports / kPortsForAChannel, slots(), kMaxChannels}); }
};

constexpr if_index_type_t kind_of_card(uint32 slot) { return slot % 2 == 0 ? IF_TYPE_ETHERNET : IF_TYPE_ETHERNET_L3; }

// The first ports of the first cards are members of port-channels, one per card.
if_index_t channel_of(const grid& size, uint32 slot, uint32 port) {
  const bool is_member =
      slot < size.channels() && port < kMembersOfAChannel && size.ports_in(slot) > kMembersOfAChannel;
  return is_member ? channel_index(IF_TYPE_ETH_PORT_CHANNEL, slot + 1) : 0;
}

void set_state(interface& port, uint8 reason) {
  port.state_reason = reason;
  port.oper_state = reason == kUp ? PM_PORT_STATE_UP : PM_PORT_STATE_DOWN;
  port.settings.admin_state = reason == PM_REASON_ADMIN_DOWN ? PM_PORT_STATE_DOWN : PM_PORT_STATE_UP;
}

void set_layer(interface& port, uint32 mode, uint32 number) {
  port.settings.admin_mode = mode;
  port.oper_mode = mode;
  port.settings.layer = mode == 0 ? IF_LAYER_3 : IF_LAYER_2;
  port.settings.access_vlan = static_cast<uint16>(mode == kAccess ? 100 + number % 20 : 1);
  if (mode == kTrunk) {
    port.settings.allowed_vlans.resize(20);
    std::iota(port.settings.allowed_vlans.begin(), port.settings.allowed_vlans.end(), uint16{100});
  }
  if (mode != 0) return;
  ip_address address{.prefix_length = 30};
  const std::array<uint8, 4> bytes = {10, static_cast<uint8>(number >> 14), static_cast<uint8>(number >> 6),
                                      static_cast<uint8>(number << 2 | 1)};
  std::copy(bytes.begin(), bytes.end(), address.bytes.begin());
  port.addresses.push_back(address);
}

void set_speed(interface& port, uint32 admin_speed_mbps) {
  const bool is_up = port.oper_state == PM_PORT_STATE_UP;
  port.settings.admin_speed_mbps = admin_speed_mbps;
  port.oper_speed_mbps = admin_speed_mbps == 0 && is_up ? 10000 : admin_speed_mbps;
  port.oper_duplex = is_up ? PM_PORT_DUPLEX_FULL : PM_PORT_DUPLEX_AUTO;
  port.bandwidth_kbps = (port.oper_speed_mbps.value_or(0) != 0 ? *port.oper_speed_mbps : 10000) * 1000;
}

void set_capabilities(interface& port) {
  port_capabilities& able = port.capabilities;
  able.model = "LC-GIANT";
  able.speeds = CRDCFG_SPEED_100M | CRDCFG_SPEED_1G | CRDCFG_SPEED_10G | CRDCFG_SPEED_AUTO;
  able.duplexes = CRDCFG_DUPLEX_FULL | CRDCFG_DUPLEX_AUTO;
  able.rx_flow_control = able.tx_flow_control = CRDCFG_FLOW_ON | CRDCFG_FLOW_OFF;
  able.rate_modes = CRDCFG_RATE_DEDICATED;
  able.type = "10Gbase-SR";
  able.transceiver = true;
  if (port.state_reason != kSfpAbsent) port.module_in_port = transceiver{.type = FCOT_TYPE_SFP_PLUS, .eeprom = {}};
}

void set_traffic(interface& port, const duty& does, uint32 number, uint32 now_sec) {
  const auto plan = std::make_shared<traffic_plan>();
  plan->in.rate.value = does.in_kbps + number;
  plan->in.sizes = {{700, 100'000}};
  plan->in.multicast_percent_thousandths = 1500;
  plan->out.rate.value = does.out_kbps + number;
  plan->out.sizes = {{820, 100'000}};
  plan->out.broadcast_percent_thousandths = 800;
  if (does.crc_errors != 0) plan->errors = {{.counter = &error_counters::crc, .start = does.crc_errors}};
  port.traffic =
      std::make_shared<traffic_source>(traffic_source{.plan = plan,
                                                      .line_kbps = uint64{port.oper_speed_mbps.value_or(0)} * 1000,
                                                      .is_up = port.oper_state == PM_PORT_STATE_UP,
                                                      .started_sec = now_sec,
                                                      .counting_sec = kDaySec});
  follow_traffic(port, now_sec);
}

interface make_port(const grid& size, uint32 slot, uint32 port, uint32 now_sec) {
  const uint32 number = slot * size.ports_of_a_card + port;
  const if_index_t channel = channel_of(size, slot, port);
  const if_index_type_t kind = kind_of_card(slot);
  duty does = kDuties[channel != 0 ? 0 : number % std::size(kDuties)];
  if (channel != 0 || (does.mode == 0 && kind == IF_TYPE_ETHERNET)) does.mode = kTrunk;
  interface made;
  made.if_index = ethernet_index(kind, slot, port);
  made.settings.channel = channel;
  made.settings.description = does.description;
  if (!made.settings.description.empty()) made.settings.description += ' ' + std::to_string(number + 1);
  set_state(made, does.state_reason);
  set_layer(made, does.mode, number);
  set_speed(made, does.admin_speed_mbps);
  set_capabilities(made);
  set_traffic(made, does, number, now_sec);
  made.burned_in_mac = hardware_address(kBaseMac, made.if_index);
  made.router_mac = kBaseMac;
  made.link_change_sec = now_sec - kDaySec - number;
  return made;
}

void add_ports(machine& giant, const grid& size, if_index_type_t kind, uint32 now_sec) {
  for (uint32 slot = 0; slot < size.slots(); ++slot) {
    if (kind_of_card(slot) != kind) continue;
    for (uint32 port = 0; port < size.ports_in(slot); ++port)
      giant.interfaces.push_back(make_port(size, slot, port, now_sec));
  }
}

void add_management(machine& giant, uint32 now_sec) {
  interface made;
  made.if_index = ethernet_index(IF_TYPE_MGMT, 0, 0);
  set_state(made, kUp);
  made.settings.layer = IF_LAYER_3;
  made.addresses = {{.bytes = {192, 0, 2, 10}, .prefix_length = 24}};
  made.settings.admin_speed_mbps = 1000;
  made.oper_speed_mbps = 1000;
  made.bandwidth_kbps = 1'000'000;
  made.burned_in_mac = hardware_address(kBaseMac, made.if_index);
  made.link_change_sec = now_sec - kDaySec;
  giant.interfaces.push_back(std::move(made));
}

// The values of a port-channel are twice those of a member.
void add_channels(machine& giant, const grid& size, uint32 now_sec) {
  for (uint32 slot = 0; slot < size.channels(); ++slot) {
    const if_index_t channel = channel_of(size, slot, 0);
    if (channel == 0) continue;
    interface made = make_port(size, slot, 0, now_sec);
    made.if_index = channel;
    made.settings.channel = 0;
    made.module_in_port.reset();
    made.settings.description = fmt::format("bundle {}", slot + 1);
    *made.bandwidth_kbps *= kMembersOfAChannel;
    made.burned_in_mac = hardware_address(kBaseMac, channel);
    giant.interfaces.push_back(std::move(made));
  }
}

}  // namespace

machine make_giant(uint32 ports, std::time_t now) {
  ports = std::min<uint32>(ports, kMaxGiantPorts);
  const grid size{ports, std::max(kUsualPortsOfACard, (ports + kSlots - 1) / kSlots)};
  const auto now_sec = static_cast<uint32>(now);
  machine giant;
  giant.name = fmt::format("giant-{}", ports);
  giant.chassis_type = CHASSIS_10;
  giant.num_slots = std::max(size.slots(), 1U);
  giant.mgmt_device = "eth0";
  for (uint32 slot = 0; slot < size.slots(); ++slot)
    giant.cards.push_back({.slot = slot, .card_type = 100, .model = "LC-GIANT"});
  // In the order of the kinds, which is that of the indexes.
  giant.interfaces.reserve(ports + kMaxChannels + 1);
  add_ports(giant, size, IF_TYPE_ETHERNET, now_sec);
  add_management(giant, now_sec);
  add_channels(giant, size, now_sec);
  add_ports(giant, size, IF_TYPE_ETHERNET_L3, now_sec);
  giant.save_startup();
  return giant;
}

}  // namespace host
