// Sets of VLANs and VSANs: what platform/bitset.h declares.
#include <algorithm>
#include <cstring>
#include <string>

#include "base/c_edge.h"
#include "platform/bitset.h"

namespace {

constexpr uint32 kIds = BITSET_BYTES * 8;

uint8 mask_of(uint32 id) { return static_cast<uint8>(0x80U >> (id % 8)); }

std::string text_of(const vlan_bitset_t* set) {
  std::string text;
  for (uint32 first = 0; first < kIds; ++first) {
    if (bitset_is_set(set, first) == 0) continue;
    uint32 last = first;
    while (bitset_is_set(set, last + 1) != 0) ++last;
    if (!text.empty()) text += ',';
    text += std::to_string(first);
    if (last > first) text.append("-").append(std::to_string(last));
    first = last;
  }
  return text;
}

}  // namespace

void bitset_clear_all(vlan_bitset_t* set) {
  set->size = BITSET_BYTES;
  std::memset(set->bits, 0, sizeof set->bits);
}

void bitset_set(vlan_bitset_t* set, uint32 id) {
  if (id < kIds) set->bits[id / 8] |= mask_of(id);
}

boolean bitset_is_set(const vlan_bitset_t* set, uint32 id) {
  return id < kIds && (set->bits[id / 8] & mask_of(id)) != 0 ? 1 : 0;
}

uint32 bitset_sprintf(char* buffer, uint32 size, const vlan_bitset_t* set) {
  if (size == 0) return 0;
  *buffer = '\0';
  return host::no_throw<uint32>(0, [=] {
    const std::string text = text_of(set);
    const auto length = std::min<std::size_t>(text.size(), size - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return static_cast<uint32>(length);
  });
}
