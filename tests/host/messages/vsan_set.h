// Sets of VSANs for tests.
#pragma once

#include <span>

#include "platform/bitset.h"

namespace host {

inline vsan_bitset_t vsan_set(std::span<const uint16> vsans) {
  vsan_bitset_t set{};
  set.size = BITSET_BYTES;
  for (const uint16 vsan : vsans) set.bits[vsan / 8] |= static_cast<uint8>(0x80 >> vsan % 8);
  return set;
}

}  // namespace host
