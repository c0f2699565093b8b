// Tables of the kernel from messages made by hand: rows, dumps in pieces, cut and lying answers.
#include "source/kernel/tables.h"

#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if_addr.h>
#include <linux/if_bridge.h>
#include <linux/neighbour.h>
#include <linux/rtnetlink.h>
#include <netinet/in.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <string>

#include "host/source/kernel/kernel_recording.h"
#include "host/source/kernel/recorded_switch.h"
#include "source/kernel/kernel_source.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

constexpr if_index_t kPort7 = 0x1A006000;

// A device with an interface, one without, and another one.
table_devices devices_for(const std::vector<if_index_t>& interfaces = {}) {
  std::vector<kernel_link> links(2);
  links[0].number = 7;
  links[0].name = "eth 7";
  links[0].mtu_bytes = 65536;
  links[1].number = 9;
  links[1].name = "left\"/\xff";
  const std::vector<mapped_device> mapped = {{"eth 7", 7, kPort7}};
  return table_devices(links, mapped, interfaces);
}

using put_attributes = std::function<void(nlmsghdr&)>;

template <typename Head>
netlink_request message_of(uint16 type, const Head& head, const put_attributes& put) {
  netlink_request message(type, 0, 4096);
  message.extra<Head>() = head;
  put(message.head());
  return message;
}

// ---- Addresses ------------------------------------------------------------------------------------------------------

constexpr std::array<uint8, 4> kLocal = {192, 0, 2, 1}, kPeer = {192, 0, 2, 2};
constexpr std::array<uint8, 16> kIpv6 = {0xfe, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7};

netlink_request address_message(uint32 device, uint8 flags = IFA_F_PERMANENT) {
  const ifaddrmsg head{AF_INET, 24, flags, RT_SCOPE_UNIVERSE, device};
  return message_of(RTM_NEWADDR, head, [](nlmsghdr& it) {
    const ifa_cacheinfo lifetimes{.ifa_prefered = 60, .ifa_valid = 0xFFFFFFFF, .cstamp = 1, .tstamp = 2};
    mnl_attr_put(&it, IFA_ADDRESS, kPeer.size(), kPeer.data());
    mnl_attr_put(&it, IFA_LOCAL, kLocal.size(), kLocal.data());
    mnl_attr_put_strz(&it, IFA_LABEL, "eth 7:1");
    mnl_attr_put(&it, IFA_CACHEINFO, sizeof lifetimes, &lifetimes);
  });
}

std::vector<address_row> address_rows(netlink_request message, const table_devices& devices = devices_for()) {
  std::vector<table_row> rows;
  decode_address_row(message.head(), devices, rows);
  std::vector<address_row> found;
  for (table_row& it : rows) found.push_back(std::get<address_row>(it));
  return found;
}

TEST(AddressRows, HaveWhatTheKernelReports) {
  const auto rows = address_rows(address_message(7));
  ASSERT_EQ(rows.size(), 1U);
  const address_row& row = rows[0];
  EXPECT_EQ(row.device.if_index, kPort7);
  EXPECT_EQ(row.device.name, "eth 7");
  EXPECT_EQ(row.device.number, 7U);
  EXPECT_EQ(row.mtu_bytes, 65536U);
  EXPECT_EQ(row.address, (ip_address{false, {192, 0, 2, 1}, 24}));
  EXPECT_EQ(row.peer, (ip_address{false, {192, 0, 2, 2}, 24}));
  EXPECT_EQ(row.scope, "global");
  EXPECT_EQ(row.flags, "primary,permanent");
  EXPECT_EQ(row.label, "eth 7:1");
  EXPECT_EQ(row.valid_seconds, std::nullopt) << "for ever";
  EXPECT_EQ(row.preferred_seconds, 60U);
}

TEST(AddressRows, ADeviceWithoutAnInterfaceHasItsName) {
  const auto rows = address_rows(address_message(9));
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].device.if_index, 0U);
  EXPECT_EQ(rows[0].device.name, "left\"/\xff");
}

TEST(AddressRows, ADeviceThatCameLaterHasItsNumber) {
  const auto rows = address_rows(address_message(11));
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].device.name, "");
  EXPECT_EQ(rows[0].device.number, 11U);
}

TEST(AddressRows, OfOtherInterfacesAreSkipped) {
  EXPECT_EQ(address_rows(address_message(7), devices_for({kPort7})).size(), 1U);
  EXPECT_EQ(address_rows(address_message(9), devices_for({kPort7})).size(), 0U);
  EXPECT_EQ(address_rows(address_message(11), devices_for({kPort7})).size(), 0U);
}

TEST(AddressRows, WordsOfFlagsAreThoseOfTheFamily) {
  EXPECT_EQ(address_rows(address_message(7, IFA_F_SECONDARY))[0].flags, "secondary");
  const ifaddrmsg head{AF_INET6, 64, IFA_F_PERMANENT, RT_SCOPE_LINK, 7};
  const auto rows = address_rows(message_of(RTM_NEWADDR, head, [](nlmsghdr& it) {
    mnl_attr_put(&it, IFA_ADDRESS, kIpv6.size(), kIpv6.data());
    mnl_attr_put_u32(&it, IFA_FLAGS, IFA_F_TEMPORARY | IFA_F_TENTATIVE | IFA_F_DADFAILED | IFA_F_STABLE_PRIVACY);
  }));
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].flags, "temporary,tentative,dadfailed,stable-privacy") << "those of 32 bits count";
  EXPECT_EQ(rows[0].scope, "link");
  EXPECT_EQ(rows[0].address, (ip_address{true, kIpv6, 64}));
  EXPECT_EQ(rows[0].peer, std::nullopt);
}

TEST(AddressRows, AnAddressOfAnotherSizeOrTypeIsNone) {
  const ifaddrmsg head{AF_INET6, 64, 0, RT_SCOPE_LINK, 7};
  for (const std::size_t size : {0U, 3U, 4U, 5U, 15U}) {
    const auto put = [size](nlmsghdr& it) { mnl_attr_put(&it, IFA_ADDRESS, size, kIpv6.data()); };
    EXPECT_TRUE(address_rows(message_of(RTM_NEWADDR, head, put)).empty()) << size;
  }
  netlink_request removed = address_message(7);
  removed.head().nlmsg_type = RTM_DELADDR;
  EXPECT_TRUE(address_rows(std::move(removed)).empty());
}

// ---- Neighbors ------------------------------------------------------------------------------------------------------

constexpr std::array<uint8, 6> kMac = {2, 0, 0, 0, 0, 9};

netlink_request neighbor_message(
    uint8 family, uint16 state, uint8 flags, const put_attributes& more = [](nlmsghdr&) {}) {
  const ndmsg head{family, 0, 0, 7, state, flags, 0};
  return message_of(RTM_NEWNEIGH, head, [&](nlmsghdr& it) {
    const nda_cacheinfo ages{.ndm_confirmed = 500, .ndm_used = 100, .ndm_updated = 700, .ndm_refcnt = 1};
    mnl_attr_put(&it, NDA_LLADDR, kMac.size(), kMac.data());
    mnl_attr_put(&it, NDA_CACHEINFO, sizeof ages, &ages);
    more(it);
  });
}

void put_ipv4(nlmsghdr& it) { mnl_attr_put(&it, NDA_DST, kPeer.size(), kPeer.data()); }

template <typename Row>
std::vector<Row> rows_of(netlink_request message,
                         void (*decode)(const nlmsghdr&, const table_devices&, std::vector<table_row>&)) {
  std::vector<table_row> rows;
  decode(message.head(), devices_for(), rows);
  std::vector<Row> found;
  for (table_row& it : rows) found.push_back(std::get<Row>(it));
  return found;
}

std::vector<neighbor_row> neighbor_rows(netlink_request message) {
  return rows_of<neighbor_row>(std::move(message), decode_neighbor_row);
}
std::vector<forwarding_row> forwarding_rows(netlink_request message) {
  return rows_of<forwarding_row>(std::move(message), decode_forwarding_row);
}

TEST(NeighborRows, HaveWhatTheKernelReports) {
  const auto rows = neighbor_rows(neighbor_message(AF_INET, NUD_STALE, NTF_ROUTER | NTF_EXT_LEARNED, put_ipv4));
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].device.if_index, kPort7);
  EXPECT_EQ(rows[0].address, (ip_address{false, {192, 0, 2, 2}, 32}));
  EXPECT_EQ(rows[0].mac, kMac);
  EXPECT_EQ(rows[0].state, "stale");
  EXPECT_EQ(rows[0].flags, "router,extern_learn");
  EXPECT_EQ(rows[0].age_seconds, 5U) << "500 ticks of a hundredth of a second";
}

TEST(NeighborRows, EntriesWithoutResolutionOrAddressAreNone) {
  EXPECT_TRUE(neighbor_rows(neighbor_message(AF_INET, NUD_NOARP, 0, put_ipv4)).empty());
  EXPECT_TRUE(neighbor_rows(neighbor_message(AF_INET, NUD_NONE, 0, put_ipv4)).empty());
  EXPECT_TRUE(neighbor_rows(neighbor_message(AF_INET, NUD_STALE, 0)).empty());
  EXPECT_TRUE(neighbor_rows(neighbor_message(AF_INET6, NUD_STALE, 0, put_ipv4)).empty()) << "four bytes";
}

TEST(NeighborRows, AHardwareAddressOfAnotherSizeIsAbsent) {
  const ndmsg head{AF_INET, 0, 0, 7, NUD_REACHABLE, 0, 0};
  const auto rows = neighbor_rows(message_of(RTM_NEWNEIGH, head, [](nlmsghdr& it) {
    put_ipv4(it);
    mnl_attr_put(&it, NDA_LLADDR, kIpv6.size(), kIpv6.data());
  }));
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].mac, std::nullopt);
  EXPECT_EQ(rows[0].age_seconds, std::nullopt);
}

TEST(ForwardingRows, HaveWhatTheKernelReports) {
  const auto rows =
      forwarding_rows(neighbor_message(AF_BRIDGE, NUD_REACHABLE, NTF_MASTER | NTF_OFFLOADED, [](nlmsghdr& it) {
        mnl_attr_put_u16(&it, NDA_VLAN, 20);
        mnl_attr_put_u32(&it, NDA_MASTER, 9);
        put_ipv4(it);
      }));
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].port.name, "eth 7");
  EXPECT_EQ(rows[0].bridge, "left\"/\xff");
  EXPECT_EQ(rows[0].mac, kMac);
  EXPECT_EQ(rows[0].vlan, 20U);
  EXPECT_EQ(rows[0].type, "dynamic");
  EXPECT_EQ(rows[0].flags, "offload,master");
  EXPECT_EQ(rows[0].remote, (ip_address{false, {192, 0, 2, 2}, 32}));
  EXPECT_EQ(rows[0].age_seconds, 7U);
}

TEST(ForwardingRows, TypesAreThoseOfTheState) {
  EXPECT_EQ(forwarding_rows(neighbor_message(AF_BRIDGE, NUD_PERMANENT, NTF_SELF)).at(0).type, "permanent");
  EXPECT_EQ(forwarding_rows(neighbor_message(AF_BRIDGE, NUD_NOARP, 0)).at(0).type, "static");
  EXPECT_EQ(forwarding_rows(neighbor_message(AF_BRIDGE, NUD_NOARP | NUD_PERMANENT, 0)).at(0).type, "permanent");
  EXPECT_TRUE(forwarding_rows(neighbor_message(AF_INET, NUD_PERMANENT, 0)).empty()) << "no entry of a bridge";
}

// ---- Spanning tree --------------------------------------------------------------------------------------------------

constexpr bridge_id kThisBridge = {0x80, 0, 2, 0, 0, 0, 0, 1}, kOtherBridge = {0x70, 0, 2, 0, 0, 0, 0, 2};

netlink_request bridge_message(uint32 spanning_tree, uint16 root_port) {
  ifinfomsg head{};
  head.ifi_index = 9;
  return message_of(RTM_NEWLINK, head, [=](nlmsghdr& it) {
    nlattr* const info = mnl_attr_nest_start(&it, IFLA_LINKINFO);
    mnl_attr_put_strz(&it, IFLA_INFO_KIND, "bridge");
    nlattr* const data = mnl_attr_nest_start(&it, IFLA_INFO_DATA);
    mnl_attr_put_u32(&it, IFLA_BR_STP_STATE, spanning_tree);
    mnl_attr_put(&it, IFLA_BR_BRIDGE_ID, kThisBridge.size(), kThisBridge.data());
    mnl_attr_put_u16(&it, IFLA_BR_ROOT_PORT, root_port);
    mnl_attr_nest_end(&it, data);
    mnl_attr_nest_end(&it, info);
  });
}

netlink_request port_message(uint8 state, const bridge_id& designated, uint16 designated_port) {
  ifinfomsg head{};
  head.ifi_index = 7;
  return message_of(RTM_NEWLINK, head, [=](nlmsghdr& it) {
    mnl_attr_put_u32(&it, IFLA_MASTER, 9);
    nlattr* const info = mnl_attr_nest_start(&it, IFLA_LINKINFO);
    mnl_attr_put_strz(&it, IFLA_INFO_SLAVE_KIND, "bridge");
    nlattr* const data = mnl_attr_nest_start(&it, IFLA_INFO_SLAVE_DATA);
    mnl_attr_put_u8(&it, IFLA_BRPORT_STATE, state);
    mnl_attr_put_u16(&it, IFLA_BRPORT_PRIORITY, 32);
    mnl_attr_put_u32(&it, IFLA_BRPORT_COST, 4);
    mnl_attr_put_u16(&it, IFLA_BRPORT_NO, 3);
    mnl_attr_put_u16(&it, IFLA_BRPORT_ID, 0x8003);
    mnl_attr_put_u16(&it, IFLA_BRPORT_DESIGNATED_PORT, designated_port);
    mnl_attr_put(&it, IFLA_BRPORT_ROOT_ID, kOtherBridge.size(), kOtherBridge.data());
    mnl_attr_put(&it, IFLA_BRPORT_BRIDGE_ID, designated.size(), designated.data());
    mnl_attr_nest_end(&it, data);
    mnl_attr_nest_end(&it, info);
  });
}

// The row of a port, whose message comes before that of its bridge.
bridge_port_row tree_row(netlink_request bridge, netlink_request port) {
  recorded_kernel kernel;
  kernel.tell(kLinks, std::move(port));
  kernel.tell(kLinks, std::move(bridge));
  std::vector<table_row> rows;
  EXPECT_FALSE(open_kernel_table(table_id::bridge_ports, devices_for())->next(rows));
  return rows.size() == 1 ? std::get<bridge_port_row>(rows[0]) : bridge_port_row{};
}

TEST(BridgePortRows, HaveWhatTheKernelReports) {
  const bridge_port_row row = tree_row(bridge_message(1, 3), port_message(BR_STATE_FORWARDING, kOtherBridge, 0x8001));
  EXPECT_EQ(row.port.name, "eth 7");
  EXPECT_EQ(row.bridge, "left\"/\xff");
  EXPECT_EQ(row.state, "forwarding");
  EXPECT_EQ(row.path_cost, 4U);
  EXPECT_EQ(row.priority, 32U);
  EXPECT_EQ(row.port_id, 0x8003U);
  EXPECT_EQ(row.root, kOtherBridge);
  EXPECT_EQ(row.designated_bridge, kOtherBridge);
}

TEST(BridgePortRows, RolesFollowFromTheBridge) {
  const auto role = [](uint32 spanning_tree, uint16 root_port, uint8 state, const bridge_id& designated, uint16 port) {
    return tree_row(bridge_message(spanning_tree, root_port), port_message(state, designated, port)).role;
  };
  EXPECT_EQ(role(1, 3, BR_STATE_FORWARDING, kOtherBridge, 0x8001), "root");
  EXPECT_EQ(role(1, 2, BR_STATE_FORWARDING, kThisBridge, 0x8003), "designated");
  EXPECT_EQ(role(1, 2, BR_STATE_BLOCKING, kOtherBridge, 0x8003), "alternate");
  EXPECT_EQ(role(1, 2, BR_STATE_BLOCKING, kThisBridge, 0x8002), "alternate") << "another port of this bridge is";
  EXPECT_EQ(role(1, 3, BR_STATE_DISABLED, kThisBridge, 0x8003), "disabled");
  EXPECT_EQ(role(0, 0, BR_STATE_FORWARDING, kThisBridge, 0x8003), std::nullopt);
  EXPECT_EQ(role(2, 0, BR_STATE_FORWARDING, kThisBridge, 0x8003), std::nullopt) << "a program runs spanning tree";
}

// ---- Dumps ----------------------------------------------------------------------------------------------------------

constexpr question kAddresses = {NETLINK_ROUTE, RTM_GETADDR, AF_INET};

std::unique_ptr<table_reader> open_addresses() { return open_kernel_table(table_id::ipv4_addresses, devices_for()); }

// The number of rows in each piece.
std::vector<std::size_t> pieces_of(table_reader& reader) {
  std::vector<std::size_t> sizes;
  for (bool goes_on = true; goes_on;) {
    std::vector<table_row> rows;
    goes_on = reader.next(rows);
    sizes.push_back(rows.size());
  }
  return sizes;
}

std::string fault_of(const std::function<void()>& read) {
  try {
    read();
  } catch (const std::runtime_error& why) {
    return why.what();
  }
  return "none";
}

using counts = std::vector<std::size_t>;

TEST(KernelTables, ADumpIsReadDatagramByDatagram) {
  recorded_kernel kernel;
  for (int i = 0; i < 5; ++i) kernel.tell(kAddresses, address_message(7));
  const auto reader = open_addresses();
  EXPECT_EQ(pieces_of(*reader), (counts{2, 2, 1, 0}));
  EXPECT_FALSE(reader->has_changed());
}

TEST(KernelTables, AnInterruptedDumpKeepsItsRowsAndHasChanged) {
  recorded_kernel kernel;
  for (int i = 0; i < 3; ++i) kernel.tell(kAddresses, address_message(7));
  kernel.disturb(kAddresses, disturbance::interrupted);
  const auto reader = open_addresses();
  const counts sizes = pieces_of(*reader);
  EXPECT_GE(sizes.front(), 2U);
  EXPECT_TRUE(reader->has_changed());
}

TEST(KernelTables, ARefusalIsItsReason) {
  recorded_kernel kernel;
  kernel.refuse(kAddresses, EPERM);
  EXPECT_EQ(fault_of([] { pieces_of(*open_addresses()); }), "addresses of the kernel: Operation not permitted");
}

TEST(KernelTables, LostMessagesAreAnError) {
  recorded_kernel kernel;
  kernel.tell(kAddresses, address_message(7));
  kernel.disturb(kAddresses, disturbance::lost);
  EXPECT_EQ(fault_of([] { pieces_of(*open_addresses()); }), "addresses of the kernel: No buffer space available");
}

TEST(KernelTables, AMessageOfAnImpossibleLengthIsAnError) {
  for (const uint32 claimed : {0U, 15U, 100'000U, 0x80000000U, 0xFFFFFFFFU}) {
    recorded_kernel kernel;
    for (int i = 0; i < 2; ++i) kernel.tell(kAddresses, address_message(7));
    kernel.claimed_length = claimed;
    EXPECT_EQ(fault_of([] { pieces_of(*open_addresses()); }), "addresses of the kernel: the kernel's answer is cut")
        << claimed;
  }
}

TEST(KernelTables, MessagesThatAreCutAtAnyByteGiveNoMoreThanTheirRow) {
  for (std::size_t longest = sizeof(nlmsghdr); longest < 120; ++longest) {
    recorded_kernel kernel;
    kernel.longest = longest;
    kernel.tell(kAddresses, address_message(7));
    const auto reader = open_addresses();
    EXPECT_LE(pieces_of(*reader).front(), 1U);
  }
}

// ---- Drivers --------------------------------------------------------------------------------------------------------

struct recorded_strings {
  uint32 cmd = ETHTOOL_GSTRINGS, string_set = ETH_SS_STATS, len = 0;
  char names[600][ETH_GSTRING_LEN] = {};
};
struct recorded_stats {
  uint32 cmd = ETHTOOL_GSTATS, n_stats = 0;
  uint64 values[600] = {};
};

// A driver that reports these counters, each with its place from 10.
void record_driver(recorded_kernel& kernel, const std::vector<std::string>& names, uint32 announced) {
  ethtool_drvinfo info{};
  info.cmd = ETHTOOL_GDRVINFO;
  info.n_stats = announced;
  std::strcpy(info.driver, "swp");
  std::memset(info.version, 'v', sizeof info.version);  // not terminated
  std::strcpy(info.fw_version, "N/A");
  std::strcpy(info.bus_info, "0000:03:00.0");
  recorded_strings strings;
  recorded_stats stats;
  strings.len = stats.n_stats = static_cast<uint32>(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::memcpy(strings.names[i], names[i].data(), std::min<std::size_t>(names[i].size(), ETH_GSTRING_LEN));
    stats.values[i] = 10 + i;
  }
  kernel.answer_by_ioctl("eth 7", info);
  kernel.answer_by_ioctl("eth 7", strings);
  kernel.answer_by_ioctl("eth 7", stats);
}

using named_counters = std::vector<std::pair<std::string, uint64>>;

std::vector<driver_counter_row> counter_rows() {
  std::vector<driver_counter_row> found;
  for (table_row& it : driver_counter_rows({7, "eth 7", kPort7})) found.push_back(std::get<driver_counter_row>(it));
  return found;
}

TEST(DriverCounterRows, HaveTheNamesOfTheDriver) {
  recorded_kernel kernel;
  const std::string longest(ETH_GSTRING_LEN, 'x');
  record_driver(kernel, {"rx \"a\"/b", "", longest, "\xff\x1b", "again", "again"}, 6);
  const auto rows = counter_rows();
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows[0].device.if_index, kPort7);
  EXPECT_EQ(rows[0].counters,
            (named_counters{{"rx \"a\"/b", 10}, {longest, 12}, {"\xff\x1b", 13}, {"again", 14}, {"again", 15}}));
}

TEST(DriverCounterRows, ADriverWithoutCountersHasNone) {
  recorded_kernel kernel;
  ASSERT_EQ(counter_rows().size(), 1U);
  EXPECT_EQ(counter_rows()[0].counters, std::nullopt);
  record_driver(kernel, {}, 0);
  EXPECT_EQ(counter_rows()[0].counters, std::nullopt);
}

TEST(DriverCounterRows, MoreCountersThanAnnouncedHaveRoom) {
  recorded_kernel kernel;
  record_driver(kernel, {"a", "b", "c"}, 1);
  EXPECT_EQ(counter_rows()[0].counters, (named_counters{{"a", 10}, {"b", 11}, {"c", 12}}));
}

TEST(DriverCounterRows, LengthsThatLieAreNotRead) {
  recorded_kernel kernel;
  record_driver(kernel, {"a", "b"}, 2);
  recorded_stats stats;
  stats.n_stats = 0xFFFFFFFF;
  kernel.answer_by_ioctl("eth 7", stats);
  EXPECT_EQ(counter_rows()[0].counters->size(), 2U);
}

TEST(DriverCounterRows, ManyCountersAreSeveralRows) {
  recorded_kernel kernel;
  std::vector<std::string> names;
  for (int i = 0; i < 600; ++i) names.push_back("n" + std::to_string(i));
  record_driver(kernel, names, 600);
  const auto rows = counter_rows();
  ASSERT_EQ(rows.size(), 2U);
  EXPECT_EQ(rows[0].counters->size(), 512U);
  EXPECT_EQ(rows[1].counters->front(), std::pair(std::string("n512"), uint64{522}));
  EXPECT_EQ(rows[1].counters->size(), 88U);
}

void put_numbers(nlmsghdr& it, std::initializer_list<std::pair<uint16, uint32>> numbers) {
  for (const auto& [number, value] : numbers) mnl_attr_put_u32(&it, number, value);
}

void put_bits(nlmsghdr& it, uint16 number, std::initializer_list<uint32> words) {
  nlattr* const bitset = mnl_attr_nest_start(&it, number);
  mnl_attr_put(&it, ETHTOOL_A_BITSET_VALUE, words.size() * sizeof(uint32), std::data(words));
  mnl_attr_nest_end(&it, bitset);
}

netlink_request names_message(std::initializer_list<std::pair<uint32, const char*>> names) {
  netlink_request message(recorded_kernel::kEthtoolFamily, 0);
  message.extra<genlmsghdr>().cmd = ETHTOOL_MSG_STRSET_GET_REPLY;
  nlmsghdr& it = message.head();
  nlattr* const sets = mnl_attr_nest_start(&it, ETHTOOL_A_STRSET_STRINGSETS);
  nlattr* const set = mnl_attr_nest_start(&it, ETHTOOL_A_STRINGSETS_STRINGSET);
  mnl_attr_put_u32(&it, ETHTOOL_A_STRINGSET_ID, ETH_SS_FEATURES);
  nlattr* const strings = mnl_attr_nest_start(&it, ETHTOOL_A_STRINGSET_STRINGS);
  for (const auto& [index, name] : names) {
    nlattr* const string = mnl_attr_nest_start(&it, ETHTOOL_A_STRINGS_STRING);
    mnl_attr_put_u32(&it, ETHTOOL_A_STRING_INDEX, index);
    mnl_attr_put_strz(&it, ETHTOOL_A_STRING_VALUE, name);
    mnl_attr_nest_end(&it, string);
  }
  mnl_attr_nest_end(&it, strings);
  mnl_attr_nest_end(&it, set);
  mnl_attr_nest_end(&it, sets);
  return message;
}

// The rows of both devices; the second one reports nothing.
std::vector<hardware_row> hardware_rows() {
  std::vector<table_row> rows;
  EXPECT_FALSE(open_kernel_table(table_id::hardware, devices_for())->next(rows));
  std::vector<hardware_row> found;
  for (table_row& it : rows) found.push_back(std::get<hardware_row>(it));
  return found;
}

void record_hardware(recorded_kernel& kernel) {
  record_driver(kernel, {}, 0);
  kernel.tell(recorded_kernel::ethtool(ETHTOOL_MSG_CHANNELS_GET),
              ethtool_message(ETHTOOL_MSG_CHANNELS_GET_REPLY, ETHTOOL_A_CHANNELS_HEADER, 7, [](nlmsghdr& it) {
                put_numbers(it, {{ETHTOOL_A_CHANNELS_RX_COUNT, 1},
                                 {ETHTOOL_A_CHANNELS_RX_MAX, 2},
                                 {ETHTOOL_A_CHANNELS_COMBINED_COUNT, 8},
                                 {ETHTOOL_A_CHANNELS_COMBINED_MAX, 64}});
              }));
  kernel.tell(recorded_kernel::ethtool(ETHTOOL_MSG_RINGS_GET),
              ethtool_message(ETHTOOL_MSG_RINGS_GET_REPLY, ETHTOOL_A_RINGS_HEADER, 7, [](nlmsghdr& it) {
                put_numbers(it, {{ETHTOOL_A_RINGS_RX, 512}, {ETHTOOL_A_RINGS_RX_MAX, 4096}, {ETHTOOL_A_RINGS_TX, 256}});
              }));
  kernel.tell(recorded_kernel::ethtool(ETHTOOL_MSG_FEC_GET),
              ethtool_message(ETHTOOL_MSG_FEC_GET_REPLY, ETHTOOL_A_FEC_HEADER, 7, [](nlmsghdr& it) {
                put_bits(it, ETHTOOL_A_FEC_MODES, {0, 1U << (ETHTOOL_LINK_MODE_FEC_RS_BIT - 32)});
                mnl_attr_put_u8(&it, ETHTOOL_A_FEC_AUTO, 1);
                mnl_attr_put_u32(&it, ETHTOOL_A_FEC_ACTIVE, ETHTOOL_LINK_MODE_FEC_BASER_BIT);
              }));
  kernel.tell(recorded_kernel::ethtool(ETHTOOL_MSG_EEE_GET),
              ethtool_message(ETHTOOL_MSG_EEE_GET_REPLY, ETHTOOL_A_EEE_HEADER, 7, [](nlmsghdr& it) {
                mnl_attr_put_u8(&it, ETHTOOL_A_EEE_ENABLED, 1);
                mnl_attr_put_u8(&it, ETHTOOL_A_EEE_ACTIVE, 0);
              }));
  kernel.tell(recorded_kernel::ethtool(ETHTOOL_MSG_FEATURES_GET),
              ethtool_message(ETHTOOL_MSG_FEATURES_GET_REPLY, ETHTOOL_A_FEATURES_HEADER, 7, [](nlmsghdr& it) {
                put_bits(it, ETHTOOL_A_FEATURES_ACTIVE, {0x80000001, 2});
              }));
  kernel.tell(recorded_kernel::ethtool(ETHTOOL_MSG_STRSET_GET),
              names_message({{0, "tx-scatter-gather"}, {33, "rx-gro\"/"}, {2, "unused"}}));
}

TEST(HardwareRows, HaveWhatTheKernelReports) {
  recorded_kernel kernel;
  record_hardware(kernel);
  const auto rows = hardware_rows();
  ASSERT_EQ(rows.size(), 2U);
  const hardware_row& row = rows[0];
  EXPECT_EQ(row.driver, "swp");
  EXPECT_EQ(row.driver_version, std::string(32, 'v'));
  EXPECT_EQ(row.firmware_version, "") << "N/A";
  EXPECT_EQ(row.bus, "0000:03:00.0");
  EXPECT_EQ(row.rx_queues, 1U);
  EXPECT_EQ(row.most_rx_queues, 2U);
  EXPECT_EQ(row.tx_queues, std::nullopt);
  EXPECT_EQ(row.combined_queues, 8U);
  EXPECT_EQ(row.most_combined_queues, 64U);
  EXPECT_EQ(row.rx_ring, 512U);
  EXPECT_EQ(row.most_rx_ring, 4096U);
  EXPECT_EQ(row.tx_ring, 256U);
  EXPECT_EQ(row.configured_fec, "auto,rs");
  EXPECT_EQ(row.active_fec, "baser");
  EXPECT_EQ(row.is_eee_enabled, true);
  EXPECT_EQ(row.is_eee_active, false);
  EXPECT_EQ(row.offloads, "tx-scatter-gather,feature 31,rx-gro\"/");
}

TEST(HardwareRows, WhatIsNotReportedIsAbsent) {
  recorded_kernel kernel;
  record_hardware(kernel);
  for (const bool has_ethtool : {true, false}) {
    kernel.has_ethtool = has_ethtool;
    const hardware_row row = hardware_rows().at(has_ethtool ? 1 : 0);
    EXPECT_EQ(row.combined_queues, std::nullopt);
    EXPECT_EQ(row.rx_ring, std::nullopt);
    EXPECT_EQ(row.configured_fec, std::nullopt);
    EXPECT_EQ(row.is_eee_enabled, std::nullopt);
    EXPECT_EQ(row.offloads, std::nullopt);
  }
}

TEST(HardwareRows, MessagesThatAreCutGiveNoMoreThanTheirValues) {
  for (std::size_t longest = sizeof(nlmsghdr); longest < 160; ++longest) {
    recorded_kernel kernel;
    kernel.longest = longest;
    record_hardware(kernel);
    EXPECT_LE(hardware_rows().size(), 2U);
  }
}

// ---- VRFs -----------------------------------------------------------------------------------------------------------

TEST(KernelTables, AnInterfaceHasTheVrfThatIsItsMaster) {
  std::vector<kernel_link> links(3);
  for (uint32 i = 0; i < 3; ++i) links[i].number = 7 + i;
  links[0].name = "inside";
  links[0].master = 9;
  links[1].name = "outside";
  links[2].name = "blue";
  links[2].kind = "vrf";
  const std::vector<mapped_device> mapped = {{"inside", 7, kPort7}, {"outside", 8, kPort7 + 0x1000}};
  const machine made = machine_of_devices(links, mapped);
  EXPECT_EQ(made.find(kPort7)->vrf, "blue");
  EXPECT_EQ(made.find(kPort7 + 0x1000)->vrf, "");
  links[2].kind = "bridge";
  EXPECT_EQ(machine_of_devices(links, mapped).find(kPort7)->vrf, "");
}

}  // namespace
}  // namespace host
