// The checksum of stored records: CRC-64 with the polynomial of ECMA-182, reflected, as in XZ files.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "platform/types.h"

namespace host {

inline constexpr auto kChecksumTable = [] {
  constexpr uint64 kPolynomial = 0xC96C5795D7870F42;
  std::array<uint64, 256> table{};
  for (uint64 byte = 0; byte < table.size(); ++byte) {
    uint64 value = byte;
    for (int bit = 0; bit < 8; ++bit) value = (value & 1) != 0 ? value >> 1 ^ kPolynomial : value >> 1;
    table[byte] = value;
  }
  return table;
}();

// Of bytes that follow those of `before`.
constexpr uint64 checksum(std::span<const std::byte> bytes, uint64 before = 0) {
  uint64 value = ~before;
  for (const std::byte it : bytes) value = value >> 8 ^ kChecksumTable[(value ^ static_cast<uint64>(it)) & 0xFF];
  return ~value;
}

}  // namespace host
