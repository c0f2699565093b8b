// docs/schema.json: the JSON Schema of the structured form, from the schema table.
#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <vector>

#include "shell/grammar.h"
#include "shell/output/schema.h"
#include "shell/output/traffic_readings.h"
#include "shell/published.h"

namespace host {
namespace {

using json_writer = rapidjson::PrettyWriter<rapidjson::StringBuffer>;

// A definition that fields refer to. Its name begins with "value_", which no display's does.
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
    {"value_ipv4", R"({"type": ["string", "null"], "pattern": "^[0-9]+[.][0-9]+[.][0-9]+[.][0-9]+$"})"},
    {"value_hexadecimal", R"({"type": ["string", "null"], "pattern": "^0x[0-9a-f]+$"})"},
    {"value_time", R"({"type": "string", "pattern": "^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z$"})"},
};

// Name of the definition for a field.
std::string_view value_of(const field& described) {
  switch (described.type) {
    case field_type::interface_name:
      return described.name == "interface" ? "value_interface" : "value_interface_or_null";
    case field_type::mac: return "value_mac";
    case field_type::ipv4: return "value_ipv4";
    case field_type::hexadecimal: return "value_hexadecimal";
    case field_type::number:
    case field_type::number_or_auto:
    case field_type::number_from_text: return "value_integer";
    case field_type::decimal:
    case field_type::decimal_from_text: return "value_number";
    case field_type::enumeration:
    case field_type::string: break;
  }
  return "value_text";
}

void write(json_writer& json, std::string_view text) {
  json.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void write(json_writer& json, std::string_view key, std::string_view text) {
  json.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
  write(json, text);
}

void write_raw(json_writer& json, std::string_view key, std::string_view schema) {
  json.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
  json.RawValue(schema.data(), schema.size(), rapidjson::kObjectType);
}

std::string reference_to(std::string_view definition) {
  return "{\"$ref\": \"#/$defs/" + std::string(definition) + "\"}";
}

// An object whose properties, all of them and no other, `describe` writes; it returns their names.
template <typename Describe>
void write_object(json_writer& json, Describe describe) {
  json.StartObject();
  write(json, "type", "object");
  json.Key("properties");
  json.StartObject();
  const std::vector<std::string_view> names = describe();
  json.EndObject();
  json.Key("required");
  json.StartArray();
  for (const std::string_view name : names) write(json, name);
  json.EndArray();
  json.Key("additionalProperties");
  json.Bool(false);
  json.EndObject();
}

// Records of interfaces that a show command makes: with "watch" they have one member more.
bool may_have_rates(const display& shown) { return shown.section.empty() && shown.bit != kSettingDisplay; }

void write_rates(json_writer& json) {
  constexpr std::string_view kAbsent = R"({"type": "null"})";
  json.StartObject();
  json.Key("anyOf");
  json.StartArray();
  json.RawValue(kAbsent.data(), kAbsent.size(), rapidjson::kObjectType);
  write_object(json, [&] {
    std::vector<std::string_view> names;
    for (const rate_field& rate : kRateFields) {
      names.push_back(rate.name);
      write_raw(json, rate.name, R"({"type": "number"})");
    }
    return names;
  });
  json.EndArray();
  json.EndObject();
}

void write_record(json_writer& json, const display& shown) {
  write_object(json, [&] {
    std::vector<std::string_view> names;
    for (const field& described : schema()) {
      if ((described.displays & shown.bit) == 0) continue;
      if (std::find(names.begin(), names.end(), described.name) != names.end()) continue;
      names.push_back(described.name);
      write_raw(json, described.name, reference_to(value_of(described)));
    }
    if (may_have_rates(shown)) write_raw(json, "rates", reference_to("value_rates"));  // only when it is watched
    return names;
  });
}

void write_message(json_writer& json) {
  write_object(json, [&] {
    write_raw(json, "interface", reference_to("value_interface_or_null"));
    write_raw(json, "text", R"({"type": "string"})");
    return std::vector<std::string_view>{"interface", "text"};
  });
}

// A list of what `write_item` writes. A display with a section of its own has no records of interfaces.
template <typename WriteItem>
void write_list(json_writer& json, const char* name, bool is_always_empty, WriteItem write_item) {
  json.Key(name);
  json.StartObject();
  write(json, "type", "array");
  if (is_always_empty) {
    json.Key("maxItems");
    json.Int(0);
  } else {
    json.Key("items");
    write_item();
  }
  json.EndObject();
}

void write_document(json_writer& json, const display& shown) {
  const bool has_section = !shown.section.empty();
  write_object(json, [&] {
    std::vector<std::string_view> names = {"schema_version", "command", "time", "interfaces", "messages"};
    write_raw(json, "schema_version", "{\"enum\": [" + std::to_string(kSchemaVersion) + "]}");
    write_raw(json, "command", R"({"type": "string"})");
    write_raw(json, "time", reference_to("value_time"));
    write_list(json, "interfaces", has_section, [&] { write_record(json, shown); });
    write_list(json, "messages", false, [&] {
      const std::string message = reference_to("value_message");
      json.RawValue(message.data(), message.size(), rapidjson::kObjectType);
    });
    if (!has_section) return names;
    names.push_back(shown.section);
    json.Key(shown.section.data(), static_cast<rapidjson::SizeType>(shown.section.size()));
    write_record(json, shown);
    return names;
  });
}

std::vector<display> displays_of_commands() {
  std::vector<display> displays;
  for (const command& entry : all_commands()) {
    const auto is_same = [&entry](const display& known) { return known.bit == entry.shown.bit; };
    if (entry.shown.bit != kNoDisplay && std::none_of(displays.begin(), displays.end(), is_same))
      displays.push_back(entry.shown);
  }
  return displays;
}

}  // namespace

std::string json_schema() {
  const std::vector<display> displays = displays_of_commands();
  rapidjson::StringBuffer buffer;
  json_writer json(buffer);
  json.SetIndent(' ', 2);
  json.SetFormatOptions(rapidjson::kFormatSingleLineArray);
  json.StartObject();
  write(json, "$schema", "https://json-schema.org/draft/2020-12/schema");
  write(json, "title", "What pmsh writes for '| json'");
  write(json, "description",
        "One document for each command. A record has every field of its display; null: the value is absent. A watched "
        "command writes one for each reading, on a line, with rates in its records. Made from the shell's schema "
        "table: pmsh --print-json-schema");
  json.Key("anyOf");
  std::string alternatives;
  for (const display& shown : displays) alternatives += (alternatives.empty() ? "" : ", ") + reference_to(shown.name);
  alternatives = "[" + alternatives + "]";
  json.RawValue(alternatives.data(), alternatives.size(), rapidjson::kArrayType);
  json.Key("$defs");
  json.StartObject();
  for (const value_definition& value : kValues) write_raw(json, value.name, value.schema);
  json.Key("value_rates");
  write_rates(json);
  json.Key("value_message");
  write_message(json);
  for (const display& shown : displays) {
    json.Key(shown.name.data(), static_cast<rapidjson::SizeType>(shown.name.size()));
    write_document(json, shown);
  }
  json.EndObject();
  json.EndObject();
  return std::string(buffer.GetString(), buffer.GetSize()) + "\n";
}

}  // namespace host
