// The machine's own devices as a switch: messages of the kernel, which interface a device is, its state.
#include "source/kernel/kernel_source.h"

#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if_bridge.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <string>

#include "host/base/temporary_file.h"
#include "platform/card_config.h"
#include "platform/port_manager.h"
#include "source/kernel/ethtool.h"
#include "source/yaml/yaml_file_error.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

using testing::HasSubstr;

// The kernel's IF_OPER_* values; its header of that name clashes with libc's.
enum : uint8 { kNotPresent = 1, kDown = 2, kLowerLayerDown = 3, kDormant = 5, kUp = 6 };

// ---- Messages by hand -----------------------------------------------------------------------------------------------

netlink_request link_message(uint32 number, uint32 flags, const std::function<void(nlmsghdr&)>& put) {
  netlink_request message(RTM_NEWLINK, 0);
  auto& head = message.extra<ifinfomsg>();
  head.ifi_index = static_cast<int>(number);
  head.ifi_flags = flags;
  put(message.head());
  return message;
}

netlink_request veth_message() {
  return link_message(7, IFF_UP | IFF_RUNNING, [](nlmsghdr& it) {
    constexpr uint8 kMac[] = {2, 0, 0, 0, 0, 7};
    rtnl_link_stats64 stats{};
    stats.rx_packets = 11;
    stats.rx_bytes = 5'000'000'000;
    stats.tx_packets = 12;
    stats.tx_bytes = 13;
    stats.multicast = 4;
    stats.rx_dropped = 5;
    stats.rx_missed_errors = 6;
    mnl_attr_put_strz(&it, IFLA_IFNAME, "veth7");
    mnl_attr_put_u32(&it, IFLA_MTU, 9000);
    mnl_attr_put_u8(&it, IFLA_OPERSTATE, kUp);
    mnl_attr_put(&it, IFLA_ADDRESS, sizeof kMac, kMac);
    mnl_attr_put_u32(&it, IFLA_MASTER, 3);
    mnl_attr_put(&it, IFLA_STATS64, sizeof stats, &stats);
    nlattr* const info = mnl_attr_nest_start(&it, IFLA_LINKINFO);
    mnl_attr_put_strz(&it, IFLA_INFO_KIND, "veth");
    mnl_attr_put_strz(&it, IFLA_INFO_SLAVE_KIND, "bridge");
    nlattr* const data = mnl_attr_nest_start(&it, IFLA_INFO_SLAVE_DATA);
    mnl_attr_put_u8(&it, IFLA_BRPORT_STATE, BR_STATE_FORWARDING);
    mnl_attr_nest_end(&it, data);
    mnl_attr_nest_end(&it, info);
    mnl_attr_put_strz(&it, IFLA_IFALIAS, "to the lab");
  });
}

kernel_link device(uint32 number, const std::string& name, const std::string& kind) {
  kernel_link link;
  link.number = number;
  link.name = name;
  link.kind = kind;
  link.flags = IFF_UP | IFF_RUNNING;
  link.operation = kUp;
  return link;
}

kernel_link vlan_device(uint32 number, uint32 parent, uint32 vlan) {
  kernel_link link = device(number, "vlan" + std::to_string(number), "vlan");
  link.parent = parent;
  link.vlan = vlan;
  return link;
}

kernel_link loopback_device() {
  kernel_link link = device(1, "lo", "");
  link.flags |= IFF_LOOPBACK;
  return link;
}

if_index_t interface_of_device(const std::vector<mapped_device>& mapped, uint32 number) {
  for (const mapped_device& it : mapped)
    if (it.number == number) return it.if_index;
  return 0;
}

if_index_t port(uint32 slot, uint32 place, uint32 sub = 0) {
  return ethernet_index(IF_TYPE_ETHERNET, slot, place, sub);
}

machine machine_of(const std::vector<kernel_link>& links) {
  return machine_of_devices(links, map_devices(links, 0, {}));
}

interface state_of(uint32 flags, uint8 operation) {
  kernel_link link = device(1, "eth0", "");
  link.flags = flags;
  link.operation = operation;
  return machine_of({link}).interfaces.at(0);
}

// ---- Decoders -------------------------------------------------------------------------------------------------------

TEST(KernelMessages, ALinkTellsItsNameStateAndCounters) {
  netlink_request message = veth_message();
  const auto link = decode_link(message.head());
  ASSERT_TRUE(link);
  EXPECT_EQ(link->number, 7U);
  EXPECT_EQ(link->name, "veth7");
  EXPECT_EQ(link->kind, "veth");
  EXPECT_EQ(link->slave_kind, "bridge");
  EXPECT_EQ(link->alias, "to the lab");
  EXPECT_EQ(link->mac, (std::array<uint8, 6>{2, 0, 0, 0, 0, 7}));
  EXPECT_EQ(link->flags, unsigned{IFF_UP | IFF_RUNNING});
  EXPECT_EQ(link->operation, kUp);
  EXPECT_EQ(link->mtu_bytes, 9000U);
  EXPECT_EQ(link->master, 3U);
  EXPECT_EQ(link->bridge_state, BR_STATE_FORWARDING);
  EXPECT_EQ(link->counted.rx_packets, 11U);
  EXPECT_EQ(link->counted.rx_bytes, 5'000'000'000U);
  EXPECT_EQ(link->counted.tx_packets, 12U);
  EXPECT_EQ(link->counted.tx_bytes, 13U);
  EXPECT_EQ(link->counted.rx_multicast, 4U);
  EXPECT_EQ(link->counted.rx_dropped, 5U + 6U);
}

// What is cut off is missing; what is there is right. Sanitizers see each read behind the end.
TEST(KernelMessages, ALinkCutAtEachByteKeepsWhatIsWhole) {
  netlink_request message = veth_message();
  const uint32 whole = message.head().nlmsg_len;
  constexpr uint32 kPadding = 1;  // behind the last text
  uint32 named = 0;
  for (uint32 length = sizeof(nlmsghdr); length < whole - kPadding; ++length) {
    std::vector<char> cut(length);  // its end is the end of the block
    std::memcpy(cut.data(), &message.head(), length);
    auto& head = *reinterpret_cast<nlmsghdr*>(cut.data());
    head.nlmsg_len = length;
    const auto link = decode_link(head);
    if (!link) continue;
    ++named;
    EXPECT_EQ(link->name, "veth7") << length;
    EXPECT_TRUE(link->mtu_bytes == 9000 || link->mtu_bytes == 0) << length;
    EXPECT_NE(link->alias, "to the lab") << length;
  }
  EXPECT_GT(named, 100U);
}

TEST(KernelMessages, ALinkWithoutANameIsNone) {
  netlink_request message = link_message(7, IFF_UP, [](nlmsghdr& it) { mnl_attr_put_u32(&it, IFLA_MTU, 1500); });
  EXPECT_FALSE(decode_link(message.head()));
}

TEST(KernelMessages, OtherMessagesAreNoLinks) {
  netlink_request message = veth_message();
  message.head().nlmsg_type = RTM_DELLINK;
  EXPECT_FALSE(decode_link(message.head()));
}

TEST(KernelMessages, VlansOfABridgePortAreSinglesAndRanges) {
  netlink_request message = link_message(7, 0, [](nlmsghdr& it) {
    nlattr* const spec = mnl_attr_nest_start(&it, IFLA_AF_SPEC);
    for (const bridge_vlan_info info : std::initializer_list<bridge_vlan_info>{
             {BRIDGE_VLAN_INFO_PVID, 5}, {BRIDGE_VLAN_INFO_RANGE_BEGIN, 10}, {BRIDGE_VLAN_INFO_RANGE_END, 12}})
      mnl_attr_put(&it, IFLA_BRIDGE_VLAN_INFO, sizeof info, &info);
    mnl_attr_nest_end(&it, spec);
  });
  std::vector<kernel_link> links = {device(6, "a", ""), device(7, "b", "")};
  decode_bridge_vlans(message.head(), links);
  EXPECT_EQ(links[1].native_vlan, 5);
  EXPECT_TRUE(links[1].has_tagged_vlans);
  EXPECT_EQ(links[1].vlans, (std::vector<uint16>{5, 10, 11, 12}));
  EXPECT_TRUE(links[0].vlans.empty());
}

TEST(KernelMessages, TheDeviceBelowMayBeOneOfAnotherNamespace) {
  for (const bool is_other : {false, true}) {
    netlink_request message = link_message(7, 0, [is_other](nlmsghdr& it) {
      mnl_attr_put_strz(&it, IFLA_IFNAME, "veth0");
      mnl_attr_put_u32(&it, IFLA_LINK, 3);
      if (is_other) mnl_attr_put_u32(&it, IFLA_LINK_NETNSID, 0);
    });
    const auto link = decode_link(message.head());
    ASSERT_TRUE(link);
    EXPECT_EQ(link->parent, is_other ? 0U : 3U);
  }
}

TEST(KernelMessages, AVlanRangeThatIsNoneEndsAtTheLastVlan) {
  netlink_request message = link_message(7, 0, [](nlmsghdr& it) {
    nlattr* const spec = mnl_attr_nest_start(&it, IFLA_AF_SPEC);
    for (const bridge_vlan_info info : std::initializer_list<bridge_vlan_info>{{BRIDGE_VLAN_INFO_RANGE_BEGIN, 4094},
                                                                               {BRIDGE_VLAN_INFO_RANGE_END, 65535},
                                                                               {BRIDGE_VLAN_INFO_RANGE_END, 9}})
      mnl_attr_put(&it, IFLA_BRIDGE_VLAN_INFO, sizeof info, &info);
    mnl_attr_nest_end(&it, spec);
  });
  std::vector<kernel_link> links = {device(7, "b", "")};
  decode_bridge_vlans(message.head(), links);
  EXPECT_EQ(links[0].vlans, (std::vector<uint16>{4094, 4095, 9}));
}

TEST(KernelMessages, AnAddressIsTheLocalOne) {
  constexpr uint8 kHere[] = {192, 0, 2, 1};
  constexpr uint8 kPeer[] = {192, 0, 2, 2};
  netlink_request message(RTM_NEWADDR, 0);
  auto& head = message.extra<ifaddrmsg>();
  head.ifa_family = AF_INET;
  head.ifa_prefixlen = 24;
  head.ifa_index = 7;
  mnl_attr_put(&message.head(), IFA_LOCAL, sizeof kHere, kHere);
  mnl_attr_put(&message.head(), IFA_ADDRESS, sizeof kPeer, kPeer);
  std::vector<kernel_link> links = {device(7, "b", "")};
  decode_address(message.head(), links);
  ASSERT_EQ(links[0].addresses.size(), 1U);
  const ip_address& address = links[0].addresses[0];
  EXPECT_FALSE(address.is_ipv6);
  EXPECT_EQ(address.prefix_length, 24);
  EXPECT_TRUE(std::equal(std::begin(kHere), std::end(kHere), address.bytes.begin()));
}

TEST(KernelMessages, AnAddressThatIsTooLongIsNone) {
  constexpr uint8 kLong[20] = {};
  netlink_request message(RTM_NEWADDR, 0);
  message.extra<ifaddrmsg>().ifa_index = 7;
  mnl_attr_put(&message.head(), IFA_LOCAL, sizeof kLong, kLong);
  std::vector<kernel_link> links = {device(7, "b", "")};
  decode_address(message.head(), links);
  EXPECT_TRUE(links[0].addresses.empty());
}

netlink_request link_modes(uint32 number, uint32 speed, uint8 duplex) {
  netlink_request message(GENL_MIN_ID, 0);
  message.extra<genlmsghdr>().cmd = ETHTOOL_MSG_LINKMODES_GET_REPLY;
  nlattr* const header = mnl_attr_nest_start(&message.head(), ETHTOOL_A_LINKMODES_HEADER);
  mnl_attr_put_u32(&message.head(), ETHTOOL_A_HEADER_DEV_INDEX, number);
  mnl_attr_nest_end(&message.head(), header);
  mnl_attr_put_u32(&message.head(), ETHTOOL_A_LINKMODES_SPEED, speed);
  mnl_attr_put_u8(&message.head(), ETHTOOL_A_LINKMODES_DUPLEX, duplex);
  return message;
}

TEST(KernelMessages, SpeedAndDuplexAreThoseOfTheLink) {
  std::vector<kernel_link> links = {device(6, "a", ""), device(7, "b", "")};
  decode_link_modes(link_modes(6, 25000, 1).head(), links);
  decode_link_modes(link_modes(7, 10, 0).head(), links);
  EXPECT_EQ(links[0].speed_mbps, 25000U);
  EXPECT_EQ(links[0].is_full_duplex, true);
  EXPECT_EQ(links[1].speed_mbps, 10U);
  EXPECT_EQ(links[1].is_full_duplex, false);
}

TEST(KernelMessages, AnUnknownSpeedOrDuplexIsAbsent) {
  std::vector<kernel_link> links = {device(7, "b", "")};
  decode_link_modes(link_modes(7, 0xFFFFFFFF, 0xFF).head(), links);
  decode_link_modes(link_modes(99, 1000, 1).head(), links);
  EXPECT_FALSE(links[0].speed_mbps);
  EXPECT_FALSE(links[0].is_full_duplex);
}

TEST(KernelMessages, OnlyARouteForEveryAddressIsTheDefaultRoute) {
  const auto device_of_route = [](uint8 prefix_length) {
    netlink_request message(RTM_NEWROUTE, 0);
    message.extra<rtmsg>().rtm_dst_len = prefix_length;
    mnl_attr_put_u32(&message.head(), RTA_OIF, 7);
    return decode_default_route(message.head());
  };
  EXPECT_EQ(device_of_route(0), 7U);
  EXPECT_EQ(device_of_route(24), 0U);
}

// ---- Which interface a device is ------------------------------------------------------------------------------------

TEST(KernelMap, EachKindOfDeviceHasItsKindOfInterface) {
  const auto mapped = map_devices({loopback_device(), device(2, "eth0", ""), device(3, "veth0", "veth"),
                                   device(4, "bond0", "bond"), device(5, "dummy0", "dummy"), device(6, "br0", "bridge"),
                                   vlan_device(7, 3, 10), vlan_device(8, 4, 20), vlan_device(9, 6, 30)},
                                  2, {});
  EXPECT_EQ(interface_of_device(mapped, 1), numbered_index(IF_TYPE_LOOPBACK, 0));
  EXPECT_EQ(interface_of_device(mapped, 2), ethernet_index(IF_TYPE_MGMT, 0, 0));
  EXPECT_EQ(interface_of_device(mapped, 3), port(0, 2));
  EXPECT_EQ(interface_of_device(mapped, 4), channel_index(IF_TYPE_ETH_PORT_CHANNEL, 4));
  EXPECT_EQ(interface_of_device(mapped, 5), numbered_index(IF_TYPE_LOOPBACK, 5));
  EXPECT_EQ(interface_of_device(mapped, 6), numbered_index(IF_TYPE_VETHERNET, 6));
  EXPECT_EQ(interface_of_device(mapped, 7), port(0, 2, 10));
  EXPECT_EQ(interface_of_device(mapped, 8), channel_index(IF_TYPE_ETH_PORT_CHANNEL, 4, PC_SUBTYPE_ORDINARY, 20));
  EXPECT_EQ(interface_of_device(mapped, 9), numbered_index(IF_TYPE_VETHERNET, 9));
}

TEST(KernelMap, EachInterfaceHasItsReason) {
  const auto mapped =
      map_devices({loopback_device(), device(2, "eth0", ""), device(3, "eth1", ""), device(4, "bond0", "bond"),
                   device(5, "br0", "bridge"), vlan_device(6, 3, 10), vlan_device(7, 5, 20), device(8, "eth2", "")},
                  2, {{"eth2", {port(0, 30), false}}});
  ASSERT_EQ(mapped.size(), 8U);
  EXPECT_EQ(mapped[0].reason, name_reason::loopback);
  EXPECT_EQ(mapped[1].reason, name_reason::default_route);
  EXPECT_EQ(mapped[2].reason, name_reason::device_index);
  EXPECT_EQ(mapped[3].reason, name_reason::bond);
  EXPECT_EQ(mapped[4].reason, name_reason::device_index);
  EXPECT_EQ(mapped[5].reason, name_reason::vlan);
  EXPECT_EQ(mapped[6].reason, name_reason::device_index);
  EXPECT_EQ(mapped[7].reason, name_reason::map_file);
}

TEST(KernelMap, ADeviceHasNoInterfaceThatAnotherHad) {
  const known_interfaces known{.of_devices = {{3, {port(0, 7), name_reason::stored}}}, .of_others = {port(0, 8)}};
  const auto mapped =
      map_devices({device(3, "a", ""), device(8, "b", ""), device(9, "c", ""), device(10, "d", "")}, 0, {}, known);
  EXPECT_EQ(interface_of_device(mapped, 3), port(0, 7));
  EXPECT_EQ(interface_of_device(mapped, 8), port(0, 9));
  EXPECT_EQ(interface_of_device(mapped, 9), port(0, 10));
  EXPECT_EQ(interface_of_device(mapped, 10), port(0, 11));
}

TEST(KernelMap, APortOfASwitchChipIsAPort) {
  const auto mapped = map_devices({device(2, "lan1", "dsa")}, 0, {});
  EXPECT_EQ(interface_of_device(mapped, 2), port(0, 1));
}

TEST(KernelMap, AnInterfaceStaysWithItsDevice) {
  const std::vector<kernel_link> before = {device(5, "a", ""), device(6, "b", ""), device(300, "c", "")};
  const std::vector<kernel_link> after = {device(6, "renamed", ""), device(300, "c", "")};
  EXPECT_EQ(interface_of_device(map_devices(before, 0, {}), 6), port(0, 5));
  EXPECT_EQ(interface_of_device(map_devices(after, 0, {}), 6), port(0, 5));
  EXPECT_EQ(interface_of_device(map_devices(after, 0, {}), 300), port(1, 43));
}

TEST(KernelMap, TheUsersWordHolds) {
  const temporary_file file("eth0: ethernet 3/4\neth1: {routed: yes}\neth2: {interface: mgmt 0}\n");
  const auto mapped =
      map_devices({device(2, "eth0", ""), device(3, "eth1", ""), device(4, "eth2", "")}, 2, read_map_file(file.path()));
  EXPECT_EQ(interface_of_device(mapped, 2), port(2, 3));
  EXPECT_EQ(interface_of_device(mapped, 3), ethernet_index(IF_TYPE_ETHERNET_L3, 0, 2));
  EXPECT_EQ(interface_of_device(mapped, 4), ethernet_index(IF_TYPE_MGMT, 0, 0));
}

TEST(KernelMap, TwoDevicesOfOneInterfaceAreAnError) {
  const temporary_file file("eth0: ethernet 1/3\neth1: {interface: ethernet 1/3}\n");
  try {
    read_map_file(file.path());
    FAIL() << "the map file is taken";
  } catch (const yaml_file_error& error) {
    EXPECT_EQ(error.what(), file.path() + ":2: 'eth0' and 'eth1' are the same interface");
  }
}

TEST(KernelMap, AnInterfaceIsGivenOnce) {
  const temporary_file file("eth0: ethernet 1/3\n");
  const auto mapped = map_devices({device(2, "eth0", ""), device(3, "eth1", "")}, 0, read_map_file(file.path()));
  ASSERT_EQ(mapped.size(), 1U);
  EXPECT_EQ(mapped[0].device, "eth0");
}

std::string complaint_about(const std::string& text) {
  const temporary_file file(text);
  try {
    read_map_file(file.path());
  } catch (const yaml_file_error& error) {
    const std::string complaint = error.what();
    return complaint.starts_with(file.path()) ? complaint.substr(file.path().size()) : complaint;
  }
  return "";
}

TEST(KernelMap, AWrongFileIsNamedWithItsLine) {
  for (const char* const wrong : {"eth0: ethernet 1/1\neth1: ethernet 1/1-4\n", "eth0: ethernet 1/1\neth1: cheese 4\n",
                                  "eth0: ethernet 1/1\neth1: {colour: red}\n"})
    EXPECT_THAT(complaint_about(wrong), HasSubstr(":2")) << wrong;
  EXPECT_NE(complaint_about("eth0: [\n"), "");
  EXPECT_NE(complaint_about("just a text\n"), "");
  EXPECT_THROW(read_map_file("/no/such/file"), yaml_file_error);
}

// ---- The machine ----------------------------------------------------------------------------------------------------

TEST(KernelMachine, StateAndReasonAreWhatTheKernelKnows) {
  constexpr uint8 kNotConnected = 7, kInitializing = 10, kInactive = 11, kParentDown = 26;
  EXPECT_EQ(state_of(IFF_UP | IFF_RUNNING, kUp).state_reason, PM_REASON_NONE);
  EXPECT_EQ(state_of(0, kDown).state_reason, PM_REASON_ADMIN_DOWN);
  EXPECT_EQ(state_of(IFF_UP, kDown).state_reason, kNotConnected);
  EXPECT_EQ(state_of(IFF_UP, kDormant).state_reason, kInitializing);
  EXPECT_EQ(state_of(IFF_UP, kNotPresent).state_reason, kInactive);
  EXPECT_EQ(state_of(IFF_UP, kLowerLayerDown).state_reason, kParentDown);
  EXPECT_EQ(state_of(IFF_UP | IFF_RUNNING, kUp).oper_state, PM_PORT_STATE_UP);
  EXPECT_EQ(state_of(IFF_UP, kDown).oper_state, PM_PORT_STATE_DOWN);
  EXPECT_EQ(state_of(IFF_UP, kDown).settings.admin_state, PM_PORT_STATE_UP);
  EXPECT_EQ(state_of(0, kDown).settings.admin_state, PM_PORT_STATE_DOWN);
  EXPECT_EQ(state_of(IFF_UP | IFF_RUNNING, 0).oper_state, PM_PORT_STATE_UP);  // drivers that do not tell the state
}

TEST(KernelMachine, APortOfABridgeHasItsVlans) {
  kernel_link access = device(2, "a", "veth");
  access.slave_kind = "bridge";
  access.native_vlan = 5;
  access.vlans = {5};
  kernel_link trunk = access;
  trunk.number = 3;
  trunk.vlans = {5, 6, 7};
  trunk.has_tagged_vlans = true;
  trunk.bridge_state = BR_STATE_BLOCKING;
  const machine made = machine_of({access, trunk});
  EXPECT_EQ(made.interfaces[0].oper_mode, PM_PORT_MODE_ACCESS);
  EXPECT_EQ(made.interfaces[0].settings.access_vlan, 5);
  EXPECT_TRUE(made.interfaces[0].blocked_vlans.empty());
  EXPECT_EQ(made.interfaces[1].oper_mode, PM_PORT_MODE_TRUNK);
  EXPECT_EQ(made.interfaces[1].settings.native_vlan, 5);
  EXPECT_EQ(made.interfaces[1].settings.allowed_vlans, trunk.vlans);
  EXPECT_EQ(made.interfaces[1].blocked_vlans, trunk.vlans);
}

TEST(KernelMachine, APortThatItsBridgeDisabledIsSuspended) {
  constexpr uint8 kSuspended = 14;
  kernel_link link = device(2, "a", "veth");
  link.slave_kind = "bridge";
  link.bridge_state = BR_STATE_DISABLED;
  EXPECT_EQ(machine_of({link}).interfaces[0].state_reason, kSuspended);
}

TEST(KernelMachine, AMemberOfABondIsAMemberOfItsChannel) {
  kernel_link member = device(2, "a", "");
  member.slave_kind = "bond";
  member.master = 3;
  const machine made = machine_of({member, device(3, "bond0", "bond")});
  EXPECT_EQ(made.interfaces[0].settings.channel, channel_index(IF_TYPE_ETH_PORT_CHANNEL, 3));
}

TEST(KernelMachine, WhatTheKernelDoesNotTellIsAbsent) {
  const interface made = machine_of({device(2, "a", "")}).interfaces.at(0);
  EXPECT_EQ(made.oper_speed_mbps, std::nullopt);
  EXPECT_EQ(made.bandwidth_kbps, std::nullopt);
  EXPECT_EQ(made.oper_duplex, std::nullopt);
  EXPECT_EQ(made.oper_mode, std::nullopt);
  EXPECT_EQ(made.settings.access_vlan, std::nullopt);
  EXPECT_EQ(made.settings.native_vlan, std::nullopt);
  EXPECT_EQ(made.settings.admin_flow_control, std::nullopt);
  EXPECT_EQ(made.oper_flow_control, std::nullopt);
  EXPECT_EQ(made.settings.span_monitor, std::nullopt);
  EXPECT_EQ(made.delay_usec, std::nullopt);
  EXPECT_EQ(made.debounce_ms, std::nullopt);
  EXPECT_EQ(made.rate_mode, std::nullopt);
  EXPECT_EQ(made.mdix_on, std::nullopt);
  EXPECT_EQ(made.resets, std::nullopt);
  EXPECT_EQ(made.link_change_sec, std::nullopt);
  EXPECT_EQ(made.storm_control, std::nullopt);
  EXPECT_EQ(made.capabilities.speeds, std::nullopt);
  EXPECT_EQ(made.capabilities.duplexes, std::nullopt);
  EXPECT_EQ(made.capabilities.rx_flow_control, std::nullopt);
  EXPECT_EQ(made.capabilities.tx_flow_control, std::nullopt);
  EXPECT_EQ(made.capabilities.rate_modes, std::nullopt);
  EXPECT_EQ(made.capabilities.qos, std::nullopt);
  EXPECT_TRUE(made.addresses.empty());
}

// The kernel's name of a mode begins with its speed; the port's speeds are those that a switch has.
TEST(KernelMachine, AModeIsTheSpeedAndTheDuplexOfItsName) {
  struct mode {
    uint32 bit;
    std::string_view name;
  };
#define MODE(name) \
  mode { ETHTOOL_LINK_MODE_##name##_BIT, #name }
  for (const mode& it : {
           MODE(10baseT_Half),
           MODE(10baseT_Full),
           MODE(100baseT_Half),
           MODE(100baseT_Full),
           MODE(1000baseT_Half),
           MODE(1000baseT_Full),
           MODE(10000baseT_Full),
           MODE(2500baseX_Full),
           MODE(1000baseKX_Full),
           MODE(10000baseKX4_Full),
           MODE(10000baseKR_Full),
           MODE(10000baseR_FEC),
           MODE(20000baseMLD2_Full),
           MODE(20000baseKR2_Full),
           MODE(40000baseKR4_Full),
           MODE(40000baseCR4_Full),
           MODE(40000baseSR4_Full),
           MODE(40000baseLR4_Full),
           MODE(56000baseKR4_Full),
           MODE(56000baseCR4_Full),
           MODE(56000baseSR4_Full),
           MODE(56000baseLR4_Full),
           MODE(25000baseCR_Full),
           MODE(25000baseKR_Full),
           MODE(25000baseSR_Full),
           MODE(50000baseCR2_Full),
           MODE(50000baseKR2_Full),
           MODE(100000baseKR4_Full),
           MODE(100000baseSR4_Full),
           MODE(100000baseCR4_Full),
           MODE(100000baseLR4_ER4_Full),
           MODE(50000baseSR2_Full),
           MODE(1000baseX_Full),
           MODE(10000baseCR_Full),
           MODE(10000baseSR_Full),
           MODE(10000baseLR_Full),
           MODE(10000baseLRM_Full),
           MODE(10000baseER_Full),
           MODE(2500baseT_Full),
           MODE(5000baseT_Full),
           MODE(50000baseKR_Full),
           MODE(50000baseSR_Full),
           MODE(50000baseCR_Full),
           MODE(50000baseLR_ER_FR_Full),
           MODE(50000baseDR_Full),
           MODE(100000baseKR2_Full),
           MODE(100000baseSR2_Full),
           MODE(100000baseCR2_Full),
           MODE(100000baseLR2_ER2_FR2_Full),
           MODE(100000baseDR2_Full),
           MODE(200000baseKR4_Full),
           MODE(200000baseSR4_Full),
           MODE(200000baseLR4_ER4_FR4_Full),
           MODE(200000baseDR4_Full),
           MODE(200000baseCR4_Full),
           MODE(100baseT1_Full),
           MODE(1000baseT1_Full),
           MODE(400000baseKR8_Full),
           MODE(400000baseSR8_Full),
           MODE(400000baseLR8_ER8_FR8_Full),
           MODE(400000baseDR8_Full),
           MODE(400000baseCR8_Full),
           MODE(100000baseKR_Full),
           MODE(100000baseSR_Full),
           MODE(100000baseLR_ER_FR_Full),
           MODE(100000baseCR_Full),
           MODE(100000baseDR_Full),
           MODE(200000baseKR2_Full),
           MODE(200000baseSR2_Full),
           MODE(200000baseLR2_ER2_FR2_Full),
           MODE(200000baseDR2_Full),
           MODE(200000baseCR2_Full),
           MODE(400000baseKR4_Full),
           MODE(400000baseSR4_Full),
           MODE(400000baseLR4_ER4_FR4_Full),
           MODE(400000baseDR4_Full),
           MODE(400000baseCR4_Full),
           MODE(100baseFX_Half),
           MODE(100baseFX_Full),
           MODE(10baseT1L_Full),
       }) {
    kernel_link link = device(2, "a", "");
    link.supported.set(it.bit);
    const port_capabilities able = machine_of({link}).interfaces.at(0).capabilities;
    const uint32 mbps = static_cast<uint32>(std::stoul(std::string(it.name)));
    const bool is_known = mbps != 20'000 && mbps != 56'000;
    EXPECT_EQ(able.speeds, is_known ? speed_bit(mbps) : 0U) << it.name;
    EXPECT_EQ(fastest_mbps(*able.speeds), is_known ? mbps : 0U) << it.name;
    EXPECT_EQ(able.duplexes, it.name.ends_with("_Half") ? CRDCFG_DUPLEX_HALF : CRDCFG_DUPLEX_FULL) << it.name;
  }
#undef MODE
}

TEST(KernelMachine, ModesWithoutASpeedAreNone) {
  kernel_link link = device(2, "a", "");
  for (const uint32 bit :
       {ETHTOOL_LINK_MODE_FEC_NONE_BIT, ETHTOOL_LINK_MODE_FEC_RS_BIT, ETHTOOL_LINK_MODE_FEC_BASER_BIT,
        ETHTOOL_LINK_MODE_FEC_LLRS_BIT, ETHTOOL_LINK_MODE_Backplane_BIT, ETHTOOL_LINK_MODE_TP_BIT})
    link.supported.set(bit);
  EXPECT_EQ(machine_of({link}).interfaces.at(0).capabilities.speeds, 0U);
  EXPECT_EQ(machine_of({link}).interfaces.at(0).capabilities.duplexes, 0);
}

TEST(KernelMachine, AnMtuHasTheLimitsOfItsDevice) {
  const auto limits_of = [](uint32 lowest, uint32 highest) {
    netlink_request message = link_message(7, IFF_UP, [&](nlmsghdr& it) {
      mnl_attr_put_strz(&it, IFLA_IFNAME, "a");
      mnl_attr_put_u32(&it, IFLA_MIN_MTU, lowest);
      mnl_attr_put_u32(&it, IFLA_MAX_MTU, highest);
    });
    return machine_of({decode_link(message.head()).value()}).interfaces.at(0).capabilities.mtu;
  };
  using limits = port_capabilities::mtu_limits;
  EXPECT_EQ(limits_of(68, 9216), (limits{68, 9216}));
  EXPECT_EQ(limits_of(68, 65535), (limits{68, 65535}));
  EXPECT_EQ(limits_of(0, 0), (limits{0, 65535}));
  EXPECT_EQ(limits_of(1280, 2'000'000), (limits{1280, 65535}));
  EXPECT_EQ(machine_of({device(2, "a", "")}).interfaces.at(0).capabilities.mtu, (limits{0, 65535}));
}

TEST(KernelMachine, ManyDevicesHaveSlots) {
  std::vector<kernel_link> links;
  for (uint32 number = 1; number <= 2000; ++number)
    links.push_back(device(number, "veth" + std::to_string(number), "veth"));
  const machine made = machine_of(links);
  EXPECT_EQ(made.interfaces.size(), 2000U);
  EXPECT_EQ(made.num_slots, 8U);
  EXPECT_EQ(made.cards.size(), 8U);
}

TEST(KernelMachine, NoDeviceIsAMachineToo) {
  const machine made = machine_of({});
  EXPECT_TRUE(made.interfaces.empty());
  EXPECT_FALSE(made.name.empty());
}

}  // namespace
}  // namespace host
