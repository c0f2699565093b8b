#include "shell/commands/configure/setting_differences.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>
#include <string_view>

#include "base/text.h"
#include "shell/commands/configure/running_config.h"
#include "shell/grammar/range_text.h"
#include "switch/interface_name.h"

namespace host {
namespace {

command_list without(const command_list& from, const command_list& others) {
  command_list left;
  for (const std::string& line : from)
    if (std::find(others.begin(), others.end(), line) == others.end()) left.push_back(line);
  return left;
}

// The settings as commands of a switch that started with others: defaults that differ from those have commands, too.
command_list commands_from(interface port, const port_settings& settings, const port_settings& at_start) {
  port.settings = settings;
  port.at_start = at_start;
  return commands_of(port);
}

}  // namespace

setting_difference difference_between(const command_list& before, const command_list& after) {
  return {without(before, after), without(after, before)};
}

command_list commands_of(const interface& port) {
  command_list commands;
  std::istringstream text(settings_of(port));
  for (std::string line; std::getline(text, line);) commands.emplace_back(trim(line));
  return commands;
}

command_list commands_with(interface port, const port_settings& settings) {
  port.settings = settings;
  return commands_of(port);
}

setting_difference change_of(const interface& port, const port_settings& before) {
  if (port.settings == before) return {};
  return difference_between(commands_from(port, before, port.settings), commands_from(port, port.settings, before));
}

std::string joined(const command_list& commands) {
  return join(std::vector<std::string_view>(commands.begin(), commands.end()), "; ");
}

std::string names_text(std::span<const if_index_t> interfaces) {
  std::string text;
  for (const auto& [first, last] : runs_of(interfaces)) {
    char name[64] = {};
    text.append(text.empty() ? "" : ", ").append(sprintf_if_index(name, first));
    if (last != first) text += fmt::format("-{}", number_of(last).port);
  }
  return text;
}

}  // namespace host
