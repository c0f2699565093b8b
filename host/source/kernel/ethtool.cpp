#include "source/kernel/ethtool.h"

#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>

#include <algorithm>
#include <cerrno>
#include <tuple>
#include <utility>

#include "source/kernel/ethtool_ioctl.h"
#include "source/kernel/policy.h"

namespace host {
namespace {

// ---- Policies -------------------------------------------------------------------------------------------------------

constexpr message_policy kHeadPolicy = {
    {ETHTOOL_A_HEADER_DEV_INDEX, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_HEADER_DEV_NAME, attribute_type::text, 1},
};
constexpr message_policy kBitsetPolicy = {
    {ETHTOOL_A_BITSET_VALUE, attribute_type::bytes, sizeof(uint32)},
    {ETHTOOL_A_BITSET_MASK, attribute_type::bytes, sizeof(uint32)},
};
constexpr message_policy kLinkModesPolicy = {
    {ETHTOOL_A_LINKMODES_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_LINKMODES_AUTONEG, attribute_type::number, sizeof(uint8)},
    {ETHTOOL_A_LINKMODES_OURS, attribute_type::nest, 0},
    {ETHTOOL_A_LINKMODES_PEER, attribute_type::nest, 0},
    {ETHTOOL_A_LINKMODES_SPEED, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_LINKMODES_DUPLEX, attribute_type::number, sizeof(uint8)},
};
constexpr message_policy kPausePolicy = {
    {ETHTOOL_A_PAUSE_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_PAUSE_AUTONEG, attribute_type::number, sizeof(uint8)},
    {ETHTOOL_A_PAUSE_RX, attribute_type::number, sizeof(uint8)},
    {ETHTOOL_A_PAUSE_TX, attribute_type::number, sizeof(uint8)},
    {ETHTOOL_A_PAUSE_STATS, attribute_type::nest, 0},
};
constexpr message_policy kPauseStatsPolicy = {
    {ETHTOOL_A_PAUSE_STAT_RX_FRAMES, attribute_type::number, sizeof(uint64)},
    {ETHTOOL_A_PAUSE_STAT_TX_FRAMES, attribute_type::number, sizeof(uint64)},
};
constexpr message_policy kLinkStatePolicy = {
    {ETHTOOL_A_LINKSTATE_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_LINKSTATE_EXT_STATE, attribute_type::number, sizeof(uint8)},
    {ETHTOOL_A_LINKSTATE_EXT_SUBSTATE, attribute_type::number, sizeof(uint8)},
};
constexpr message_policy kStatsPolicy = {
    {ETHTOOL_A_STATS_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_STATS_GRP, attribute_type::nest, 0},
};
constexpr message_policy kGroupPolicy = {
    {ETHTOOL_A_STATS_GRP_ID, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_STATS_GRP_STAT, attribute_type::nest, 0},
    {ETHTOOL_A_STATS_GRP_HIST_RX, attribute_type::nest, 0},
    {ETHTOOL_A_STATS_GRP_HIST_TX, attribute_type::nest, 0},
};
constexpr message_policy kCounterPolicy = message_policy::uniform(attribute_type::number, sizeof(uint64));
constexpr message_policy kSizePolicy = {
    {ETHTOOL_A_STATS_GRP_HIST_BKT_LOW, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_STATS_GRP_HIST_BKT_HI, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_STATS_GRP_HIST_VAL, attribute_type::number, sizeof(uint64)},
};
constexpr message_policy kModulePagePolicy = {
    {ETHTOOL_A_MODULE_EEPROM_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_MODULE_EEPROM_DATA, attribute_type::bytes, 1},
};
constexpr message_policy kModulePowerPolicy = {
    {ETHTOOL_A_MODULE_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_MODULE_POWER_MODE_POLICY, attribute_type::number, sizeof(uint8)},
    {ETHTOOL_A_MODULE_POWER_MODE, attribute_type::number, sizeof(uint8)},
};
constexpr message_policy kFamilyPolicy = {
    {CTRL_ATTR_FAMILY_ID, attribute_type::number, sizeof(uint16)},
    {CTRL_ATTR_MCAST_GROUPS, attribute_type::nest, 0},
};
constexpr message_policy kMulticastGroupsPolicy = message_policy::uniform(attribute_type::nest, 0);
constexpr message_policy kMulticastGroupPolicy = {
    {CTRL_ATTR_MCAST_GRP_NAME, attribute_type::text, 1},
    {CTRL_ATTR_MCAST_GRP_ID, attribute_type::number, sizeof(uint32)},
};

// A message of the family.
struct ethtool_reply {
  uint32 device;  // that it is about; 0 without a head
  attributes all;
};

std::optional<ethtool_reply> parse_reply(const nlmsghdr& message, const message_policy& policy, uint16 head) {
  const auto parsed = parse<genlmsghdr>(message, policy);
  if (!parsed) return std::nullopt;
  const uint32 device = parsed->all.nested(head, kHeadPolicy).number<uint32>(ETHTOOL_A_HEADER_DEV_INDEX).value_or(0);
  return ethtool_reply{device, parsed->all};
}

// ---- Link modes -----------------------------------------------------------------------------------------------------

link_modes modes_of(const attributes& bitset, uint16 words) {
  const std::span<const uint8> bytes = bitset.bytes(words).value_or(std::span<const uint8>());
  link_modes modes;
  for (std::size_t word = 0; word + sizeof(uint32) <= std::min(bytes.size(), modes.size() / 8); word += sizeof(uint32))
    modes |= link_modes(record_of<uint32>(bytes.subspan(word))) << (word * 8);
  return modes;
}

void take_link_modes(const attributes& all, kernel_link& link) {
  constexpr uint32 kUnknownSpeed = 0xFFFFFFFF;
  const attributes ours = all.nested(ETHTOOL_A_LINKMODES_OURS, kBitsetPolicy);
  const attributes peer = all.nested(ETHTOOL_A_LINKMODES_PEER, kBitsetPolicy);
  link.supported = modes_of(ours, ETHTOOL_A_BITSET_MASK);
  link.advertised = modes_of(ours, ETHTOOL_A_BITSET_VALUE);
  link.partner = modes_of(peer, ETHTOOL_A_BITSET_VALUE);
  if (const auto mode = all.number<uint8>(ETHTOOL_A_LINKMODES_AUTONEG)) link.negotiates = mode != AUTONEG_DISABLE;
  if (const auto speed = all.number<uint32>(ETHTOOL_A_LINKMODES_SPEED); speed && speed != kUnknownSpeed)
    link.speed_mbps = speed;
  if (const auto duplex = all.number<uint8>(ETHTOOL_A_LINKMODES_DUPLEX); duplex && *duplex <= DUPLEX_FULL)
    link.is_full_duplex = duplex == DUPLEX_FULL;
}

// ---- Pause ----------------------------------------------------------------------------------------------------------

pause_settings pause_of(const attributes& all) {
  const attributes stats = all.nested(ETHTOOL_A_PAUSE_STATS, kPauseStatsPolicy);
  return {.negotiates = all.number<uint8>(ETHTOOL_A_PAUSE_AUTONEG).value_or(0) != 0,
          .receives = all.number<uint8>(ETHTOOL_A_PAUSE_RX).value_or(0) != 0,
          .sends = all.number<uint8>(ETHTOOL_A_PAUSE_TX).value_or(0) != 0,
          .received_frames = stats.number<uint64>(ETHTOOL_A_PAUSE_STAT_RX_FRAMES),
          .sent_frames = stats.number<uint64>(ETHTOOL_A_PAUSE_STAT_TX_FRAMES)};
}

// ---- Counters -------------------------------------------------------------------------------------------------------

// The counters of a group that mean the same as a counter of the model. Not among them: too long frames of RMON, which
// may be good ones where the MTU is large; its fragments, which are not runts of the model; control frames, which are
// more than pauses.
struct driver_row {
  uint32 group;
  uint16 number;
  driver_counter counter;
};
constexpr driver_row kDriverRows[] = {
    {ETHTOOL_STATS_ETH_PHY, ETHTOOL_A_STATS_ETH_PHY_5_SYM_ERR, kDriverSymbolErrors},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_3_SINGLE_COL, kDriverSingleCollisions},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_4_MULTI_COL, kDriverMultipleCollisions},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_6_FCS_ERR, kDriverFcsErrors},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_9_TX_DEFER, kDriverDeferred},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_10_LATE_COL, kDriverLateCollisions},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_11_XS_COL, kDriverExcessiveCollisions},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_13_CS_ERR, kDriverCarrierErrors},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_18_TX_MCAST, kDriverMulticastsSent},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_19_TX_BCAST, kDriverBroadcastsSent},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_20_XS_DEFER, kDriverExcessiveDeferrals},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_21_RX_MCAST, kDriverMulticastsReceived},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_22_RX_BCAST, kDriverBroadcastsReceived},
    {ETHTOOL_STATS_ETH_MAC, ETHTOOL_A_STATS_ETH_MAC_25_TOO_LONG_ERR, kDriverTooLong},
    {ETHTOOL_STATS_RMON, ETHTOOL_A_STATS_RMON_UNDERSIZE, kDriverUndersized},
    {ETHTOOL_STATS_RMON, ETHTOOL_A_STATS_RMON_JABBER, kDriverJabber},
};
constexpr uint32 kWantedGroups = 1U << ETHTOOL_STATS_ETH_PHY | 1U << ETHTOOL_STATS_ETH_MAC | 1U << ETHTOOL_STATS_RMON;

void take_counter(uint32 group, const attributes& counter, driver_counter_values& counters) {
  for (const driver_row& row : kDriverRows)
    if (const auto value = counter.number<uint64>(row.number); value && row.group == group)
      counters[row.counter] = value;
}

// The size class that has exactly these bounds in bytes; none for others. The smallest begins where the driver says,
// the largest ends there.
std::optional<std::size_t> size_class_of(uint32 low, uint32 high) {
  const std::size_t largest = kLargestOfSizeClass.size();
  if (low == kLargestOfSizeClass.back() + 1 && high > low) return largest;
  for (std::size_t i = 0; i < largest; ++i)
    if (high == kLargestOfSizeClass[i] && (i == 0 ? low <= high : low == kLargestOfSizeClass[i - 1] + 1)) return i;
  return std::nullopt;
}

void take_size(const attributes& bucket, uint32 first, driver_counter_values& counters) {
  const uint32 low = bucket.number<uint32>(ETHTOOL_A_STATS_GRP_HIST_BKT_LOW).value_or(0);
  const uint32 high = bucket.number<uint32>(ETHTOOL_A_STATS_GRP_HIST_BKT_HI).value_or(0);
  const auto packets = bucket.number<uint64>(ETHTOOL_A_STATS_GRP_HIST_VAL);
  if (const auto size = size_class_of(low, high); size && packets) counters[first + *size] = packets;
}

void take_group(const attributes& all, driver_counter_values& counters) {
  const auto group = all.number<uint32>(ETHTOOL_A_STATS_GRP_ID);
  if (!group) return;
  all.for_each(ETHTOOL_A_STATS_GRP_STAT,
               [&](std::span<const uint8> it) { take_counter(*group, parse(it, kCounterPolicy), counters); });
  all.for_each(ETHTOOL_A_STATS_GRP_HIST_RX,
               [&](std::span<const uint8> it) { take_size(parse(it, kSizePolicy), kDriverReceivedBySize, counters); });
  all.for_each(ETHTOOL_A_STATS_GRP_HIST_TX,
               [&](std::span<const uint8> it) { take_size(parse(it, kSizePolicy), kDriverSentBySize, counters); });
}

// ---- Modules by ioctl -----------------------------------------------------------------------------------------------

// The offset of a place in the linear memory of the ioctl: the pages of the module follow each other, and the second
// address of an SFP follows the first.
uint32 ioctl_offset(const module_place& place) {
  constexpr uint8 kSecondAddress = 0x51;
  if (place.i2c_address == kSecondAddress) return 256U + place.offset;
  return place.page * kModulePageBytes + place.offset;
}

// The number of the group in a message of the family; 0: it has no such group.
uint32 monitor_group_in(const attributes& family) {
  const attributes groups = family.nested(CTRL_ATTR_MCAST_GROUPS, kMulticastGroupsPolicy);
  for (uint16 place = 0; place < message_policy::kNumbers; ++place) {
    const attributes group = groups.nested(place, kMulticastGroupPolicy);
    if (group.text(CTRL_ATTR_MCAST_GRP_NAME) == ETHTOOL_MCGRP_MONITOR_NAME)
      return group.number<uint32>(CTRL_ATTR_MCAST_GRP_ID).value_or(0);
  }
  return 0;
}

// The numbers of the family and of its group; 0 when the kernel has none.
std::pair<uint16, uint32> ethtool_family(netlink_socket& generic) {
  netlink_request request(GENL_ID_CTRL, NLM_F_ACK);
  request.extra<genlmsghdr>() = {.cmd = CTRL_CMD_GETFAMILY, .version = 1, .reserved = 0};
  mnl_attr_put_strz(&request.head(), CTRL_ATTR_FAMILY_NAME, ETHTOOL_GENL_NAME);
  std::pair<uint16, uint32> found{};
  generic.ask(request, [&found](const nlmsghdr& message) {
    if (const auto parsed = parse<genlmsghdr>(message, kFamilyPolicy))
      found = {parsed->all.number<uint16>(CTRL_ATTR_FAMILY_ID).value_or(found.first), monitor_group_in(parsed->all)};
  });
  return found;
}

}  // namespace

// ---- The family -----------------------------------------------------------------------------------------------------

ethtool_socket::ethtool_socket() {
  try {
    std::tie(family_, monitor_group_) = ethtool_family(generic_.emplace(NETLINK_GENERIC));
  } catch (const kernel_error&) {
    generic_.reset();
  }
}

netlink_request ethtool_socket::request(uint8 command, uint16 flags) const {
  netlink_request made(family_, flags);
  made.extra<genlmsghdr>() = {.cmd = command, .version = ETHTOOL_GENL_VERSION, .reserved = 0};
  return made;
}

int ethtool_socket::ask(netlink_request& request, const message_visitor& visit, const std::function<void()>& restart) {
  return family_ == 0 ? ENOENT : generic_->ask(request, visit, restart);
}

void put_ethtool_head(netlink_request& request, uint16 attribute, uint32 device, uint32 flags) {
  nlattr* const head = mnl_attr_nest_start(&request.head(), attribute);
  if (device != 0) mnl_attr_put_u32(&request.head(), ETHTOOL_A_HEADER_DEV_INDEX, device);
  if (flags != 0) mnl_attr_put_u32(&request.head(), ETHTOOL_A_HEADER_FLAGS, flags);
  mnl_attr_nest_end(&request.head(), head);
}

// ---- Settings -------------------------------------------------------------------------------------------------------

void read_port_settings(std::vector<kernel_link>& links) {
  ethtool_socket ethtool;
  netlink_request modes = ethtool.request(ETHTOOL_MSG_LINKMODES_GET, NLM_F_DUMP);
  put_ethtool_head(modes, ETHTOOL_A_LINKMODES_HEADER, 0, ETHTOOL_FLAG_COMPACT_BITSETS);
  const int error = ethtool.ask(modes, [&links](const nlmsghdr& message) { decode_link_modes(message, links); });
  if (error == ENOENT || error == EOPNOTSUPP) return read_port_settings_by_ioctl(links);
  read_pause_settings(ethtool, links);
}

void read_pause_settings(ethtool_socket& ethtool, std::vector<kernel_link>& links) {
  if (std::none_of(links.begin(), links.end(), is_physical)) return;
  netlink_request pause = ethtool.request(ETHTOOL_MSG_PAUSE_GET, NLM_F_DUMP);
  put_ethtool_head(pause, ETHTOOL_A_PAUSE_HEADER, 0, ETHTOOL_FLAG_STATS);
  ethtool.ask(pause, [&links](const nlmsghdr& message) { decode_pause(message, links); });
}

void decode_link_modes(const nlmsghdr& message, std::vector<kernel_link>& links) {
  const auto reply = parse_reply(message, kLinkModesPolicy, ETHTOOL_A_LINKMODES_HEADER);
  if (kernel_link* const link = reply ? find_link(links, reply->device) : nullptr; link != nullptr)
    take_link_modes(reply->all, *link);
}

void decode_pause(const nlmsghdr& message, std::vector<kernel_link>& links) {
  const auto reply = parse_reply(message, kPausePolicy, ETHTOOL_A_PAUSE_HEADER);
  if (kernel_link* const link = reply ? find_link(links, reply->device) : nullptr; link != nullptr)
    link->pause = pause_of(reply->all);
}

// ---- Why links are down ---------------------------------------------------------------------------------------------

link_faults read_link_faults(ethtool_socket& ethtool) {
  link_faults faults;
  netlink_request request = ethtool.request(ETHTOOL_MSG_LINKSTATE_GET, NLM_F_DUMP);
  put_ethtool_head(request, ETHTOOL_A_LINKSTATE_HEADER, 0, 0);
  ethtool.ask(
      request, [&faults](const nlmsghdr& message) { decode_link_fault(message, faults); },
      [&faults] { faults.clear(); });
  return faults;
}

std::optional<reported_device> decode_link_name(const nlmsghdr& message) {
  const auto parsed = parse<genlmsghdr>(message, kLinkStatePolicy);
  if (!parsed) return std::nullopt;
  const attributes head = parsed->all.nested(ETHTOOL_A_LINKSTATE_HEADER, kHeadPolicy);
  const auto number = head.number<uint32>(ETHTOOL_A_HEADER_DEV_INDEX);
  auto name = head.text(ETHTOOL_A_HEADER_DEV_NAME);
  return number && name ? std::optional(reported_device{*number, std::move(*name)}) : std::nullopt;
}

void decode_link_fault(const nlmsghdr& message, link_faults& faults) {
  const auto reply = parse_reply(message, kLinkStatePolicy, ETHTOOL_A_LINKSTATE_HEADER);
  if (!reply || reply->device == 0) return;
  const auto state = reply->all.number<uint8>(ETHTOOL_A_LINKSTATE_EXT_STATE);
  const uint8 substate = reply->all.number<uint8>(ETHTOOL_A_LINKSTATE_EXT_SUBSTATE).value_or(0);
  if (state) faults[reply->device] = {*state, substate};
}

// ---- Counters -------------------------------------------------------------------------------------------------------

std::map<uint32, driver_counter_values> read_driver_counters(ethtool_socket& ethtool) {
  std::map<uint32, driver_counter_values> counted;
  netlink_request request = ethtool.request(ETHTOOL_MSG_STATS_GET, NLM_F_DUMP);
  put_ethtool_head(request, ETHTOOL_A_STATS_HEADER, 0, 0);
  nlattr* const groups = mnl_attr_nest_start(&request.head(), ETHTOOL_A_STATS_GROUPS);
  mnl_attr_put(&request.head(), ETHTOOL_A_BITSET_NOMASK, 0, "");
  mnl_attr_put_u32(&request.head(), ETHTOOL_A_BITSET_SIZE, ETHTOOL_STATS_RMON + 1);
  mnl_attr_put_u32(&request.head(), ETHTOOL_A_BITSET_VALUE, kWantedGroups);
  mnl_attr_nest_end(&request.head(), groups);
  ethtool.ask(
      request, [&counted](const nlmsghdr& message) { decode_driver_counters(message, counted); },
      [&counted] { counted.clear(); });
  return counted;
}

void decode_driver_counters(const nlmsghdr& message, std::map<uint32, driver_counter_values>& counted) {
  const auto reply = parse_reply(message, kStatsPolicy, ETHTOOL_A_STATS_HEADER);
  if (!reply || reply->device == 0) return;
  driver_counter_values counters;
  reply->all.for_each(ETHTOOL_A_STATS_GRP,
                      [&counters](std::span<const uint8> group) { take_group(parse(group, kGroupPolicy), counters); });
  const bool tells = std::any_of(counters.begin(), counters.end(), [](const auto& it) { return it.has_value(); });
  if (tells) counted[reply->device] = counters;
}

// ---- Power of modules -----------------------------------------------------------------------------------------------

std::map<uint32, module_power> read_module_power(ethtool_socket& ethtool) {
  std::map<uint32, module_power> all;
  netlink_request request = ethtool.request(ETHTOOL_MSG_MODULE_GET, NLM_F_DUMP);
  put_ethtool_head(request, ETHTOOL_A_MODULE_HEADER, 0, 0);
  ethtool.ask(
      request,
      [&all](const nlmsghdr& message) {
        if (const auto found = decode_module_power(message)) all.insert(*found);
      },
      [&all] { all.clear(); });
  return all;
}

std::optional<std::pair<uint32, module_power>> decode_module_power(const nlmsghdr& message) {
  const uint8 command = record_of<genlmsghdr>(payload_of(message)).cmd;
  if (command != ETHTOOL_MSG_MODULE_GET_REPLY && command != ETHTOOL_MSG_MODULE_NTF) return std::nullopt;
  const auto reply = parse_reply(message, kModulePowerPolicy, ETHTOOL_A_MODULE_HEADER);
  if (!reply || reply->device == 0) return std::nullopt;
  return std::pair{reply->device, module_power{reply->all.number<uint8>(ETHTOOL_A_MODULE_POWER_MODE_POLICY).value_or(0),
                                               reply->all.number<uint8>(ETHTOOL_A_MODULE_POWER_MODE).value_or(0)}};
}

// ---- Modules --------------------------------------------------------------------------------------------------------

std::vector<uint8> read_module_page(ethtool_socket& ethtool, uint32 device, const module_place& place, int& error) {
  netlink_request request = ethtool.request(ETHTOOL_MSG_MODULE_EEPROM_GET, NLM_F_ACK);
  put_ethtool_head(request, ETHTOOL_A_MODULE_EEPROM_HEADER, device, 0);
  mnl_attr_put_u32(&request.head(), ETHTOOL_A_MODULE_EEPROM_OFFSET, place.offset);
  mnl_attr_put_u32(&request.head(), ETHTOOL_A_MODULE_EEPROM_LENGTH, kModulePageBytes);
  mnl_attr_put_u8(&request.head(), ETHTOOL_A_MODULE_EEPROM_PAGE, place.page);
  mnl_attr_put_u8(&request.head(), ETHTOOL_A_MODULE_EEPROM_BANK, 0);
  mnl_attr_put_u8(&request.head(), ETHTOOL_A_MODULE_EEPROM_I2C_ADDRESS, place.i2c_address);
  std::vector<uint8> page;
  error = ethtool.ask(request, [&](const nlmsghdr& message) { page = decode_module_page(message, device); });
  return error == 0 ? page : std::vector<uint8>{};
}

std::vector<uint8> decode_module_page(const nlmsghdr& message, uint32 device) {
  const auto reply = parse_reply(message, kModulePagePolicy, ETHTOOL_A_MODULE_EEPROM_HEADER);
  if (!reply || reply->device != device) return {};
  const auto bytes = reply->all.bytes(ETHTOOL_A_MODULE_EEPROM_DATA).value_or(std::span<const uint8>());
  const auto page = bytes.first(std::min<std::size_t>(bytes.size(), kModulePageBytes));
  return {page.begin(), page.end()};
}

std::vector<uint8> read_module_page_by_ioctl(const std::string& device, const module_place& place) {
  const auto ask = the_kernel_io().ethtool_ioctl;
  ethtool_modinfo module{};
  module.cmd = ETHTOOL_GMODULEINFO;
  const uint32 offset = ioctl_offset(place);
  if (ask(device, &module) != 0 || module.eeprom_len <= offset) return {};
  alignas(ethtool_eeprom) std::array<uint8, sizeof(ethtool_eeprom) + kModulePageBytes> request{};
  ethtool_eeprom head{};
  head.cmd = ETHTOOL_GMODULEEEPROM;
  head.offset = offset;
  head.len = std::min<uint32>(kModulePageBytes, module.eeprom_len - offset);
  std::memcpy(request.data(), &head, sizeof head);
  if (ask(device, request.data()) != 0) return {};
  std::memcpy(&head, request.data(), sizeof head);
  const auto* const bytes = request.data() + sizeof head;
  return {bytes, bytes + std::min<uint32>(head.len, kModulePageBytes)};
}

}  // namespace host
