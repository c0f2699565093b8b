#include "source/kernel/links.h"

#include <arpa/inet.h>
#include <linux/if_bridge.h>
#include <linux/if_ether.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "source/kernel/ethtool.h"
#include "source/kernel/sorted_records.h"

namespace host {
namespace {

// ---- Links ----------------------------------------------------------------------------------------------------------

void take_statistics(const nlattr& attribute, device_counters& to) {
  rtnl_link_stats64 from{};
  std::memcpy(&from, mnl_attr_get_payload(&attribute),
              std::min<std::size_t>(sizeof from, mnl_attr_get_payload_len(&attribute)));
  to = {.rx_bytes = from.rx_bytes,
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

void take_info(const nlattr& nest, kernel_link& link) {
  for_each_nested(nest, [&link](const nlattr& attribute) {
    switch (type_of(attribute)) {
      case IFLA_INFO_KIND: link.kind = text_of(attribute); return;
      case IFLA_INFO_SLAVE_KIND: link.slave_kind = text_of(attribute); return;
      case IFLA_INFO_DATA:
        for_each_nested(attribute, [&link](const nlattr& data) {
          if (link.kind == "vlan" && type_of(data) == IFLA_VLAN_ID) link.vlan = attribute_number<uint16>(data);
        });
        return;
      case IFLA_INFO_SLAVE_DATA:
        for_each_nested(attribute, [&link](const nlattr& data) {
          if (link.slave_kind == "bridge" && type_of(data) == IFLA_BRPORT_STATE)
            link.bridge_state = attribute_number<uint8>(data);
        });
        return;
      default: return;
    }
  });
}

void take_link_attribute(const nlattr& attribute, kernel_link& link) {
  switch (type_of(attribute)) {
    case IFLA_IFNAME: link.name = text_of(attribute); return;
    case IFLA_IFALIAS: link.alias = text_of(attribute); return;
    case IFLA_MTU: link.mtu_bytes = attribute_number<uint32>(attribute); return;
    case IFLA_MIN_MTU: link.lowest_mtu_bytes = attribute_number<uint32>(attribute); return;
    case IFLA_MAX_MTU: link.highest_mtu_bytes = attribute_number<uint32>(attribute); return;
    case IFLA_OPERSTATE: link.operation = attribute_number<uint8>(attribute); return;
    case IFLA_MASTER: link.master = attribute_number<uint32>(attribute); return;
    case IFLA_LINK: link.parent = attribute_number<uint32>(attribute); return;
    case IFLA_CARRIER_CHANGES: link.carrier_changes = attribute_number<uint32>(attribute); return;
    case IFLA_ADDRESS: link.mac = attribute_number<std::array<uint8, 6>>(attribute); return;
    case IFLA_PERM_ADDRESS:
      if (mnl_attr_get_payload_len(&attribute) == link.mac.size())
        link.permanent_mac = attribute_number<std::array<uint8, 6>>(attribute);
      return;
    case IFLA_STATS64: return take_statistics(attribute, link.counted);
    case IFLA_LINKINFO: return take_info(attribute, link);
    default: return;
  }
}

// ---- Bridge VLANs ---------------------------------------------------------------------------------------------------

// A VLAN, or one end of a range of them.
void take_vlan(const nlattr& attribute, kernel_link& link, uint16& range_begin) {
  const auto info = attribute_number<bridge_vlan_info>(attribute);
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

// This dump includes the counters, all that RTM_GETSTATS would report: no second request is needed.
std::vector<kernel_link> dump_links(netlink_socket& route) {
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

uint32 device_of_route(const nlmsghdr& message) {
  uint32 device = 0;
  if (message.nlmsg_type != RTM_NEWROUTE) return device;
  for_each_attribute(message, sizeof(rtmsg), [&device](const nlattr& attribute) {
    if (type_of(attribute) == RTA_OIF) device = attribute_number<uint32>(attribute);
  });
  return device;
}

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

uint32 decode_default_route(const nlmsghdr& message) {
  if (message.nlmsg_type != RTM_NEWROUTE || mnl_nlmsg_get_payload_len(&message) < sizeof(rtmsg)) return 0;
  const auto* const route = static_cast<const rtmsg*>(mnl_nlmsg_get_payload(&message));
  return route->rtm_dst_len != 0 ? 0 : device_of_route(message);
}

std::optional<kernel_link> decode_link(const nlmsghdr& message) {
  if (message.nlmsg_type != RTM_NEWLINK || mnl_nlmsg_get_payload_len(&message) < sizeof(ifinfomsg)) return std::nullopt;
  const auto* const head = static_cast<const ifinfomsg*>(mnl_nlmsg_get_payload(&message));
  kernel_link link;
  link.number = static_cast<uint32>(head->ifi_index);
  link.flags = head->ifi_flags;
  for_each_attribute(message, sizeof *head, [&link](const nlattr& it) { take_link_attribute(it, link); });
  return link.name.empty() ? std::nullopt : std::optional(std::move(link));
}

void decode_bridge_vlans(const nlmsghdr& message, std::vector<kernel_link>& links) {
  if (message.nlmsg_type != RTM_NEWLINK || mnl_nlmsg_get_payload_len(&message) < sizeof(ifinfomsg)) return;
  const auto* const head = static_cast<const ifinfomsg*>(mnl_nlmsg_get_payload(&message));
  kernel_link* const link = find_link(links, static_cast<uint32>(head->ifi_index));
  if (link == nullptr) return;
  for_each_attribute(message, sizeof *head, [link](const nlattr& attribute) {
    if (type_of(attribute) != IFLA_AF_SPEC) return;
    uint16 range_begin = 0;
    for_each_nested(attribute, [&](const nlattr& vlan) {
      if (type_of(vlan) == IFLA_BRIDGE_VLAN_INFO) take_vlan(vlan, *link, range_begin);
    });
  });
}

void decode_address(const nlmsghdr& message, std::vector<kernel_link>& links) {
  if (message.nlmsg_type != RTM_NEWADDR || mnl_nlmsg_get_payload_len(&message) < sizeof(ifaddrmsg)) return;
  const auto* const head = static_cast<const ifaddrmsg*>(mnl_nlmsg_get_payload(&message));
  kernel_link* const link = find_link(links, head->ifa_index);
  if (link == nullptr) return;
  ip_address address{.is_ipv6 = head->ifa_family == AF_INET6, .bytes = {}, .prefix_length = head->ifa_prefixlen};
  bool is_known = false;
  for_each_attribute(message, sizeof *head, [&](const nlattr& attribute) {
    const bool is_local = type_of(attribute) == IFA_LOCAL;
    if (!is_local && (is_known || type_of(attribute) != IFA_ADDRESS)) return;
    const std::size_t size = mnl_attr_get_payload_len(&attribute);
    if (size > address.bytes.size()) return;
    std::memcpy(address.bytes.data(), mnl_attr_get_payload(&attribute), size);
    is_known = true;
  });
  if (is_known) link->addresses.push_back(address);
}

bool is_physical(const kernel_link& link) {
  return (link.kind.empty() && (link.flags & IFF_LOOPBACK) == 0) || link.kind == "dsa";
}

kernel_link* find_link(std::vector<kernel_link>& links, uint32 number) {
  return find_by<&kernel_link::number>(links, number);
}

std::vector<kernel_link> read_links(netlink_socket& route) {
  std::vector<kernel_link> links = dump_links(route);
  const bool has_bridge =
      std::any_of(links.begin(), links.end(), [](const kernel_link& link) { return link.slave_kind == "bridge"; });
  if (has_bridge) dump_bridge_vlans(route, links);
  dump_addresses(route, links);
  read_port_settings(links);
  return links;
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
  route.ask(request, [&device](const nlmsghdr& message) { device = device_of_route(message); });
  return device;
}

uint32 default_route_device(netlink_socket& route) {
  for (const char* const somewhere : kSomewhere)
    if (const uint32 device = device_of_default_route_to(route, somewhere); device != 0) return device;
  return 0;
}

}  // namespace host
