// Numbers and bytes in digits.
#pragma once

#include <charconv>
#include <cstddef>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace host {

// Sets `number` to the number that the whole text is. False for another text, and for a number that does not fit.
template <typename Number>
bool read_number(std::string_view text, Number& number, int base = 10) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return error == std::errc() && end == text.data() + text.size();
}

// Reads bytes of two hexadecimal digits each. False when the text is not exactly that.
inline bool read_hex(std::string_view text, std::span<uint8> bytes) {
  if (text.size() != 2 * bytes.size()) return false;
  for (std::size_t i = 0; i < bytes.size(); ++i)
    if (!read_number(text.substr(2 * i, 2), bytes[i], 16)) return false;
  return true;
}

inline void append_hex(std::string& to, uint8 byte) {
  constexpr char kDigits[] = "0123456789abcdef";
  to += kDigits[byte >> 4];
  to += kDigits[byte & 0xF];
}

// Two digits, in lower case, for each byte of a range.
template <typename Bytes>
std::string hex_of(const Bytes& bytes) {
  static_assert(sizeof(*std::begin(bytes)) == 1);
  std::string text;
  for (const auto byte : bytes) append_hex(text, static_cast<uint8>(byte));
  return text;
}

// The same with a dot after each two bytes, as hardware addresses are shown: "021c.7340.0202".
template <typename Bytes>
void append_dotted_hex(std::string& to, const Bytes& bytes) {
  static_assert(sizeof(*std::begin(bytes)) == 1);
  std::size_t place = 0;
  for (const auto byte : bytes) {
    if (place != 0 && place % 2 == 0) to += '.';
    append_hex(to, static_cast<uint8>(byte));
    ++place;
  }
}

}  // namespace host
