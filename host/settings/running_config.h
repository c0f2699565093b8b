// The settings of interfaces as the commands that make them.
#pragma once

#include <span>
#include <string>

#include "switch/model.h"

namespace host {

// The commands for some interfaces of a machine, in their order, as lines that the shell runs from a file on a switch
// that starts as this one did, or with the default settings of its hardware. Settings that have their default appear
// only where the switch starts with another value. Settings without a command are comments. The interfaces of `deleted`
// are deleted first; interfaces that commands created are listed even without settings.
std::string running_config(const machine& of, std::span<const if_index_t> interfaces,
                           std::span<const if_index_t> deleted = {});

// The commands that make the settings of one interface, one on each line, indented.
std::string settings_of(const interface& port);

}  // namespace host
