// The bounded reader: decodes payloads whose size and counts come from outside.
#pragma once

#include <cstddef>

#include "platform/types.h"

namespace pmcli {

// A cursor over bytes in big-endian order. Nothing is read past the end: a read that does not fit gives 0, and the
// failure sticks.
class reader {
 public:
  reader(const void* data, std::size_t size)
      : next_(static_cast<const uint8*>(data)), left_(data == nullptr ? 0 : size) {}

  bool ok() const { return ok_; }
  std::size_t left() const { return ok_ ? left_ : 0; }

  uint8 u8() { return static_cast<uint8>(number(1)); }
  uint16 u16() { return static_cast<uint16>(number(2)); }
  uint32 u32() { return number(4); }

  void skip(std::size_t size) { take(size); }

  // A reader over the next `size` bytes, which this one passes; it has failed when they are not there.
  reader sub(std::size_t size) {
    const uint8* const data = take(size);
    reader part(data, size);
    part.ok_ = ok_;
    return part;
  }

 private:
  const uint8* take(std::size_t size) {
    if (!ok_ || size > left_) {
      ok_ = false;
      return nullptr;
    }
    const uint8* const data = next_;
    next_ += size;
    left_ -= size;
    return data;
  }

  uint32 number(std::size_t size) {
    const uint8* const data = take(size);
    uint32 value = 0;
    for (std::size_t i = 0; data != nullptr && i < size; ++i) value = value << 8 | data[i];
    return value;
  }

  const uint8* next_;
  std::size_t left_;
  bool ok_ = true;
};

}  // namespace pmcli
