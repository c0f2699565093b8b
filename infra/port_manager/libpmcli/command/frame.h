// The frame of a command handler: the steps before and after its display.
#pragma once

#include <cstring>

#include "platform/cmd_channel.h"
#include "platform/paraminfo.h"

namespace pmcli {

// True when this supervisor is on standby; the refusal is printed.
bool refused_on_standby(const paraminfo_t* param);

// The output handle of the command, or null after that was printed.
cmd_rx_handle_t* obtain_output(paraminfo_t* param);

// Entry `index` (from 0, below PARAM_MAX_ARGS), or null when the entry or its value is null. Does not depend on the
// count of arguments.
const param_arg_t* find_argument(const paraminfo_t* param, uint8 index);

// The native value of an argument; the shell's object need not be aligned.
template <typename Value>
Value argument_value(const param_arg_t& argument) {
  Value value;
  std::memcpy(&value, argument.arg, sizeof value);
  return value;
}

}  // namespace pmcli
