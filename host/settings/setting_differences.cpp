#include "settings/setting_differences.h"

#include <algorithm>
#include <sstream>

#include "base/text.h"
#include "settings/running_config.h"

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

command_changes difference_between(const command_list& before, const command_list& after) {
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

command_changes change_of(const interface& port, const port_settings& before) {
  if (port.settings == before) return {};
  return difference_between(commands_from(port, before, port.settings), commands_from(port, port.settings, before));
}

}  // namespace host
