// Options of the daemon.
#pragma once

#include <optional>
#include <string>

#include "source/open/switch_options.h"

namespace host {

struct daemon_options : switch_options {
  std::string name;               // empty: that of the switch
  std::string socket;             // its path; empty: the usual place
  std::string metrics;            // where HTTP readers get metrics, for read_listen_address(); empty: nowhere
  std::string capture;            // file of all frames; empty: none
  std::string group;              // whose members may change the switch; empty: everyone who can connect
  bool is_stateless = false;      // changes of a simulated switch end with the process
  bool begins_new_state = false;  // those of earlier processes are moved aside
};

// Reads the options. Help, the version or the error of a wrong option is printed, and sets `exit_code`: the program is
// done.
std::optional<daemon_options> read_daemon_options(int argc, char** argv, int& exit_code);

}  // namespace host
