#include "source/kernel/ethtool.h"

#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>

#include <algorithm>
#include <cerrno>

#include "source/kernel/ethtool_ioctl.h"

namespace host {
namespace {

// The device that a head names.
uint32 device_of(const nlattr& head) {
  uint32 number = 0;
  for_each_nested(head, [&number](const nlattr& attribute) {
    if (type_of(attribute) == ETHTOOL_A_HEADER_DEV_INDEX) number = attribute_number<uint32>(attribute);
  });
  return number;
}

// The device that a message is about; 0 without a head.
uint32 device_of(const nlmsghdr& message, uint16 head) {
  uint32 number = 0;
  for_each_attribute(message, sizeof(genlmsghdr), [&](const nlattr& attribute) {
    if (type_of(attribute) == head) number = device_of(attribute);
  });
  return number;
}

// ---- Link modes -----------------------------------------------------------------------------------------------------

link_modes modes_of(const nlattr& words) {
  const std::span<const uint8> bytes = bytes_of(words);
  link_modes modes;
  for (std::size_t word = 0; word + sizeof(uint32) <= std::min(bytes.size(), modes.size() / 8);
       word += sizeof(uint32)) {
    uint32 bits = 0;
    std::memcpy(&bits, bytes.data() + word, sizeof bits);
    modes |= link_modes(bits) << (word * 8);
  }
  return modes;
}

struct mode_set {
  link_modes value;
  link_modes mask;
};

mode_set mode_set_of(const nlattr& bitset) {
  mode_set set;
  for_each_nested(bitset, [&set](const nlattr& attribute) {
    if (type_of(attribute) == ETHTOOL_A_BITSET_VALUE) set.value = modes_of(attribute);
    if (type_of(attribute) == ETHTOOL_A_BITSET_MASK) set.mask = modes_of(attribute);
  });
  return set;
}

void take_link_mode(const nlattr& attribute, kernel_link& link) {
  constexpr uint32 kUnknownSpeed = 0xFFFFFFFF;
  switch (type_of(attribute)) {
    case ETHTOOL_A_LINKMODES_AUTONEG: link.negotiates = attribute_number<uint8>(attribute) != AUTONEG_DISABLE; return;
    case ETHTOOL_A_LINKMODES_OURS: {
      const mode_set ours = mode_set_of(attribute);
      link.supported = ours.mask;
      link.advertised = ours.value;
      return;
    }
    case ETHTOOL_A_LINKMODES_PEER: link.partner = mode_set_of(attribute).value; return;
    case ETHTOOL_A_LINKMODES_SPEED:
      if (const auto speed = attribute_number<uint32>(attribute); speed != kUnknownSpeed) link.speed_mbps = speed;
      return;
    case ETHTOOL_A_LINKMODES_DUPLEX:
      if (const auto duplex = attribute_number<uint8>(attribute); duplex <= DUPLEX_FULL)
        link.is_full_duplex = duplex == DUPLEX_FULL;
      return;
    default: return;
  }
}

// ---- Pause ----------------------------------------------------------------------------------------------------------

void take_pause(const nlattr& attribute, pause_settings& pause) {
  switch (type_of(attribute)) {
    case ETHTOOL_A_PAUSE_AUTONEG: pause.negotiates = attribute_number<uint8>(attribute) != 0; return;
    case ETHTOOL_A_PAUSE_RX: pause.receives = attribute_number<uint8>(attribute) != 0; return;
    case ETHTOOL_A_PAUSE_TX: pause.sends = attribute_number<uint8>(attribute) != 0; return;
    case ETHTOOL_A_PAUSE_STATS:
      for_each_nested(attribute, [&pause](const nlattr& frames) {
        if (type_of(frames) == ETHTOOL_A_PAUSE_STAT_RX_FRAMES) pause.received_frames = attribute_number<uint64>(frames);
        if (type_of(frames) == ETHTOOL_A_PAUSE_STAT_TX_FRAMES) pause.sent_frames = attribute_number<uint64>(frames);
      });
      return;
    default: return;
  }
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

void take_counter(uint32 group, const nlattr& attribute, driver_counters& counters) {
  if (mnl_attr_get_payload_len(&attribute) < sizeof(uint64)) return;
  for (const driver_row& row : kDriverRows)
    if (row.group == group && row.number == type_of(attribute))
      counters[row.counter] = attribute_number<uint64>(attribute);
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

void take_size(const nlattr& nest, uint32 first, driver_counters& counters) {
  uint32 low = 0, high = 0;
  std::optional<uint64> packets;
  for_each_nested(nest, [&](const nlattr& attribute) {
    switch (type_of(attribute)) {
      case ETHTOOL_A_STATS_GRP_HIST_BKT_LOW: low = attribute_number<uint32>(attribute); return;
      case ETHTOOL_A_STATS_GRP_HIST_BKT_HI: high = attribute_number<uint32>(attribute); return;
      case ETHTOOL_A_STATS_GRP_HIST_VAL:
        if (mnl_attr_get_payload_len(&attribute) >= sizeof(uint64)) packets = attribute_number<uint64>(attribute);
        return;
      default: return;
    }
  });
  if (const auto size = size_class_of(low, high); size && packets) counters[first + *size] = packets;
}

void take_group(const nlattr& nest, driver_counters& counters) {
  std::optional<uint32> group;
  for_each_nested(nest, [&](const nlattr& attribute) {
    switch (type_of(attribute)) {
      case ETHTOOL_A_STATS_GRP_ID: group = attribute_number<uint32>(attribute); return;
      case ETHTOOL_A_STATS_GRP_STAT:
        if (group) for_each_nested(attribute, [&](const nlattr& it) { take_counter(*group, it, counters); });
        return;
      case ETHTOOL_A_STATS_GRP_HIST_RX: return take_size(attribute, kDriverReceivedBySize, counters);
      case ETHTOOL_A_STATS_GRP_HIST_TX: return take_size(attribute, kDriverSentBySize, counters);
      default: return;
    }
  });
}

// ---- Modules by ioctl -----------------------------------------------------------------------------------------------

// The offset of a place in the linear memory of the ioctl: the pages of the module follow each other, and the second
// address of an SFP follows the first.
uint32 ioctl_offset(const module_place& place) {
  constexpr uint8 kSecondAddress = 0x51;
  if (place.i2c_address == kSecondAddress) return 256U + place.offset;
  return place.page * kModulePageBytes + place.offset;
}

// The number of the family; 0 when the kernel has none.
uint16 ethtool_family(netlink_socket& generic) {
  netlink_request request(GENL_ID_CTRL, NLM_F_ACK);
  request.extra<genlmsghdr>() = {.cmd = CTRL_CMD_GETFAMILY, .version = 1, .reserved = 0};
  mnl_attr_put_strz(&request.head(), CTRL_ATTR_FAMILY_NAME, ETHTOOL_GENL_NAME);
  uint16 family = 0;
  generic.ask(request, [&family](const nlmsghdr& message) {
    for_each_attribute(message, sizeof(genlmsghdr), [&family](const nlattr& attribute) {
      if (type_of(attribute) == CTRL_ATTR_FAMILY_ID) family = attribute_number<uint16>(attribute);
    });
  });
  return family;
}

}  // namespace

// ---- The family -----------------------------------------------------------------------------------------------------

ethtool_socket::ethtool_socket() {
  try {
    family_ = ethtool_family(generic_.emplace(NETLINK_GENERIC));
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
  if (std::none_of(links.begin(), links.end(), is_physical)) return;
  netlink_request pause = ethtool.request(ETHTOOL_MSG_PAUSE_GET, NLM_F_DUMP);
  put_ethtool_head(pause, ETHTOOL_A_PAUSE_HEADER, 0, ETHTOOL_FLAG_STATS);
  ethtool.ask(pause, [&links](const nlmsghdr& message) { decode_pause(message, links); });
}

void decode_link_modes(const nlmsghdr& message, std::vector<kernel_link>& links) {
  kernel_link* const link = find_link(links, device_of(message, ETHTOOL_A_LINKMODES_HEADER));
  if (link == nullptr) return;
  for_each_attribute(message, sizeof(genlmsghdr),
                     [link](const nlattr& attribute) { take_link_mode(attribute, *link); });
}

void decode_pause(const nlmsghdr& message, std::vector<kernel_link>& links) {
  kernel_link* const link = find_link(links, device_of(message, ETHTOOL_A_PAUSE_HEADER));
  if (link == nullptr) return;
  pause_settings pause;
  for_each_attribute(message, sizeof(genlmsghdr), [&pause](const nlattr& attribute) { take_pause(attribute, pause); });
  link->pause = pause;
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

void decode_link_fault(const nlmsghdr& message, link_faults& faults) {
  std::optional<uint8> state;
  uint8 substate = 0;
  for_each_attribute(message, sizeof(genlmsghdr), [&](const nlattr& attribute) {
    if (mnl_attr_get_payload_len(&attribute) == 0) return;
    if (type_of(attribute) == ETHTOOL_A_LINKSTATE_EXT_STATE) state = attribute_number<uint8>(attribute);
    if (type_of(attribute) == ETHTOOL_A_LINKSTATE_EXT_SUBSTATE) substate = attribute_number<uint8>(attribute);
  });
  const uint32 device = device_of(message, ETHTOOL_A_LINKSTATE_HEADER);
  if (state && device != 0) faults[device] = {*state, substate};
}

// ---- Counters -------------------------------------------------------------------------------------------------------

std::map<uint32, driver_counters> read_driver_counters(ethtool_socket& ethtool) {
  std::map<uint32, driver_counters> counted;
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

void decode_driver_counters(const nlmsghdr& message, std::map<uint32, driver_counters>& counted) {
  const uint32 device = device_of(message, ETHTOOL_A_STATS_HEADER);
  if (device == 0) return;
  driver_counters counters;
  for_each_attribute(message, sizeof(genlmsghdr), [&counters](const nlattr& attribute) {
    if (type_of(attribute) == ETHTOOL_A_STATS_GRP) take_group(attribute, counters);
  });
  const bool tells = std::any_of(counters.begin(), counters.end(), [](const auto& it) { return it.has_value(); });
  if (tells) counted[device] = counters;
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
  std::vector<uint8> page;
  if (device_of(message, ETHTOOL_A_MODULE_EEPROM_HEADER) != device) return page;
  for_each_attribute(message, sizeof(genlmsghdr), [&page](const nlattr& attribute) {
    if (type_of(attribute) != ETHTOOL_A_MODULE_EEPROM_DATA) return;
    const std::span<const uint8> bytes = bytes_of(attribute);
    page.assign(bytes.begin(),
                bytes.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(bytes.size(), kModulePageBytes)));
  });
  return page;
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
