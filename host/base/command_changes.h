// Changes as commands.
#pragma once

#include <compare>
#include <string>
#include <vector>

namespace host {

using command_list = std::vector<std::string>;

// The commands that only one of two settings has.
struct command_changes {
  command_list before;
  command_list after;

  auto operator<=>(const command_changes&) const = default;
};

}  // namespace host
