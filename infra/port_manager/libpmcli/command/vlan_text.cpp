#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/bitset.h"
#include "pmcli/command.h"
#include "support/id_set.h"

using namespace pmcli;

namespace {

constexpr char kNone[] = "none";

}  // namespace

const char* vlan_string_or_none(uint32 vlan) {
  static char text[20];
  if (vlan == 0)
    std::snprintf(text, sizeof text, "%s", kNone);
  else
    std::snprintf(text, sizeof text, "%u", vlan);
  return text;
}

char* vlan_bitmap_string_or_none(char* dst, uint32 len, const vlan_bitset_t* set) {
  // The set's own size comes from a service; the copy has the full size.
  vlan_bitset_t vlans = empty_set();
  if (set != nullptr) std::memcpy(vlans.bits, set->bits, std::min<uint32>(set->size, BITSET_BYTES));

  char text[BITSET_TEXT_BYTES] = {};
  bitset_sprintf(text, sizeof text, &vlans);
  return std::strncpy(dst, text[0] != '\0' ? text : kNone, len);
}
