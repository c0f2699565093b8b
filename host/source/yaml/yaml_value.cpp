#include "source/yaml/yaml_value.h"

#include <fmt/format.h>
#include <strings.h>

#include <algorithm>
#include <optional>

#include "base/digits.h"
#include "base/text.h"
#include "source/yaml/yaml_file_error.h"

namespace host {
namespace {

constexpr word_value kYesOrNo[] = {{"yes", 1}, {"on", 1}, {"true", 1}, {"no", 0}, {"off", 0}, {"false", 0}};

const char* type_of(const yaml_node& node) {
  switch (node.what) {
    case yaml_node::type::map: return "a map";
    case yaml_node::type::list: return "a list";
    case yaml_node::type::scalar: return "a value";
    default: return "nothing";
  }
}

std::optional<uint64> to_number(std::string_view digits, int base = 10) {
  uint64 value = 0;
  return read_number(digits, value, base) ? std::optional(value) : std::nullopt;
}

// The word that was probably meant, as an addition to a message.
std::string suggestion(std::string_view written, const std::vector<std::string_view>& known) {
  const std::string_view nearest = closest_word(written, known, std::max<std::size_t>(written.size() / 3, 1));
  return nearest.empty() ? "" : fmt::format(", did you mean '{}'?", nearest);
}

}  // namespace

const std::string& yaml_value::text() const {
  if (node_.what != yaml_node::type::scalar) fail(fmt::format("'{}' needs a value, not {}", name_, type_of(node_)));
  return node_.text;
}

std::string yaml_value::text_of_at_most(std::size_t max_length) const {
  if (text().size() > max_length) fail(fmt::format("'{}' is longer than {} characters", name_, max_length));
  return text();
}

uint64 yaml_value::number(uint64 low, uint64 high) const {
  const std::string_view written = text();
  const bool is_hexadecimal = written.starts_with("0x");
  const std::optional<uint64> value = is_hexadecimal ? to_number(written.substr(2), 16) : to_number(written);
  if (!value) fail_with_value("is not a whole number");
  if (*value < low || *value > high) fail_with_value(fmt::format("is not from {} to {}", low, high));
  return *value;
}

uint64 yaml_value::thousandths(uint64 highest) const {
  const std::string_view written = text();
  const std::size_t dot = written.find('.');
  std::string decimals(dot == std::string_view::npos ? "" : written.substr(dot + 1));
  const bool is_cut_short = dot != std::string_view::npos && (decimals.empty() || decimals.size() > 3);
  decimals.resize(3, '0');
  const std::optional<uint64> whole = to_number(written.substr(0, dot));
  const std::optional<uint64> fraction = to_number(decimals);
  if (is_cut_short || !whole || !fraction) fail_with_value("is not a number of at most three decimals");
  if (*whole > highest || *whole * 1000 + *fraction > highest * 1000)
    fail_with_value(fmt::format("is more than {}", highest));
  return *whole * 1000 + *fraction;
}

bool yaml_value::yes_or_no() const {
  for (const auto& [word, value] : kYesOrNo)
    if (word == text()) return value != 0;
  fail_with_value("is neither yes nor no");
}

uint32 yaml_value::word(std::span<const word_value> words) const {
  const std::string& written = text();
  for (const auto& [word, value] : words)
    if (word.size() == written.size() && strncasecmp(word.data(), written.data(), word.size()) == 0) return value;
  std::vector<std::string_view> known;
  for (const word_value& it : words) known.push_back(it.word);
  fail_with_value(fmt::format("is not known{}", suggestion(written, known)));
}

void yaml_value::fail(const std::string& reason) const { fail_at(path_, line(), reason); }

void yaml_value::fail_with_value(const std::string& reason) const {
  fail(fmt::format("{} '{}' {}", name_, text(), reason));
}

void require_map(const yaml_value& value) {
  if (!value.is_map())
    value.fail(fmt::format("'{}' needs keys with values, not {}", value.name(), type_of(value.node())));
}

void fail_for_unknown_key(const yaml_value& key, std::string_view owner, const std::vector<std::string_view>& known) {
  key.fail(fmt::format("unknown key '{}' in '{}'{}", key.text(), owner, suggestion(key.text(), known)));
}

}  // namespace host
