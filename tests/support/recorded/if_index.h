// The interface indexes of the tests' switch.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "platform/if_index.h"

namespace pmcli_test {

// Modules and ports count from 1, as in names.
if_index_t ethernet(uint32 module, uint32 port, if_index_type_t type = IF_TYPE_ETHERNET);  // "Ethernet1/1", "Eth1/1"
if_index_t fibre_channel(uint32 module, uint32 port);                                      // "fc1/1"
if_index_t satellite(uint32 unit, uint32 module, uint32 port);                             // "Ethernet100/1/1"
if_index_t sub_interface(if_index_t parent, uint32 number);                                // "Ethernet1/1.100"
if_index_t port_channel(uint32 channel, if_index_type_t type = IF_TYPE_ETH_PORT_CHANNEL,   // "port-channel3", "Po3"
                        pc_subtype_t subtype = PC_SUBTYPE_ORDINARY);
if_index_t numbered(if_index_type_t type, uint32 number);  // any kind that has a number and no place
if_index_t loopback(uint32 number);                        // "loopback0"
if_index_t vethernet(uint32 number);                       // "Vethernet1"
if_index_t mgmt(uint32 port = 0);                          // "mgmt0"

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
