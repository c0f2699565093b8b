#include "switch/if_index_layout.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "platform/syserr.h"

namespace host {
namespace {

constexpr unsigned kKindShift = 26;
constexpr uint32 kStoredExternal = 63;

// Which getters answer for a kind.
enum field : uint8 { kSlot = 1, kPort = 2, kSub = 4 };

struct kind_info {
  index_shape shape = index_shape::none;
  uint8 fields = 0;
  std::string_view name;
  std::string_view short_name;
};

struct kind_row {
  if_index_type_t type;
  kind_info info;
};

constexpr kind_row kKinds[] = {
    {IF_TYPE_FC, {index_shape::slot_port, kSlot | kPort, "fc", "fc"}},
    {IF_TYPE_ETHERNET, {index_shape::slot_port, kSlot | kPort | kSub, "Ethernet", "Eth"}},
    {IF_TYPE_PORT_CHANNEL, {index_shape::channel, kSub, "port-channel", "Po"}},
    {IF_TYPE_MGMT, {index_shape::slot_port, kSlot | kPort, "mgmt", "mgmt"}},
    {IF_TYPE_FCIP, {index_shape::number, 0, "fcip", "fcip"}},
    {IF_TYPE_ISCSI, {index_shape::slot_port, kSlot | kPort, "iscsi", "iscsi"}},
    {IF_TYPE_GIG_ETHERNET, {index_shape::slot_port, kSlot | kPort | kSub, "GigabitEthernet", "Gig"}},
    {IF_TYPE_LOOPBACK, {index_shape::number, 0, "loopback", "Lo"}},
    {IF_TYPE_ETH_PORT_CHANNEL, {index_shape::channel, kSub, "port-channel", "Po"}},
    {IF_TYPE_ETHERNET_L3, {index_shape::slot_port, kSlot | kPort | kSub, "Ethernet", "Eth"}},
    {IF_TYPE_VETHERNET, {index_shape::number, 0, "Vethernet", "Veth"}},
    {IF_TYPE_SERVER, {index_shape::number, 0, "server", "server"}},
    {IF_TYPE_SATELLITE, {index_shape::satellite, kSlot | kPort, "Ethernet", "Eth"}},
    {IF_TYPE_INBAND, {index_shape::number, 0, "sup-fc", "sup-fc"}},
    {IF_TYPE_EXTERNAL, {index_shape::slot_port, kSlot | kPort, "external", "external"}},
};

constexpr uint32 stored_kind(if_index_type_t type) { return type == IF_TYPE_EXTERNAL ? kStoredExternal : type; }

constexpr std::array<kind_info, 64> kKindByCode = [] {
  std::array<kind_info, 64> by_code{};
  for (const kind_row& row : kKinds) by_code[stored_kind(row.type)] = row.info;
  return by_code;
}();

// The place of a field.
struct bit_field {
  unsigned shift;
  unsigned width;

  constexpr uint32 highest() const { return (1u << width) - 1; }
  constexpr uint32 get(uint32 value) const { return value >> shift & highest(); }
  constexpr uint32 set(uint32 value, uint32 to) const { return (value & ~(highest() << shift)) | to << shift; }
};

constexpr bit_field kSlotField = {20, 6};
constexpr bit_field kPortField = {12, 8};
constexpr bit_field kSubInterfaceField = {0, 12};
constexpr bit_field kUnitField = {18, 8};
constexpr bit_field kUnitSlotField = {14, 4};
constexpr bit_field kUnitPortField = {0, 14};
constexpr bit_field kSubtypeField = {24, 2};
constexpr bit_field kChannelField = {12, 12};
constexpr bit_field kNumberField = {0, 26};

// Stored slots of the Fibre Channel ports that are named by a number alone.
constexpr uint32 kBaySlot = kMaxFcSlot + 1;
constexpr uint32 kExternalSlot = kMaxFcSlot + 2;
static_assert(kExternalSlot == kMaxSlot);

const kind_info& kind_of(if_index_t if_index) { return kKindByCode[if_index >> kKindShift]; }

// Gathers a name of at most 39 characters.
class name_writer {
 public:
  void text(std::string_view part) {
    std::memcpy(chars_.data() + length_, part.data(), part.size());
    length_ += part.size();
  }
  void mark(char c) { chars_[length_++] = c; }
  void number(uint32 value) {
    std::array<char, 10> digits;
    std::size_t first = digits.size();
    do {
      digits[--first] = static_cast<char>('0' + value % 10);
      value /= 10;
    } while (value != 0);
    text({digits.data() + first, digits.size() - first});
  }
  void hexadecimal(uint32 value) {
    for (unsigned shift = 32; shift != 0;) mark("0123456789abcdef"[value >> (shift -= 4) & 0xF]);
  }
  std::string_view view() const { return {chars_.data(), length_}; }

 private:
  std::array<char, 40> chars_;
  std::size_t length_ = 0;
};

// What a name begins with.
std::string_view prefix_of(const index_fields& fields, std::string_view usual) {
  switch (fields.family) {
    case name_family::bay: return "bay";
    case name_family::external: return "ext";
    default: return usual;
  }
}

void write_number(name_writer& out, const index_fields& fields) {
  if (fields.type == IF_TYPE_MGMT) return out.number(fields.port);
  if (fields.family != name_family::usual) return out.number(fields.port + 1);
  if (fields.shape == index_shape::channel || fields.shape == index_shape::number) return out.number(fields.number);
  if (fields.shape == index_shape::satellite) {
    out.number(fields.unit);
    out.mark('/');
  }
  out.number(fields.slot + 1);
  out.mark('/');
  out.number(fields.port + 1);
}

name_writer name_of(if_index_t if_index, std::string_view kind_info::*prefix) {
  name_writer out;
  const kind_info& kind = kind_of(if_index);
  if (kind.shape == index_shape::none) {
    out.text("if0x");
    out.hexadecimal(if_index);
    return out;
  }
  const index_fields fields = decode_index(if_index);
  out.text(prefix_of(fields, kind.*prefix));
  write_number(out, fields);
  if (fields.sub_interface != 0) {
    out.mark('.');
    out.number(fields.sub_interface);
  }
  return out;
}

// As snprintf copies: cut to fit, terminated unless there is no room at all.
int copy_name(char* buffer, uint32 size, const name_writer& name) {
  const std::string_view text = name.view();
  if (size != 0) {
    const std::size_t kept = std::min<std::size_t>(text.size(), size - 1);
    std::memcpy(buffer, text.data(), kept);
    buffer[kept] = '\0';
  }
  return static_cast<int>(text.size());
}

// Stores a field when the interface has it.
template <class Value>
int32 give(bool has_field, if_index_t if_index, uint32 index_fields::*member, Value* value) {
  if (!has_field) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  *value = static_cast<Value>(decode_index(if_index).*member);
  return 0;
}

bool has(if_index_t if_index, field requested) { return (kind_of(if_index).fields & requested) != 0; }

bool is(if_index_t if_index, if_index_type_t type) { return if_index >> kKindShift == stored_kind(type); }

// The field that numbers the interfaces of a kind.
bit_field place_of_number(if_index_t if_index) {
  if (if_index_is_sub_intf(if_index)) return kSubInterfaceField;
  switch (kind_of(if_index).shape) {
    case index_shape::slot_port: return kPortField;
    case index_shape::satellite: return kUnitPortField;
    case index_shape::channel: return kChannelField;
    default: return kNumberField;
  }
}

// Replaces a field when the interface has it.
int32 put(bool has_field, if_index_t* if_index, bit_field place, uint32 value) {
  if (!has_field) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  if (value > place.highest()) return PM_ERR_INVALID_RANGE;
  *if_index = place.set(*if_index, value);
  return 0;
}

void take_slot_and_port(if_index_t if_index, index_fields& fields) {
  const uint32 stored_slot = kSlotField.get(if_index);
  fields.port = kPortField.get(if_index);
  fields.sub_interface = kSubInterfaceField.get(if_index);
  if (fields.type == IF_TYPE_FC && stored_slot > kMaxFcSlot)
    fields.family = stored_slot == kBaySlot ? name_family::bay : name_family::external;
  else
    fields.slot = stored_slot;
}

}  // namespace

if_index_t ethernet_index(if_index_type_t type, uint32 slot, uint32 port, uint32 sub_interface) {
  return stored_kind(type) << kKindShift | slot << 20 | port << 12 | sub_interface;
}

if_index_t satellite_index(uint32 unit, uint32 slot, uint32 port) {
  return stored_kind(IF_TYPE_SATELLITE) << kKindShift | unit << 18 | slot << 14 | port;
}

if_index_t channel_index(if_index_type_t type, uint32 channel, pc_subtype_t subtype, uint32 sub_interface) {
  return stored_kind(type) << kKindShift | uint32{subtype} << 24 | channel << 12 | sub_interface;
}

if_index_t numbered_index(if_index_type_t type, uint32 number) { return stored_kind(type) << kKindShift | number; }

if_index_t named_fc_index(name_family family, uint32 port) {
  return ethernet_index(IF_TYPE_FC, family == name_family::bay ? kBaySlot : kExternalSlot, port);
}

if_index_t parent_of(if_index_t if_index) {
  if_index_set_sub_intf(&if_index, 0);
  return if_index;
}

if_index_t first_index_of(if_index_type_t type) { return numbered_index(type, 0); }

if_index_t last_index_of(if_index_type_t type) { return numbered_index(type, kMaxNumber); }

index_fields decode_index(if_index_t if_index) {
  index_fields fields;
  fields.shape = kind_of(if_index).shape;
  if (fields.shape == index_shape::none) return fields;
  const uint32 code = if_index >> kKindShift;
  fields.type = static_cast<if_index_type_t>(code == kStoredExternal ? uint32{IF_TYPE_EXTERNAL} : code);
  switch (fields.shape) {
    case index_shape::slot_port: take_slot_and_port(if_index, fields); break;
    case index_shape::satellite:
      fields.unit = kUnitField.get(if_index);
      fields.slot = kUnitSlotField.get(if_index);
      fields.port = kUnitPortField.get(if_index);
      break;
    case index_shape::channel:
      fields.subtype = static_cast<pc_subtype_t>(kSubtypeField.get(if_index));
      fields.number = kChannelField.get(if_index);
      fields.sub_interface = kSubInterfaceField.get(if_index);
      break;
    default: fields.number = kNumberField.get(if_index);
  }
  return fields;
}

}  // namespace host

int32 if_index_get_type(if_index_t if_index, if_index_type_t* type) {
  const host::index_fields fields = host::decode_index(if_index);
  if (fields.shape == host::index_shape::none) return PM_ERR_NO_SUCH_INTERFACE;
  *type = fields.type;
  return 0;
}

int32 if_index_get_slot(if_index_t if_index, uint32* slot) {
  return host::give(host::has(if_index, host::kSlot), if_index, &host::index_fields::slot, slot);
}

int32 if_index_get_port(if_index_t if_index, uint32* port) {
  return host::give(host::has(if_index, host::kPort), if_index, &host::index_fields::port, port);
}

int32 if_index_get_sub_intf(if_index_t if_index, uint16* sub_interface) {
  return host::give(host::has(if_index, host::kSub), if_index, &host::index_fields::sub_interface, sub_interface);
}

int32 if_index_phy_eth_get_sub_intf(if_index_t if_index, uint16* sub_interface) {
  const bool is_ethernet = host::is(if_index, IF_TYPE_ETHERNET) || host::is(if_index, IF_TYPE_ETHERNET_L3);
  return host::give(is_ethernet, if_index, &host::index_fields::sub_interface, sub_interface);
}

int32 if_index_phy_fc_get_slot(if_index_t if_index, uint32* slot) {
  if (!host::is(if_index, IF_TYPE_FC)) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  *slot = host::kSlotField.get(if_index);
  return 0;
}

int32 if_index_phy_fc_get_port(if_index_t if_index, uint32* port) {
  return host::give(host::is(if_index, IF_TYPE_FC), if_index, &host::index_fields::port, port);
}

int32 if_index_phy_fc_port_init(if_index_t* if_index, uint32 slot, uint32 port) {
  if (if_index == nullptr || slot > host::kMaxSlot || port > host::kMaxPort) return PM_ERR_INVALID_RANGE;
  *if_index = host::ethernet_index(IF_TYPE_FC, slot, port);
  return 0;
}

int32 if_index_port_channel_get_channel_num(if_index_t if_index, uint32* channel) {
  return host::give(host::is(if_index, IF_TYPE_PORT_CHANNEL), if_index, &host::index_fields::number, channel);
}

int32 if_index_port_channel_get_subtype(if_index_t if_index, pc_subtype_t* subtype) {
  const host::index_fields fields = host::decode_index(if_index);
  if (fields.shape != host::index_shape::channel) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  *subtype = fields.subtype;
  return 0;
}

int32 if_index_eth_port_channel_get_channel_num(if_index_t if_index, uint32* channel) {
  return host::give(host::is(if_index, IF_TYPE_ETH_PORT_CHANNEL), if_index, &host::index_fields::number, channel);
}

int32 if_index_fcip_get_tunnel(if_index_t if_index, uint32* tunnel) {
  return host::give(host::is(if_index, IF_TYPE_FCIP), if_index, &host::index_fields::number, tunnel);
}

int32 if_index_server_interface_get_sif_num(if_index_t if_index, uint32* number) {
  return host::give(host::is(if_index, IF_TYPE_SERVER), if_index, &host::index_fields::number, number);
}

int32 if_index_set_port(if_index_t* if_index, uint32 port) {
  const bool is_satellite = host::is(*if_index, IF_TYPE_SATELLITE);
  return host::put(host::has(*if_index, host::kPort), if_index, is_satellite ? host::kUnitPortField : host::kPortField,
                   port);
}

int32 if_index_set_sub_intf(if_index_t* if_index, uint32 sub_interface) {
  return host::put(host::has(*if_index, host::kSub), if_index, host::kSubInterfaceField, sub_interface);
}

int32 if_index_set_channel_num(if_index_t* if_index, uint32 channel) {
  return host::put(host::kind_of(*if_index).shape == host::index_shape::channel, if_index, host::kChannelField,
                   channel);
}

int32 if_index_set_tunnel(if_index_t* if_index, uint32 tunnel) {
  return host::put(host::is(*if_index, IF_TYPE_FCIP), if_index, host::kNumberField, tunnel);
}

int32 if_index_set_sif_num(if_index_t* if_index, uint32 number) {
  return host::put(host::is(*if_index, IF_TYPE_SERVER), if_index, host::kNumberField, number);
}

int32 if_index_next(if_index_t if_index, if_index_t* next) {
  if (next == nullptr || host::kind_of(if_index).shape == host::index_shape::none) return PM_ERR_NO_SUCH_INTERFACE;
  const host::bit_field number = host::place_of_number(if_index);
  if (number.get(if_index) == number.highest()) return PM_ERR_INVALID_RANGE;
  *next = number.set(if_index, number.get(if_index) + 1);
  return 0;
}

// Each supervisor has one attachment, and the active one's is the first.
if_index_t if_index_inband_get_active_sup_priority_hi(void) { return host::numbered_index(IF_TYPE_INBAND, 0); }

// The indexes of a family are in the order of its numbers, bays before external ports.
int compare_intf_bay_ext_aliases(const void* left, const void* right) {
  const if_index_t a = *static_cast<const if_index_t*>(left);
  const if_index_t b = *static_cast<const if_index_t*>(right);
  return (a > b) - (a < b);
}

boolean if_index_is_sub_intf(if_index_t if_index) {
  uint16 sub_interface = 0;
  return if_index_get_sub_intf(if_index, &sub_interface) == 0 && sub_interface != 0;
}

char* sprintf_if_index(char* buffer, if_index_t if_index) {
  host::copy_name(buffer, 40, host::name_of(if_index, &host::kind_info::name));
  return buffer;
}

int snprintf_if_index(char* buffer, uint32 size, if_index_t if_index) {
  return host::copy_name(buffer, size, host::name_of(if_index, &host::kind_info::name));
}

int snprintf_if_index_short(char* buffer, uint32 size, if_index_t if_index) {
  return host::copy_name(buffer, size, host::name_of(if_index, &host::kind_info::short_name));
}
