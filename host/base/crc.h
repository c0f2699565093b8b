// Cyclic redundancy checks.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "platform/types.h"

namespace host {

// Of each byte, for a polynomial with its bits in reverse.
template <typename Sum, Sum kReversedPolynomial>
inline constexpr auto kCrcTable = [] {
  std::array<Sum, 256> table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    Sum rest = static_cast<Sum>(byte);
    for (int bit = 0; bit < 8; ++bit) rest = (rest & 1) != 0 ? rest >> 1 ^ kReversedPolynomial : rest >> 1;
    table[byte] = rest;
  }
  return table;
}();

template <typename Sum, Sum kReversedPolynomial>
constexpr Sum crc_of(std::span<const std::byte> bytes, Sum before) {
  Sum rest = ~before;
  for (const std::byte byte : bytes)
    rest = rest >> 8 ^ kCrcTable<Sum, kReversedPolynomial>[(rest ^ static_cast<Sum>(byte)) & 0xFF];
  return ~rest;
}

// Of bytes that follow those with the checksum `before`; 0 for the first.
// CRC-32 of IEEE 802.3.
constexpr uint32 crc32_of(std::span<const std::byte> bytes, uint32 before = 0) {
  return crc_of<uint32, 0xEDB88320>(bytes, before);
}
// CRC-64 of ECMA-182, reflected, as in XZ files.
constexpr uint64 crc64_of(std::span<const std::byte> bytes, uint64 before = 0) {
  return crc_of<uint64, 0xC96C5795D7870F42>(bytes, before);
}

}  // namespace host
