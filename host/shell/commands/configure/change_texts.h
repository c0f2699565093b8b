// Changes of interfaces, as displays of settings group and write them.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/command_changes.h"
#include "base/text.h"
#include "platform/if_index.h"

namespace host {

// Interfaces with the same value together, in the order of the first of each.
template <typename Value>
std::vector<std::pair<Value, std::vector<if_index_t>>> grouped(const std::map<if_index_t, Value>& by_interface) {
  std::vector<std::pair<Value, std::vector<if_index_t>>> groups;
  std::map<Value, std::size_t> group_of;
  for (const auto& [if_index, value] : by_interface) {
    const auto [known, is_new] = group_of.emplace(value, groups.size());
    if (is_new) groups.push_back({value, {}});
    groups[known->second].second.push_back(if_index);
  }
  return groups;
}

// Commands on one line, separated by semicolons.
inline std::string joined(const command_list& commands) {
  return join(std::vector<std::string_view>(commands.begin(), commands.end()), "; ");
}

}  // namespace host
