// Options of the programs that open a switch.
#pragma once

#include <optional>
#include <string>

#include "platform/types.h"

namespace CLI {
class App;
}

namespace host {

struct switch_options {
  std::string switch_file;            // empty: the demonstration switch
  bool is_kernel = false;             // the machine that the program runs on, in place of a file
  std::string replay_directory;       // of a capture, in place of a file; empty: none
  std::string map_file;               // which interface a device is; empty: the usual ones
  bool has_session_counters = false;  // counters are cleared for this session only
  bool has_defaults = false;          // the settings of the hardware, in place of those of the file
  uint32 giant_ports = 0;             // not 0: a switch of so many ports in place of a file
  std::optional<uint32> clock;        // seconds since 1970 at which the clock is stopped
};

void add_switch_options(CLI::App& app, switch_options& requested);

}  // namespace host
