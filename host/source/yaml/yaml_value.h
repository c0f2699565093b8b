// One value of a YAML file with its line, and the walk over a map by a table of its keys.
#pragma once

#include <fmt/format.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/types.h"
#include "source/yaml/yaml_document.h"

namespace host {

// A word of the file and its number.
struct word_value {
  std::string_view word;
  uint32 value;
};

class yaml_value {
 public:
  // `name` is what messages call the value: its key, or what it is.
  yaml_value(const yaml_node& node, std::string_view name, const std::string& path)
      : node_(node), name_(name), path_(path) {}

  uint32 line() const { return node_.line; }
  const yaml_node& node() const { return node_; }
  std::string_view name() const { return name_; }
  const std::string& path() const { return path_; }
  bool is_map() const { return node_.what == yaml_node::type::map; }

  // The value of a key, named by it; nothing when there is none.
  std::optional<yaml_value> find(std::string_view key) const {
    const yaml_node* const found = node_.find(key);
    return found != nullptr ? std::optional(yaml_value(*found, key, path_)) : std::nullopt;
  }

  // Each throws yaml_file_error when the value is of another type or outside of the bounds.
  const std::string& text() const;
  std::string text_of_at_most(std::size_t max_length) const;
  uint64 number(uint64 low, uint64 high) const;
  uint64 thousandths(uint64 highest) const;  // "12.5" is 12500; the bound counts in whole units
  bool yes_or_no() const;
  uint32 word(std::span<const word_value> words) const;

  // A single value counts as a list of one.
  template <class Visit>
  void for_each(Visit visit) const {
    if (node_.what != yaml_node::type::list) return visit(*this);
    for (const yaml_node* const item : node_.items) visit(yaml_value(*item, name_, path_));
  }

  // Throws yaml_file_error with "FILE:LINE: reason".
  [[noreturn]] void fail(const std::string& reason) const;
  [[noreturn]] void fail_with_value(const std::string& reason) const;  // reason preceded by name and value

 private:
  const yaml_node& node_;
  std::string_view name_;
  const std::string& path_;
};

// The rule of a key: how its value is read into the target.
template <class Target>
struct key_rule {
  std::string_view key;
  void (*read)(const yaml_value& value, Target& target);
};

void require_map(const yaml_value& value);
[[noreturn]] void fail_for_unknown_key(const yaml_value& key, std::string_view owner,
                                       const std::vector<std::string_view>& known);

// Reads every key of a map by its rule, in the order of the file. Keys without a rule and keys given twice are errors.
template <class Target>
void read_map(const yaml_value& map, std::type_identity_t<std::span<const key_rule<Target>>> rules, Target& target) {
  require_map(map);
  uint64 seen = 0;  // a bit for each rule, of which there are at most 64
  for (const yaml_entry& entry : map.node().entries) {
    const yaml_value key(*entry.key, "key", map.path());
    const std::string& text = key.text();
    std::size_t at = 0;
    while (at < rules.size() && rules[at].key != text) ++at;
    if (at == rules.size()) {
      std::vector<std::string_view> known;
      for (const auto& rule : rules) known.push_back(rule.key);
      fail_for_unknown_key(key, map.name(), known);
    }
    if ((seen >> at & 1) != 0) key.fail(fmt::format("'{}' is given twice", text));
    seen |= uint64{1} << at;
    rules[at].read(yaml_value(*entry.value, rules[at].key, map.path()), target);
  }
}

}  // namespace host
