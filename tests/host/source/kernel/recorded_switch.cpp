#include "host/source/kernel/recorded_switch.h"

#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if_bridge.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <algorithm>
#include <cerrno>
#include <numeric>

#include "source/kernel/policy.h"

namespace host {
namespace {

// The kernel's IF_OPER_* values; its header of that name clashes with libc's.
enum : uint8 { kDown = 2, kUp = 6 };
constexpr uint32 kIsUp = IFF_UP | IFF_RUNNING;

class nest {
 public:
  nest(nlmsghdr& message, uint16 type) : message_(message), start_(mnl_attr_nest_start(&message, type)) {}
  ~nest() { mnl_attr_nest_end(&message_, start_); }
  nest(const nest&) = delete;
  nest& operator=(const nest&) = delete;

 private:
  nlmsghdr& message_;
  nlattr* start_;
};

void put_info(nlmsghdr& it, const recorded_link& link) {
  const nest info(it, IFLA_LINKINFO);
  if (!link.kind.empty()) mnl_attr_put_strz(&it, IFLA_INFO_KIND, link.kind.c_str());
  if (link.vlan != 0) {
    const nest data(it, IFLA_INFO_DATA);
    mnl_attr_put_u16(&it, IFLA_VLAN_ID, link.vlan);
  }
  if (link.slave_kind.empty()) return;
  mnl_attr_put_strz(&it, IFLA_INFO_SLAVE_KIND, link.slave_kind.c_str());
  if (link.slave_kind != "bridge") return;
  const nest data(it, IFLA_INFO_SLAVE_DATA);
  mnl_attr_put_u8(&it, IFLA_BRPORT_STATE, BR_STATE_FORWARDING);
}

// The words of a set of bits, as the kernel puts them: 93 bits are three words.
void put_bits(nlmsghdr& it, uint16 type, const std::vector<uint32>& bits) {
  uint32 words[3] = {};
  for (const uint32 bit : bits) words[bit / 32] |= 1U << bit % 32;
  mnl_attr_put(&it, type, sizeof words, words);
}

void put_sizes(nlmsghdr& it, uint16 type, const std::vector<recorded_size>& sizes) {
  for (const recorded_size& size : sizes) {
    const nest bucket(it, type);
    mnl_attr_put_u32(&it, ETHTOOL_A_STATS_GRP_HIST_BKT_LOW, size.low);
    mnl_attr_put_u32(&it, ETHTOOL_A_STATS_GRP_HIST_BKT_HI, size.high);
    mnl_attr_put_u64(&it, ETHTOOL_A_STATS_GRP_HIST_VAL, size.packets);
  }
}

uint8 sum(const std::vector<uint8>& page, std::size_t from, std::size_t until) {
  unsigned all = 0;
  for (std::size_t at = from; at < until; ++at) all += page[at];
  return static_cast<uint8>(all);
}

void put_words(std::vector<uint8>& page, std::size_t at, const std::vector<uint16>& words) {
  for (std::size_t i = 0; i < words.size(); ++i) put_word(page, at + i * 2, words[i]);
}

constexpr message_policy kPlacePolicy = {
    {ETHTOOL_A_MODULE_EEPROM_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_MODULE_EEPROM_OFFSET, attribute_type::number, 4},
    {ETHTOOL_A_MODULE_EEPROM_PAGE, attribute_type::number, 1},
    {ETHTOOL_A_MODULE_EEPROM_I2C_ADDRESS, attribute_type::number, 1},
};
constexpr message_policy kDevicePolicy = {{ETHTOOL_A_HEADER_DEV_INDEX, attribute_type::number, 4}};

// ---- The switch -----------------------------------------------------------------------------------------------------

void record_links(recorded_kernel& kernel) {
  const question links{NETLINK_ROUTE, RTM_GETLINK, AF_UNSPEC};
  for (const recorded_link& link : std::vector<recorded_link>{
           {.number = kLoopback, .name = "lo", .flags = kIsUp | IFF_LOOPBACK},
           {.number = kEth0, .name = "eth0", .flags = kIsUp, .operation = kUp},
           {.number = kSwp1, .name = "swp1", .flags = kIsUp, .operation = kUp, .slave_kind = "bond", .master = kBond0},
           {.number = kSwp2, .name = "swp2", .flags = kIsUp, .operation = kUp, .slave_kind = "bond", .master = kBond0},
           {.number = kSwp3, .name = "swp3", .flags = kIsUp, .operation = kUp, .slave_kind = "bridge", .master = kBr0},
           {.number = kSwp4, .name = "swp4", .flags = IFF_UP, .operation = kDown},
           {.number = kSwp5, .name = "swp5", .flags = IFF_UP, .operation = kDown},
           {.number = kSwp6, .name = "swp6", .flags = 0, .operation = kDown},
           {.number = kBond0, .name = "bond0", .kind = "bond", .flags = kIsUp, .operation = kUp},
           {.number = kBr0, .name = "br0", .kind = "bridge", .flags = kIsUp, .operation = kUp},
           {.number = kVlan100,
           .name = "swp3.100",
           .kind = "vlan",
           .flags = kIsUp,
           .operation = kUp,
           .parent = kSwp3,
           .vlan = 100},
           {.number = kVeth0, .name = "veth0", .kind = "veth", .flags = kIsUp, .operation = kUp},
       })
    kernel.tell(links, link_message(link));
}

void record_vlans(recorded_kernel& kernel) {
  const auto vlans_of = [](uint32 device, const std::vector<bridge_vlan_info>& vlans) {
    netlink_request message(RTM_NEWLINK, 0);
    message.extra<ifinfomsg>().ifi_index = static_cast<int>(device);
    const nest spec(message.head(), IFLA_AF_SPEC);
    for (const bridge_vlan_info& vlan : vlans) mnl_attr_put(&message.head(), IFLA_BRIDGE_VLAN_INFO, sizeof vlan, &vlan);
    return message;
  };
  const question vlans{NETLINK_ROUTE, RTM_GETLINK, AF_BRIDGE};
  kernel.tell(vlans, vlans_of(kBr0, {{BRIDGE_VLAN_INFO_PVID, 1}}));
  kernel.tell(vlans, vlans_of(kSwp3, {{BRIDGE_VLAN_INFO_PVID, 10},
                                      {BRIDGE_VLAN_INFO_RANGE_BEGIN, 20},
                                      {BRIDGE_VLAN_INFO_RANGE_END, 22},
                                      {0, 30}}));
  kernel.tell(vlans, vlans_of(kVanished, {{BRIDGE_VLAN_INFO_PVID, 66}}));
}

void record_addresses(recorded_kernel& kernel) {
  for (const uint32 device : {uint32{kEth0}, uint32{kVanished}}) {
    const uint8 address[] = {192, 0, 2, static_cast<uint8>(device)};
    netlink_request message(RTM_NEWADDR, 0);
    auto& head = message.extra<ifaddrmsg>();
    head.ifa_family = AF_INET;
    head.ifa_prefixlen = 24;
    head.ifa_index = device;
    mnl_attr_put(&message.head(), IFA_LOCAL, sizeof address, address);
    kernel.tell({NETLINK_ROUTE, RTM_GETADDR, AF_UNSPEC}, std::move(message));
  }
}

void record_default_route(recorded_kernel& kernel) {
  netlink_request message(RTM_NEWROUTE, 0);
  message.extra<rtmsg>().rtm_family = AF_INET;
  mnl_attr_put_u32(&message.head(), RTA_OIF, kEth0);
  kernel.tell({NETLINK_ROUTE, RTM_GETROUTE, AF_INET}, std::move(message));
}

// ETHTOOL_LINK_MODE_* by their numbers.
enum : uint32 {
  k10Half,
  k10,
  k100Half,
  k100,
  k1000 = 5,
  kNegotiation,
  kTwistedPair,
  kFibre = 10,
  k10000 = 12,
  kPause,
  kAsymmetric,
  k40000Sr = 25,
  k10000Sr = 43
};

void record_modes(recorded_kernel& kernel) {
  const question modes = recorded_kernel::ethtool(ETHTOOL_MSG_LINKMODES_GET);
  kernel.tell(modes, modes_message(kEth0, {.negotiates = 1,
                                           .speed_mbps = 1000,
                                           .duplex = 1,
                                           .supported = {k10Half, k10, k100Half, k100, k1000, kNegotiation,
                                                         kTwistedPair, kPause, kAsymmetric}}));
  for (const uint32 optics : {kSwp1, kSwp2})
    kernel.tell(modes, modes_message(optics, {.negotiates = 0,
                                              .speed_mbps = 10000,
                                              .duplex = 1,
                                              .supported = {kFibre, k10000Sr, k1000, kPause}}));
  kernel.tell(modes, modes_message(kSwp3, {.negotiates = 1,
                                           .speed_mbps = 40000,
                                           .duplex = 1,
                                           .supported = {kNegotiation, kFibre, k40000Sr, kPause, kAsymmetric},
                                           .advertised = {kNegotiation, k40000Sr, kPause, kAsymmetric},
                                           .partner = {k40000Sr, kAsymmetric}}));
  kernel.tell(modes, modes_message(kVanished, {.negotiates = 0, .speed_mbps = 66, .duplex = 1}));
}

void record_counters(recorded_kernel& kernel) {
  const question pause = recorded_kernel::ethtool(ETHTOOL_MSG_PAUSE_GET);
  kernel.tell(pause, pause_message(kSwp1, false, true, false, 71, 72));
  kernel.tell(pause, pause_message(kSwp3, true, true, true, 0, 0));
  kernel.tell(pause, pause_message(kVanished, true, true, true, 66, 66));
  const question faults = recorded_kernel::ethtool(ETHTOOL_MSG_LINKSTATE_GET);
  kernel.tell(faults, fault_message(kSwp4, ETHTOOL_LINK_EXT_STATE_LINK_LOGICAL_MISMATCH, 1));
  kernel.tell(faults, fault_message(kSwp5, ETHTOOL_LINK_EXT_STATE_NO_CABLE, 0));
  kernel.tell(faults, fault_message(kSwp6, ETHTOOL_LINK_EXT_STATE_OVERHEAT, 0));
  kernel.tell(faults, fault_message(kVanished, ETHTOOL_LINK_EXT_STATE_OVERHEAT, 0));
  const question counters = recorded_kernel::ethtool(ETHTOOL_MSG_STATS_GET);
  kernel.tell(counters, counters_message(kSwp1, {{ETHTOOL_STATS_ETH_PHY, {{0, 101}}},
                                                 {ETHTOOL_STATS_ETH_MAC,
                                                  {{ETHTOOL_A_STATS_ETH_MAC_6_FCS_ERR, 102},
                                                   {ETHTOOL_A_STATS_ETH_MAC_25_TOO_LONG_ERR, 103}}}}));
  kernel.tell(counters, counters_message(kVanished, {{ETHTOOL_STATS_ETH_PHY, {{0, 66}}}}));
}

}  // namespace

void record_switch(recorded_kernel& kernel) {
  record_links(kernel);
  record_vlans(kernel);
  record_addresses(kernel);
  record_default_route(kernel);
  record_modes(kernel);
  record_counters(kernel);
  record_modules(kernel, {{kSwp1, {{{0x50, 0, 0}, sfp_identity()}, {{0x51, 0, 0}, sfp_diagnostics_page()}}},
                          {kSwp3, qsfp_pages()}});
}

// ---- Messages -------------------------------------------------------------------------------------------------------

netlink_request link_message(const recorded_link& link) {
  netlink_request message(RTM_NEWLINK, 0);
  auto& head = message.extra<ifinfomsg>();
  head.ifi_index = static_cast<int>(link.number);
  head.ifi_flags = link.flags;
  rtnl_link_stats64 stats{};
  stats.rx_packets = link.number * 1000;
  stats.tx_packets = link.number * 2000;
  nlmsghdr& it = message.head();
  mnl_attr_put_strz(&it, IFLA_IFNAME, link.name.c_str());
  mnl_attr_put_u32(&it, IFLA_MTU, 1500);
  mnl_attr_put_u8(&it, IFLA_OPERSTATE, link.operation);
  if (link.master != 0) mnl_attr_put_u32(&it, IFLA_MASTER, link.master);
  if (link.parent != 0) mnl_attr_put_u32(&it, IFLA_LINK, link.parent);
  mnl_attr_put(&it, IFLA_STATS64, sizeof stats, &stats);
  put_info(it, link);
  return message;
}

netlink_request ethtool_message(uint8 command, uint16 head, uint32 device, const std::function<void(nlmsghdr&)>& put) {
  netlink_request message(recorded_kernel::kEthtoolFamily, 0);
  message.extra<genlmsghdr>().cmd = command;
  put_ethtool_head(message, head, device, 0);
  put(message.head());
  return message;
}

netlink_request modes_message(uint32 device, const recorded_modes& modes) {
  return ethtool_message(ETHTOOL_MSG_LINKMODES_GET_REPLY, ETHTOOL_A_LINKMODES_HEADER, device, [&](nlmsghdr& it) {
    mnl_attr_put_u8(&it, ETHTOOL_A_LINKMODES_AUTONEG, modes.negotiates);
    {
      const nest ours(it, ETHTOOL_A_LINKMODES_OURS);
      mnl_attr_put_u32(&it, ETHTOOL_A_BITSET_SIZE, 93);
      put_bits(it, ETHTOOL_A_BITSET_VALUE, modes.advertised);
      put_bits(it, ETHTOOL_A_BITSET_MASK, modes.supported);
    }
    if (!modes.partner.empty()) {
      const nest partner(it, ETHTOOL_A_LINKMODES_PEER);
      mnl_attr_put(&it, ETHTOOL_A_BITSET_NOMASK, 0, "");
      mnl_attr_put_u32(&it, ETHTOOL_A_BITSET_SIZE, 93);
      put_bits(it, ETHTOOL_A_BITSET_VALUE, modes.partner);
    }
    mnl_attr_put_u32(&it, ETHTOOL_A_LINKMODES_SPEED, modes.speed_mbps);
    mnl_attr_put_u8(&it, ETHTOOL_A_LINKMODES_DUPLEX, modes.duplex);
  });
}

netlink_request pause_message(uint32 device, bool negotiates, bool receives, bool sends, uint64 received, uint64 sent) {
  return ethtool_message(ETHTOOL_MSG_PAUSE_GET_REPLY, ETHTOOL_A_PAUSE_HEADER, device, [&](nlmsghdr& it) {
    mnl_attr_put_u8(&it, ETHTOOL_A_PAUSE_AUTONEG, negotiates ? 1 : 0);
    mnl_attr_put_u8(&it, ETHTOOL_A_PAUSE_RX, receives ? 1 : 0);
    mnl_attr_put_u8(&it, ETHTOOL_A_PAUSE_TX, sends ? 1 : 0);
    const nest stats(it, ETHTOOL_A_PAUSE_STATS);
    mnl_attr_put_u64(&it, ETHTOOL_A_PAUSE_STAT_TX_FRAMES, sent);
    mnl_attr_put_u64(&it, ETHTOOL_A_PAUSE_STAT_RX_FRAMES, received);
  });
}

netlink_request fault_message(uint32 device, uint8 state, uint8 substate) {
  return ethtool_message(ETHTOOL_MSG_LINKSTATE_GET_REPLY, ETHTOOL_A_LINKSTATE_HEADER, device, [&](nlmsghdr& it) {
    mnl_attr_put_u8(&it, ETHTOOL_A_LINKSTATE_LINK, 0);
    mnl_attr_put_u8(&it, ETHTOOL_A_LINKSTATE_EXT_STATE, state);
    if (substate != 0) mnl_attr_put_u8(&it, ETHTOOL_A_LINKSTATE_EXT_SUBSTATE, substate);
  });
}

netlink_request counters_message(uint32 device, const std::vector<recorded_group>& groups) {
  return ethtool_message(ETHTOOL_MSG_STATS_GET_REPLY, ETHTOOL_A_STATS_HEADER, device, [&](nlmsghdr& it) {
    for (const recorded_group& group : groups) {
      const nest whole(it, ETHTOOL_A_STATS_GRP);
      mnl_attr_put_u32(&it, ETHTOOL_A_STATS_GRP_ID, group.id);
      mnl_attr_put_u32(&it, ETHTOOL_A_STATS_GRP_SS_ID, 0);
      for (const auto& [number, value] : group.counters) {
        const nest counter(it, ETHTOOL_A_STATS_GRP_STAT);
        mnl_attr_put_u64(&it, number, value);
      }
      put_sizes(it, ETHTOOL_A_STATS_GRP_HIST_RX, group.received);
      put_sizes(it, ETHTOOL_A_STATS_GRP_HIST_TX, group.sent);
    }
  });
}

// ---- Memory of modules ----------------------------------------------------------------------------------------------

void put_text(std::vector<uint8>& page, std::size_t at, std::size_t width, const std::string& text) {
  for (std::size_t i = 0; i < width; ++i) page[at + i] = static_cast<uint8>(i < text.size() ? text[i] : ' ');
}

void put_word(std::vector<uint8>& page, std::size_t at, uint16 word) {
  page[at] = static_cast<uint8>(word >> 8);
  page[at + 1] = static_cast<uint8>(word);
}

// 10GBASE-SR, diagnostics calibrated by the module.
std::vector<uint8> sfp_identity() {
  std::vector<uint8> page(128);
  page[0] = 0x03;
  page[1] = 0x04;
  page[2] = 0x07;  // LC
  page[3] = 0x10;
  page[12] = 103;
  page[16] = 8;
  put_text(page, 20, 16, "FAR LIGHT");
  put_text(page, 40, 16, "FL-10G-SR");
  put_text(page, 56, 4, "C");
  page[63] = sum(page, 0, 63);
  put_text(page, 68, 16, "FL000123");
  put_text(page, 84, 8, "250311");
  page[92] = 0x68;
  page[95] = sum(page, 64, 95);
  return page;
}

// 38.5 C, 3.3 V, 6 mA, 500 uW sent, 400 uW received.
std::vector<uint8> sfp_diagnostics_page() {
  std::vector<uint8> page(128);
  put_words(page, 0, {0x4B00, 0xFB00, 0x4600, 0x0000});  // 75, -5, 70, 0 C
  put_words(page, 8, {36300, 29700, 34650, 31350});      // 3.63, 2.97, 3.465, 3.135 V
  put_words(page, 16, {5900, 2000, 5400, 2500});         // 11.8, 4, 10.8, 5 mA
  put_words(page, 24, {14790, 1170, 7410, 1860});        // 1479, 117, 741, 186 uW
  put_words(page, 32, {15840, 250, 3990, 630});          // 1584, 25, 399, 63 uW
  put_words(page, 96, {0x2680, 33000, 3000, 5000, 4000});
  return page;
}

// 40GBASE-SR4; the first lane sends 700 uW and receives 600 uW at 7 mA; 25.25 C, 3.25 V.
module_pages qsfp_pages() {
  std::vector<uint8> lower(128), upper(128), limits(128);
  lower[0] = upper[0] = 0x0D;
  put_word(lower, 22, 0x1940);
  put_word(lower, 26, 32500);
  put_words(lower, 34, {6000, 6100, 6200, 6300});
  put_words(lower, 42, {3500, 3600, 3700, 3800});
  put_words(lower, 50, {7000, 7100, 7200, 7300});
  upper[2] = 0x0C;  // MPO
  upper[12] = 103;
  upper[16] = 55;  // m
  put_text(upper, 20, 16, "WIDE LIGHT");
  put_text(upper, 40, 16, "WL-40G-SR4");
  put_text(upper, 56, 2, "D2");
  upper[63] = sum(upper, 0, 63);
  put_text(upper, 68, 16, "WL000456");
  put_text(upper, 84, 8, "250607");
  upper[95] = sum(upper, 64, 95);
  put_words(limits, 0, {0x5000, 0xF600, 0x4B00, 0x0000});  // 80, -10, 75, 0 C
  put_words(limits, 16, {36000, 30000, 35000, 31000});     // 3.6, 3.0, 3.5, 3.1 V
  put_words(limits, 48, {5990, 100, 5980, 200});           // 599, 10, 598, 20 uW received
  put_words(limits, 56, {5000, 500, 4500, 1000});          // 10, 1, 9, 2 mA
  put_words(limits, 64, {9000, 300, 8000, 400});           // 900, 30, 800, 40 uW sent
  return {{{0x50, 0, 0}, lower}, {{0x50, 0, 128}, upper}, {{0x50, 3, 128}, limits}};
}

void record_modules(recorded_kernel& kernel, std::map<uint32, module_pages> modules) {
  const auto answer = [modules = std::move(modules)](const nlmsghdr& request) -> recorded_answer {
    const attributes all = parse<genlmsghdr>(request, kPlacePolicy)->all;
    const uint32 device = all.nested(ETHTOOL_A_MODULE_EEPROM_HEADER, kDevicePolicy)
                              .number<uint32>(ETHTOOL_A_HEADER_DEV_INDEX)
                              .value_or(0);
    const auto found = modules.find(device);
    if (found == modules.end()) return {EINVAL};
    const auto page =
        found->second.find({all.number<uint8>(ETHTOOL_A_MODULE_EEPROM_I2C_ADDRESS).value_or(0),
                            all.number<uint8>(ETHTOOL_A_MODULE_EEPROM_PAGE).value_or(0),
                            static_cast<uint8>(all.number<uint32>(ETHTOOL_A_MODULE_EEPROM_OFFSET).value_or(0))});
    if (page == found->second.end()) return {EIO};
    return {0,
            {recorded(ethtool_message(
                ETHTOOL_MSG_MODULE_EEPROM_GET_REPLY, ETHTOOL_A_MODULE_EEPROM_HEADER, device, [&](nlmsghdr& it) {
                  mnl_attr_put(&it, ETHTOOL_A_MODULE_EEPROM_DATA, page->second.size(), page->second.data());
                }))}};
  };
  kernel.answer(recorded_kernel::ethtool(ETHTOOL_MSG_MODULE_EEPROM_GET), answer);
}

}  // namespace host
