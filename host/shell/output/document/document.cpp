#include "shell/output/document/document.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <ctime>
#include <limits>
#include <map>

#include "base/printable.h"
#include "platform/if_index.h"

namespace host {
namespace {

constexpr uint16 kNotShown = std::numeric_limits<uint16>::max();

// Messages are kept until the end of the document. A handler that prints without end must not fill the memory.
constexpr std::size_t kMostMessageBytes = 16 << 20;

// Control bytes that JSON itself escapes: they keep their value there.
constexpr char kEscapedByJson[] =
    "\x01\x02\x03\x04\x05\x06\x07\x08\t\n\x0b\x0c\r\x0e\x0f\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19\x1a\x1b\x1c\x1d\x1e"
    "\x1f";

constexpr std::string_view kServiceFailedReason = "service failed";

std::string_view text_of(absence why) {
  switch (why) {
    case absence::none: return {};
    case absence::not_supported: return "not supported";
    case absence::no_permission: return "no permission";
  }
  return {};
}

// What the library prints for a value that is absent.
bool is_placeholder(std::string_view text) { return text.empty() || text == "--"; }

void write_text_or_null(json_writer& json, std::string_view text) {
  is_placeholder(text) ? json.null() : json.text(text);
}

bool is_integer(field_type type) { return type == field_type::integer || type == field_type::integer_or_auto; }

// Types that tuples cannot carry: their values come only from the service.
bool is_answered_only(field_type type) {
  switch (type) {
    case field_type::numbers:
    case field_type::words:
    case field_type::map:
    case field_type::lanes:
    case field_type::interfaces:
    case field_type::membership:
    case field_type::time: return true;
    default: return false;
  }
}

std::string_view mark_word(uint32 mark) {
  constexpr std::string_view kWords[] = {"high alarm", "high warning", "low warning", "low alarm"};
  return mark >= 1 && mark <= std::size(kWords) ? kWords[mark - 1] : std::string_view();
}

// Marks are words here.
std::string enumerated_text(const field& meaning, uint32 number) {
  return meaning.words == enum_words::mark ? std::string(mark_word(number)) : text_of_enum(meaning.words, number);
}

// ---- Values of the service ----

std::string interface_name(if_index_t if_index) {
  char name[64] = {};
  sprintf_if_index(name, if_index);
  return name;
}

// "1-10,20" of the runs that begin at the first entry.
std::string text_of_runs(const interface_value& value) {
  std::string text;
  for (std::size_t i = 0; i + 1 < value.num_entries(); i += 2) {
    if (!text.empty()) text += ',';
    text += std::to_string(value.entry(i));
    if (value.entry(i + 1) != value.entry(i)) text += '-' + std::to_string(value.entry(i + 1));
  }
  return text;
}

void write_vlan_or_null(json_writer& json, uint16 vlan) { vlan == 0 ? json.null() : json.number(vlan); }

void write_membership(json_writer& json, const interface_value& value) {
  const vlan_membership membership = value.membership();
  json.begin_object();
  json.key("mode");
  write_text_or_null(json, word_of(membership.mode));
  json.key("access");
  write_vlan_or_null(json, membership.access);
  json.key("native");
  write_vlan_or_null(json, membership.native);
  json.key("allowed");
  membership.mode == vlan_mode::trunk ? json.text(text_of_runs(value)) : json.null();
  json.end_object();
}

void write_words(json_writer& json, std::string_view words) {
  json.begin_array();
  while (!words.empty()) {
    const std::size_t end = std::min(words.find(','), words.size());
    std::string printable;
    append_printable(printable, words.substr(0, end), kEscapedByJson);
    json.text(printable);
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  json.end_array();
}

std::string_view text_in(std::span<const char> bytes) { return {bytes.data(), strnlen(bytes.data(), bytes.size())}; }

void write_measured(json_writer& json, std::string_view key, std::span<const char> digits, std::string_view mark_key,
                    uint32 mark) {
  json.key(key);
  is_json_number(text_in(digits)) ? json.digits(text_in(digits)) : json.null();
  json.key(mark_key);
  write_text_or_null(json, mark_word(mark));
}

void write_lanes(json_writer& json, const interface_value& value) {
  json.begin_array();
  int number = 0;
  for (const lane_value& lane : value.lanes()) {
    json.begin_object();
    json.key("lane");
    json.number(++number);
    write_measured(json, "current_ma", lane.current_ma, "current_mark", lane.current_mark);
    write_measured(json, "tx_power_dbm", lane.tx_power_dbm, "tx_power_mark", lane.tx_power_mark);
    write_measured(json, "rx_power_dbm", lane.rx_power_dbm, "rx_power_mark", lane.rx_power_mark);
    json.end_object();
  }
  json.end_array();
}

// Names that occur again have their count: a reader keeps only one value of a key.
void write_map(json_writer& json, const interface_value& value) {
  std::map<std::string, uint32> times;
  json.begin_object();
  for (const auto& [name, number] : value.map_entries()) {
    std::string key;
    append_printable(key, name, kEscapedByJson);
    if (const uint32 count = ++times[key]; count != 1) key += "#" + std::to_string(count);
    json.key(key);
    json.number(number);
  }
  json.end_object();
}

template <typename WriteEntry>
void write_entries(json_writer& json, const interface_value& value, WriteEntry write_entry) {
  json.begin_array();
  for (std::size_t i = 0; i < value.num_entries(); ++i) write_entry(value.entry(i));
  json.end_array();
}

void write_number_as(json_writer& json, const field& meaning, uint64 number) {
  if (meaning.type == field_type::enumeration) return json.text(enumerated_text(meaning, static_cast<uint32>(number)));
  if (meaning.type == field_type::integer_or_auto && number == 0) return json.null();
  if (meaning.type != field_type::hexadecimal) return json.number(number);
  char digits[24] = "0x";
  json.text({digits, std::to_chars(digits + 2, digits + sizeof digits, number, 16).ptr});
}

void write_answered(json_writer& json, const field& meaning, const interface_value& value) {
  const auto* const bytes = reinterpret_cast<const uint8*>(value.bytes.data());
  switch (value.kind) {
    case value_kind::absent: return json.null();
    case value_kind::number: return write_number_as(json, meaning, value.number());
    case value_kind::decimal: return json.digits(value.text());
    case value_kind::mac: return json.text(text_of_mac(bytes));
    case value_kind::ipv4: return json.text(text_of_ipv4(bytes));
    case value_kind::ipv6: return json.text(text_of_ipv6(bytes));
    case value_kind::interface: return json.text(interface_name(static_cast<if_index_t>(value.number())));
    case value_kind::time: return json.text(utc_text(static_cast<std::time_t>(value.number())));
    case value_kind::vlans: return json.text(text_of_runs(value));
    case value_kind::membership: return write_membership(json, value);
    case value_kind::map: return write_map(json, value);
    case value_kind::lanes: return write_lanes(json, value);
    case value_kind::numbers: return write_entries(json, value, [&](uint32 number) { json.number(number); });
    case value_kind::interfaces:
      return write_entries(json, value, [&](uint32 if_index) { json.text(interface_name(if_index)); });
    case value_kind::text: break;
  }
  if (meaning.type == field_type::words) return write_words(json, value.text());
  std::string printable;
  append_printable(printable, value.text(), kEscapedByJson);
  write_text_or_null(json, printable);
}

// Whether the field can have a value of this kind.
bool fits(const field& meaning, const interface_value& value) {
  switch (value.kind) {
    case value_kind::number:
      return is_integer(meaning.type) || meaning.type == field_type::enumeration ||
             meaning.type == field_type::hexadecimal;
    case value_kind::text: return meaning.type == field_type::text || meaning.type == field_type::words;
    case value_kind::decimal: return meaning.type == field_type::decimal && is_json_number(value.text());
    case value_kind::mac: return meaning.type == field_type::mac;
    case value_kind::ipv4:
    case value_kind::ipv6: return meaning.type == field_type::ip;
    case value_kind::interface: return meaning.type == field_type::full_name;
    case value_kind::interfaces: return meaning.type == field_type::interfaces;
    case value_kind::numbers: return meaning.type == field_type::numbers;
    case value_kind::vlans: return meaning.type == field_type::vlans;
    case value_kind::membership: return meaning.type == field_type::membership;
    case value_kind::time: return meaning.type == field_type::time;
    case value_kind::map: return meaning.type == field_type::map;
    case value_kind::lanes: return meaning.type == field_type::lanes;
    case value_kind::absent: return true;
  }
  return false;
}

void write_rates(json_writer& json, const std::optional<traffic_rates>& rates) {
  json.key("rates");
  if (!rates) return json.null();
  json.begin_object();
  for (const rate_field& rate : kRateFields) {
    json.key(rate.name);
    json.real((*rates).*rate.value);
  }
  json.end_object();
}

void write_envelope(json_writer& json, const display& shown, std::string_view command) {
  json.begin_object();
  json.key("schema_version");
  json.number(int{kSchemaVersion});
  json.key("display");
  json.text(shown.name);
  json.key("command");
  json.text(command);
  json.key("time");
  json.text(utc_text(std::time(nullptr)));
}

void write_message(json_writer& json, std::string_view interface_name, importance how, std::string_view text) {
  json.begin_object();
  json.key("interface");
  write_text_or_null(json, interface_name);
  json.key("severity");
  json.text(how == importance::error ? "error" : "info");
  json.key("text");
  json.text(text);
  json.end_object();
}

void write_summary(json_writer& json, const result_summary& summary) {
  json.begin_object();
  json.key("applied");
  json.number(summary.applied);
  json.key("unchanged");
  json.number(summary.unchanged);
  json.key("refused");
  json.number(summary.refused);
  json.end_object();
}

}  // namespace

document::document(const display& shown, std::string_view command) : shown_(shown), rows_(rows_of(shown.bit)) {
  cell_of_row_.assign(all_fields().size(), kNotShown);
  cells_.resize(rows_.size());
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    cell_of_row_[rows_[i]] = static_cast<uint16>(i);
  }
  begin(command);
  if (!shown_.section.empty() || shown_.repeats) begin_record({});
}

void document::begin(std::string_view command) {
  json_writer json(ready_);
  write_envelope(json, shown_, command);
  if (shown_.list.empty() || !shown_.section.empty()) return;
  json.key(shown_.list);
  ready_ += '[';
}

void document::begin_record(std::string_view interface_name) {
  for (cell& value : cells_) value.state = cell_state::empty;
  record_name_ = interface_name;
  record_open_ = true;
  record_is_empty_ = true;
  has_bound_ = false;
  if (interface_name.empty() || cells_.empty()) return;
  cells_[0].state = cell_state::bound;
  cells_[0].text = interface_name;
}

document::cell* document::cell_of(const cmd_tuple_t& tuple) {
  if (!record_open_ || tuple.id == 0) return nullptr;
  const binding* const bound = find_binding(tuple.id);
  const uint16 at = bound == nullptr ? kNotShown : cell_of_row_[bound->row];
  return at == kNotShown ? nullptr : &cells_[at];
}

bool document::bind_unknown(const cmd_tuple_t& tuple) {
  if (cell_of(tuple) == nullptr) return false;
  record_is_empty_ = false;
  has_bound_ = true;
  return true;
}

bool document::bind(const cmd_tuple_t& tuple) {
  cell* const found = cell_of(tuple);
  if (found == nullptr || tuple.value == nullptr) return false;
  record_is_empty_ = false;
  has_bound_ = true;
  const binding& bound = *find_binding(tuple.id);
  const field& meaning = field_of(bound);
  const bool is_text = bound.form == binding_form::as_text || type_code(tuple) == CMD_TYPE_STRING;
  const bool is_name_as_text = is_text && meaning.type == field_type::full_name;
  const bool is_unread = is_name_as_text || is_answered_only(meaning.type) || bound.form == binding_form::by_service;
  if (is_unread && shown_.has_values && meaning.value != property::none) return true;
  if (shown_.repeats && found->state == cell_state::bound) {
    end_record();
    begin_record({});
    record_is_empty_ = false;
  }
  cell& value = *found;
  value.state = cell_state::bound;
  value.text.clear();
  if (is_text) {
    append_printable(value.text, static_cast<const char*>(tuple.value), kEscapedByJson);
    if (shown_.has_marks) value.text.resize(value.text.find_last_not_of(' ') + 1);  // fields of identity pages
  } else if (is_integer(meaning.type)) {
    value.number = value_of_64(tuple);
  } else if (meaning.type == field_type::enumeration) {
    const uint32 number = value_of_32(tuple);
    value.text = enumerated_text(meaning, number);
  } else {
    append_tuple_text(value.text, tuple, false, std::string::npos);
  }
  if (is_text && is_integer(meaning.type)) {
    const auto end = std::from_chars(value.text.data(), value.text.data() + value.text.size(), value.number);
    const bool is_number = end.ec == std::errc{} && end.ptr == value.text.data() + value.text.size();
    if (!is_number) value.state = cell_state::empty;
  }
  return true;
}

void document::fill(std::span<const interface_value> values) {
  for (const interface_value& value : values) {
    const uint16 row = static_cast<uint16>(value.of) - 1;
    const uint16 at = value.of == property::none ? kNotShown : cell_of_row_[row];
    if (at == kNotShown || !fits(all_fields()[row], value)) continue;
    cell& filled = cells_[at];
    const std::string_view why = text_of(value.why_absent());
    if (value.kind == value_kind::absent && !why.empty()) {
      filled.state = cell_state::absent;
      filled.why_absent = why;
    } else if (filled.state == cell_state::empty && value.kind != value_kind::absent) {
      filled.state = cell_state::from_service;
      filled.answered = value;
    }
  }
}

void document::fill_failed() {
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    if (cells_[i].state != cell_state::empty || all_fields()[rows_[i]].value == property::none) continue;
    cells_[i].state = cell_state::absent;
    cells_[i].why_absent = kServiceFailedReason;
  }
}

void document::write_bound(json_writer& json, const field& meaning, const cell& value) const {
  if (is_integer(meaning.type)) return write_number_as(json, meaning, value.number);
  if (meaning.type == field_type::decimal) return is_json_number(value.text) ? json.digits(value.text) : json.null();
  if (meaning.type == field_type::vlans && value.text == "none") return json.text("");
  write_text_or_null(json, value.text);
}

void document::write_record(const std::optional<traffic_rates>* rates) {
  json_writer json(ready_);
  json.begin_object();
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const field& meaning = all_fields()[rows_[i]];
    json.plain_key(meaning.name);
    switch (cells_[i].state) {
      case cell_state::bound: write_bound(json, meaning, cells_[i]); break;
      case cell_state::from_service: write_answered(json, meaning, cells_[i].answered); break;
      case cell_state::empty:
      case cell_state::absent: json.null();
    }
  }
  if (shown_.has_values) {
    json.key("absent");
    json.begin_object();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
      if (cells_[i].state != cell_state::absent) continue;
      json.key(all_fields()[rows_[i]].name);
      json.text(cells_[i].why_absent);
    }
    json.end_object();
  }
  if (rates != nullptr) write_rates(json, *rates);
  json.end_object();
}

void document::end_record(const std::optional<traffic_rates>* rates) {
  if (!record_open_ || !shown_.section.empty()) return;
  record_open_ = false;
  if (record_is_empty_ || shown_.list.empty()) return;
  ready_ += first_record_ ? "\n" : ",\n";
  first_record_ = false;
  write_record(may_have_rates(shown_) ? rates : nullptr);
}

void document::add_row(std::span<const interface_value> values) {
  begin_record({});
  record_is_empty_ = false;
  fill(values);
  end_record();
}

bool document::add_message(std::string_view text, importance how, std::string_view interface_name) {
  if (!shown_.repeats) record_is_empty_ = false;  // those records are about no interface
  if (messages_.size() > kMostMessageBytes) {
    if (lost_messages_) return false;
    lost_messages_ = true;
    text = "error: more messages than a document holds; the rest is missing";
    how = importance::error;
  }
  messages_ += messages_.empty() ? "\n" : ",\n";
  json_writer json(messages_);
  if (interface_name.empty() && record_open_) interface_name = record_name_;
  write_message(json, interface_name, how, text);
  return !lost_messages_;
}

void document::end(int exit_code) {
  if (shown_.repeats) end_record();
  const bool has_list = !shown_.list.empty() && shown_.section.empty();
  if (has_list) ready_ += first_record_ ? "]" : "\n]";
  ready_ += ",\"messages\":[";
  ready_ += messages_;
  ready_ += messages_.empty() ? "]" : "\n]";
  if (has_summary(shown_)) {
    ready_ += ",\"summary\":";
    json_writer json(ready_);
    write_summary(json, summary_);
  }
  if (!shown_.section.empty()) {
    ready_ += ",\"";
    ready_ += shown_.section;
    ready_ += "\":";
    write_record(nullptr);
  }
  ready_ += ",\"exit_code\":" + std::to_string(exit_code) + "}\n";
}

std::vector<property> properties_of(const display& shown) {
  std::vector<property> properties;
  for (const uint16 row : rows_of(shown.bit))
    if (const property of = all_fields()[row].value; of != property::none) properties.push_back(of);
  return properties;
}

std::string document_of_error(std::string_view line, std::string_view text, int exit_code) {
  document made(kSentences, line);
  made.add_message(text, importance::error);
  made.end(exit_code);
  return std::move(made.ready());
}

}  // namespace host
