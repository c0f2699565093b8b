// The fields of properties: under which key, in which unit and with which texts programs get the value of a property.
#pragma once

#include <span>
#include <string_view>

#include "messages/property.h"
#include "platform/types.h"

namespace host {

// How a field is written in the structured form. An absent value is null.
enum class field_type : uint8 {
  text,
  full_name,    // of an interface
  mac,          // "xxxx.xxxx.xxxx"
  ip,           // an IPv4 or IPv6 address
  hexadecimal,  // an integer as "0x..."
  enumeration,  // the text of the value
  integer,
  integer_or_auto,  // 0 is automatic and null here
  decimal,          // a number with the digits that are shown
  numbers,          // an array of integers
  words,            // an array of texts
  map,              // an object of integers
  lanes,            // an array of {"lane", "current_ma", "current_mark", ...}
  interfaces,       // an array of full names
  vlans,            // "1-10,20"; without any ""
  membership,       // {"mode", "access", "native", "allowed"}
  time,             // RFC 3339, in UTC
};

// The texts of the values of an enumerated field.
enum class enum_words : uint8 {
  of_field,  // of a binding: those of its field
  number,    // none: the number itself
  port_state,
  state_reason,
  state_reason_short,
  duplex,
  speed_mbps,
  port_mode,
  rate_mode,
  flow_control,
  on_off,
  yes_no,
  mark,
};

struct field {
  property value;         // its number in the service of interface values; none: only displays bind it
  std::string_view name;  // the key
  field_type type;
  std::string_view unit = {};
  std::string_view title = {};
  std::string_view description = {};
  enum_words words = enum_words::number;
};

// Of all properties but property::none, in the order of their numbers.
std::span<const field> property_fields();

// Not for property::none.
const field& field_of(property of);

}  // namespace host
