// Sets of VLANs and VSANs.
#pragma once

#include "platform/bitset.h"

namespace pmcli {

// A set of the full size without any id.
inline vlan_bitset_t empty_set() {
  vlan_bitset_t set{};
  set.size = BITSET_BYTES;
  return set;
}

}  // namespace pmcli
