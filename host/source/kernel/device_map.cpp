#include "source/kernel/device_map.h"

#include <net/if.h>

#include <algorithm>
#include <fstream>
#include <set>

#include "source/kernel/sorted_records.h"
#include "source/yaml/yaml_file_error.h"
#include "source/yaml/yaml_value.h"
#include "switch/interface_name.h"

namespace host {
namespace {

constexpr uint32 kPortsOfSlot = MAX_PORT + 1;

if_index_t interface_named(const yaml_value& value) {
  std::vector<interface_span> spans;
  if (const auto error = parse_interface_range(value.text(), spans)) value.fail(error->message);
  if (spans.size() != 1 || spans[0].low != spans[0].high) value.fail_with_value("is not a single interface");
  return index_of(spans[0].word->kinds.front(), spans[0].low);
}

constexpr key_rule<wanted_interface> kRules[] = {
    {"interface", [](const yaml_value& value, wanted_interface& wanted) { wanted.if_index = interface_named(value); }},
    {"routed", [](const yaml_value& value, wanted_interface& wanted) { wanted.is_routed = value.yes_or_no(); }},
};

// ---- The usual interface --------------------------------------------------------------------------------------------

bool is_port(const kernel_link& link) { return is_physical(link) || link.kind == "veth"; }

if_index_t port_index(const kernel_link& link, bool is_routed) {
  const uint32 place = link.number - 1;
  if (place / kPortsOfSlot > MAX_SLOT) return 0;
  return ethernet_index(is_routed ? IF_TYPE_ETHERNET_L3 : IF_TYPE_ETHERNET, place / kPortsOfSlot, place % kPortsOfSlot);
}

if_index_t usual_index(const kernel_link& link, bool is_routed) {
  if ((link.flags & IFF_LOOPBACK) != 0) return numbered_index(IF_TYPE_LOOPBACK, 0);
  if (link.kind == "dummy") return numbered_index(IF_TYPE_LOOPBACK, link.number);
  if (link.kind == "bond" && link.number <= MAX_CHANNEL) return channel_index(IF_TYPE_ETH_PORT_CHANNEL, link.number);
  if (is_port(link)) return port_index(link, is_routed);
  return numbered_index(IF_TYPE_VETHERNET, link.number);
}

// The sub-interface of a mapped port or channel; 0 when there is no such parent.
if_index_t sub_interface_index(const kernel_link& link, const std::vector<mapped_device>& mapped) {
  const auto parent =
      std::find_if(mapped.begin(), mapped.end(), [&link](const mapped_device& it) { return it.number == link.parent; });
  if (parent == mapped.end() || link.vlan == 0) return 0;
  const index_fields fields = take_apart(parent->if_index);
  if (fields.type == IF_TYPE_ETHERNET || fields.type == IF_TYPE_ETHERNET_L3)
    return ethernet_index(fields.type, fields.slot, fields.port, link.vlan);
  if (fields.type == IF_TYPE_ETH_PORT_CHANNEL)
    return channel_index(fields.type, fields.number, PC_SUBTYPE_ORDINARY, link.vlan);
  return 0;
}

}  // namespace

wanted_interfaces read_map_file(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw yaml_file_error(path + ": cannot be read");
  YAML::Node document;
  try {
    document = YAML::Load(file);
  } catch (const YAML::Exception& error) {
    fail_at(path, static_cast<uint32>(error.mark.line + 1), "not YAML: " + error.msg);
  }
  const yaml_value top(document, "the map", path);
  require_map(top);
  wanted_interfaces wanted;
  for (const auto& entry : document) {
    const yaml_value device(entry.first, "device", path);
    const yaml_value value(entry.second, "interface", path);
    wanted_interface& of_device = wanted[device.text()];
    if (value.is_map())
      read_map(value, kRules, of_device);
    else
      of_device.if_index = interface_named(value);
    const auto other = std::find_if(wanted.begin(), wanted.end(), [&](const auto& known) {
      return &known.second != &of_device && known.second.if_index == of_device.if_index && of_device.if_index != 0;
    });
    if (other != wanted.end()) value.fail("'" + other->first + "' and '" + device.text() + "' have one interface");
  }
  return wanted;
}

std::vector<mapped_device> map_devices(const std::vector<kernel_link>& links, uint32 management,
                                       const wanted_interfaces& wanted) {
  std::vector<mapped_device> mapped;
  std::set<if_index_t> taken;
  const auto add = [&](const kernel_link& link, if_index_t if_index) {
    if (if_index != 0 && taken.insert(if_index).second)
      mapped.push_back({link.name, link.number, if_index, link.slave_kind == "bridge"});
  };
  // What the user wants comes first, so that nothing else takes its place; VLAN devices last, for they need their
  // parents.
  for (const kernel_link& link : links)
    if (const auto it = wanted.find(link.name); it != wanted.end() && it->second.if_index != 0)
      add(link, it->second.if_index);
  std::set<uint32> done;
  for (const mapped_device& it : mapped) done.insert(it.number);
  for (const kernel_link& link : links) {
    if (done.contains(link.number) || link.kind == "vlan") continue;
    const auto it = wanted.find(link.name);
    const bool is_routed = it != wanted.end() && it->second.is_routed;
    add(link, link.number == management ? ethernet_index(IF_TYPE_MGMT, 0, 0) : usual_index(link, is_routed));
  }
  for (const kernel_link& link : links) {
    if (link.kind != "vlan" || done.contains(link.number)) continue;
    const if_index_t sub = sub_interface_index(link, mapped);
    add(link, sub != 0 ? sub : numbered_index(IF_TYPE_VETHERNET, link.number));
  }
  sort_by<&mapped_device::number>(mapped);
  return mapped;
}

}  // namespace host
