// Interface indexes: kind 6 bits, then by kind
//   a place:   slot 6 | port 8 | sub-interface 12      satellite: unit 8 | slot 4 | port 14
//   a channel: subtype 2 | channel 12 | sub-interface 12      other kinds: number 26
#include <cstdio>
#include <cstring>

#include "support/recording_state.h"

namespace pmcli_test {
namespace {

if_index_type_t kind_of(if_index_t if_index) {
  const uint32 stored = if_index >> 26;
  return static_cast<if_index_type_t>(stored == kStoredExternal ? static_cast<uint32>(IF_TYPE_EXTERNAL) : stored);
}

bool is_place(if_index_t if_index) {
  switch (kind_of(if_index)) {
    case IF_TYPE_FC:
    case IF_TYPE_ETHERNET:
    case IF_TYPE_MGMT:
    case IF_TYPE_ISCSI:
    case IF_TYPE_GIG_ETHERNET:
    case IF_TYPE_ETHERNET_L3: return true;
    default: return false;
  }
}

bool is_satellite(if_index_t if_index) { return kind_of(if_index) == IF_TYPE_SATELLITE; }

bool is_channel(if_index_t if_index) {
  return kind_of(if_index) == IF_TYPE_PORT_CHANNEL || kind_of(if_index) == IF_TYPE_ETH_PORT_CHANNEL;
}

uint32 slot_of(if_index_t if_index) { return is_satellite(if_index) ? if_index >> 14 & 0xF : if_index >> 20 & 0x3F; }
uint32 port_of(if_index_t if_index) { return is_satellite(if_index) ? if_index & 0x3FFF : if_index >> 12 & 0xFF; }
uint32 channel_of(if_index_t if_index) { return if_index >> 12 & 0xFFF; }
uint32 number_of(if_index_t if_index) { return if_index & 0x3FFFFFF; }
uint32 sub_interface_of(if_index_t if_index) {
  return is_place(if_index) || is_channel(if_index) ? if_index & kSubInterfaceMask : 0;
}

struct kind_words {
  if_index_type_t kind;
  const char* name;
  const char* short_name;
};
constexpr kind_words kWords[] = {
    {IF_TYPE_FC, "fc", "fc"},
    {IF_TYPE_ETHERNET, "Ethernet", "Eth"},
    {IF_TYPE_PORT_CHANNEL, "port-channel", "Po"},
    {IF_TYPE_MGMT, "mgmt", "mgmt"},
    {IF_TYPE_FCIP, "fcip", "fcip"},
    {IF_TYPE_ISCSI, "iscsi", "iscsi"},
    {IF_TYPE_GIG_ETHERNET, "GigabitEthernet", "Gig"},
    {IF_TYPE_LOOPBACK, "loopback", "Lo"},
    {IF_TYPE_ETH_PORT_CHANNEL, "port-channel", "Po"},
    {IF_TYPE_ETHERNET_L3, "Ethernet", "Eth"},
    {IF_TYPE_VETHERNET, "Vethernet", "Veth"},
    {IF_TYPE_SERVER, "sif", "sif"},
    {IF_TYPE_SATELLITE, "Ethernet", "Eth"},
    {IF_TYPE_INBAND, "sup-fc", "sup-fc"},
};

std::string word_of(if_index_t if_index, bool is_short) {
  for (const kind_words& words : kWords)
    if (words.kind == kind_of(if_index)) return is_short ? words.short_name : words.name;
  return "kind" + std::to_string(kind_of(if_index)) + "-";
}

std::string place_of(if_index_t if_index) {
  const std::string place = std::to_string(slot_of(if_index) + 1) + "/" + std::to_string(port_of(if_index) + 1);
  if (kind_of(if_index) == IF_TYPE_MGMT) return std::to_string(port_of(if_index));
  if (is_satellite(if_index)) return std::to_string(if_index >> 18 & 0xFF) + "/" + place;
  if (is_place(if_index)) return place;
  return std::to_string(is_channel(if_index) ? channel_of(if_index) : number_of(if_index));
}

int32 set_field(const char* function, bool has_field, if_index_t* if_index, uint32 first_bit, uint32 mask,
                uint32 value) {
  if (const int32 error = platform_for(function).failure_of(function); error != 0) return error;
  if (!has_field) return PM_ERR_NO_SUCH_INTERFACE;
  *if_index = (*if_index & ~(mask << first_bit)) | (value & mask) << first_bit;
  return 0;
}

// A getter of a field that interfaces have or have not.
template <typename Field>
int32 get_field(const char* function, bool has_field, uint32 value, Field* field) {
  if (const int32 error = platform_for(function).failure_of(function); error != 0) return error;
  if (!has_field) return PM_ERR_NO_SUCH_INTERFACE;
  *field = static_cast<Field>(value);
  return 0;
}

// The lowest bits of an index that count the interfaces of one kind and place.
uint32 counting_bits(if_index_t if_index) { return is_satellite(if_index) ? 14 : 26; }

}  // namespace

std::string interface_text(const RecordingPlatform& platform, if_index_t if_index, bool is_short) {
  const auto& names = is_short ? platform.short_names : platform.names;
  if (const auto name = names.find(if_index); name != names.end()) return name->second;
  std::string text = word_of(if_index, is_short) + place_of(if_index);
  if (sub_interface_of(if_index) != 0) text += "." + std::to_string(sub_interface_of(if_index));
  return text;
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 if_index_get_type(if_index_t if_index, if_index_type_t* type) {
  const auto& types = platform_for("if_index_get_type").types;
  const auto other = types.find(if_index);
  const if_index_type_t kind = other == types.end() ? kind_of(if_index) : other->second;
  return get_field("if_index_get_type", kind != IF_TYPE_NONE || other != types.end(), kind, type);
}

int32 if_index_get_slot(if_index_t if_index, uint32* slot) {
  return get_field("if_index_get_slot", is_place(if_index) || is_satellite(if_index), slot_of(if_index), slot);
}

int32 if_index_get_port(if_index_t if_index, uint32* port) {
  return get_field("if_index_get_port", is_place(if_index) || is_satellite(if_index), port_of(if_index), port);
}

int32 if_index_get_sub_intf(if_index_t if_index, uint16* sub_interface) {
  return get_field("if_index_get_sub_intf", is_place(if_index) || is_channel(if_index), sub_interface_of(if_index),
                   sub_interface);
}

int32 if_index_phy_eth_get_sub_intf(if_index_t if_index, uint16* sub_interface) {
  return get_field("if_index_phy_eth_get_sub_intf", is_place(if_index), sub_interface_of(if_index), sub_interface);
}

int32 if_index_phy_fc_get_slot(if_index_t if_index, uint32* slot) {
  return get_field("if_index_phy_fc_get_slot", kind_of(if_index) == IF_TYPE_FC, slot_of(if_index), slot);
}

int32 if_index_phy_fc_get_port(if_index_t if_index, uint32* port) {
  return get_field("if_index_phy_fc_get_port", kind_of(if_index) == IF_TYPE_FC, port_of(if_index), port);
}

int32 if_index_port_channel_get_channel_num(if_index_t if_index, uint32* channel) {
  return get_field("if_index_port_channel_get_channel_num", kind_of(if_index) == IF_TYPE_PORT_CHANNEL,
                   channel_of(if_index), channel);
}

int32 if_index_port_channel_get_subtype(if_index_t if_index, pc_subtype_t* subtype) {
  return get_field("if_index_port_channel_get_subtype", is_channel(if_index), if_index >> 24 & 3, subtype);
}

int32 if_index_eth_port_channel_get_channel_num(if_index_t if_index, uint32* channel) {
  return get_field("if_index_eth_port_channel_get_channel_num", kind_of(if_index) == IF_TYPE_ETH_PORT_CHANNEL,
                   channel_of(if_index), channel);
}

int32 if_index_fcip_get_tunnel(if_index_t if_index, uint32* tunnel) {
  return get_field("if_index_fcip_get_tunnel", kind_of(if_index) == IF_TYPE_FCIP, number_of(if_index), tunnel);
}

int32 if_index_server_interface_get_sif_num(if_index_t if_index, uint32* number) {
  return get_field("if_index_server_interface_get_sif_num", kind_of(if_index) == IF_TYPE_SERVER, number_of(if_index),
                   number);
}

int32 if_index_phy_fc_port_init(if_index_t* if_index, uint32 slot, uint32 port) {
  if (const int32 error = platform_for("if_index_phy_fc_port_init").failure_of("if_index_phy_fc_port_init"); error != 0)
    return error;
  if (slot > 0x3F || port > 0xFF) return PM_ERR_INVALID_RANGE;
  *if_index = fibre_channel(slot + 1, port + 1);
  return 0;
}

int32 if_index_set_port(if_index_t* if_index, uint32 port) {
  if (is_satellite(*if_index)) return set_field("if_index_set_port", true, if_index, 0, 0x3FFF, port);
  return set_field("if_index_set_port", is_place(*if_index), if_index, 12, 0xFF, port);
}

int32 if_index_set_sub_intf(if_index_t* if_index, uint32 sub_interface) {
  return set_field("if_index_set_sub_intf", is_place(*if_index) || is_channel(*if_index), if_index, 0,
                   kSubInterfaceMask, sub_interface);
}

int32 if_index_set_channel_num(if_index_t* if_index, uint32 channel) {
  return set_field("if_index_set_channel_num", is_channel(*if_index), if_index, 12, 0xFFF, channel);
}

int32 if_index_set_tunnel(if_index_t* if_index, uint32 tunnel) {
  return set_field("if_index_set_tunnel", kind_of(*if_index) == IF_TYPE_FCIP, if_index, 0, 0x3FFFFFF, tunnel);
}

int32 if_index_set_sif_num(if_index_t* if_index, uint32 number) {
  return set_field("if_index_set_sif_num", kind_of(*if_index) == IF_TYPE_SERVER, if_index, 0, 0x3FFFFFF, number);
}

int32 if_index_next(if_index_t if_index, if_index_t* next) {
  const uint32 mask = (1U << counting_bits(if_index)) - 1;
  const auto& others = platform_for("if_index_next").next_interfaces;
  if (const auto other = others.find(if_index); other != others.end())
    return get_field("if_index_next", true, other->second, next);
  const bool has_next = !is_place(if_index) && !is_channel(if_index) && (if_index & mask) != mask;
  return get_field("if_index_next", has_next, if_index + 1, next);
}

if_index_t if_index_inband_get_active_sup_priority_hi(void) { return numbered(IF_TYPE_INBAND, 0); }

int compare_intf_bay_ext_aliases(const void* left, const void* right) {
  const if_index_t a = *static_cast<const if_index_t*>(left);
  const if_index_t b = *static_cast<const if_index_t*>(right);
  const auto& compare = platform_for("compare_intf_bay_ext_aliases").compare_aliases;
  if (compare) return compare(a, b);
  return a < b ? -1 : a > b;
}

boolean if_index_is_sub_intf(if_index_t if_index) { return sub_interface_of(if_index) != 0; }

char* sprintf_if_index(char* buffer, if_index_t if_index) {
  return std::strcpy(buffer, interface_text(platform_for("sprintf_if_index"), if_index, false).c_str());
}

int snprintf_if_index(char* buffer, uint32 size, if_index_t if_index) {
  return std::snprintf(buffer, size, "%s", interface_text(platform_for("snprintf_if_index"), if_index, false).c_str());
}

int snprintf_if_index_short(char* buffer, uint32 size, if_index_t if_index) {
  return std::snprintf(buffer, size, "%s",
                       interface_text(platform_for("snprintf_if_index_short"), if_index, true).c_str());
}

int32 idxmap_node_by_if_index(if_index_t if_index, uint32* node) {
  const auto& nodes = platform_for("idxmap_node_by_if_index").nodes;
  const auto known = nodes.find(if_index);
  const bool is_known = known != nodes.end();
  return get_field("idxmap_node_by_if_index", is_known || is_place(if_index) || is_satellite(if_index),
                   is_known ? known->second : (slot_of(if_index) + 1) << 8 | 2, node);
}

}  // extern "C"
