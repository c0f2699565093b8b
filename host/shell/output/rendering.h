// Bound values as text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/cmd_channel.h"
#include "platform/types.h"
#include "shell/output/chain/line.h"

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

// A value behind a tuple, as its code promises it.
uint32 value_of_32(const cmd_tuple_t& tuple);
uint64 value_of_64(const cmd_tuple_t& tuple);
double value_of_float(const cmd_tuple_t& tuple);

// True when the tuple is bound to a text: by its code, or because its field is one.
bool is_string(const cmd_tuple_t& tuple);

// A mark of optical diagnostics: its text, empty for a value in its limits, and what it says of the value. A tuple that
// is no mark says nothing.
std::string_view mark_text(uint32 mark);
std::optional<severity> severity_of_mark(uint32 mark);
std::optional<severity> severity_of_mark(const cmd_tuple_t& tuple);

// Appends the text of a tuple. Interface names are short when `short_names` is set, or when the full one is longer than
// `fit` characters. Texts are made printable.
void append_tuple_text(std::string& to, const cmd_tuple_t& tuple, bool short_names, std::size_t fit);

}  // namespace host
