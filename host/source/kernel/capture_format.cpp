#include "source/kernel/capture_format.h"

#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>
#include <linux/rtnetlink.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "base/digits.h"

namespace host {
namespace {

struct bus_row {
  capture_bus bus;
  std::string_view word;
};
constexpr bus_row kBuses[] = {
    {capture_bus::route, "route"}, {capture_bus::generic, "generic"}, {capture_bus::ioctl, "ioctl"},
    {capture_bus::table, "table"}, {capture_bus::lldp, "lldp"},
};

struct reason_row {
  name_reason reason;
  std::string_view word;
};
constexpr reason_row kReasons[] = {
    {name_reason::map_file, "map-file"},
    {name_reason::stored, "stored"},
    {name_reason::default_route, "default-route"},
    {name_reason::loopback, "loopback"},
    {name_reason::bond, "bond"},
    {name_reason::vlan, "vlan"},
    {name_reason::device_index, "device-index"},
};

constexpr uint16 kAnyType = 0xFFFF;  // the number of a family is the kernel's choice
constexpr int kAnyByte = -1;

// A request by its message type and the first byte of its head: a family of addresses, or a command.
struct name_row {
  capture_bus bus;
  uint16 type;
  int first_byte;
  std::string_view name;
};
constexpr name_row kNames[] = {
    {capture_bus::route, RTM_GETLINK, AF_UNSPEC, "links"},
    {capture_bus::route, RTM_GETLINK, AF_BRIDGE, "bridge-vlans"},
    {capture_bus::route, RTM_GETADDR, kAnyByte, "addresses"},
    {capture_bus::route, RTM_GETROUTE, kAnyByte, "route"},
    {capture_bus::route, RTM_GETNEIGH, AF_BRIDGE, "mac-addresses"},
    {capture_bus::route, RTM_GETNEIGH, kAnyByte, "neighbors"},
    {capture_bus::generic, GENL_ID_CTRL, kAnyByte, "ethtool-family"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_LINKMODES_GET, "link-modes"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_PAUSE_GET, "pause"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_LINKSTATE_GET, "link-state"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_STATS_GET, "driver-counters"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_MODULE_EEPROM_GET, "module-memory"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_CHANNELS_GET, "queues"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_RINGS_GET, "rings"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_FEC_GET, "fec"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_EEE_GET, "eee"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_FEATURES_GET, "offloads"},
    {capture_bus::generic, kAnyType, ETHTOOL_MSG_STRSET_GET, "offload-names"},
    {capture_bus::ioctl, ETHTOOL_GSTRINGS, kAnyByte, "counter-names"},
    {capture_bus::ioctl, ETHTOOL_GSTATS, kAnyByte, "counter-values"},
    {capture_bus::ioctl, ETHTOOL_GSET, kAnyByte, "link-modes"},
    {capture_bus::ioctl, ETHTOOL_GPAUSEPARAM, kAnyByte, "pause"},
    {capture_bus::ioctl, ETHTOOL_GDRVINFO, kAnyByte, "driver"},
    {capture_bus::ioctl, ETHTOOL_GMODULEINFO, kAnyByte, "module-size"},
    {capture_bus::ioctl, ETHTOOL_GMODULEEEPROM, kAnyByte, "module-memory"},
    {capture_bus::table, 0, kAnyByte, "device-table"},
    {capture_bus::lldp, 0, kAnyByte, "lldp-neighbors"},
};

constexpr std::size_t kTypeAndFlags = offsetof(nlmsghdr, nlmsg_seq) - offsetof(nlmsghdr, nlmsg_type);

// The first byte of a request's head, after its type and flags.
int first_byte_of(const std::string& key) {
  const std::size_t at = kTypeAndFlags * 2;
  return key.size() < at + 2 ? kAnyByte : std::stoi(key.substr(at, 2), nullptr, 16);
}

}  // namespace

captured_request request_of(int netlink_bus, const nlmsghdr& request) {
  const std::span<const char> all(reinterpret_cast<const char*>(&request), request.nlmsg_len);
  const std::string key =
      hex_of(all.subspan(offsetof(nlmsghdr, nlmsg_type), kTypeAndFlags)) + hex_of(all.subspan(sizeof request));
  return {netlink_bus == NETLINK_GENERIC ? capture_bus::generic : capture_bus::route, request.nlmsg_type, key};
}

namespace {

// Of a list only the head asks for something.
std::size_t ioctl_request_size(const void* command) {
  uint32 number = 0;
  std::memcpy(&number, command, sizeof number);
  if (number == ETHTOOL_GSTRINGS) return sizeof(ethtool_gstrings);
  return number == ETHTOOL_GSTATS ? sizeof(ethtool_stats) : ioctl_size(command);
}

}  // namespace

captured_request request_of_ioctl(const std::string& device, const void* command) {
  uint32 number = 0;
  std::memcpy(&number, command, sizeof number);
  const std::span<const char> asked(static_cast<const char*>(command), ioctl_request_size(command));
  return {capture_bus::ioctl, static_cast<uint16>(number), hex_of(device) + "." + hex_of(asked)};
}

captured_request request_of_table() { return {capture_bus::table, 0, "-"}; }
captured_request request_of_lldp() { return {capture_bus::lldp, 0, "-"}; }

std::size_t ioctl_size(const void* command) {
  ethtool_eeprom head{};
  std::memcpy(&head.cmd, command, sizeof head.cmd);
  switch (head.cmd) {
    case ETHTOOL_GSET: return sizeof(ethtool_cmd);
    case ETHTOOL_GPAUSEPARAM: return sizeof(ethtool_pauseparam);
    case ETHTOOL_GDRVINFO: return sizeof(ethtool_drvinfo);
    case ETHTOOL_GMODULEINFO: return sizeof(ethtool_modinfo);
    case ETHTOOL_GMODULEEEPROM: std::memcpy(&head, command, sizeof head); return sizeof head + head.len;
    case ETHTOOL_GSTRINGS: {
      ethtool_gstrings names{};
      std::memcpy(&names, command, sizeof names);
      return sizeof names + std::size_t{names.len} * ETH_GSTRING_LEN;
    }
    case ETHTOOL_GSTATS: {
      ethtool_stats values{};
      std::memcpy(&values, command, sizeof values);
      return sizeof values + std::size_t{values.n_stats} * sizeof(uint64);
    }
    default: return 0;
  }
}

std::string_view bus_word(capture_bus bus) {
  return std::find_if(std::begin(kBuses), std::end(kBuses), [bus](const bus_row& it) { return it.bus == bus; })->word;
}

std::optional<capture_bus> bus_named(std::string_view word) {
  for (const bus_row& row : kBuses)
    if (row.word == word) return row.bus;
  return std::nullopt;
}

std::string_view request_name(const captured_request& request) {
  for (const name_row& row : kNames)
    if (row.bus == request.bus && (row.type == request.type || row.type == kAnyType) &&
        (row.first_byte == kAnyByte || row.first_byte == first_byte_of(request.key)))
      return row.name;
  return "other";
}

std::string_view byte_order_word() { return std::endian::native == std::endian::little ? "little" : "big"; }

std::string_view reason_word(name_reason reason) {
  return std::find_if(std::begin(kReasons), std::end(kReasons),
                      [reason](const reason_row& it) { return it.reason == reason; })
      ->word;
}

std::optional<name_reason> reason_named(std::string_view word) {
  for (const reason_row& row : kReasons)
    if (row.word == word) return row.reason;
  return std::nullopt;
}

std::size_t message_length(std::span<const char> messages) {
  nlmsghdr head;
  if (messages.size() < sizeof head) return 0;
  std::memcpy(&head, messages.data(), sizeof head);
  if (head.nlmsg_len < sizeof head || head.nlmsg_len > messages.size()) return 0;
  return std::min<std::size_t>(NLMSG_ALIGN(head.nlmsg_len), messages.size());
}

void address_messages(std::span<char> messages, uint32 sequence, uint32 port) {
  while (const std::size_t length = message_length(messages)) {
    nlmsghdr head;
    std::memcpy(&head, messages.data(), sizeof head);
    head.nlmsg_seq = sequence;
    head.nlmsg_pid = port;
    std::memcpy(messages.data(), &head, sizeof head);
    if (head.nlmsg_type == NLMSG_ERROR && length >= sizeof head + sizeof(nlmsgerr)) {
      char* const repeated = messages.data() + sizeof head + offsetof(nlmsgerr, msg);
      std::memcpy(repeated + offsetof(nlmsghdr, nlmsg_seq), &sequence, sizeof sequence);
      std::memcpy(repeated + offsetof(nlmsghdr, nlmsg_pid), &port, sizeof port);
    }
    messages = messages.subspan(length);
  }
}

}  // namespace host
