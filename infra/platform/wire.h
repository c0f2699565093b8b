/*
 * Big-endian integers of records that travel between services.
 *
 * Each is an array of bytes, most significant first, with alignment 1, so that a record made of them has no padding and
 * may start at any address. In C++ they convert to and from the host's integer, and `record->member` reads the same on
 * every machine. The functions below read and write them in C and in C++.
 */
#ifndef PLATFORM_WIRE_H
#define PLATFORM_WIRE_H

#include "platform/types.h"

#ifdef __cplusplus

template <typename Host, typename Bits>
struct big_endian {
  big_endian() = default;
  constexpr big_endian(Host value) noexcept : bytes{} { *this = value; }

  constexpr big_endian& operator=(Host value) noexcept {
    auto bits = static_cast<Bits>(value);
    for (size_t i = sizeof(Bits); i-- > 0; bits = static_cast<Bits>(bits >> 8))
      bytes[i] = static_cast<uint8>(bits & 0xFF);
    return *this;
  }

  constexpr operator Host() const noexcept {
    Bits bits = 0;
    for (const uint8 byte : bytes) bits = static_cast<Bits>(bits << 8 | byte);
    return static_cast<Host>(bits);
  }

  uint8 bytes[sizeof(Bits)];
};

using be16 = big_endian<uint16, uint16>;
using be32 = big_endian<uint32, uint32>;
using be64 = big_endian<uint64, uint64>;
using be_int32 = big_endian<int32, uint32>;

static_assert(sizeof(be16) == 2 && alignof(be16) == 1);
static_assert(sizeof(be32) == 4 && alignof(be32) == 1);
static_assert(sizeof(be64) == 8 && alignof(be64) == 1);
static_assert(sizeof(be_int32) == 4 && alignof(be_int32) == 1);

#else

typedef struct {
  uint8 bytes[2];
} be16;
typedef struct {
  uint8 bytes[4];
} be32;
typedef struct {
  uint8 bytes[8];
} be64;
typedef be32 be_int32;

#endif

/* The bytes of a wire integer as a number, and a number as these bytes. For the functions below. */
static inline uint64 wire_bits(const uint8* bytes, size_t size) {
  uint64 bits = 0;
  for (size_t i = 0; i < size; ++i) bits = bits << 8 | bytes[i];
  return bits;
}

static inline void wire_store(uint8* bytes, size_t size, uint64 bits) {
  for (size_t i = size; i-- > 0; bits >>= 8) bytes[i] = (uint8)(bits & 0xFF);
}

/* Return the host's integer. */
static inline uint16 be16_get(be16 value) { return (uint16)wire_bits(value.bytes, sizeof value.bytes); }
static inline uint32 be32_get(be32 value) { return (uint32)wire_bits(value.bytes, sizeof value.bytes); }
static inline uint64 be64_get(be64 value) { return wire_bits(value.bytes, sizeof value.bytes); }
static inline int32 be_int32_get(be_int32 value) { return (int32)(uint32)wire_bits(value.bytes, sizeof value.bytes); }

/* Store the host's integer in the caller's wire integer, which may be at any address. */
static inline void be16_set(be16* to, uint16 value) { wire_store(to->bytes, sizeof to->bytes, value); }
static inline void be32_set(be32* to, uint32 value) { wire_store(to->bytes, sizeof to->bytes, value); }
static inline void be64_set(be64* to, uint64 value) { wire_store(to->bytes, sizeof to->bytes, value); }
static inline void be_int32_set(be_int32* to, int32 value) { wire_store(to->bytes, sizeof to->bytes, (uint32)value); }

#endif
