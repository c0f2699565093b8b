// The settings of interfaces as the commands that make them.
#pragma once

#include <span>
#include <string>

#include "switch/model.h"

namespace host {

// The commands for some interfaces of a machine, in their order, as lines that the shell runs from a file. Settings
// that have their default appear only when a command gave them. What no command can set stands there as a comment. The
// interfaces of `deleted` are deleted first; those that commands created are named even without settings.
std::string running_config(const machine& of, std::span<const if_index_t> interfaces,
                           std::span<const if_index_t> deleted = {});

// The commands that make the settings of one interface, one on each line, indented.
std::string settings_of(const interface& port);

}  // namespace host
