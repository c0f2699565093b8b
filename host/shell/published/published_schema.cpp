// docs/schema.json: the JSON Schema of the structured form, from the tables of fields and displays.
#include <algorithm>
#include <utility>
#include <vector>

#include "messages/interface_values.h"
#include "shell/grammar/syntax.h"
#include "shell/output/document/json_writer.h"
#include "shell/output/document/traffic_readings.h"
#include "shell/output/rendering.h"
#include "shell/output/schema/schema.h"
#include "shell/published/published.h"

namespace host {
namespace {

// A definition that fields refer to. Its name begins with "value_", which no display's does. MODES is replaced by
// the words of VLAN modes.
struct value_definition {
  std::string_view name;
  std::string_view schema;
};

constexpr value_definition kValues[] = {
    {"value_integer", R"({"type": ["integer", "null"]})"},
    {"value_number", R"({"type": ["number", "null"]})"},
    {"value_text", R"({"type": ["string", "null"]})"},
    {"value_interface", R"({"type": "string"})"},
    {"value_interface_or_null", R"({"type": ["string", "null"]})"},
    {"value_mac", R"({"type": ["string", "null"], "pattern": "^[0-9a-f]{4}[.][0-9a-f]{4}[.][0-9a-f]{4}$"})"},
    {"value_ip",
     R"({"type": ["string", "null"], "pattern": "^([0-9]+[.][0-9]+[.][0-9]+[.][0-9]+|[0-9a-f]*:[0-9a-f:.]+)$"})"},
    {"value_hexadecimal", R"({"type": ["string", "null"], "pattern": "^0x[0-9a-f]+$"})"},
    {"value_time", R"({"type": ["string", "null"], "format": "date-time", )"
                   R"("pattern": "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z$"})"},
    {"value_numbers", R"({"type": ["array", "null"], "items": {"type": "integer"}})"},
    {"value_words", R"({"type": ["array", "null"], "items": {"type": "string"}})"},
    {"value_map", R"({"type": ["object", "null"], "additionalProperties": {"type": "integer"}})"},
    {"value_vlans", R"({"type": ["string", "null"], "pattern": "^([0-9]+(-[0-9]+)?(,[0-9]+(-[0-9]+)?)*)?$"})"},
    {"value_membership", R"({"type": ["object", "null"], "properties": {)"
                         R"("mode": {"enum": [MODES, null], )"
                         R"("title": "Mode", "description": "How the interface takes part in VLANs"}, )"
                         R"("access": {"type": ["integer", "null"], )"
                         R"("title": "Access VLAN", "description": "VLAN of an access port"}, )"
                         R"("native": {"type": ["integer", "null"], )"
                         R"("title": "Native VLAN", "description": "VLAN of untagged frames on a trunk"}, )"
                         R"("allowed": {"$ref": "#/$defs/value_vlans", )"
                         R"("title": "Allowed VLANs", "description": "VLANs that the trunk carries"}}, )"
                         R"("required": ["mode", "access", "native", "allowed"]})"},
    {"value_lanes",
     R"({"type": ["array", "null"], "items": {"type": "object", "properties": {)"
     R"("lane": {"type": "integer", "title": "Lane", "description": "Number of the lane, from 1"}, )"
     R"("current_ma": {"type": ["number", "null"], "unit": "mA", )"
     R"("title": "Laser current", "description": "Laser current now"}, )"
     R"("current_mark": {"$ref": "#/$defs/value_mark", )"
     R"("title": "Laser current mark", "description": "Which limit the laser current is beyond"}, )"
     R"("tx_power_dbm": {"type": ["number", "null"], "unit": "dBm", )"
     R"("title": "Transmit power", "description": "Transmit power now"}, )"
     R"("tx_power_mark": {"$ref": "#/$defs/value_mark", )"
     R"("title": "Transmit power mark", "description": "Which limit the transmit power is beyond"}, )"
     R"("rx_power_dbm": {"type": ["number", "null"], "unit": "dBm", )"
     R"("title": "Receive power", "description": "Receive power now; null without light"}, )"
     R"("rx_power_mark": {"$ref": "#/$defs/value_mark", )"
     R"("title": "Receive power mark", "description": "Which limit the receive power is beyond"}}, )"
     R"("required": ["lane", "current_ma", "current_mark", "tx_power_dbm", "tx_power_mark", "rx_power_dbm", )"
     R"("rx_power_mark"]}})"},
    {"value_mark", R"({"enum": ["high alarm", "high warning", "low warning", "low alarm", null]})"},
    {"value_absent",
     R"({"type": "object", "additionalProperties": {"enum": ["not supported", "no permission", "service failed"]}})"},
};

std::string with_modes(std::string_view schema) {
  constexpr std::string_view kModes = "MODES";
  std::string text(schema);
  const std::size_t at = text.find(kModes);
  if (at == std::string::npos) return text;
  std::string words;
  for (const vlan_mode mode : {vlan_mode::access, vlan_mode::trunk, vlan_mode::routed})
    words.append(words.empty() ? "\"" : ", \"").append(word_of(mode)).append("\"");
  return text.replace(at, kModes.size(), words);
}

// Name of the definition for a field; none for an enumeration, which lists its own words.
std::string_view value_of(const field& described, const display& shown) {
  switch (described.type) {
    case field_type::full_name:
      return described.name == "interface" && !shown.is_table ? "value_interface" : "value_interface_or_null";
    case field_type::mac: return "value_mac";
    case field_type::ip: return "value_ip";
    case field_type::hexadecimal: return "value_hexadecimal";
    case field_type::integer:
    case field_type::integer_or_auto: return "value_integer";
    case field_type::decimal: return "value_number";
    case field_type::numbers: return "value_numbers";
    case field_type::words:
    case field_type::interfaces: return "value_words";
    case field_type::map: return "value_map";
    case field_type::vlans: return "value_vlans";
    case field_type::membership: return "value_membership";
    case field_type::lanes: return "value_lanes";
    case field_type::time: return "value_time";
    case field_type::enumeration: return {};
    case field_type::text: break;
  }
  return "value_text";
}

void write(json_writer& json, std::string_view key, std::string_view text) {
  json.key(key);
  json.text(text);
}

void write_raw(json_writer& json, std::string_view key, std::string_view schema) {
  json.key(key);
  json.digits(schema);
}

std::string member_for_definition(std::string_view definition) {
  return "\"$ref\": \"#/$defs/" + std::string(definition) + "\"";
}

std::string reference_to(std::string_view definition) { return "{" + member_for_definition(definition) + "}"; }

// The title and the description of a property. Neither text needs escapes.
struct property_texts {
  std::string_view title;
  std::string_view description;
};

// A property of any value that `schema`, members of an object, allows.
void write_property(json_writer& json, std::string_view key, const std::string& schema, const property_texts& texts) {
  json.key(key);
  json.digits("{" + schema + ", \"title\": \"" + std::string(texts.title) + "\", \"description\": \"" +
              std::string(texts.description) + "\"}");
}

void write_texts(json_writer& json, const property_texts& texts) {
  if (!texts.title.empty()) write(json, "title", texts.title);
  if (!texts.description.empty()) write(json, "description", texts.description);
}

// An object whose properties `describe` writes; it returns the names of those that are always there. Readers must
// accept others.
template <typename Describe>
void write_object(json_writer& json, Describe describe, const property_texts& texts = {}) {
  json.begin_object();
  write_texts(json, texts);
  write(json, "type", "object");
  json.key("properties");
  json.begin_object();
  const std::vector<std::string_view> names = describe();
  json.end_object();
  json.key("required");
  json.begin_array();
  for (const std::string_view name : names) json.text(name);
  json.end_array();
  json.end_object();
}

// The words of an enumeration. A value without a word is its number, as a text, or "Unknown(NUMBER)".
void write_words(json_writer& json, enum_words words) {
  constexpr std::string_view kMarks[] = {"high alarm", "high warning", "low warning", "low alarm"};
  json.key("anyOf");
  json.begin_array();
  json.begin_object();
  json.key("enum");
  json.begin_array();
  if (words == enum_words::mark)
    for (const std::string_view word : kMarks) json.text(word);
  else
    for (const std::string& word : all_words(words)) json.text(word);
  json.null();
  json.end_array();
  json.end_object();
  json.digits(R"({"type": "string", "pattern": "^([0-9]+|Unknown[(][0-9]+[)])$"})");
  json.end_array();
}

void write_field(json_writer& json, const field& described, const display& shown) {
  json.key(described.name);
  json.begin_object();
  if (described.type == field_type::enumeration)
    write_words(json, described.words);
  else
    write(json, "$ref", "#/$defs/" + std::string(value_of(described, shown)));
  for (const auto& [key, text] : {std::pair("title", described.title), std::pair("description", described.description),
                                  std::pair("unit", described.unit)})
    if (!text.empty()) write(json, key, text);  // libraries of others need not have them
  json.end_object();
}

void write_rates(json_writer& json) {
  json.begin_object();
  json.key("anyOf");
  json.begin_array();
  json.digits(R"({"type": "null"})");
  write_object(json, [&] {
    std::vector<std::string_view> names;
    for (const rate_field& rate : kRateFields) {
      names.push_back(rate.name);
      write_property(json, rate.name, R"("type": "number")", {rate.title, rate.description});
    }
    return names;
  });
  json.end_array();
  json.end_object();
}

void write_record(json_writer& json, const display& shown, const property_texts& texts = {}) {
  const auto describe = [&] {
    std::vector<std::string_view> names;
    for (const uint16 row : rows_of(shown.bit)) {
      names.push_back(all_fields()[row].name);
      write_field(json, all_fields()[row], shown);
    }
    if (shown.has_values) {
      names.emplace_back("absent");
      write_property(json, "absent", member_for_definition("value_absent"),
                     {"Absent values", "Why values of the record are null, by key"});
    }
    if (may_have_rates(shown))
      write_property(json, "rates", member_for_definition("value_rates"),
                     {"Rates", "Rates since the reading before; only in documents of watched commands"});
    return names;
  };
  write_object(json, describe, texts);
}

void write_message(json_writer& json) {
  write_object(json, [&] {
    write_property(json, "interface", member_for_definition("value_interface_or_null"),
                   {"Interface", "Full name of the interface that the message is about"});
    write_property(json, "severity", R"("enum": ["info", "error"])", {"Severity", "Whether the message is an error"});
    write_property(json, "text", R"("type": "string")", {"Text", "The message, a sentence"});
    return std::vector<std::string_view>{"interface", "severity", "text"};
  });
}

// A list of items that `write_item` writes.
template <typename WriteItem>
void write_list(json_writer& json, std::string_view name, const property_texts& texts, WriteItem write_item) {
  json.key(name);
  json.begin_object();
  write_texts(json, texts);
  write(json, "type", "array");
  json.key("items");
  write_item();
  json.end_object();
}

void write_summary(json_writer& json) {
  json.key("summary");
  write_object(json,
               [&] {
                 constexpr std::pair<std::string_view, property_texts> kCounts[] = {
                     {"applied", {"Applied", "Number of ports that took the setting"}},
                     {"unchanged", {"Unchanged", "Number of ports that were set so before"}},
                     {"refused", {"Refused", "Number of ports that refused the setting"}}};
                 std::vector<std::string_view> names;
                 for (const auto& [name, texts] : kCounts) {
                   names.push_back(name);
                   write_property(json, name, R"("type": "integer")", texts);
                 }
                 return names;
               },
               {"Summary", "Numbers of ports by result"});
}

void write_document(json_writer& json, const display& shown) {
  write_object(json, [&] {
    std::vector<std::string_view> names = {"schema_version", "display", "command", "time"};
    write_property(json, "schema_version", "\"const\": " + std::to_string(kSchemaVersion),
                   {"Schema version", "Version of all displays together"});
    write_property(json, "display", "\"const\": \"" + std::string(shown.name) + "\"",
                   {"Display", "What the records are about: the name of this definition"});
    write_property(json, "command", R"("type": "string")",
                   {"Command", "Command without its pipes; in the document of an error the line as it was typed"});
    write_property(json, "time", member_for_definition("value_time"),
                   {"Time", "When the document was begun, by the clock of the shell"});
    if (shown.section.empty() && !shown.list.empty()) {
      names.push_back(shown.list);
      write_list(json, shown.list, {"Records", "What the command shows"}, [&] { write_record(json, shown); });
    }
    names.insert(names.end(), {"messages", "exit_code"});
    write_list(json, "messages", {"Messages", "Sentences of the command"},
               [&] { json.digits(reference_to("value_message")); });
    write_property(json, "exit_code", R"("type": "integer")", {"Exit code", "Exit code of the command"});
    if (has_summary(shown)) {
      names.emplace_back("summary");
      write_summary(json);
    }
    if (shown.section.empty()) return names;
    names.push_back(shown.section);
    json.key(shown.section);
    write_record(json, shown, {"Record", "What the command shows"});
    return names;
  });
}

std::vector<display> displays_of_commands() {
  std::vector<display> displays;
  for (const command& entry : all_commands()) {
    const auto is_same = [&entry](const display& known) { return known.bit == entry.shown.bit; };
    if (std::none_of(displays.begin(), displays.end(), is_same)) displays.push_back(entry.shown);
  }
  return displays;
}

}  // namespace

std::string json_schema() {
  const std::vector<display> displays = displays_of_commands();
  std::string text;
  json_writer json(text, 1);
  json.begin_object();
  write(json, "$schema", "https://json-schema.org/draft/2020-12/schema");
  write(json, "$id", "urn:pmsh:documents:" + std::to_string(kSchemaVersion));
  write(json, "title", "What pmsh writes for '| json'");
  write(
      json, "description",
      "One document for each command; 'display' names its definition. A record has every field of its display; null: "
      "the value is not known or not there, and 'absent' gives the reason where it is known. A watched command writes "
      "a document for each reading, on a line, with rates in its records. Readers must accept keys that they do not "
      "know. Made from the shell's tables: pmsh --print-json-schema");
  json.key("anyOf");
  json.begin_array();
  for (const display& shown : displays) json.digits(reference_to(shown.name));
  json.end_array();
  json.key("$defs");
  json.begin_object();
  for (const value_definition& value : kValues) write_raw(json, value.name, with_modes(value.schema));
  json.key("value_rates");
  write_rates(json);
  json.key("value_message");
  write_message(json);
  for (const display& shown : displays) {
    json.key(shown.name);
    write_document(json, shown);
  }
  json.end_object();
  json.end_object();
  return text + "\n";
}

}  // namespace host
