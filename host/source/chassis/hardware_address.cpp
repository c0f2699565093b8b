#include "source/chassis/hardware_address.h"

#include "switch/if_index_layout.h"

namespace host {
namespace {

// The distance of an interface's address from the switch's base address: another region for each layout of indexes.
// Sub-interfaces share their parent's.
uint32 mac_offset(if_index_t if_index) {
  const index_fields fields = decode_index(if_index);
  switch (fields.shape) {
    case index_shape::satellite: return 0x100000 | fields.unit << 12 | fields.slot << 8 | (fields.port & 0xFF);
    case index_shape::channel: return 0x010000 | fields.number;
    case index_shape::number: return 0x400000 | uint32{fields.type} << 16 | (fields.number & 0xFFFF);
    default: break;
  }
  if (fields.type == IF_TYPE_MGMT) return 0x0F0000 | fields.port;
  if (fields.family != name_family::usual) return 0x0E0000 | static_cast<uint32>(fields.family) << 8 | fields.port;
  return (fields.slot << 8 | fields.port) + 0x100;
}

}  // namespace

mac_address hardware_address(const mac_address& base, if_index_t if_index) {
  mac_address mac = base;
  uint64 carry = mac_offset(if_index);
  for (std::size_t i = mac.size(); i-- > 0; carry >>= 8) {
    carry += mac[i];
    mac[i] = static_cast<uint8>(carry);
  }
  return mac;
}

}  // namespace host
