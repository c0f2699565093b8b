// The settings of a port: plain data that can be stored, compared and restored as a whole.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/if_index.h"
#include "platform/types.h"

namespace host {

// Numbers are the port manager's (platform/port_manager.h, platform/port_config.h).
struct port_settings {
  std::string description;
  uint32 admin_mode = 0;
  uint32 admin_speed_mbps = 0;  // 0 is auto
  uint8 admin_duplex = 3;
  uint8 admin_state = 1;
  std::optional<uint16> mtu_bytes = uint16{1500};
  bool beacon_on = false;
  std::optional<uint32> span_monitor = 0;  // 0 is off
  uint32 service_state = 0;
  uint32 layer = 2;
  if_index_t channel = 0;                         // the port-channel it belongs to; 0 is none
  std::optional<uint16> access_vlan = uint16{1};  // 0 is none
  std::optional<uint16> native_vlan = uint16{1};  // 0 is none
  std::vector<uint16> allowed_vlans;
  std::optional<uint16> admin_flow_control = uint16{0};  // bits of PM_FLOW_CTRL_RECEIVE and PM_FLOW_CTRL_SEND
  bool is_edge = false;                                  // spanning tree treats the port as one to a host

  // Stored and reported; nothing else depends on them.
  uint8 trunking_mode = 0;  // 0: by the port mode
  uint8 encapsulation = 1;
  uint16 receive_buffer_bytes = 2112;
  uint32 promiscuous_mode = 2;
  uint32 receive_credit = 0;
  uint32 performance_buffers = 0xFFFFFFFF;  // the card's own number
  uint32 extended_credit = 0;
  uint32 credit_multiplier = 0;
  uint8 ignore_bit_errors = 2;
  uint8 bb_scn = 2;
  uint32 down_on_link_failure = 4;
  uint32 attribute_31 = 2;
  uint32 attribute_36 = 2;
  uint8 attribute_44 = 3;
  uint8 attribute_84 = 2;
  uint8 attribute_85 = 0;

  bool operator==(const port_settings&) const = default;
};

// Settings besides PM_CFG_..., which the command library does not make.
enum host_setting : uint8 {
  HOST_CFG_ACCESS_VLAN = 120,
  HOST_CFG_NATIVE_VLAN = 121,
  HOST_CFG_ALLOWED_VLANS = 122,
  HOST_CFG_RECEIVE_PAUSE = 123,
  HOST_CFG_SEND_PAUSE = 124,
  HOST_CFG_CHANNEL = 125,
};

// The VLANs that a trunk carries by default: 1 to 4094.
const std::vector<uint16>& every_vlan();

// The default mode of a port of a kind and layer.
uint32 default_port_mode(if_index_type_t kind, uint32 layer);

// Speeds that a port supports, as bits: the CRDCFG_SPEED_* of line cards, and beyond their byte those that only the
// host knows. The fastest and the slowest of some, in Mbit/s, 0 without any; the bit of a speed, 0 for another; all of
// them.
uint32 fastest_mbps(uint32 speeds);
uint32 slowest_mbps(uint32 speeds);
uint32 speed_bit(uint32 mbps);
struct known_speed {
  uint32 bit;
  uint32 mbps;
};
std::span<const known_speed> known_speeds();

}  // namespace host
