// Matchers of texts and lists, and texts of sets: a failed test shows what was expected and all that came.
#pragma once

#include <gmock/gmock-more-matchers.h>

#include <string>

#include "platform/bitset.h"

namespace pmcli_test {

using testing::AnyOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

// A text with this part when it is expected, without it when it is not.
inline testing::Matcher<std::string> HasSubstrOnlyIf(bool is_expected, const std::string& part) {
  if (is_expected) return HasSubstr(part);
  return Not(HasSubstr(part));
}

// The ids in a set of VLANs or VSANs, as "1,10,20"; the size comes first when it is not that of a set.
inline std::string ids_of(const vlan_bitset_t& set) {
  std::string text = set.size == BITSET_BYTES ? "" : "size " + std::to_string(set.size) + ": ";
  const char* separator = "";
  for (uint32 id = 0; id < 8 * BITSET_BYTES; ++id) {
    if ((set.bits[id / 8] & 0x80U >> id % 8) == 0) continue;
    text += separator + std::to_string(id);
    separator = ",";
  }
  return text;
}

}  // namespace pmcli_test
