// Differences between settings of interfaces, as commands.
#pragma once

#include <compare>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "switch/model.h"

namespace host {

using command_list = std::vector<std::string>;

// The commands that only one of two settings has.
struct setting_difference {
  command_list before;
  command_list after;

  auto operator<=>(const setting_difference&) const = default;
};

setting_difference difference_between(const command_list& before, const command_list& after);

// The commands of the running configuration for a port, and for a port that had other settings.
command_list commands_of(const interface& port);
command_list commands_with(interface port, const port_settings& settings);

// The changes of a port: for each setting the command before and the one after, also for defaults.
setting_difference change_of(const interface& port, const port_settings& before);

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
std::string joined(const command_list& commands);

// Interfaces by their full names: "Ethernet1/1-4, Ethernet1/7".
std::string names_text(std::span<const if_index_t> interfaces);

}  // namespace host
