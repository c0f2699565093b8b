// Decoders of the kernel's messages with each attribute cut at each byte, in a message that is otherwise whole.
#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if_bridge.h>
#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include <functional>
#include <string>
#include <vector>

#include "source/kernel/ethtool.h"
#include "source/kernel/links.h"

namespace host {
namespace {

constexpr uint32 kDevice = 7;

// An attribute below some nests, and the fewest bytes of its value that a decoder reads.
struct cut_attribute {
  std::vector<uint16> nests;
  uint16 type;
  std::vector<uint8> value;
  std::size_t least;
  std::function<bool()> is_read;
  std::function<void(nlmsghdr&)> beside = {};  // puts what belongs into the first nest
};

template <typename Number>
std::vector<uint8> bytes_in(Number number) {
  const auto* const bytes = reinterpret_cast<const uint8*>(&number);
  return {bytes, bytes + sizeof number};
}

std::vector<uint8> characters(const std::string& text) { return {text.begin(), text.end()}; }

void put(netlink_request& message, const cut_attribute& it, std::size_t size) {
  std::vector<nlattr*> nests;
  for (const uint16 nest : it.nests) {
    nests.push_back(mnl_attr_nest_start(&message.head(), nest));
    if (nests.size() == 1 && it.beside) it.beside(message.head());
  }
  mnl_attr_put(&message.head(), it.type, size, it.value.data());
  for (; !nests.empty(); nests.pop_back()) mnl_attr_nest_end(&message.head(), nests.back());
}

// Decodes a message for each cut of each attribute, which has that one alone besides what `begin` puts.
void expect_cuts(const std::vector<cut_attribute>& all, const std::function<netlink_request()>& begin,
                 const std::function<void(const nlmsghdr&)>& decode) {
  for (const cut_attribute& it : all)
    for (std::size_t size = 0; size <= it.value.size(); ++size) {
      netlink_request message = begin();
      put(message, it, size);
      decode(message.head());
      EXPECT_EQ(it.is_read(), size >= it.least) << "attribute " << it.type << ", " << size << " bytes";
    }
}

TEST(KernelCutAttributes, OfALink) {
  std::optional<kernel_link> link;
  rtnl_link_stats64 stats{};
  stats.tx_compressed = 9;  // the last counter that is read
  const std::vector<uint8> mac = {2, 0, 0, 0, 0, 7};
  const std::vector<cut_attribute> all = {
      {{}, IFLA_IFALIAS, characters("lab"), 1, [&] { return !link->alias.empty(); }},
      {{}, IFLA_MTU, bytes_in(uint32{9000}), 4, [&] { return link->mtu_bytes == 9000; }},
      {{}, IFLA_MIN_MTU, bytes_in(uint32{68}), 4, [&] { return link->lowest_mtu_bytes == 68; }},
      {{}, IFLA_MAX_MTU, bytes_in(uint32{9216}), 4, [&] { return link->highest_mtu_bytes == 9216; }},
      {{}, IFLA_OPERSTATE, bytes_in(uint8{6}), 1, [&] { return link->operation == 6; }},
      {{}, IFLA_MASTER, bytes_in(uint32{3}), 4, [&] { return link->master == 3; }},
      {{}, IFLA_LINK, bytes_in(uint32{4}), 4, [&] { return link->parent == 4; }},
      {{}, IFLA_CARRIER_CHANGES, bytes_in(uint32{5}), 4, [&] { return link->carrier_changes == 5; }},
      {{}, IFLA_ADDRESS, mac, 6, [&] { return link->mac[5] == 7; }},
      {{}, IFLA_PERM_ADDRESS, mac, 6, [&] { return link->permanent_mac.has_value(); }},
      {{}, IFLA_STATS64, bytes_in(stats), 23 * sizeof(uint64), [&] { return link->counted.tx_compressed == 9; }},
      {{IFLA_LINKINFO}, IFLA_INFO_KIND, characters("bond"), 1, [&] { return !link->kind.empty(); }},
      {{IFLA_LINKINFO}, IFLA_INFO_SLAVE_KIND, characters("bond"), 1, [&] { return !link->slave_kind.empty(); }},
      {{IFLA_LINKINFO, IFLA_INFO_DATA},
       IFLA_VLAN_ID,
       bytes_in(uint16{100}),
       2,
       [&] { return link->vlan == 100; },
       [](nlmsghdr& it) { mnl_attr_put_strz(&it, IFLA_INFO_KIND, "vlan"); }},
      {{IFLA_LINKINFO, IFLA_INFO_SLAVE_DATA},
       IFLA_BRPORT_STATE,
       bytes_in(uint8{BR_STATE_FORWARDING}),
       1,
       [&] { return link->bridge_state == BR_STATE_FORWARDING; },
       [](nlmsghdr& it) { mnl_attr_put_strz(&it, IFLA_INFO_SLAVE_KIND, "bridge"); }},
  };
  expect_cuts(
      all,
      [] {
        netlink_request message(RTM_NEWLINK, 0);
        message.extra<ifinfomsg>().ifi_index = kDevice;
        mnl_attr_put_strz(&message.head(), IFLA_IFNAME, "swp7");
        return message;
      },
      [&](const nlmsghdr& message) {
        link = decode_link(message);
        ASSERT_TRUE(link);
        EXPECT_EQ(link->name, "swp7");
      });
}

TEST(KernelCutAttributes, OfTheVlansOfABridgePort) {
  std::vector<kernel_link> links(1);
  links[0].number = kDevice;
  expect_cuts(
      {{{IFLA_AF_SPEC},
        IFLA_BRIDGE_VLAN_INFO,
        bytes_in(bridge_vlan_info{0, 10}),
        4,
        [&] { return links[0].vlans == std::vector<uint16>{10}; }}},
      [] {
        netlink_request message(RTM_NEWLINK, 0);
        message.extra<ifinfomsg>().ifi_index = kDevice;
        return message;
      },
      [&](const nlmsghdr& message) {
        links[0].vlans.clear();
        decode_bridge_vlans(message, links);
      });
}

TEST(KernelCutAttributes, OfAnAddress) {
  for (const uint8 family : {uint8{AF_INET}, uint8{AF_INET6}}) {
    std::vector<kernel_link> links(1);
    links[0].number = kDevice;
    const std::vector<uint8> bytes(family == AF_INET ? 4 : 16, 1);
    const auto is_read = [&] { return !links[0].addresses.empty(); };
    expect_cuts(
        {{{}, IFA_LOCAL, bytes, bytes.size(), is_read}, {{}, IFA_ADDRESS, bytes, bytes.size(), is_read}},
        [family] {
          netlink_request message(RTM_NEWADDR, 0);
          auto& head = message.extra<ifaddrmsg>();
          head.ifa_family = family;
          head.ifa_index = kDevice;
          return message;
        },
        [&](const nlmsghdr& message) {
          links[0].addresses.clear();
          decode_address(message, links);
        });
  }
}

TEST(KernelCutAttributes, OfARoute) {
  uint32 device = 0;
  expect_cuts(
      {{{}, RTA_OIF, bytes_in(kDevice), 4, [&] { return device == kDevice; }}},
      [] {
        netlink_request message(RTM_NEWROUTE, 0);
        message.extra<rtmsg>().rtm_family = AF_INET;
        return message;
      },
      [&](const nlmsghdr& message) { device = decode_default_route(message); });
}

// ---- Of ethtool -----------------------------------------------------------------------------------------------------

netlink_request reply_of_device(uint16 head) {
  netlink_request message(GENL_MIN_ID, 0);
  message.extra<genlmsghdr>().version = ETHTOOL_GENL_VERSION;
  put_ethtool_head(message, head, kDevice, 0);
  return message;
}

TEST(KernelCutAttributes, OfLinkModes) {
  std::vector<kernel_link> links;
  const std::vector<uint8> modes = bytes_in(uint32{0x21});
  const link_modes both(0x21);
  expect_cuts(
      {{{}, ETHTOOL_A_LINKMODES_AUTONEG, {1}, 1, [&] { return links[0].negotiates.has_value(); }},
       {{}, ETHTOOL_A_LINKMODES_SPEED, bytes_in(uint32{25'000}), 4, [&] { return links[0].speed_mbps == 25'000; }},
       {{}, ETHTOOL_A_LINKMODES_DUPLEX, {1}, 1, [&] { return links[0].is_full_duplex.has_value(); }},
       {{ETHTOOL_A_LINKMODES_OURS}, ETHTOOL_A_BITSET_MASK, modes, 4, [&] { return links[0].supported == both; }},
       {{ETHTOOL_A_LINKMODES_OURS}, ETHTOOL_A_BITSET_VALUE, modes, 4, [&] { return links[0].advertised == both; }},
       {{ETHTOOL_A_LINKMODES_PEER}, ETHTOOL_A_BITSET_VALUE, modes, 4, [&] { return links[0].partner == both; }}},
      [] { return reply_of_device(ETHTOOL_A_LINKMODES_HEADER); },
      [&](const nlmsghdr& message) {
        links.assign(1, {});
        links[0].number = kDevice;
        decode_link_modes(message, links);
      });
}

TEST(KernelCutAttributes, OfPause) {
  std::vector<kernel_link> links;
  const std::vector<uint8> frames = bytes_in(uint64{71});
  const auto pause = [&]() -> const pause_settings& { return *links[0].pause; };
  expect_cuts(
      {{{}, ETHTOOL_A_PAUSE_AUTONEG, {1}, 1, [&] { return pause().negotiates; }},
       {{}, ETHTOOL_A_PAUSE_RX, {1}, 1, [&] { return pause().receives; }},
       {{}, ETHTOOL_A_PAUSE_TX, {1}, 1, [&] { return pause().sends; }},
       {{ETHTOOL_A_PAUSE_STATS},
        ETHTOOL_A_PAUSE_STAT_RX_FRAMES,
        frames,
        8,
        [&] { return pause().received_frames == 71; }},
       {{ETHTOOL_A_PAUSE_STATS}, ETHTOOL_A_PAUSE_STAT_TX_FRAMES, frames, 8, [&] { return pause().sent_frames == 71; }}},
      [] { return reply_of_device(ETHTOOL_A_PAUSE_HEADER); },
      [&](const nlmsghdr& message) {
        links.assign(1, {});
        links[0].number = kDevice;
        decode_pause(message, links);
      });
}

TEST(KernelCutAttributes, OfALinkFault) {
  link_faults faults;
  const auto decode = [&](const nlmsghdr& message) {
    faults.clear();
    decode_link_fault(message, faults);
  };
  const auto begin = [] { return reply_of_device(ETHTOOL_A_LINKSTATE_HEADER); };
  expect_cuts({{{}, ETHTOOL_A_LINKSTATE_EXT_STATE, {2}, 1, [&] { return faults.contains(kDevice); }}}, begin, decode);
  expect_cuts(
      {{{}, ETHTOOL_A_LINKSTATE_EXT_SUBSTATE, {3}, 1, [&] { return faults[kDevice].substate == 3; }}},
      [&begin] {
        netlink_request message = begin();
        mnl_attr_put_u8(&message.head(), ETHTOOL_A_LINKSTATE_EXT_STATE, 2);
        return message;
      },
      decode);
}

TEST(KernelCutAttributes, OfDriverCounters) {
  std::map<uint32, driver_counter_values> counted;
  const auto has = [&](driver_counter counter) { return [&, counter] { return counted[kDevice][counter] == 8; }; };
  const auto in_group = [](nlmsghdr& it) { mnl_attr_put_u32(&it, ETHTOOL_A_STATS_GRP_ID, ETHTOOL_STATS_ETH_MAC); };
  const std::vector<uint8> value = bytes_in(uint64{8});
  const auto single = has(kDriverSingleCollisions);
  expect_cuts(
      {{{ETHTOOL_A_STATS_GRP, ETHTOOL_A_STATS_GRP_STAT},
        ETHTOOL_A_STATS_ETH_MAC_3_SINGLE_COL,
        value,
        8,
        single,
        in_group}},
      [] { return reply_of_device(ETHTOOL_A_STATS_HEADER); },
      [&](const nlmsghdr& message) {
        counted.clear();
        decode_driver_counters(message, counted);
      });
}

TEST(KernelCutAttributes, OfThePageOfAModule) {
  std::vector<uint8> page;
  expect_cuts(
      {{{}, ETHTOOL_A_MODULE_EEPROM_DATA, {3, 4}, 1, [&] { return !page.empty(); }}},
      [] { return reply_of_device(ETHTOOL_A_MODULE_EEPROM_HEADER); },
      [&](const nlmsghdr& message) { page = decode_module_page(message, kDevice); });
}

TEST(KernelCutAttributes, OfTheDeviceThatAReplyIsAbout) {
  std::vector<kernel_link> links;
  expect_cuts(
      {{{ETHTOOL_A_PAUSE_HEADER},
        ETHTOOL_A_HEADER_DEV_INDEX,
        bytes_in(kDevice),
        4,
        [&] { return links[0].pause.has_value(); }}},
      [] {
        netlink_request message(GENL_MIN_ID, 0);
        message.extra<genlmsghdr>().version = ETHTOOL_GENL_VERSION;
        return message;
      },
      [&](const nlmsghdr& message) {
        links.assign(1, {});
        links[0].number = kDevice;
        decode_pause(message, links);
      });
}

}  // namespace
}  // namespace host
