#include "source/kernel/device_map.h"

#include <net/if.h>

#include <algorithm>
#include <set>

#include "source/kernel/sorted_records.h"
#include "source/yaml/yaml_value.h"
#include "switch/interface_range.h"

namespace host {
namespace {

constexpr uint32 kPortsOfSlot = kMaxPort + 1;

if_index_t interface_named(const yaml_value& value) {
  std::vector<interface_span> spans;
  if (const auto error = parse_interface_range(value.text(), spans)) value.fail(error->message);
  if (spans.size() != 1 || spans[0].low != spans[0].high) value.fail_with_value("is not a single interface");
  return index_of(spans[0].word->kinds.front(), spans[0].low);
}

constexpr key_rule<requested_interface> kRules[] = {
    {"interface",
     [](const yaml_value& value, requested_interface& requested) { requested.if_index = interface_named(value); }},
    {"routed",
     [](const yaml_value& value, requested_interface& requested) { requested.is_routed = value.yes_or_no(); }},
};

// ---- The usual interface --------------------------------------------------------------------------------------------

bool is_port(const kernel_link& link) { return is_physical(link) || link.kind == "veth"; }

if_index_t port_index(uint32 number, bool is_routed) {
  const uint32 place = number - 1;
  if (place / kPortsOfSlot > kMaxSlot) return 0;
  return ethernet_index(is_routed ? IF_TYPE_ETHERNET_L3 : IF_TYPE_ETHERNET, place / kPortsOfSlot, place % kPortsOfSlot);
}

// Of the kinds whose number counts, with another number in the place of the kernel's.
if_index_t usual_index(const kernel_link& link, uint32 number, bool is_routed) {
  if (link.kind == "dummy") return numbered_index(IF_TYPE_LOOPBACK, number);
  if (link.kind == "bond" && number <= kMaxChannel) return channel_index(IF_TYPE_ETH_PORT_CHANNEL, number);
  if (is_port(link)) return port_index(number, is_routed);
  return numbered_index(IF_TYPE_VETHERNET, number);
}

// A dummy that a command created is the loopback that the command named: its number is the kernel's.
bool is_named_by_command(const kernel_link& link) {
  return link.kind == "dummy" && link.name == "lo" + std::to_string(link.number);
}

// The sub-interface of a mapped port or channel; 0 when there is no such parent.
if_index_t sub_interface_index(const kernel_link& link, const std::vector<mapped_device>& mapped) {
  const auto parent =
      std::find_if(mapped.begin(), mapped.end(), [&link](const mapped_device& it) { return it.number == link.parent; });
  if (parent == mapped.end() || link.vlan == 0) return 0;
  const index_fields fields = decode_index(parent->if_index);
  if (fields.type == IF_TYPE_ETHERNET || fields.type == IF_TYPE_ETHERNET_L3)
    return ethernet_index(fields.type, fields.slot, fields.port, link.vlan);
  if (fields.type == IF_TYPE_ETH_PORT_CHANNEL)
    return channel_index(fields.type, fields.number, PC_SUBTYPE_ORDINARY, link.vlan);
  return 0;
}

// ---- The map --------------------------------------------------------------------------------------------------------

// Gives each device one interface, and each interface to one device: what is added first holds.
class device_mapper {
 public:
  device_mapper(const requested_interfaces& requested, const known_interfaces& known)
      : requested_(requested), known_(known) {}

  void add_requested(const kernel_link& link) {
    const auto it = requested_.find(link.name);
    if (it == requested_.end() || it->second.if_index == 0) return;
    if (add(link, it->second.if_index, name_reason::map_file)) of_user_.insert(switched_index(it->second.if_index));
  }

  // Those that have their interface by what they are.
  void add_own(const kernel_link& link) {
    if ((link.flags & IFF_LOOPBACK) != 0) add(link, numbered_index(IF_TYPE_LOOPBACK, 0), name_reason::loopback);
    if (is_named_by_command(link)) add(link, numbered_index(IF_TYPE_LOOPBACK, link.number), name_reason::device_index);
  }

  void add_known(const kernel_link& link) {
    const auto it = known_.of_devices.find(link.number);
    if (it == known_.of_devices.end() || !may_be_known_as(link, it->second.if_index)) return;
    const index_fields fields = decode_index(it->second.if_index);
    const bool becomes_routed = fields.type == IF_TYPE_ETHERNET && is_routed(link);
    add(link, becomes_routed ? ethernet_index(IF_TYPE_ETHERNET_L3, fields.slot, fields.port) : it->second.if_index,
        it->second.reason);
  }

  bool add_sub_interface(const kernel_link& link) {
    const if_index_t sub = sub_interface_index(link, mapped_);
    return sub != 0 && add(link, sub, name_reason::vlan);
  }

  // The interface of the device's number, or the next free one.
  void add_new(const kernel_link& link, bool is_management) {
    if (done_.contains(link.number)) return;
    const if_index_t management = ethernet_index(IF_TYPE_MGMT, 0, 0);
    if (is_management && is_free(management) && add(link, management, name_reason::default_route)) return;
    uint32 number = link.number;
    if_index_t found = usual_index(link, number, is_routed(link));
    if (of_user_.contains(switched_index(found))) return;
    while (found != 0 && !is_free(found)) found = usual_index(link, ++number, is_routed(link));
    const bool is_channel = decode_index(found).type == IF_TYPE_ETH_PORT_CHANNEL;
    add(link, found, is_channel ? name_reason::bond : name_reason::device_index);
  }

  std::vector<mapped_device> take() {
    sort_by<&mapped_device::number>(mapped_);
    return std::move(mapped_);
  }

 private:
  bool is_routed(const kernel_link& link) const {
    const auto it = requested_.find(link.name);
    return it != requested_.end() && it->second.is_routed;
  }

  bool is_free(if_index_t if_index) const {
    const if_index_t it = switched_index(if_index);
    return !taken_.contains(it) && !known_.of_others.contains(it);
  }

  bool add(const kernel_link& link, if_index_t if_index, name_reason reason) {
    if (if_index == 0 || done_.contains(link.number) || !taken_.insert(switched_index(if_index)).second) return false;
    done_.insert(link.number);
    mapped_.push_back({link.name, link.number, if_index, link.slave_kind == "bridge", reason});
    return true;
  }

  const requested_interfaces& requested_;
  const known_interfaces& known_;
  std::vector<mapped_device> mapped_;
  std::set<uint32> done_;         // devices, by number
  std::set<if_index_t> taken_;    // as not routed
  std::set<if_index_t> of_user_;  // those of them that the user gave
};

}  // namespace

requested_interfaces read_map_file(const std::string& path) {
  const yaml_document document = load_yaml_file(path);
  const yaml_value top(document.root(), "the map", path);
  require_map(top);
  requested_interfaces requested;
  for (const yaml_entry& entry : top.node().entries) {
    const yaml_value device(*entry.key, "device", path);
    const yaml_value value(*entry.value, "interface", path);
    requested_interface& of_device = requested[device.text()];
    if (value.is_map())
      read_map(value, kRules, of_device);
    else
      of_device.if_index = interface_named(value);
    const auto other = std::find_if(requested.begin(), requested.end(), [&](const auto& known) {
      return &known.second != &of_device && known.second.if_index == of_device.if_index && of_device.if_index != 0;
    });
    if (other != requested.end())
      value.fail("'" + other->first + "' and '" + device.text() + "' are the same interface");
  }
  return requested;
}

bool may_be_known_as(const kernel_link& link, if_index_t if_index) {
  if ((link.flags & IFF_LOOPBACK) != 0 || is_named_by_command(link)) return false;
  const if_index_type_t type = decode_index(if_index).type;
  if (if_index == ethernet_index(IF_TYPE_MGMT, 0, 0)) return link.kind != "vlan";
  if (link.kind == "dummy") return type == IF_TYPE_LOOPBACK && decode_index(if_index).number != 0;
  if (is_port(link)) return type == IF_TYPE_ETHERNET && decode_index(if_index).sub_interface == 0;
  const bool is_channel = type == IF_TYPE_ETH_PORT_CHANNEL && decode_index(if_index).sub_interface == 0;
  return type == IF_TYPE_VETHERNET || (link.kind == "bond" && is_channel);
}

if_index_t switched_index(if_index_t if_index) {
  const index_fields it = decode_index(if_index);
  return it.type == IF_TYPE_ETHERNET_L3 ? ethernet_index(IF_TYPE_ETHERNET, it.slot, it.port, it.sub_interface)
                                        : if_index;
}

std::vector<mapped_device> map_devices(const std::vector<kernel_link>& links, uint32 management,
                                       const requested_interfaces& requested, const known_interfaces& known) {
  device_mapper map(requested, known);
  // Interfaces of the map file are assigned first, so that no other device takes them; VLAN devices last, because they
  // need their parents.
  for (const kernel_link& link : links) map.add_requested(link);
  for (const kernel_link& link : links) map.add_own(link);
  for (const kernel_link& link : links)
    if (link.kind != "vlan") map.add_known(link);
  for (const kernel_link& link : links)
    if (link.kind != "vlan") map.add_new(link, link.number == management);
  for (const kernel_link& link : links) {
    if (link.kind != "vlan" || map.add_sub_interface(link)) continue;
    map.add_known(link);
    map.add_new(link, false);
  }
  return map.take();
}

}  // namespace host
