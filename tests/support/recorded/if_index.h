// The interface indexes of the tests' switch.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/if_index.h"

namespace pmcli_test {

inline constexpr uint32 kSubInterfaceMask = 0xFFF;
inline constexpr uint32 kStoredExternal = 63;

// An index of a kind; `rest` are its lower 26 bits.
constexpr if_index_t make_if_index(uint32 kind, uint32 rest) {
  return (kind == IF_TYPE_EXTERNAL ? kStoredExternal : kind) << 26 | rest;
}

// Modules and ports count from 1, as in names: "Ethernet1/1", "Eth1/1".
constexpr if_index_t ethernet(uint32 module, uint32 port, if_index_type_t type = IF_TYPE_ETHERNET) {
  return make_if_index(type, (module - 1) << 20 | (port - 1) << 12);
}
// "fc1/1"
constexpr if_index_t fibre_channel(uint32 module, uint32 port) { return ethernet(module, port, IF_TYPE_FC); }
// "Ethernet100/1/1"
constexpr if_index_t satellite(uint32 unit, uint32 module, uint32 port) {
  return make_if_index(IF_TYPE_SATELLITE, unit << 18 | (module - 1) << 14 | (port - 1));
}
// "Ethernet1/1.100"
constexpr if_index_t sub_interface(if_index_t parent, uint32 number) { return (parent & ~kSubInterfaceMask) | number; }
// "port-channel3", "Po3"
constexpr if_index_t port_channel(uint32 channel, if_index_type_t type = IF_TYPE_ETH_PORT_CHANNEL,
                                  pc_subtype_t subtype = PC_SUBTYPE_ORDINARY) {
  return make_if_index(type, static_cast<uint32>(subtype) << 24 | channel << 12);
}
// Any kind that has a number and no place.
constexpr if_index_t numbered(if_index_type_t type, uint32 number) { return make_if_index(type, number); }
constexpr if_index_t loopback(uint32 number) { return numbered(IF_TYPE_LOOPBACK, number); }     // "loopback0"
constexpr if_index_t vethernet(uint32 number) { return numbered(IF_TYPE_VETHERNET, number); }   // "Vethernet1"
constexpr if_index_t mgmt(uint32 port = 0) { return make_if_index(IF_TYPE_MGMT, port << 12); }  // "mgmt0"

// Exceptions from what an index says.
struct recorded_if_index {
  std::map<if_index_t, if_index_type_t> types;       // instead of the kind in the index
  std::map<if_index_t, if_index_t> next_interfaces;  // of if_index_next(), instead of the next number
  std::map<if_index_t, std::string> names;           // instead of the name made from the index
  std::map<if_index_t, std::string> short_names;
  std::map<if_index_t, uint32> nodes;                          // without an entry: 0x0000<module>02
  std::function<int(if_index_t, if_index_t)> compare_aliases;  // without it by number
};

}  // namespace pmcli_test
