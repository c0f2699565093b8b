// Printing values on the output channel.
//
// Each helper binds a native local of exactly the width that the tuple's type code promises. Tuple ids have the names
// of platform/tags.h: an id of another type, or a number, does not compile. Nothing else in the library calls
// cmd_tuple().
#pragma once

#include <cstdio>

#include "platform/cmd_channel.h"
#include "platform/tags.h"
#include "platform/types.h"
#include "pmcli/command.h"

namespace pmcli {

using tag::tuple_id;

template <uint32 Type, typename Value>
void print_value(cmd_rx_handle_t* rx, const char* format, tuple_id<Type> tuple, Value value) {
  cmd_prt(rx, format, cmd_tuple(tuple.id, &value));
}

inline void print_enum(cmd_rx_handle_t* rx, const char* format, tuple_id<CMD_TYPE_ENUM> tuple, uint32 value) {
  print_value(rx, format, tuple, value);
}

inline void print_if_index(cmd_rx_handle_t* rx, const char* format, tuple_id<CMD_TYPE_IF_INDEX> tuple,
                           if_index_t value) {
  print_value(rx, format, tuple, value);
}

inline void print_u32(cmd_rx_handle_t* rx, const char* format, tuple_id<CMD_TYPE_UINT32> tuple, uint32 value) {
  print_value(rx, format, tuple, value);
}

inline void print_hex32(cmd_rx_handle_t* rx, const char* format, tuple_id<CMD_TYPE_HEX32> tuple, uint32 value) {
  print_value(rx, format, tuple, value);
}

inline void print_u64(cmd_rx_handle_t* rx, const char* format, tuple_id<CMD_TYPE_UINT64> tuple, uint64 value) {
  print_value(rx, format, tuple, value);
}

// `bytes`: the six of a MAC address.
inline void print_mac(cmd_rx_handle_t* rx, const char* format, tuple_id<CMD_TYPE_MAC> tuple, const uint8* bytes) {
  cmd_prt(rx, format, cmd_tuple(tuple.id, bytes));
}

// `bytes`: the four of an IPv4 address, in network order.
inline void print_ipv4(cmd_rx_handle_t* rx, const char* format, tuple_id<CMD_TYPE_IPV4> tuple, const uint8* bytes) {
  cmd_prt(rx, format, cmd_tuple(tuple.id, bytes));
}

// `text` is terminated.
inline void print_text(cmd_rx_handle_t* rx, const char* format, tuple_id<CMD_TYPE_STRING> tuple, const char* text) {
  cmd_prt(rx, format, cmd_tuple(tuple.id, text));
}

// A text without a tag. `text` is terminated.
inline void print_untagged(cmd_rx_handle_t* rx, const char* format, const char* text) {
  cmd_prt(rx, format, cmd_tuple(0, text));
}

// Decimals of every measured value.
inline constexpr uint8 kDecimals = 2;

inline void print_decimal(cmd_rx_handle_t* rx, const char* format, tuple_id<CMD_TYPE_FLOAT> tuple, float value) {
  cmd_float_t parts;
  float2cmdfloat(&parts, value, kDecimals);
  cmd_prt(rx, format, cmd_tuple(tuple.id, &parts));
}

// A text under an id whose type code says number: the id is part of the contract, and the schema reads it as a text.
inline void print_text_as_number(cmd_rx_handle_t* rx, const char* format, tuple_id<CMD_TYPE_UINT32> tuple,
                                 const char* text) {
  cmd_prt(rx, format, cmd_tuple(tuple.id, text));
}

// The tuple id of an unsigned integer of either width.
struct counter_tuple_id {
  constexpr counter_tuple_id(tuple_id<CMD_TYPE_UINT32> tuple) : id(tuple.id) {}
  constexpr counter_tuple_id(tuple_id<CMD_TYPE_UINT64> tuple) : id(tuple.id) {}
  explicit constexpr counter_tuple_id(uint32 tuple) : id(tuple) {}  // of a caller of the library

  uint32 id;
};

// A 32-bit id takes the low 32 bits of a counter.
inline void print_counter(cmd_rx_handle_t* rx, const char* format, counter_tuple_id tuple, uint64 value) {
  const auto low_bits = static_cast<uint32>(value);
  const bool is_wide = tuple.id >> 24 == CMD_TYPE_UINT64;
  cmd_prt(rx, format, cmd_tuple(tuple.id, is_wide ? static_cast<const void*>(&value) : &low_bits));
}

// The cell of an absent value: "--", in the width of `format` (at most 79 columns).
inline void print_absent(cmd_rx_handle_t* rx, const char* format) {
  char cell[80];
  std::snprintf(cell, sizeof cell, format, "--");
  cmd_prt(rx, cell);
}

}  // namespace pmcli
