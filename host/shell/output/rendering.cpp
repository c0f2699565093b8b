#include "shell/output/rendering.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <numeric>
#include <span>

#include "base/digits.h"
#include "base/printable.h"
#include "platform/if_index.h"

namespace host {
namespace {

vocabulary the_vocabulary{};

template <typename Number>
void append_number(std::string& to, Number number, int base = 10) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, number, base);
  to.append(digits, end.ptr);
}

template <typename Value>
Value read_value(const cmd_tuple_t& tuple) {
  Value value;
  std::memcpy(&value, tuple.value, sizeof value);
  return value;
}

// A text of a table that starts at value `first`; null outside of it.
template <std::size_t Size>
const char* word_at(const char* const (&words)[Size], uint32 first, uint32 value) {
  return value >= first && value - first < Size ? words[value - first] : nullptr;
}

constexpr const char* kPortStates[] = {"up", "down"};
constexpr const char* kDuplexes[] = {"full", "half", "auto"};
constexpr const char* kOnOff[] = {"off", "on"};
constexpr const char* kYesNo[] = {"no", "yes"};
constexpr const char* kMarks[] = {"++", "+", "-", "--", ""};

const char* reason_text(uint32 value, boolean short_name) {
  if (the_vocabulary.state_reason == nullptr || value > 0xFF) return nullptr;
  return the_vocabulary.state_reason(static_cast<uint8>(value), short_name);
}

// The text of an enumerated value, or null for one that has none.
const char* enum_text(enum_words words, uint32 value) {
  const vocabulary& known = the_vocabulary;
  switch (words) {
    case enum_words::of_field:
    case enum_words::number: return nullptr;
    case enum_words::port_state: return word_at(kPortStates, 1, value);
    case enum_words::state_reason: return reason_text(value, 0);
    case enum_words::state_reason_short: return reason_text(value, 1);
    case enum_words::duplex: return word_at(kDuplexes, 1, value);
    case enum_words::speed_mbps: return value == 0 ? "auto" : nullptr;
    case enum_words::port_mode: return known.port_mode == nullptr ? nullptr : known.port_mode(value);
    case enum_words::rate_mode:
      return known.rate_mode == nullptr || value > 0xFF ? nullptr : known.rate_mode(static_cast<uint8>(value));
    case enum_words::flow_control:
      return known.flow_control == nullptr || value > 0xFFFF ? nullptr : known.flow_control(static_cast<uint16>(value));
    case enum_words::on_off: return word_at(kOnOff, 0, value);
    case enum_words::yes_no: return word_at(kYesNo, 0, value);
    case enum_words::mark: return word_at(kMarks, 1, value);
  }
  return nullptr;
}

// The enumeration of a tuple's value.
enum_words words_of(const cmd_tuple_t& tuple) {
  const binding* const bound = find_binding(tuple.id);
  if (bound == nullptr) return enum_words::number;
  return bound->words != enum_words::of_field ? bound->words : field_of(*bound).words;
}

void append_enum(std::string& to, const cmd_tuple_t& tuple) {
  const uint32 value = value_of_32(tuple);
  const char* const text = enum_text(words_of(tuple), value);
  if (text == nullptr) return append_number(to, value);
  append_printable(to, text);
}

bool is_of_satellite(if_index_t if_index) {
  if_index_type_t type = IF_TYPE_NONE;
  return if_index_get_type(if_index, &type) == 0 && type == IF_TYPE_SATELLITE;
}

void append_interface_name(std::string& to, if_index_t if_index, bool short_name, std::size_t fit) {
  char name[64] = {};
  if (!short_name) sprintf_if_index(name, if_index);
  if (short_name || std::strlen(name) > fit) snprintf_if_index_short(name, sizeof name, if_index);
  const bool is_number = std::strlen(name) > fit && is_of_satellite(if_index);
  append_printable(to, is_number ? std::strpbrk(name, "0123456789") : name);
}

void append_mac(std::string& to, const uint8* bytes) { append_dotted_hex(to, std::span<const uint8, 6>(bytes, 6)); }

void append_ipv4(std::string& to, const uint8* bytes) {
  for (int i = 0; i < 4; ++i) {
    if (i > 0) to += '.';
    append_number(to, bytes[i]);
  }
}

void append_float(std::string& to, const cmd_tuple_t& tuple) {
  const auto value = read_value<cmd_float_t>(tuple);
  const cmd_float_3ints_t& digits = value.u.ti;
  if (value.fval < 0 && digits.whole == 0) to += '-';
  append_number(to, digits.whole);
  if (digits.nb_decimals <= 0) return;
  to += '.';
  const std::size_t start = to.size();
  append_number(to, digits.decimal);
  const std::size_t written = to.size() - start;
  const auto decimals = static_cast<std::size_t>(digits.nb_decimals);
  if (written < decimals) to.insert(start, decimals - written, '0');
}

void append_string(std::string& to, const char* text) {
  if (text != nullptr) append_printable(to, text);
}

}  // namespace

void set_vocabulary(const vocabulary& words) { the_vocabulary = words; }

uint32 value_of_32(const cmd_tuple_t& tuple) { return read_value<uint32>(tuple); }

uint64 value_of_64(const cmd_tuple_t& tuple) {
  return type_code(tuple) == CMD_TYPE_UINT64 ? read_value<uint64>(tuple) : value_of_32(tuple);
}

std::string text_of_enum(enum_words words, uint32 value) {
  const char* const text = enum_text(words, value);
  return text != nullptr ? text : std::to_string(value);
}

std::vector<std::string> all_words(enum_words words) {
  std::vector<std::string> texts;
  constexpr uint32 kMostValues = 256;
  std::vector<uint32> values(kMostValues);
  std::iota(values.begin(), values.end(), 0U);
  for (uint32 bit = kMostValues; bit != 0; bit <<= 1) values.push_back(bit);  // port modes
  for (const uint32 value : values) {
    const char* const text = enum_text(words, value);
    const bool is_word = text != nullptr && !std::string_view(text).starts_with("Unknown(");
    if (is_word && std::find(texts.begin(), texts.end(), text) == texts.end()) texts.emplace_back(text);
  }
  return texts;
}

std::string text_of_mac(const uint8* bytes) {
  std::string text;
  append_mac(text, bytes);
  return text;
}

std::string text_of_ipv4(const uint8* bytes) {
  std::string text;
  append_ipv4(text, bytes);
  return text;
}

std::string text_of_ipv6(const uint8* bytes) {
  char text[INET6_ADDRSTRLEN] = {};
  return inet_ntop(AF_INET6, bytes, text, sizeof text);
}

std::string utc_text(std::time_t moment) {
  std::tm parts{};
  gmtime_r(&moment, &parts);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

std::string local_text(std::time_t moment) {
  std::tm parts{};
  localtime_r(&moment, &parts);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts)};
}

bool is_string(const cmd_tuple_t& tuple) {
  if (type_code(tuple) == CMD_TYPE_STRING || tuple.id == 0) return true;
  const binding* const bound = find_binding(tuple.id);
  return bound != nullptr && bound->form == binding_form::as_text;
}

std::string_view mark_text(uint32 mark) {
  const char* const text = word_at(kMarks, 1, mark);
  return text == nullptr ? std::string_view() : text;
}

std::optional<severity> severity_of_mark(uint32 mark) {
  const std::string_view text = mark_text(mark);
  if (text.empty()) return std::nullopt;
  return text.size() == 1 ? severity::warning : severity::alarm;
}

std::optional<severity> severity_of_mark(const cmd_tuple_t& tuple) {
  if (type_code(tuple) != CMD_TYPE_ENUM || tuple.value == nullptr) return std::nullopt;
  if (words_of(tuple) != enum_words::mark) return std::nullopt;
  return severity_of_mark(value_of_32(tuple));
}

void append_tuple_text(std::string& to, const cmd_tuple_t& tuple, bool short_names, std::size_t fit) {
  if (is_string(tuple)) return append_string(to, static_cast<const char*>(tuple.value));
  if (tuple.value == nullptr) return;
  switch (type_code(tuple)) {
    case CMD_TYPE_ENUM: return append_enum(to, tuple);
    case CMD_TYPE_IF_INDEX: return append_interface_name(to, value_of_32(tuple), short_names, fit);
    case CMD_TYPE_MAC: return append_mac(to, static_cast<const uint8*>(tuple.value));
    case CMD_TYPE_UINT64: return append_number(to, value_of_64(tuple));
    case CMD_TYPE_IPV4: return append_ipv4(to, static_cast<const uint8*>(tuple.value));
    case CMD_TYPE_HEX32: to += "0x"; return append_number(to, value_of_32(tuple), 16);
    case CMD_TYPE_FLOAT: return append_float(to, tuple);
    default: return append_number(to, value_of_32(tuple));
  }
}

}  // namespace host
