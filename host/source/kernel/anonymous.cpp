#include "source/kernel/anonymous.h"

#include <arpa/inet.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/if_bridge.h>
#include <linux/if_link.h>
#include <linux/neighbour.h>
#include <linux/rtnetlink.h>
#include <net/if.h>

#include <algorithm>
#include <cstring>
#include <numeric>

#include "source/kernel/ethtool.h"
#include "source/kernel/policy.h"

namespace host {
namespace {

using octet_list = std::vector<uint8>;

// ---- Messages -------------------------------------------------------------------------------------------------------

constexpr message_policy kBytesOfAny = message_policy::uniform(attribute_type::bytes, 0);
constexpr message_policy kNests = message_policy::uniform(attribute_type::nest, 0);

void put_attribute(octet_list& to, uint16 number, std::span<const uint8> value) {
  const nlattr head{static_cast<uint16>(sizeof(nlattr) + value.size()), number};
  const auto* const start = reinterpret_cast<const uint8*>(&head);
  to.insert(to.end(), start, start + sizeof head);
  to.insert(to.end(), value.begin(), value.end());
  to.resize(NLA_ALIGN(to.size()));
}

void put_text(octet_list& to, uint16 number, const std::string& text) {
  octet_list value(text.begin(), text.end());
  value.push_back(0);
  put_attribute(to, number, value);
}

// Copies an attribute; with another size than `size`, which 0 does not ask for, it is another one with the same number.
void copy_attribute(const attributes& from, uint16 number, octet_list& to, std::size_t size = 0) {
  from.for_each(number, [&](std::span<const uint8> value) {
    if (size == 0 || value.size() == size) put_attribute(to, number, value);
  });
}

octet_list head_of(std::span<const uint8> payload, std::size_t size) {
  const auto head = payload.first(std::min(payload.size(), size));
  octet_list made(head.begin(), head.end());
  made.resize(NLMSG_ALIGN(size));
  return made;
}

std::span<const uint8> after_head(std::span<const uint8> payload, std::size_t size) {
  return payload.subspan(std::min(payload.size(), std::size_t{NLMSG_ALIGN(size)}));
}

octet_list link_info(const attributes& info) {
  octet_list made;
  for (const uint16 kind : {IFLA_INFO_KIND, IFLA_INFO_SLAVE_KIND}) copy_attribute(info, kind, made);
  octet_list own, port;
  const attributes data = info.nested(IFLA_INFO_DATA, kBytesOfAny);
  copy_attribute(data, IFLA_VLAN_ID, own, sizeof(uint16));
  copy_attribute(data, IFLA_VXLAN_ID, own, sizeof(uint32));
  copy_attribute(data, IFLA_VXLAN_LINK, own, sizeof(uint32));
  copy_attribute(data, IFLA_TUN_TYPE, own, sizeof(uint8));
  copy_attribute(info.nested(IFLA_INFO_SLAVE_DATA, kBytesOfAny), IFLA_BRPORT_STATE, port, sizeof(uint8));
  if (!own.empty()) put_attribute(made, IFLA_INFO_DATA, own);
  if (!port.empty()) put_attribute(made, IFLA_INFO_SLAVE_DATA, port);
  return made;
}

octet_list route_answer(std::span<const uint8> payload) {
  octet_list made = head_of(payload, sizeof(rtmsg));
  copy_attribute(parse(after_head(payload, sizeof(rtmsg)), kBytesOfAny), RTA_OIF, made);
  return made;
}

// Only the code: the text and the repeated request may name a device.
octet_list error_code(std::span<const uint8> payload) { return head_of(payload, sizeof(nlmsgerr)); }

// ---- Memory of modules ----------------------------------------------------------------------------------------------

bool is_sfp(uint8 identifier) { return identifier == 0x02 || identifier == 0x03 || identifier == 0x0B; }
bool is_qsfp(uint8 identifier) { return identifier == 0x0C || identifier == 0x0D || identifier == 0x11; }
bool is_cmis(uint8 identifier) {
  return identifier == 0x18 || identifier == 0x19 || identifier == 0x1B || identifier == 0x1E || identifier == 0x1F;
}

// Offsets of a serial number and of the sum over it.
struct serial_place {
  std::size_t serial, sum;
};
constexpr serial_place kSffSerial = {68, 95};  // by SFF-8472 and SFF-8636
constexpr serial_place kCmisSerial = {38, 94};

// Zeros in the place of a serial number. The sum over it stays right, or wrong.
void blank_serial_number(std::span<uint8> page, const serial_place& at) {
  constexpr std::size_t kSerialBytes = 16;
  if (page.size() <= at.sum) return std::fill(page.begin() + 1, page.end(), uint8{0});
  const auto serial = page.subspan(at.serial, kSerialBytes);
  const unsigned before = std::accumulate(serial.begin(), serial.end(), 0U);
  std::fill(serial.begin(), serial.end(), uint8{'0'});
  page[at.sum] = static_cast<uint8>(page[at.sum] + kSerialBytes * '0' - before);
}

// Pages of measured values, abilities and limits.
bool has_identity(const module_place& place) {
  constexpr module_place kWithout[] = {{0x50, 3, 128}, {0x51, 0, 0}, {0x50, 1, 128}, {0x50, 2, 128}, {0x50, 0x11, 128}};
  return std::find(std::begin(kWithout), std::end(kWithout), place) == std::end(kWithout);
}

// Memory of a layout that is not known keeps its first byte, the identifier.
void blank_module_page(const module_place& place, std::span<uint8> page) {
  if (page.empty()) return;
  const bool is_lower = place == module_place{0x50, 0, 0};
  const bool is_upper = place == module_place{0x50, 0, 128};
  if (!has_identity(place) || (is_lower && (is_qsfp(page[0]) || is_cmis(page[0])))) return;
  if ((is_lower && is_sfp(page[0])) || (is_upper && is_qsfp(page[0]))) return blank_serial_number(page, kSffSerial);
  if (is_upper && is_cmis(page[0])) return blank_serial_number(page, kCmisSerial);
  std::fill(page.begin() + 1, page.end(), uint8{0});
}

constexpr message_policy kPlacePolicy = {
    {ETHTOOL_A_MODULE_EEPROM_OFFSET, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_MODULE_EEPROM_PAGE, attribute_type::number, sizeof(uint8)},
    {ETHTOOL_A_MODULE_EEPROM_I2C_ADDRESS, attribute_type::number, sizeof(uint8)},
};

module_place place_of(const nlmsghdr& request) {
  const auto parsed = parse<genlmsghdr>(request, kPlacePolicy);
  if (!parsed) return {};
  return {parsed->all.number<uint8>(ETHTOOL_A_MODULE_EEPROM_I2C_ADDRESS).value_or(0),
          parsed->all.number<uint8>(ETHTOOL_A_MODULE_EEPROM_PAGE).value_or(0),
          static_cast<uint8>(parsed->all.number<uint32>(ETHTOOL_A_MODULE_EEPROM_OFFSET).value_or(0))};
}

// A message of ethtool: its head keeps the number of the device alone.
octet_list ethtool_answer(const nlmsghdr& request, std::span<const uint8> payload) {
  constexpr uint16 kHeader = ETHTOOL_A_LINKMODES_HEADER;  // the same in all messages
  octet_list made = head_of(payload, sizeof(genlmsghdr));
  const auto list = after_head(payload, sizeof(genlmsghdr));
  const attributes all = parse(list, kBytesOfAny);
  octet_list head;
  copy_attribute(parse(list, kNests).nested(kHeader, kBytesOfAny), ETHTOOL_A_HEADER_DEV_INDEX, head);
  put_attribute(made, kHeader, head);
  const bool is_module = record_of<genlmsghdr>(payload_of(request)).cmd == ETHTOOL_MSG_MODULE_EEPROM_GET;
  for (uint16 number = kHeader + 1; number < message_policy::kNumbers; ++number) {
    if (!is_module) {
      copy_attribute(all, number, made);
      continue;
    }
    if (number != ETHTOOL_A_MODULE_EEPROM_DATA || !all.bytes(number)) continue;
    octet_list page(all.bytes(number)->begin(), all.bytes(number)->end());
    blank_module_page(place_of(request), page);
    put_attribute(made, number, page);
  }
  return made;
}

}  // namespace

// ---- Substitutes ----------------------------------------------------------------------------------------------------

std::string anonymiser::device_name(const std::string& name, const std::string& kind) {
  constexpr std::size_t kMostKind = IFNAMSIZ - 6;  // leaves room for the number
  if (name == "lo") return name;
  const auto [found, is_new] = names_.try_emplace(name);
  if (is_new) found->second = (kind.empty() ? "device" : kind.substr(0, kMostKind)) + std::to_string(names_.size());
  return found->second;
}

// 02:00:00:00:00:01 and so on; addresses of another size become zeros.
anonymiser::octet_list anonymiser::hardware_address(std::span<const uint8> real) {
  constexpr std::size_t kBytes = 6;
  octet_list key(real.begin(), real.end());
  const bool is_zero = std::all_of(key.begin(), key.end(), [](uint8 it) { return it == 0; });
  if (key.size() != kBytes || is_zero) return octet_list(key.size());
  const auto [found, is_new] = hardware_.try_emplace(key);
  if (is_new) {
    const std::size_t number = hardware_.size();
    found->second = {
        2, 0, 0, static_cast<uint8>(number >> 16), static_cast<uint8>(number >> 8), static_cast<uint8>(number)};
  }
  return found->second;
}

// Addresses for documentation; more than there are of IPv4 begin again. Addresses of the loopback stay.
anonymiser::octet_list anonymiser::ip_address(std::span<const uint8> real) {
  constexpr uint8 kNetworks[][3] = {{192, 0, 2}, {198, 51, 100}, {203, 0, 113}};
  constexpr std::size_t kHosts = 254;
  const octet_list key(real.begin(), real.end());
  const bool is_ipv4 = key.size() == sizeof(in_addr);
  const octet_list loopback6 = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
  if ((is_ipv4 && key[0] == 127) || key == loopback6) return key;
  const auto [found, is_new] = ip_.try_emplace(key);
  if (!is_new) return found->second;
  const std::size_t number = ip_.size() - 1;
  if (is_ipv4) {
    const auto& network = kNetworks[number / kHosts % std::size(kNetworks)];
    return found->second = {network[0], network[1], network[2], static_cast<uint8>(number % kHosts + 1)};
  }
  octet_list made = {0x20, 0x01, 0x0d, 0xb8};
  made.resize(key.size());
  if (made.size() == sizeof(in6_addr)) {
    made[14] = static_cast<uint8>((number + 1) >> 8);
    made[15] = static_cast<uint8>(number + 1);
  }
  return found->second = made;
}

// ---- Answers --------------------------------------------------------------------------------------------------------

anonymiser::octet_list anonymiser::link(std::span<const uint8> payload) {
  octet_list made = head_of(payload, sizeof(ifinfomsg));
  const auto list = after_head(payload, sizeof(ifinfomsg));
  const attributes all = parse(list, kBytesOfAny), nests = parse(list, kNests);
  const attributes info = nests.nested(IFLA_LINKINFO, kBytesOfAny);
  const octet_list kept_info = link_info(nests.nested(IFLA_LINKINFO, kNests));
  const auto text_of = [](const auto& value) {
    return value ? std::string(value->begin(), std::find(value->begin(), value->end(), uint8{0})) : std::string();
  };
  if (all.bytes(IFLA_IFNAME))
    put_text(made, IFLA_IFNAME, device_name(text_of(all.bytes(IFLA_IFNAME)), text_of(info.bytes(IFLA_INFO_KIND))));
  if (const std::string alias = text_of(all.bytes(IFLA_IFALIAS)); !alias.empty()) {
    const auto [found, is_new] = aliases_.try_emplace(alias);
    if (is_new) found->second = "alias " + std::to_string(aliases_.size());
    put_text(made, IFLA_IFALIAS, found->second);
  }
  for (const uint16 kept : {IFLA_MTU, IFLA_MIN_MTU, IFLA_MAX_MTU, IFLA_OPERSTATE, IFLA_MASTER, IFLA_LINK,
                            IFLA_LINK_NETNSID, IFLA_CARRIER_CHANGES, IFLA_STATS64})
    copy_attribute(all, kept, made);
  for (const uint16 mac : {IFLA_ADDRESS, IFLA_PERM_ADDRESS})
    if (const auto real = all.bytes(mac)) put_attribute(made, mac, hardware_address(*real));
  if (!kept_info.empty()) put_attribute(made, IFLA_LINKINFO, kept_info);
  octet_list vlans;
  copy_attribute(nests.nested(IFLA_AF_SPEC, kBytesOfAny), IFLA_BRIDGE_VLAN_INFO, vlans, sizeof(bridge_vlan_info));
  if (!vlans.empty()) put_attribute(made, IFLA_AF_SPEC, vlans);
  return made;
}

anonymiser::octet_list anonymiser::address(std::span<const uint8> payload) {
  octet_list made = head_of(payload, sizeof(ifaddrmsg));
  const attributes all = parse(after_head(payload, sizeof(ifaddrmsg)), kBytesOfAny);
  for (const uint16 number : {IFA_LOCAL, IFA_ADDRESS})
    if (const auto real = all.bytes(number)) put_attribute(made, number, ip_address(*real));
  for (const uint16 kept : {IFA_FLAGS, IFA_CACHEINFO}) copy_attribute(all, kept, made);
  return made;
}

anonymiser::octet_list anonymiser::neighbor(std::span<const uint8> payload) {
  octet_list made = head_of(payload, sizeof(ndmsg));
  const attributes all = parse(after_head(payload, sizeof(ndmsg)), kBytesOfAny);
  if (const auto real = all.bytes(NDA_DST)) put_attribute(made, NDA_DST, ip_address(*real));
  if (const auto real = all.bytes(NDA_LLADDR)) put_attribute(made, NDA_LLADDR, hardware_address(*real));
  for (const uint16 kept : {NDA_CACHEINFO, NDA_VLAN, NDA_MASTER}) copy_attribute(all, kept, made);
  return made;
}

std::string anonymiser::answer(const nlmsghdr& request, std::string_view messages) {
  std::string made;
  while (const std::size_t length = message_length(messages)) {
    nlmsghdr head;
    std::memcpy(&head, messages.data(), sizeof head);
    const std::span payload(reinterpret_cast<const uint8*>(messages.data()) + sizeof head,
                            head.nlmsg_len - sizeof head);
    octet_list kept;
    if (head.nlmsg_type == NLMSG_ERROR) {
      kept = error_code(payload);
      head.nlmsg_flags = static_cast<uint16>((head.nlmsg_flags & ~NLM_F_ACK_TLVS) | NLM_F_CAPPED);
    } else if (head.nlmsg_type == NLMSG_DONE) {
      kept = head_of(payload, sizeof(int));
    } else if (request.nlmsg_type == GENL_ID_CTRL) {
      kept.assign(payload.begin(), payload.end());
    } else if (head.nlmsg_type == RTM_NEWLINK) {
      kept = link(payload);
    } else if (head.nlmsg_type == RTM_NEWADDR) {
      kept = address(payload);
    } else if (head.nlmsg_type == RTM_NEWNEIGH) {
      kept = neighbor(payload);
    } else if (head.nlmsg_type == RTM_NEWROUTE) {
      kept = route_answer(payload);
    } else if (head.nlmsg_type == request.nlmsg_type) {
      kept = ethtool_answer(request, payload);
    }
    head.nlmsg_len = static_cast<uint32>(sizeof head + kept.size());
    made.append(reinterpret_cast<const char*>(&head), sizeof head);
    made.append(reinterpret_cast<const char*>(kept.data()), kept.size());
    made.resize(NLMSG_ALIGN(made.size()));
    messages.remove_prefix(length);
  }
  return made;
}

bool anonymiser::is_stored(const captured_request& request) {
  constexpr std::string_view kPublic[] = {"c00002ff", "c63364ff", "cb0071ff"};  // ends of networks for documentation
  const std::string_view name = request_name(request);
  if (name != "route") return name != "other";
  return std::any_of(std::begin(kPublic), std::end(kPublic),
                     [&request](std::string_view end) { return request.key.ends_with(end); });
}

std::string anonymiser::ioctl_answer(std::string_view record) const {
  std::string made(record);
  uint32 command = 0;
  if (made.size() < sizeof command) return made;
  std::memcpy(&command, made.data(), sizeof command);
  if (command == ETHTOOL_GDRVINFO && made.size() == sizeof(ethtool_drvinfo)) {
    ethtool_drvinfo real{}, kept{};
    std::memcpy(&real, made.data(), sizeof real);
    kept.cmd = real.cmd;
    kept.n_stats = real.n_stats;
    std::memcpy(kept.driver, real.driver, sizeof kept.driver);
    std::memcpy(made.data(), &kept, sizeof kept);
  }
  if (command == ETHTOOL_GMODULEEEPROM && made.size() > sizeof(ethtool_eeprom)) {
    ethtool_eeprom head{};
    std::memcpy(&head, made.data(), sizeof head);
    const module_place place = head.offset == 0     ? module_place{0x50, 0, 0}
                               : head.offset == 128 ? module_place{0x50, 0, 128}
                               : head.offset == 256 ? module_place{0x51, 0, 0}
                               : head.offset == 512 ? module_place{0x50, 3, 128}
                                                    : module_place{};
    blank_module_page(place, {reinterpret_cast<uint8*>(made.data()) + sizeof head, made.size() - sizeof head});
  }
  return made;
}

std::string anonymiser::table(std::string_view text) {
  std::string made;
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
    const std::size_t colon = line.find(':', begin);
    if (colon == std::string_view::npos)
      made += line;
    else
      made += device_name(std::string(line.substr(begin, colon - begin))) + std::string(line.substr(colon));
    made += '\n';
  }
  return made;
}

// A hardware address stays one; any other identifier becomes a number.
lldp_id anonymiser::chassis_or_port(const lldp_id& real, uint32 mac_subtype) {
  constexpr std::size_t kMacBytes = 6;
  constexpr uint32 kLocalSubtype = 7;
  if (real.bytes.empty()) return real;
  if (real.subtype == mac_subtype && real.bytes.size() == kMacBytes) {
    const octet_list mac = hardware_address(octet_list(real.bytes.begin(), real.bytes.end()));
    return {real.subtype, std::string(mac.begin(), mac.end())};
  }
  const auto [found, is_new] = neighbors_.try_emplace(real.bytes);
  if (is_new) found->second = "id" + std::to_string(neighbors_.size());
  return {kLocalSubtype, found->second};
}

lldp_neighbor anonymiser::neighbor(const lldp_neighbor& real) {
  constexpr uint32 kChassisMac = 4, kPortMac = 3;
  lldp_neighbor made = real;
  made.device = device_name(real.device);
  made.chassis = chassis_or_port(real.chassis, kChassisMac);
  made.port = chassis_or_port(real.port, kPortMac);
  made.system_name.clear();
  made.system_description.clear();
  made.port_description.clear();
  made.management_addresses.clear();
  return made;
}

counter_baseline anonymiser::baseline(const counter_baseline& real) {
  counter_baseline made = real;
  const octet_list mac = hardware_address(real.mac);
  std::copy(mac.begin(), mac.end(), made.mac.begin());
  return made;
}

}  // namespace host
