#include "shell/output/document.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ctime>

#include "shell/output/printable.h"

namespace host {
namespace {

using json_writer = rapidjson::Writer<rapidjson::StringBuffer>;

constexpr uint8 kNotShown = 0xFF;

// Messages are kept until the end of the document. A handler that prints without end must not fill the memory.
constexpr std::size_t kMostMessageBytes = 16 << 20;

// Where a field stands in the schema.
std::size_t row_of(const field& meaning) { return static_cast<std::size_t>(&meaning - schema().data()); }

// The first field of a record for an interface.
constexpr field kNameOfRecord = {0, "interface", field_type::interface_name};

// Control bytes that JSON itself escapes: they keep their value there.
constexpr char kEscapedByJson[] =
    "\x01\x02\x03\x04\x05\x06\x07\x08\t\n\x0b\x0c\r\x0e\x0f\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19\x1a\x1b\x1c\x1d\x1e"
    "\x1f";

void write_key(json_writer& json, std::string_view name) {
  json.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
}

void write_string(json_writer& json, std::string_view text) {
  json.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

std::string utc_now() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&now, &parts);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

// The number that a text consists of; false for any other text.
bool read_number(const std::string& text, uint64& number) {
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
  return end.ec == std::errc{} && end.ptr == text.data() + text.size() && !text.empty();
}

// What the library prints for a value that is absent.
bool is_placeholder(std::string_view text) { return text.empty() || text == "--"; }

void write_text_or_null(json_writer& json, std::string_view text) {
  if (is_placeholder(text))
    json.Null();
  else
    write_string(json, text);
}

void write_number_or_null(json_writer& json, bool known, uint64 number) {
  if (known)
    json.Uint64(number);
  else
    json.Null();
}

void write_decimal_or_null(json_writer& json, const std::string& text) {
  double number = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
  if (end.ec == std::errc{} && end.ptr == text.data() + text.size() && std::isfinite(number))
    json.Double(number);
  else
    json.Null();
}

void write_cell(json_writer& json, const document_cell& value) {
  if (value.meaning == nullptr) {
    json.Null();
    return;
  }
  switch (value.meaning->type) {
    case field_type::number: return write_number_or_null(json, true, value.number);
    case field_type::number_or_auto: return write_number_or_null(json, value.number != 0, value.number);
    case field_type::number_from_text: {
      uint64 number = 0;
      const bool known = read_number(value.text, number);
      return write_number_or_null(json, known, number);
    }
    case field_type::decimal: json.Double(value.decimal); return;
    case field_type::decimal_from_text: return write_decimal_or_null(json, value.text);
    default: return write_text_or_null(json, value.text);
  }
}

void write_rates(json_writer& json, const std::optional<traffic_rates>& rates) {
  write_key(json, "rates");
  if (!rates) {
    json.Null();
    return;
  }
  json.StartObject();
  for (const rate_field& rate : kRateFields) {
    write_key(json, rate.name);
    json.Double((*rates).*rate.value);
  }
  json.EndObject();
}

// A mark as a word; empty for none.
std::string_view mark_word(uint32 mark) {
  constexpr std::string_view kWords[] = {"high alarm", "high warning", "low warning", "low alarm"};
  return mark >= 1 && mark <= std::size(kWords) ? kWords[mark - 1] : std::string_view();
}

}  // namespace

document::document(const display& shown, std::string_view command) : shown_(shown) {
  const auto fields = schema();
  cell_of_row_.assign(fields.size(), kNotShown);
  for (std::size_t row = 0; row < fields.size(); ++row) {
    if ((fields[row].displays & shown.bit) == 0) continue;
    const auto known = std::find(names_.begin(), names_.end(), fields[row].name);
    cell_of_row_[row] = static_cast<uint8>(known - names_.begin());
    if (known == names_.end()) names_.push_back(fields[row].name);
  }
  cells_.resize(names_.size());
  begin(command);
  if (!shown_.section.empty()) begin_record({});
}

void document::begin(std::string_view command) {
  rapidjson::StringBuffer buffer;
  json_writer json(buffer);
  json.StartObject();
  write_key(json, "schema_version");
  json.Int(kSchemaVersion);
  write_key(json, "command");
  write_string(json, command);
  write_key(json, "time");
  write_string(json, utc_now());
  ready_.append(buffer.GetString(), buffer.GetSize());
  ready_ += ",\"interfaces\":[";
}

void document::begin_record(std::string_view interface_name) {
  for (document_cell& value : cells_) value.meaning = nullptr;
  record_name_ = interface_name;
  record_open_ = true;
  record_is_empty_ = true;
  if (interface_name.empty()) return;
  cells_[0].meaning = &kNameOfRecord;
  cells_[0].text = interface_name;
}

const field* document::shown_field(const cmd_tuple_t& tuple) const {
  const field* const meaning = find_field(tuple.id);
  if (meaning == nullptr || !record_open_ || tuple.id == 0) return nullptr;
  return cell_of_row_[row_of(*meaning)] == kNotShown ? nullptr : meaning;
}

bool document::bind_unknown(const cmd_tuple_t& tuple) {
  if (shown_field(tuple) == nullptr) return false;
  record_is_empty_ = false;
  return true;
}

bool document::bind(const cmd_tuple_t& tuple) {
  const field* const meaning = shown_field(tuple);
  if (meaning == nullptr || tuple.value == nullptr) return false;
  record_is_empty_ = false;
  document_cell& value = cells_[cell_of_row_[row_of(*meaning)]];
  value.meaning = meaning;
  value.text.clear();
  switch (meaning->type) {
    case field_type::number:
    case field_type::number_or_auto: value.number = value_of_64(tuple); break;
    case field_type::decimal: value.decimal = value_of_float(tuple); break;
    case field_type::string:
    case field_type::number_from_text:
    case field_type::decimal_from_text:
      append_printable(value.text, static_cast<const char*>(tuple.value), kEscapedByJson);
      if (shown_.has_marks) value.text.resize(value.text.find_last_not_of(' ') + 1);  // fields of identity pages
      break;
    case field_type::enumeration:
      if (meaning->words == enum_words::mark) {
        value.text = mark_word(value_of_32(tuple));
        break;
      }
      [[fallthrough]];
    default: append_tuple_text(value.text, tuple, false, std::string::npos);
  }
  return true;
}

void document::write_record(const std::optional<traffic_rates>* rates) {
  static rapidjson::StringBuffer buffer;
  buffer.Clear();
  json_writer json(buffer);
  json.StartObject();
  for (std::size_t i = 0; i < names_.size(); ++i) {
    write_key(json, names_[i]);
    write_cell(json, cells_[i]);
  }
  if (rates != nullptr) write_rates(json, *rates);
  json.EndObject();
  ready_.append(buffer.GetString(), buffer.GetSize());
}

void document::end_record(const std::optional<traffic_rates>* rates) {
  if (!record_open_ || !shown_.section.empty()) return;
  record_open_ = false;
  if (record_is_empty_) return;
  ready_ += first_record_ ? "\n" : ",\n";
  first_record_ = false;
  write_record(rates);
}

bool document::add_message(std::string_view text) {
  record_is_empty_ = false;
  if (messages_.size() > kMostMessageBytes) {
    if (lost_messages_) return false;
    lost_messages_ = true;
    text = "error: more messages than a document holds; the rest is missing";
  }
  rapidjson::StringBuffer buffer;
  json_writer json(buffer);
  json.StartObject();
  write_key(json, "interface");
  write_text_or_null(json, record_open_ ? record_name_ : std::string());
  write_key(json, "text");
  write_string(json, text);
  json.EndObject();
  messages_ += messages_.empty() ? "\n" : ",\n";
  messages_.append(buffer.GetString(), buffer.GetSize());
  return !lost_messages_;
}

void document::end() {
  ready_ += first_record_ ? "],\"messages\":[" : "\n],\"messages\":[";
  ready_ += messages_;
  ready_ += messages_.empty() ? "]" : "\n]";
  if (!shown_.section.empty()) {
    ready_ += ",\"";
    ready_ += shown_.section;
    ready_ += "\":";
    write_record(nullptr);
  }
  ready_ += "}\n";
}

}  // namespace host
