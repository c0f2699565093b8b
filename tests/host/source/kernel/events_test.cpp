// Events in messages made by hand: what differs from what was known, what is lost, what is not for everyone.
#include "source/kernel/events.h"

#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/if_addr.h>
#include <linux/neighbour.h>
#include <linux/rtnetlink.h>
#include <net/if.h>
#include <netinet/in.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <functional>
#include <string>
#include <utility>

#include "host/source/kernel/kernel_recording.h"
#include "host/source/kernel/recorded_switch.h"
#include "host/switch/stopped_clock.h"
#include "source/kernel/tables.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

constexpr uint32 kLeft = 7, kBridge = 9;
constexpr uint32 kMoment = 1'800'000'000;
constexpr uint8 kOperationDown = 2, kOperationUp = 6;  // IF_OPER_*
constexpr mac_address kFirstMac = {2, 0, 0, 0, 0, 1}, kSecondMac = {2, 0, 0, 0, 0, 2};
constexpr std::array<uint8, 4> kAddress = {192, 0, 2, 1}, kNeighbor = {192, 0, 2, 9};

using put_attributes = std::function<void(nlmsghdr&)>;

netlink_request of_type(netlink_request message, uint16 type) {
  message.head().nlmsg_type = type;
  return message;
}

std::vector<netlink_request> messages(auto... all) {
  std::vector<netlink_request> list;
  (list.push_back(std::move(all)), ...);
  return list;
}

// A veth device as it is unless a test changes it.
recorded_link veth() { return {.number = kLeft, .name = "left", .kind = "veth", .operation = kOperationDown}; }
recorded_link bridge() { return {.number = kBridge, .name = "br0", .kind = "bridge", .operation = kOperationUp}; }

netlink_request link_with(const recorded_link& link, const put_attributes& put) {
  netlink_request message = link_message(link);
  put(message.head());  // a later attribute takes precedence
  return message;
}

netlink_request address_message(uint16 type, uint8 flags = IFA_F_PERMANENT) {
  netlink_request message(type, 0);
  message.extra<ifaddrmsg>() = {AF_INET, 24, flags, RT_SCOPE_UNIVERSE, kLeft};
  mnl_attr_put(&message.head(), IFA_LOCAL, kAddress.size(), kAddress.data());
  mnl_attr_put(&message.head(), IFA_ADDRESS, kAddress.size(), kAddress.data());
  mnl_attr_put_strz(&message.head(), IFA_LABEL, "left");
  return message;
}

netlink_request neighbor_message(uint16 type, uint16 state, const mac_address& mac = kFirstMac,
                                 uint8 family = AF_INET) {
  netlink_request message(type, 0);
  auto& head = message.extra<ndmsg>();
  head.ndm_family = family;
  head.ndm_ifindex = kLeft;
  head.ndm_state = state;
  mnl_attr_put(&message.head(), NDA_DST, kNeighbor.size(), kNeighbor.data());
  mnl_attr_put(&message.head(), NDA_LLADDR, mac.size(), mac.data());
  return message;
}

netlink_request power_message(uint8 command, uint8 policy, uint8 mode) {
  return ethtool_message(command, ETHTOOL_A_MODULE_HEADER, kLeft, [=](nlmsghdr& it) {
    mnl_attr_put_u8(&it, ETHTOOL_A_MODULE_POWER_MODE_POLICY, policy);
    mnl_attr_put_u8(&it, ETHTOOL_A_MODULE_POWER_MODE, mode);
  });
}

std::string text_of(const event_value& value) {
  if (const auto* const text = std::get_if<std::string>(&value)) return *text;
  if (const auto* const mac = std::get_if<mac_address>(&value)) return "mac " + std::to_string(mac->back());
  if (const auto* const address = std::get_if<ip_address>(&value))
    return "address " + std::to_string(address->bytes[3]) + "/" + std::to_string(address->prefix_length);
  return "--";
}

std::string text_of(const switch_event& it) {
  return it.device.name + " " + it.change + ": " + text_of(it.old_value) + " -> " + text_of(it.new_value);
}

using texts = std::vector<std::string>;

texts texts_of(const std::vector<switch_event>& events) {
  texts all;
  for (const switch_event& it : events) all.push_back(text_of(it));
  return all;
}

// A finder that knows the two devices, and what the messages of a test make of it.
class Events : public testing::Test {
 protected:
  Events() {
    known_after(link_message(veth()));
    known_after(link_message(bridge()));
  }

  void known_after(netlink_request message) { events_after(std::move(message)); }
  std::vector<switch_event> events_after(netlink_request message) {
    std::vector<switch_event> events;
    finder_.take_route(message.head(), events);
    return events;
  }
  texts after(netlink_request message) { return texts_of(events_after(std::move(message))); }

  event_finder finder_{known_devices()};
};

// ---- Links ----------------------------------------------------------------------------------------------------------

TEST_F(Events, LinkThatIsSetUpHasAnEventForEachOfItsStates) {
  recorded_link now = veth();
  now.flags = IFF_UP | IFF_RUNNING;
  now.operation = kOperationUp;
  EXPECT_EQ(after(link_message(now)), (texts{"left admin_state: down -> up", "left oper_state: down -> up"}));
  EXPECT_EQ(after(link_message(now)), texts()) << "the same again";
}

TEST_F(Events, AttributesOfALinkHaveTheirOldAndNewValues) {
  EXPECT_EQ(after(link_with(veth(),
                            [](nlmsghdr& it) {
                              mnl_attr_put_u32(&it, IFLA_MTU, 9000);
                              mnl_attr_put(&it, IFLA_ADDRESS, kFirstMac.size(), kFirstMac.data());
                              mnl_attr_put_strz(&it, IFLA_IFALIAS, "Uplink");
                              mnl_attr_put_u32(&it, IFLA_MASTER, kBridge);
                            })),
            (texts{"left mtu: 1500 -> 9000", "left mac: mac 0 -> mac 1", "left master: -- -> br0",
                   "left description: -- -> Uplink"}));
}

TEST_F(Events, RenamedLinkHasItsNewName) {
  recorded_link now = veth();
  now.name = "right";
  EXPECT_EQ(after(link_message(now)), texts{"right name: left -> right"});
}

TEST_F(Events, LinkThatAppearsOrGoesHasItsType) {
  EXPECT_EQ(after(link_message({.number = 8, .name = "vlan", .kind = "vlan", .parent = kLeft, .vlan = 10})),
            texts{"vlan added: -- -> vlan 10 of left"});
  EXPECT_EQ(after(of_type(link_message(veth()), RTM_DELLINK)), texts{"left removed: veth -> --"});
  EXPECT_EQ(after(of_type(link_message(veth()), RTM_DELLINK)), texts()) << "it is not known any more";
}

// The port leaves its bridge, or changes its state there; the device stays.
TEST_F(Events, MessagesOfABridgeAboutItsPortsAreNotThoseOfTheLink) {
  for (const uint16 type : {uint16{RTM_NEWLINK}, uint16{RTM_DELLINK}}) {
    netlink_request message =
        of_type(link_with(veth(), [](nlmsghdr& it) { mnl_attr_put_u32(&it, IFLA_MTU, 9000); }), type);
    static_cast<ifinfomsg*>(mnl_nlmsg_get_payload(&message.head()))->ifi_family = AF_BRIDGE;
    EXPECT_EQ(after(std::move(message)), texts());
  }
}

// Such as those of wireless networks, which have nothing but the name.
TEST_F(Events, MessageAboutAPartOfALinkChangesNothingElse) {
  netlink_request message(RTM_NEWLINK, 0);
  message.extra<ifinfomsg>().ifi_index = kLeft;
  mnl_attr_put_strz(&message.head(), IFLA_IFNAME, "left");
  EXPECT_EQ(after(std::move(message)), texts());
}

TEST_F(Events, MessagesThatAreCutAreIgnored) {
  for (netlink_request& message :
       messages(link_message(bridge()), address_message(RTM_NEWADDR), neighbor_message(RTM_NEWNEIGH, NUD_REACHABLE))) {
    message.head().nlmsg_len = NLMSG_HDRLEN + 2;
    EXPECT_EQ(after(std::move(message)), texts());
  }
}

// ---- Addresses ------------------------------------------------------------------------------------------------------

TEST_F(Events, AddressAppearsChangesAndGoes) {
  const auto added = events_after(address_message(RTM_NEWADDR, IFA_F_TENTATIVE));
  EXPECT_EQ(texts_of(added), texts{"left added: -- -> address 1/24"});
  ASSERT_EQ(added.size(), 1U);
  EXPECT_EQ(added[0].kind, event_kind::address);
  EXPECT_EQ(added[0].device.number, kLeft);
  ASSERT_TRUE(added[0].address);
  EXPECT_EQ(added[0].address->prefix_length, 24U);
  EXPECT_EQ(after(address_message(RTM_NEWADDR)), texts{"left flags: primary,tentative -> primary,permanent"});
  EXPECT_EQ(after(address_message(RTM_DELADDR)), texts{"left removed: address 1/24 -> --"});
  EXPECT_EQ(after(address_message(RTM_DELADDR)), texts());
}

TEST_F(Events, AddressesOfADeviceEndWithIt) {
  known_after(address_message(RTM_NEWADDR));
  known_after(of_type(link_message(veth()), RTM_DELLINK));
  EXPECT_EQ(after(address_message(RTM_DELADDR)), texts());
}

// ---- Neighbors ------------------------------------------------------------------------------------------------------

TEST_F(Events, NeighborAppearsChangesAndGoes) {
  const auto added = events_after(neighbor_message(RTM_NEWNEIGH, NUD_REACHABLE));
  EXPECT_EQ(texts_of(added), texts{"left added: -- -> reachable"});
  ASSERT_EQ(added.size(), 1U);
  EXPECT_EQ(added[0].kind, event_kind::neighbor);
  EXPECT_EQ(added[0].mac, kFirstMac);
  EXPECT_EQ(after(neighbor_message(RTM_NEWNEIGH, NUD_STALE, kSecondMac)),
            (texts{"left state: reachable -> stale", "left mac: mac 1 -> mac 2"}));
  EXPECT_EQ(after(neighbor_message(RTM_DELNEIGH, NUD_NONE)), texts{"left removed: stale -> --"})
      << "the kernel may have no state any more";
}

TEST_F(Events, EntriesThatNeedNoResolutionAndThoseOfBridgesAreNoNeighbors) {
  EXPECT_EQ(after(neighbor_message(RTM_NEWNEIGH, NUD_NOARP)), texts());
  EXPECT_EQ(after(neighbor_message(RTM_NEWNEIGH, NUD_REACHABLE, kFirstMac, AF_BRIDGE)), texts());
}

// ---- Modules --------------------------------------------------------------------------------------------------------

TEST_F(Events, PowerOfAModuleHasItsOldAndNewMode) {
  std::vector<switch_event> events;
  finder_.take_ethtool(
      power_message(ETHTOOL_MSG_MODULE_NTF, ETHTOOL_MODULE_POWER_MODE_POLICY_AUTO, ETHTOOL_MODULE_POWER_MODE_LOW)
          .head(),
      events);
  EXPECT_EQ(texts_of(events), (texts{"left power_mode_policy: -- -> auto", "left power_mode: -- -> low"}));
  events.clear();
  finder_.take_ethtool(
      power_message(ETHTOOL_MSG_MODULE_NTF, ETHTOOL_MODULE_POWER_MODE_POLICY_AUTO, ETHTOOL_MODULE_POWER_MODE_HIGH)
          .head(),
      events);
  EXPECT_EQ(texts_of(events), texts{"left power_mode: low -> high"});
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].kind, event_kind::module);
  events.clear();
  finder_.take_ethtool(power_message(ETHTOOL_MSG_RINGS_NTF, 1, 1).head(), events);
  EXPECT_EQ(texts_of(events), texts()) << "of another change";
}

// ---- Readings -------------------------------------------------------------------------------------------------------

// What a finder knows after messages.
known_devices known_from(std::vector<netlink_request> messages) {
  known_devices known;
  for (netlink_request& it : messages) {
    const nlmsghdr& message = it.head();
    if (auto link = decode_link(message)) known.links.push_back(*link);
    if (auto row = address_in_message(message)) known.addresses.emplace(key_of(row->device, row->address), *row);
    if (auto row = neighbor_in_message(message)) known.neighbors.emplace(key_of(row->device, row->address), *row);
  }
  return known;
}

TEST_F(Events, AnotherReadingHasTheDifferences) {
  known_after(address_message(RTM_NEWADDR));
  recorded_link up = veth();
  up.flags = IFF_UP;
  std::vector<switch_event> events;
  finder_.take_reading(
      known_from(messages(link_message(up), link_message({.number = 12, .name = "new", .kind = "veth"}),
                          neighbor_message(RTM_NEWNEIGH, NUD_REACHABLE))),
      events);
  EXPECT_EQ(texts_of(events),
            (texts{"br0 removed: bridge -> --", "left admin_state: down -> up", "new added: -- -> veth",
                   "left removed: address 1/24 -> --", "left added: -- -> reachable"}));
  events.clear();
  finder_.take_reading(
      known_from(messages(link_message(up), link_message({.number = 12, .name = "new", .kind = "veth"}),
                          neighbor_message(RTM_NEWNEIGH, NUD_REACHABLE))),
      events);
  EXPECT_EQ(texts_of(events), texts());
}

// ---- The reader -----------------------------------------------------------------------------------------------------

class EventReader : public testing::Test {
 protected:
  EventReader() { record_switch(kernel_); }

  std::unique_ptr<event_reader> open() {
    return open_kernel_events([](const std::vector<kernel_link>& links) { return map_devices(links, kEth0, {}); });
  }
  // Port 1/NUMBER.
  static if_index_t port(uint32 number) { return ethernet_index(IF_TYPE_ETHERNET, 0, number - 1, 0); }

  recorded_kernel kernel_;
  stopped_clock clock_{kMoment};
};

TEST_F(EventReader, SubscribesToTheGroupsOfLinksAddressesNeighborsAndModules) {
  const auto reader = open();
  EXPECT_EQ(kernel_.groups(NETLINK_ROUTE),
            (std::vector<uint32>{RTNLGRP_LINK, RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV6_IFADDR, RTNLGRP_NEIGH}));
  EXPECT_EQ(kernel_.groups(NETLINK_GENERIC), std::vector<uint32>{recorded_kernel::kMonitorGroup});
  EXPECT_EQ(reader->descriptors().size(), 2U);
}

TEST_F(EventReader, KernelWithoutEthtoolPublishesNothingOfModules) {
  kernel_.has_ethtool = false;
  EXPECT_EQ(open()->descriptors().size(), 1U);
}

TEST_F(EventReader, EventsHaveTheirTimeAndInterface) {
  const auto reader = open();
  std::vector<switch_event> events;
  EXPECT_TRUE(reader->read(events));
  EXPECT_EQ(texts_of(events), texts());
  kernel_.publish(NETLINK_ROUTE, link_message({.number = kVeth0, .name = "veth0", .kind = "veth", .operation = 2}));
  kernel_.publish(NETLINK_ROUTE, link_message({.number = 20, .name = "veth1", .kind = "veth"}));
  EXPECT_TRUE(reader->read(events));
  EXPECT_EQ(texts_of(events),
            (texts{"veth0 admin_state: up -> down", "veth0 oper_state: up -> down", "veth1 added: -- -> veth"}));
  ASSERT_EQ(events.size(), 3U);
  EXPECT_EQ(events[0].at_sec, kMoment);
  EXPECT_EQ(events[0].device.if_index, port(kVeth0));
  EXPECT_EQ(events[2].device.if_index, port(20)) << "a new device has its interface at once";
}

TEST_F(EventReader, RemovedDeviceStillHasItsInterface) {
  const auto reader = open();
  kernel_.publish(NETLINK_ROUTE,
                  of_type(link_message({.number = kVeth0, .name = "veth0", .kind = "veth"}), RTM_DELLINK));
  std::vector<switch_event> events;
  EXPECT_TRUE(reader->read(events));
  ASSERT_EQ(texts_of(events), texts{"veth0 removed: veth -> --"});
  EXPECT_EQ(events[0].device.if_index, port(kVeth0));
}

TEST_F(EventReader, ModulesThatReportTheirPowerHaveAnOldValue) {
  kernel_.tell(recorded_kernel::ethtool(ETHTOOL_MSG_MODULE_GET), power_message(ETHTOOL_MSG_MODULE_GET_REPLY, 2, 1));
  const auto reader = open();
  kernel_.publish(NETLINK_GENERIC, power_message(ETHTOOL_MSG_MODULE_NTF, 2, 2));
  std::vector<switch_event> events;
  EXPECT_TRUE(reader->read(events));
  EXPECT_EQ(texts_of(events), texts{"swp5 power_mode: low -> high"});
}

// What came before the loss is shown first.
TEST_F(EventReader, LostEventsAreFoundByAnotherReading) {
  const auto reader = open();
  kernel_.publish(NETLINK_ROUTE, link_message({.number = kVeth0, .name = "veth0", .kind = "veth", .operation = 2}));
  kernel_.fail_to_publish(NETLINK_ROUTE, ENOBUFS);
  std::vector<switch_event> events;
  EXPECT_FALSE(reader->read(events));
  EXPECT_EQ(texts_of(events), (texts{"veth0 admin_state: up -> down", "veth0 oper_state: up -> down",
                                     "veth0 admin_state: down -> up", "veth0 oper_state: down -> up"}))
      << "the reading has the state of the recording";
  events.clear();
  EXPECT_TRUE(reader->read(events));
  EXPECT_EQ(texts_of(events), texts());
}

TEST_F(EventReader, ErrorOfTheKernelIsReported) {
  const auto reader = open();
  kernel_.fail_to_publish(NETLINK_ROUTE, EIO);
  std::vector<switch_event> events;
  try {
    reader->read(events);
    FAIL() << "no error";
  } catch (const kernel_error& why) {
    EXPECT_STREQ(why.what(), "cannot read the events of the kernel: Input/output error");
  }
}

}  // namespace
}  // namespace host
