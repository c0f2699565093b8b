// What tests read in the memory of modules.
#pragma once

#include <string>
#include <vector>

#include "platform/types.h"

namespace host {

inline std::string text_at(const std::vector<uint8>& page, std::size_t at, std::size_t width) {
  return {page.begin() + static_cast<std::ptrdiff_t>(at), page.begin() + static_cast<std::ptrdiff_t>(at + width)};
}

// The check sum of bytes, `until` left out.
inline uint8 sum_of(const std::vector<uint8>& page, std::size_t from, std::size_t until) {
  unsigned sum = 0;
  for (std::size_t at = from; at < until; ++at) sum += page[at];
  return static_cast<uint8>(sum);
}

}  // namespace host
