// The output channel.
#include <gtest/gtest.h>

#include <algorithm>
#include <cinttypes>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

#include "support/recording_state.h"

namespace pmcli_test {
namespace {

constexpr uint32 kBelongsTo = 0x0271;  // a text under an id that says number

template <typename Value>
Value read_as(const void* value) {
  Value copy;
  std::memcpy(&copy, value, sizeof copy);
  return copy;
}

template <typename... Args>
std::string formatted(const char* format, Args... args) {
  char text[128];
  std::snprintf(text, sizeof text, format, args...);
  return text;
}

std::string float_text(const cmd_float_t& value) {
  const cmd_float_3ints_t& digits = value.u.ti;
  std::string text = digits.whole == 0 && value.fval < 0 ? "-" : "";
  text += std::to_string(digits.whole);
  if (digits.nb_decimals > 0) text += formatted(".%0*d", digits.nb_decimals, digits.decimal);
  return text;
}

struct rendered_value {
  tuple_value value;
  std::string text;
};

rendered_value render_text(const void* value) {
  const std::string text = value == nullptr ? "" : static_cast<const char*>(value);
  return {text, text};
}

rendered_value render_enum(const RecordingPlatform& platform, uint32 id, uint32 number) {
  const auto texts = platform.enum_texts.find(id & 0xFFFF);
  if (texts != platform.enum_texts.end())
    if (const auto text = texts->second.find(number); text != texts->second.end()) return {number, text->second};
  return {number, std::to_string(number)};
}

rendered_value render(const RecordingPlatform& platform, const cmd_tuple_t& tuple, bool is_short_row) {
  if (tuple.id == 0 || (tuple.id & 0xFFFF) == kBelongsTo) return render_text(tuple.value);
  const auto* const bytes = static_cast<const uint8*>(tuple.value);
  switch (tuple.id >> 24) {
    case CMD_TYPE_ENUM: return render_enum(platform, tuple.id, read_as<uint32>(bytes));
    case CMD_TYPE_IF_INDEX: {
      const auto if_index = read_as<uint32>(bytes);
      return {if_index, interface_text(platform, if_index, is_short_row)};
    }
    case CMD_TYPE_MAC: {
      const std::string text =
          formatted("%02x%02x.%02x%02x.%02x%02x", bytes[0], bytes[1], bytes[2], bytes[3], bytes[4], bytes[5]);
      return {text, text};
    }
    case CMD_TYPE_UINT32: {
      const auto number = read_as<uint32>(bytes);
      return {number, std::to_string(number)};
    }
    case CMD_TYPE_UINT64: {
      const auto number = read_as<uint64>(bytes);
      return {number, std::to_string(number)};
    }
    case CMD_TYPE_IPV4: {
      const std::string text = formatted("%u.%u.%u.%u", bytes[0], bytes[1], bytes[2], bytes[3]);
      return {text, text};
    }
    case CMD_TYPE_HEX32: {
      const auto number = read_as<uint32>(bytes);
      return {number, formatted("0x%" PRIx32, number)};
    }
    case CMD_TYPE_STRING: return render_text(tuple.value);
    case CMD_TYPE_FLOAT: {
      const std::string text = float_text(read_as<cmd_float_t>(bytes));
      return {text, text};
    }
    default: ADD_FAILURE() << formatted("tuple 0x%08X has a type code that nobody knows", tuple.id); return {0U, ""};
  }
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// A placeholder of cmd_prt(): `%`, optional `-`, digits, optional `.digits`, `s`.
struct placeholder {
  bool is_left = false;
  std::size_t width = 0;
  std::size_t precision = std::string::npos;

  // Reads one at `at`; gives its length, or 0 where there is none.
  std::size_t parse(const char* at) {
    const char* next = at;
    if (*next++ != '%') return 0;
    if (*next == '-') is_left = *next++ == '-';
    width = number(next);
    if (*next == '.' && is_digit(next[1])) precision = number(++next);
    return *next == 's' ? static_cast<std::size_t>(next + 1 - at) : 0;
  }

  std::string fill(std::string text) const {
    if (text.size() > precision) text.resize(precision);
    if (text.size() >= width) return text;
    const std::string blanks(width - text.size(), ' ');
    return is_left ? text + blanks : blanks + text;
  }

 private:
  static std::size_t number(const char*& next) {
    std::size_t value = 0;
    while (is_digit(*next)) value = value * 10 + static_cast<std::size_t>(*next++ - '0');
    return value;
  }
};

// The ranges behind a record.
std::vector<vsh_intf_mono_range_t>& ranges_of(const mrange_handle_t* record) {
  return *static_cast<std::vector<vsh_intf_mono_range_t>*>(record->list);
}

std::string format_of_ranges(const mrange_handle_t& record) {
  RecordingPlatform& platform = platform_for("cmd_mrange_snprintf");
  std::string text;
  for (const vsh_intf_mono_range_t& range : ranges_of(&record)) {
    if (!text.empty()) text += ", ";
    text += interface_text(platform, range.lower_if_index, false);
    if (range.upper_if_index != range.lower_if_index)
      text += "-" + interface_text(platform, range.upper_if_index, false);
  }
  return text;
}

}  // namespace

void PrintTo(const bound_tuple& tuple, std::ostream* out) {
  char id[16];
  std::snprintf(id, sizeof id, "0x%08X", tuple.id);
  *out << '{' << id << ", ";
  if (const auto* number = std::get_if<uint64>(&tuple.value.held))
    *out << *number;
  else
    *out << '"' << std::get<std::string>(tuple.value.held) << '"';
  *out << '}';
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

cmd_rx_handle_t* cmd_paraminfo_to_rxhandle(paraminfo_t*) {
  RecordingPlatform& platform = platform_for("cmd_paraminfo_to_rxhandle");
  return platform.failure_of("cmd_paraminfo_to_rxhandle") != 0 ? nullptr : platform.output();
}

cmd_tuple_t* cmd_tuple(uint32 tuple_value, const void* value) {
  auto& tuples = platform_for("cmd_tuple").internals().tuples;
  return &tuples.emplace_back(cmd_tuple_t{tuple_value, value});
}

void cmd_prt(cmd_rx_handle_t* rx_handle, const char* format, ...) {
  RecordingPlatform& platform = platform_for("cmd_prt");
  RecordingPlatform::state& state = platform.internals();
  if (rx_handle != platform.output())
    ADD_FAILURE() << "cmd_prt(\"" << format << "\") on a handle that is not the command's";
  printed_piece piece;
  piece.format = format;
  va_list arguments;
  va_start(arguments, format);
  for (const char* next = format; *next != '\0';) {
    placeholder place;
    const std::size_t length = place.parse(next);
    if (length == 0) {
      piece.text += *next++;
      continue;
    }
    next += length;
    if (piece.tuples.size() == state.tuples.size()) {
      ADD_FAILURE() << "cmd_prt(\"" << format << "\") has more placeholders than bound values";
      break;
    }
    const cmd_tuple_t& tuple = *va_arg(arguments, cmd_tuple_t*);
    const rendered_value rendered = render(platform, tuple, state.is_short_row);
    piece.tuples.push_back({tuple.id, rendered.value});
    piece.values.push_back(rendered.text);
    piece.text += place.fill(rendered.text);
  }
  va_end(arguments);
  if (piece.tuples.size() != state.tuples.size())
    ADD_FAILURE() << "cmd_prt(\"" << format << "\") has " << piece.tuples.size() << " placeholders for "
                  << state.tuples.size() << " bound values";
  state.tuples.clear();
  platform.add_text(piece.text, false);
  platform.pieces.push_back(std::move(piece));
}

void cmd_print_short(cmd_rx_handle_t* rx_handle) {
  RecordingPlatform& platform = platform_for("cmd_print_short");
  if (rx_handle != platform.output()) ADD_FAILURE() << "cmd_print_short() on a handle that is not the command's";
  ++platform.short_rows;
  platform.internals().is_short_row = true;
}

void cmd_prt_send(cmd_rx_handle_t* rx_handle) {
  RecordingPlatform& platform = platform_for("cmd_prt_send");
  if (rx_handle != platform.output()) ADD_FAILURE() << "cmd_prt_send() on a handle that is not the command's";
  ++platform.sends;
}

void cmd_rsp_send_nok(cmd_rx_handle_t*, uint32 flags, const char* text) {
  if (flags != 0) ADD_FAILURE() << "cmd_rsp_send_nok() with flags " << flags;
  platform_for("cmd_rsp_send_nok").failures.emplace_back(text);
}

mrange_handle_t* cmd_mrange_create(uint32 token_id) {
  RecordingPlatform& platform = platform_for("cmd_mrange_create");
  if (platform.failure_of("cmd_mrange_create") != 0) return nullptr;
  mrange_handle_t record{};
  record.tid = static_cast<int32>(token_id);
  record.list = &platform.internals().ranges.emplace_back();
  return static_cast<mrange_handle_t*>(platform.hand_over(&record, sizeof record, "cmd_mrange_create"));
}

void cmd_mrange_range_add(mrange_handle_t* ranges, if_index_t first, if_index_t last) {
  ranges_of(ranges).push_back({first, last});
  ++ranges->len;
}

void cmd_mrange_error_set(mrange_handle_t* ranges) {
  platform_for("cmd_mrange_error_set").error_ranges.push_back(ranges_of(ranges));
  cmd_mrange_free(ranges);
}

int32 cmd_mrange_snprintf(char* buffer, uint32 size, const mrange_handle_t* ranges) {
  return std::snprintf(buffer, size, "%s", format_of_ranges(*ranges).c_str());
}

void cmd_mrange_free(mrange_handle_t* ranges) { platform_for("cmd_mrange_free").release(ranges); }

}  // extern "C"
