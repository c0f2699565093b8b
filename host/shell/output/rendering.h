// Bound values as text.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cmd_channel.h"
#include "platform/types.h"
#include "shell/output/chain/line.h"
#include "shell/output/schema/schema.h"

struct cmd_tuple_t {
  uint32 id;
  const void* value;
};

namespace host {

inline uint8 type_code(const cmd_tuple_t& tuple) { return static_cast<uint8>(tuple.id >> 24); }

// The texts of port attributes, which the command library knows. A missing one shows the number.
struct vocabulary {
  const char* (*port_mode)(uint32);
  const char* (*rate_mode)(uint8);
  const char* (*flow_control)(uint16);
  const char* (*state_reason)(uint8, boolean short_name);
};

// Used from now on.
void set_vocabulary(const vocabulary& words);

// The value that a tuple points to, of the type of its code.
uint32 value_of_32(const cmd_tuple_t& tuple);
uint64 value_of_64(const cmd_tuple_t& tuple);

// The text of an enumerated value; its number when it has none.
std::string text_of_enum(enum_words words, uint32 value);

// The texts of all values that a field's words have, in the order of the values.
std::vector<std::string> all_words(enum_words words);

// "021c.7340.0202" of six bytes, "198.51.100.1" of four and "2001:db8::1" of sixteen in network order.
std::string text_of_mac(const uint8* bytes);
std::string text_of_ipv4(const uint8* bytes);
std::string text_of_ipv6(const uint8* bytes);

// A time in RFC 3339 format, in UTC: "2026-01-31T23:59:59Z".
std::string utc_text(std::time_t moment);

// The same for people, in the time zone of the user: "2026-02-01 00:59:59".
std::string local_text(std::time_t moment);

// True when the tuple is bound to a text: by its code, or because its field is one.
bool is_string(const cmd_tuple_t& tuple);

// A mark of optical diagnostics: its text, empty for a value within its limits, and its severity. A tuple that is not a
// mark has none.
std::string_view mark_text(uint32 mark);
std::optional<severity> severity_of_mark(uint32 mark);
std::optional<severity> severity_of_mark(const cmd_tuple_t& tuple);

// Appends the text of a tuple. Interface names are short when `short_names` is set, or when the full one is longer than
// `fit` characters; those of satellite ports are their number when the short one is longer, too. Texts are made
// printable.
void append_tuple_text(std::string& to, const cmd_tuple_t& tuple, bool short_names, std::size_t fit);

}  // namespace host
