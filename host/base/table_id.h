// The tables of rows that the source of a switch may have, beside its interfaces.
#pragma once

#include "platform/types.h"

namespace host {

enum class table_id : uint16 {
  ipv4_addresses = 1,
  ipv6_addresses,
  last = ipv6_addresses,
};

}  // namespace host
