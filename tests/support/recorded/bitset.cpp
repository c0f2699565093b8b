// The sets of VLAN and VSAN ids.
#include <algorithm>
#include <cstring>

#include "support/recording_state.h"

using namespace pmcli_test;

extern "C" {

void bitset_clear_all(vlan_bitset_t* set) {
  set->size = BITSET_BYTES;
  std::memset(set->bits, 0, sizeof set->bits);
}

void bitset_set(vlan_bitset_t* set, uint32 id) {
  if (id < 8 * BITSET_BYTES) set->bits[id / 8] = static_cast<uint8>(set->bits[id / 8] | 0x80U >> id % 8);
}

boolean bitset_is_set(const vlan_bitset_t* set, uint32 id) {
  return id < 8 * BITSET_BYTES && (set->bits[id / 8] & 0x80U >> id % 8) != 0;
}

uint32 bitset_sprintf(char* buffer, uint32 size, const vlan_bitset_t* set) {
  std::string text;
  for (uint32 first = 0; first < 8 * BITSET_BYTES; ++first) {
    if (!bitset_is_set(set, first)) continue;
    uint32 last = first;
    while (bitset_is_set(set, last + 1)) ++last;
    if (!text.empty()) text += ',';
    text += std::to_string(first);
    if (last != first) text += '-' + std::to_string(last);
    first = last;
  }
  if (size == 0) return 0;
  text.resize(std::min<std::size_t>(text.size(), size - 1));
  std::memcpy(buffer, text.c_str(), text.size() + 1);
  return static_cast<uint32>(text.size());
}

}  // extern "C"
