// A counter that may be unknown.
#pragma once

#include <optional>

#include "platform/types.h"

namespace host {

// Takes the eight bytes of its value: the largest value but one means "unknown", and a count of that value is
// stored as the one below. Used as std::optional<uint64> is.
class counter {
 public:
  constexpr counter() = default;
  constexpr counter(std::nullopt_t) {}
  constexpr counter(uint64 value) : value_(value == kUnknown ? kUnknown - 1 : value) {}

  constexpr bool has_value() const { return value_ != kUnknown; }
  constexpr explicit operator bool() const { return has_value(); }
  constexpr uint64 operator*() const { return value_; }  // needs a value
  constexpr uint64 value_or(uint64 other) const { return has_value() ? value_ : other; }

  // A sum with something that is not known is not known.
  constexpr counter& operator+=(counter more) {
    return *this = has_value() && more.has_value() ? counter(value_ + more.value_) : counter();
  }
  friend constexpr counter operator+(counter one, counter other) { return one += other; }

  friend constexpr bool operator==(counter, counter) = default;

 private:
  static constexpr uint64 kUnknown = UINT64_MAX - 1;

  uint64 value_ = kUnknown;
};
static_assert(sizeof(counter) == sizeof(uint64));

// A member of 32 bits that a counter has outgrown keeps the largest value; an unknown one is 0.
constexpr uint32 in_32_bits(counter count) {
  return count.value_or(0) < UINT32_MAX ? static_cast<uint32>(count.value_or(0)) : UINT32_MAX;
}

}  // namespace host
