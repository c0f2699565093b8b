// The command library: loaded by name, its handlers looked up by name, as any shell does.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/paraminfo.h"
#include "platform/types.h"

namespace host {

using command_handler = uint32 (*)(paraminfo_t*);

// Handlers of the displays, by kind of interface.
struct command_library {
  command_handler show_ethernet = nullptr;
  command_handler show_satellite = nullptr;
  command_handler show_management = nullptr;
  command_handler show_loopback = nullptr;
  command_handler show_statistics = nullptr;
};

// Why the library cannot be used: one line.
struct library_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Loads libpmcli_common.so from `directory` for the rest of the process, and takes the texts of port attributes from
// it. Throws library_error when the library or one of its functions is missing.
command_library load_command_library(const std::string& directory);

}  // namespace host
