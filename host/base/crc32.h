// The checksum CRC-32 of IEEE 802.3.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "platform/types.h"

namespace host {

inline constexpr auto kCrc32Table = [] {
  constexpr uint32 kReversedPolynomial = 0xEDB88320;
  std::array<uint32, 256> table{};
  for (uint32 byte = 0; byte < table.size(); ++byte) {
    uint32 rest = byte;
    for (int bit = 0; bit < 8; ++bit) rest = (rest & 1) != 0 ? rest >> 1 ^ kReversedPolynomial : rest >> 1;
    table[byte] = rest;
  }
  return table;
}();

// Of bytes that follow those with the checksum `before`; 0 for the first.
constexpr uint32 crc32_of(std::span<const std::byte> bytes, uint32 before = 0) {
  uint32 rest = ~before;
  for (const std::byte byte : bytes) rest = rest >> 8 ^ kCrc32Table[(rest ^ static_cast<uint32>(byte)) & 0xFF];
  return ~rest;
}

}  // namespace host
