// The network devices of the kernel, from its dumps.
#pragma once

#include <linux/if_link.h>

#include <array>
#include <bitset>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/types.h"
#include "source/kernel/netlink.h"
#include "source/kernel/policy.h"
#include "switch/kernel_device.h"
#include "switch/model.h"

namespace host {

// Modes of a link by the kernel's bits (ETHTOOL_LINK_MODE_*); those beyond are ignored.
using link_modes = std::bitset<128>;

// Pause settings of a device, and its counters of pause frames.
struct pause_settings {
  bool negotiates = false;
  bool receives = false;
  bool sends = false;
  std::optional<uint64> received_frames = {};
  std::optional<uint64> sent_frames = {};
};

struct kernel_link {
  uint32 number = 0;  // the kernel's index
  std::string name;
  std::string kind;        // such as "veth" or "bridge"; empty for a physical device and the loopback
  std::string slave_kind;  // kind of its master
  std::string alias;
  std::array<uint8, 6> mac{};
  std::optional<std::array<uint8, 6>> permanent_mac;  // of hardware
  uint32 flags = 0;                                   // IFF_*
  uint8 operation = 0;                                // IF_OPER_*
  uint32 mtu_bytes = 0;
  uint32 lowest_mtu_bytes = 0, highest_mtu_bytes = 0;  // that the device takes; 0: no limit
  uint32 master = 0;                                   // index of the bridge or bond; 0 is none
  uint32 parent = 0;            // index of the device below; 0 is none, or one of another namespace
  uint32 vlan = 0;              // of a VLAN device
  std::optional<uint32> vxlan;  // network identifier of a VXLAN device
  bool is_tap = false;          // of a device of kind "tun": with frames, not packets
  std::vector<std::string> alternative_names;
  std::optional<uint32> carrier_changes;
  std::optional<uint8> bridge_state;  // BR_STATE_*
  device_counters counted;

  // Of a port of a bridge that knows VLANs.
  uint16 native_vlan = 0;
  std::vector<uint16> vlans;
  bool has_tagged_vlans = false;

  std::optional<uint32> speed_mbps;
  std::optional<bool> is_full_duplex;
  std::optional<bool> negotiates;
  link_modes supported, advertised, partner;
  std::optional<pause_settings> pause;
  std::vector<ip_address> addresses;
};

// Of IFLA_LINKINFO.
inline constexpr message_policy kLinkInfoPolicy = {
    {IFLA_INFO_KIND, attribute_type::text, 1},
    {IFLA_INFO_SLAVE_KIND, attribute_type::text, 1},
    {IFLA_INFO_DATA, attribute_type::nest, 0},
    {IFLA_INFO_SLAVE_DATA, attribute_type::nest, 0},
};

// Decoders of single messages; a truncated attribute is ignored.
std::optional<kernel_link> decode_link(const nlmsghdr& message);
void decode_bridge_vlans(const nlmsghdr& message, std::vector<kernel_link>& links);
void decode_address(const nlmsghdr& message, std::vector<kernel_link>& links);

// The counters of a device: a record rtnl_link_stats64, which older kernels end with tx_compressed.
inline constexpr uint16 kLeastStatisticsBytes = 23 * sizeof(uint64);
device_counters counters_of(std::span<const uint8> statistics);

// Whether the kernel reports a device as hardware: it has no kind, or is a port of a switch chip.
bool is_physical(const kernel_link& link);

// The device of this number, or null.
kernel_link* find_link(std::vector<kernel_link>& links, uint32 number);
const kernel_link* find_link(const std::vector<kernel_link>& links, uint32 number);

// The device of a route; 0 when the route is not for every address.
uint32 decode_default_route(const nlmsghdr& message);

// All devices, sorted by number: one dump per type of message. Throws kernel_error when the devices cannot be read;
// other values that the kernel does not report are omitted.
std::vector<kernel_link> read_links(netlink_socket& route);

// The same without what other messages report: VLANs of bridges, addresses and settings.
std::vector<kernel_link> read_devices(netlink_socket& route);

// Whether a device has this name, or it as an alternative one; true when the kernel does not say.
bool has_device_named(netlink_socket& route, std::string_view name);

// The device that the default route leads to; 0 when there is none.
uint32 default_route_device(netlink_socket& route);

// The device that packets to an address in text take; 0 when the text is not an address, or the kernel reports no
// device.
uint32 device_towards(netlink_socket& route, const std::string& address);

}  // namespace host
