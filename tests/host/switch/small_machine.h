// A switch small enough to keep in mind, every value of it different.
#pragma once

#include "switch/model.h"

namespace host {

struct small_machine {
  if_index_t first_port;   // kind 2, slot 0 port 0: a trunk, up, SFP in it, member of `channel`
  if_index_t second_port;  // kind 2, slot 0 port 1: down, member of `channel`, X2 in it
  if_index_t third_port;   // kind 2, slot 0 port 2: no module in it, no addresses
  if_index_t routed_port;  // kind 26, slot 1 port 0: two addresses
  if_index_t sub_port;     // sub-interface 7 of it, VLAN 70
  if_index_t channel;      // kind 22, number 5
  if_index_t old_channel;  // kind 4, number 6, without members, VSANs 1, 15 and 4094
  if_index_t loopback;     // kind 20, number 3
  if_index_t mgmt;         // kind 5, port 0
  if_index_t nobody;       // kind 2, slot 0 port 40: is not there
};

// Makes it the machine that the services answer for.
small_machine install_small_machine();

}  // namespace host
