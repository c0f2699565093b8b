#include "session/schema_validator.h"

#include <algorithm>
#include <regex>

namespace session {
namespace {

using rapidjson::Value;

// A value at its place in the document, and the schema in which references are looked up.
struct checked {
  const Value& value;
  const Value& root;
  std::string place;
};

std::string fault(const checked& at, const Value& schema);

bool is_of_type(const Value& value, const std::string& type) {
  if (type == "object") return value.IsObject();
  if (type == "array") return value.IsArray();
  if (type == "string") return value.IsString();
  if (type == "integer") return value.IsInt64() || value.IsUint64();
  if (type == "number") return value.IsNumber();
  if (type == "null") return value.IsNull();
  throw std::logic_error("unknown type " + type);
}

bool follows_type(const checked& at, const Value& types) {
  if (types.IsString()) return is_of_type(at.value, types.GetString());
  return std::any_of(types.Begin(), types.End(),
                     [&at](const Value& type) { return is_of_type(at.value, type.GetString()); });
}

bool follows_pattern(const checked& at, const Value& pattern) {
  return !at.value.IsString() || std::regex_search(at.value.GetString(), std::regex(pattern.GetString()));
}

bool follows_required(const checked& at, const Value& names) {
  return std::all_of(names.Begin(), names.End(),
                     [&at](const Value& name) { return at.value.HasMember(name.GetString()); });
}

const Value& resolve(const Value& root, const std::string& reference) {
  const std::string definitions = "#/$defs/";
  if (reference.compare(0, definitions.size(), definitions) != 0) throw std::logic_error("unknown " + reference);
  return root["$defs"][reference.substr(definitions.size()).c_str()];
}

std::string fault_of_members(const checked& at, const Value& schema) {
  for (const auto& member : at.value.GetObject()) {
    const checked inner{member.value, at.root, at.place + "/" + member.name.GetString()};
    const auto known = schema["properties"].FindMember(member.name);
    if (known == schema["properties"].MemberEnd()) return at.place + ": additionalProperties";
    if (std::string found = fault(inner, known->value); !found.empty()) return found;
  }
  return {};
}

std::string fault_of_items(const checked& at, const Value& schema) {
  for (rapidjson::SizeType i = 0; i < at.value.Size(); ++i) {
    const checked inner{at.value[i], at.root, at.place + "/" + std::to_string(i)};
    if (std::string found = fault(inner, schema); !found.empty()) return found;
  }
  return {};
}

std::string fault(const checked& at, const Value& schema) {
  // The type is looked at first: the other keywords rely on it.
  if (schema.HasMember("type") && !follows_type(at, schema["type"])) return at.place + ": type";
  for (const auto& [name, what] : schema.GetObject()) {
    const std::string keyword = name.GetString();
    bool is_good = true;
    std::string found;
    if (keyword == "$ref")
      found = fault(at, resolve(at.root, what.GetString()));
    else if (keyword == "properties")
      found = fault_of_members(at, schema);
    else if (keyword == "items")
      found = fault_of_items(at, what);
    else if (keyword == "enum")
      is_good = std::find(what.Begin(), what.End(), at.value) != what.End();
    else if (keyword == "pattern")
      is_good = follows_pattern(at, what);
    else if (keyword == "required")
      is_good = follows_required(at, what);
    else if (keyword == "maxItems")
      is_good = at.value.Size() <= what.GetUint();
    else if (keyword == "anyOf")
      is_good = std::any_of(what.Begin(), what.End(), [&](const Value& one) { return fault(at, one).empty(); });
    else if (keyword == "additionalProperties" && what.IsFalse())
      continue;  // with "properties"
    else if (keyword != "type" && keyword != "$schema" && keyword != "$defs" && keyword != "title" &&
             keyword != "description")
      throw std::logic_error("unknown keyword " + keyword);
    if (!found.empty()) return found;
    if (!is_good) return at.place + ": " + keyword;
  }
  return {};
}

}  // namespace

std::string schema_fault(const Value& value, const Value& schema, const Value& root) {
  return fault({value, root, {}}, schema);
}

}  // namespace session
