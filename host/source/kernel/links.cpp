#include "source/kernel/links.h"

#include <arpa/inet.h>
#include <linux/if_bridge.h>
#include <linux/if_ether.h>
#include <linux/if_link.h>
#include <linux/if_tun.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include "source/kernel/ethtool.h"
#include "source/kernel/policy.h"
#include "source/kernel/sorted_records.h"

namespace host {
namespace {

// ---- Policies -------------------------------------------------------------------------------------------------------

constexpr message_policy kLinkPolicy = {
    {IFLA_IFNAME, attribute_type::text, 1},
    {IFLA_IFALIAS, attribute_type::text, 1},
    {IFLA_MTU, attribute_type::number, sizeof(uint32)},
    {IFLA_MIN_MTU, attribute_type::number, sizeof(uint32)},
    {IFLA_MAX_MTU, attribute_type::number, sizeof(uint32)},
    {IFLA_OPERSTATE, attribute_type::number, sizeof(uint8)},
    {IFLA_MASTER, attribute_type::number, sizeof(uint32)},
    {IFLA_LINK, attribute_type::number, sizeof(uint32)},
    {IFLA_LINK_NETNSID, attribute_type::number, sizeof(int32)},
    {IFLA_CARRIER_CHANGES, attribute_type::number, sizeof(uint32)},
    {IFLA_ADDRESS, attribute_type::bytes, sizeof(mac_address)},
    {IFLA_PERM_ADDRESS, attribute_type::bytes, sizeof(mac_address), sizeof(mac_address)},
    {IFLA_STATS64, attribute_type::bytes, kLeastStatisticsBytes},
    {IFLA_LINKINFO, attribute_type::nest, 0},
    {IFLA_PROP_LIST, attribute_type::nest, 0},
};
constexpr message_policy kPropertyPolicy = {{IFLA_ALT_IFNAME, attribute_type::bytes, 1}};
constexpr message_policy kVlanDevicePolicy = {{IFLA_VLAN_ID, attribute_type::number, sizeof(uint16)}};
constexpr message_policy kVxlanPolicy = {
    {IFLA_VXLAN_ID, attribute_type::number, sizeof(uint32)},
    {IFLA_VXLAN_LINK, attribute_type::number, sizeof(uint32)},
};
constexpr message_policy kTunPolicy = {{IFLA_TUN_TYPE, attribute_type::number, sizeof(uint8)}};
constexpr message_policy kBridgePortPolicy = {{IFLA_BRPORT_STATE, attribute_type::number, sizeof(uint8)}};
constexpr message_policy kBridgePolicy = {{IFLA_AF_SPEC, attribute_type::nest, 0}};
constexpr message_policy kBridgeVlanPolicy = {{IFLA_BRIDGE_VLAN_INFO, attribute_type::bytes, sizeof(bridge_vlan_info)}};
constexpr message_policy kIpv4Policy = {
    {IFA_LOCAL, attribute_type::bytes, sizeof(in_addr), sizeof(in_addr)},
    {IFA_ADDRESS, attribute_type::bytes, sizeof(in_addr), sizeof(in_addr)},
};
constexpr message_policy kIpv6Policy = {
    {IFA_LOCAL, attribute_type::bytes, sizeof(in6_addr), sizeof(in6_addr)},
    {IFA_ADDRESS, attribute_type::bytes, sizeof(in6_addr), sizeof(in6_addr)},
};
constexpr message_policy kRoutePolicy = {{RTA_OIF, attribute_type::number, sizeof(uint32)}};

// ---- Links ----------------------------------------------------------------------------------------------------------

void take_info(const attributes& info, kernel_link& link) {
  link.kind = info.text(IFLA_INFO_KIND).value_or("");
  link.slave_kind = info.text(IFLA_INFO_SLAVE_KIND).value_or("");
  if (link.kind == "vlan")
    link.vlan = info.nested(IFLA_INFO_DATA, kVlanDevicePolicy).number<uint16>(IFLA_VLAN_ID).value_or(0);
  if (link.kind == "tun") link.is_tap = info.nested(IFLA_INFO_DATA, kTunPolicy).number<uint8>(IFLA_TUN_TYPE) == IFF_TAP;
  if (link.kind == "vxlan") {
    const attributes vxlan = info.nested(IFLA_INFO_DATA, kVxlanPolicy);
    link.vxlan = vxlan.number<uint32>(IFLA_VXLAN_ID);
    link.parent = vxlan.number<uint32>(IFLA_VXLAN_LINK).value_or(link.parent);
  }
  if (link.slave_kind == "bridge")
    link.bridge_state = info.nested(IFLA_INFO_SLAVE_DATA, kBridgePortPolicy).number<uint8>(IFLA_BRPORT_STATE);
}

void take_link(const attributes& all, kernel_link& link) {
  link.name = all.text(IFLA_IFNAME).value_or("");
  link.alias = all.text(IFLA_IFALIAS).value_or("");
  link.mtu_bytes = all.number<uint32>(IFLA_MTU).value_or(0);
  link.lowest_mtu_bytes = all.number<uint32>(IFLA_MIN_MTU).value_or(0);
  link.highest_mtu_bytes = all.number<uint32>(IFLA_MAX_MTU).value_or(0);
  link.operation = all.number<uint8>(IFLA_OPERSTATE).value_or(0);
  link.master = all.number<uint32>(IFLA_MASTER).value_or(0);
  link.parent = all.number<uint32>(IFLA_LINK).value_or(0);
  link.carrier_changes = all.number<uint32>(IFLA_CARRIER_CHANGES);
  if (const auto mac = all.bytes(IFLA_ADDRESS)) link.mac = record_of<mac_address>(*mac);
  if (const auto mac = all.bytes(IFLA_PERM_ADDRESS)) link.permanent_mac = record_of<mac_address>(*mac);
  if (const auto stats = all.bytes(IFLA_STATS64)) link.counted = counters_of(*stats);
  take_info(all.nested(IFLA_LINKINFO, kLinkInfoPolicy), link);
  if (all.number<int32>(IFLA_LINK_NETNSID)) link.parent = 0;  // the number is one of another namespace
  all.nested(IFLA_PROP_LIST, kPropertyPolicy).for_each(IFLA_ALT_IFNAME, [&link](std::span<const uint8> name) {
    link.alternative_names.emplace_back(name.begin(), std::find(name.begin(), name.end(), 0));
  });
}

// ---- Bridge VLANs ---------------------------------------------------------------------------------------------------

// A VLAN, or one end of a range of them.
void take_vlan(const bridge_vlan_info& info, kernel_link& link, uint16& range_begin) {
  if ((info.flags & BRIDGE_VLAN_INFO_PVID) != 0) link.native_vlan = info.vid;
  if ((info.flags & BRIDGE_VLAN_INFO_UNTAGGED) == 0) link.has_tagged_vlans = true;
  if ((info.flags & BRIDGE_VLAN_INFO_RANGE_BEGIN) != 0) {
    range_begin = info.vid;
    return;
  }
  const bool ends_range = (info.flags & BRIDGE_VLAN_INFO_RANGE_END) != 0 && range_begin != 0;
  for (uint32 id = ends_range ? range_begin : info.vid; id <= info.vid && id < 4096; ++id)
    link.vlans.push_back(static_cast<uint16>(id));
  range_begin = 0;
}

// ---- The dumps ------------------------------------------------------------------------------------------------------

void dump_bridge_vlans(netlink_socket& route, std::vector<kernel_link>& links) {
  netlink_request request(RTM_GETLINK, NLM_F_DUMP);
  request.extra<ifinfomsg>().ifi_family = AF_BRIDGE;
  mnl_attr_put_u32(&request.head(), IFLA_EXT_MASK, RTEXT_FILTER_BRVLAN_COMPRESSED);
  route.ask(
      request, [&links](const nlmsghdr& message) { decode_bridge_vlans(message, links); },
      [&links] {
        for (kernel_link& link : links) link.vlans.clear();
      });
}

void dump_addresses(netlink_socket& route, std::vector<kernel_link>& links) {
  netlink_request request(RTM_GETADDR, NLM_F_DUMP);
  request.extra<ifaddrmsg>().ifa_family = AF_UNSPEC;
  route.ask(
      request, [&links](const nlmsghdr& message) { decode_address(message, links); },
      [&links] {
        for (kernel_link& link : links) link.addresses.clear();
      });
}

// ---- The default route ----------------------------------------------------------------------------------------------

// Addresses for documentation: at least one of them is reached by the default route alone, even where a laboratory
// uses the others.
constexpr const char* kSomewhere[] = {"192.0.2.255", "198.51.100.255", "203.0.113.255"};

std::optional<parsed_message<rtmsg>> parse_route(const nlmsghdr& message) {
  return message.nlmsg_type == RTM_NEWROUTE ? parse<rtmsg>(message, kRoutePolicy) : std::nullopt;
}

uint32 device_of_route(const parsed_message<rtmsg>& route) { return route.all.number<uint32>(RTA_OIF).value_or(0); }

// The device, when a route for every address is the one that leads to `somewhere`; 0 otherwise.
uint32 device_of_default_route_to(netlink_socket& route, const char* somewhere) {
  netlink_request request(RTM_GETROUTE, NLM_F_ACK);
  rtmsg& head = request.extra<rtmsg>();
  head.rtm_family = AF_INET;
  head.rtm_dst_len = 32;
  head.rtm_flags = RTM_F_FIB_MATCH;
  in_addr address{};
  inet_pton(AF_INET, somewhere, &address);
  mnl_attr_put_u32(&request.head(), RTA_DST, address.s_addr);
  uint32 device = 0;
  route.ask(request, [&device](const nlmsghdr& message) { device = decode_default_route(message); });
  return device;
}

}  // namespace

static_assert(kLeastStatisticsBytes == offsetof(rtnl_link_stats64, rx_nohandler));

device_counters counters_of(std::span<const uint8> statistics) {
  const auto from = record_of<rtnl_link_stats64>(statistics);
  return {.rx_bytes = from.rx_bytes,
          .rx_packets = from.rx_packets,
          .rx_errors = from.rx_errors,
          .rx_dropped = from.rx_dropped + from.rx_missed_errors,
          .rx_fifo_errors = from.rx_fifo_errors,
          .rx_frame_errors = from.rx_crc_errors + from.rx_frame_errors,
          .rx_compressed = from.rx_compressed,
          .rx_multicast = from.multicast,
          .tx_bytes = from.tx_bytes,
          .tx_packets = from.tx_packets,
          .tx_errors = from.tx_errors,
          .tx_dropped = from.tx_dropped,
          .tx_fifo_errors = from.tx_fifo_errors,
          .tx_collisions = from.collisions,
          .tx_carrier_errors = from.tx_carrier_errors,
          .tx_compressed = from.tx_compressed};
}

uint32 decode_default_route(const nlmsghdr& message) {
  const auto route = parse_route(message);
  return route && route->head.rtm_dst_len == 0 ? device_of_route(*route) : 0;
}

std::optional<kernel_link> decode_link(const nlmsghdr& message) {
  if (message.nlmsg_type != RTM_NEWLINK) return std::nullopt;
  const auto parsed = parse<ifinfomsg>(message, kLinkPolicy);
  if (!parsed) return std::nullopt;
  kernel_link link;
  link.number = static_cast<uint32>(parsed->head.ifi_index);
  link.flags = parsed->head.ifi_flags;
  take_link(parsed->all, link);
  return link.name.empty() ? std::nullopt : std::optional(std::move(link));
}

void decode_bridge_vlans(const nlmsghdr& message, std::vector<kernel_link>& links) {
  if (message.nlmsg_type != RTM_NEWLINK) return;
  const auto parsed = parse<ifinfomsg>(message, kBridgePolicy);
  kernel_link* const link = parsed ? find_link(links, static_cast<uint32>(parsed->head.ifi_index)) : nullptr;
  if (link == nullptr) return;
  uint16 range_begin = 0;
  parsed->all.nested(IFLA_AF_SPEC, kBridgeVlanPolicy).for_each(IFLA_BRIDGE_VLAN_INFO, [&](std::span<const uint8> vlan) {
    take_vlan(record_of<bridge_vlan_info>(vlan), *link, range_begin);
  });
}

// IFA_ADDRESS is the other end of a link between two, which has IFA_LOCAL, too.
void decode_address(const nlmsghdr& message, std::vector<kernel_link>& links) {
  if (message.nlmsg_type != RTM_NEWADDR) return;
  const auto families = parse<ifaddrmsg>(message, kIpv4Policy);
  if (!families) return;
  const ifaddrmsg head = families->head;
  kernel_link* const link = find_link(links, head.ifa_index);
  if (link == nullptr || (head.ifa_family != AF_INET && head.ifa_family != AF_INET6)) return;
  const bool is_ipv6 = head.ifa_family == AF_INET6;
  const attributes all = is_ipv6 ? parse<ifaddrmsg>(message, kIpv6Policy)->all : families->all;
  const auto bytes = all.bytes(IFA_LOCAL) ? all.bytes(IFA_LOCAL) : all.bytes(IFA_ADDRESS);
  if (!bytes) return;
  ip_address address{.is_ipv6 = is_ipv6, .bytes = {}, .prefix_length = head.ifa_prefixlen};
  std::copy(bytes->begin(), bytes->end(), address.bytes.begin());
  link->addresses.push_back(address);
}

bool is_physical(const kernel_link& link) {
  return (link.kind.empty() && (link.flags & IFF_LOOPBACK) == 0) || link.kind == "dsa";
}

kernel_link* find_link(std::vector<kernel_link>& links, uint32 number) {
  return find_by<&kernel_link::number>(links, number);
}

const kernel_link* find_link(const std::vector<kernel_link>& links, uint32 number) {
  return find_by<&kernel_link::number>(links, number);
}

// This dump includes the counters, all that RTM_GETSTATS would report: no second request is needed.
std::vector<kernel_link> read_devices(netlink_socket& route) {
  constexpr std::size_t kUsuallyEnough = 4096;  // unused room costs nothing, growing does
  std::vector<kernel_link> links;
  links.reserve(kUsuallyEnough);
  netlink_request request(RTM_GETLINK, NLM_F_DUMP);
  request.extra<ifinfomsg>().ifi_family = AF_UNSPEC;
  mnl_attr_put_u32(&request.head(), IFLA_EXT_MASK, RTEXT_FILTER_SKIP_STATS);  // of IPv6; the device's own are needed
  const int error = route.ask(
      request,
      [&links](const nlmsghdr& message) {
        if (auto link = decode_link(message)) links.push_back(std::move(*link));
      },
      [&links] { links.clear(); });
  if (error != 0) throw kernel_error(std::string("cannot read the devices of the kernel: ") + std::strerror(error));
  sort_by<&kernel_link::number>(links);
  return links;
}

std::vector<kernel_link> read_links(netlink_socket& route) {
  std::vector<kernel_link> links = read_devices(route);
  const bool has_bridge =
      std::any_of(links.begin(), links.end(), [](const kernel_link& link) { return link.slave_kind == "bridge"; });
  if (has_bridge) dump_bridge_vlans(route, links);
  dump_addresses(route, links);
  read_port_settings(links);
  return links;
}

bool has_device_named(netlink_socket& route, std::string_view name) {
  constexpr std::size_t kLongest = 127;  // bytes of an alternative name
  if (name.empty() || name.size() > kLongest || name.find('\0') != std::string_view::npos) return true;
  netlink_request request(RTM_GETLINK, NLM_F_ACK);
  request.extra<ifinfomsg>().ifi_family = AF_UNSPEC;
  mnl_attr_put_strz(&request.head(), IFLA_ALT_IFNAME, std::string(name).c_str());
  return route.ask(request, [](const nlmsghdr&) {}) != ENODEV;
}

uint32 device_towards(netlink_socket& route, const std::string& address) {
  std::array<uint8, sizeof(in6_addr)> bytes{};
  const bool is_ipv4 = inet_pton(AF_INET, address.c_str(), bytes.data()) == 1;
  if (!is_ipv4 && inet_pton(AF_INET6, address.c_str(), bytes.data()) != 1) return 0;
  const std::size_t size = is_ipv4 ? sizeof(in_addr) : sizeof(in6_addr);
  netlink_request request(RTM_GETROUTE, NLM_F_ACK);
  auto& head = request.extra<rtmsg>();
  head.rtm_family = is_ipv4 ? AF_INET : AF_INET6;
  head.rtm_dst_len = static_cast<uint8>(size * 8);
  mnl_attr_put(&request.head(), RTA_DST, size, bytes.data());
  uint32 device = 0;
  route.ask(request, [&device](const nlmsghdr& message) {
    const auto found = parse_route(message);
    device = found ? device_of_route(*found) : 0;
  });
  return device;
}

uint32 default_route_device(netlink_socket& route) {
  for (const char* const somewhere : kSomewhere)
    if (const uint32 device = device_of_default_route_to(route, somewhere); device != 0) return device;
  return 0;
}

}  // namespace host
