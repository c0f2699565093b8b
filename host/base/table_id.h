// The tables of rows that the source of a switch may have, beside its interfaces.
#pragma once

#include "platform/types.h"

namespace host {

enum class table_id : uint16 {
  ipv4_addresses = 1,
  ipv6_addresses,
  ipv4_neighbors,
  ipv6_neighbors,
  mac_addresses,  // of bridges and devices
  bridge_ports,
  driver_counters,
  hardware,
  lldp_neighbors,
  optical_violations,  // of limits of transceivers; the source has no such table, the service makes it
  last = optical_violations,
};

}  // namespace host
