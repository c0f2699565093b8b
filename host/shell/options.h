// Options of the program.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "source/open/switch_options.h"
#include "transport/transport.h"

namespace host {

struct requested_fault {
  std::string service;
  injected_fault what;
};

struct options : switch_options {
  std::string connected_switch;          // the name or the socket of one that runs; empty: the shell opens its own
  std::string recorded_frames;           // file of a capture that answers in the place of a switch; empty: none
  std::vector<std::string> commands;     // empty: a user, or standard input
  std::string configuration;             // file of commands that run first; empty: none
  std::vector<std::string> files;        // of commands
  bool keep_going = false;               // also after a command that failed
  bool assume_yes = false;               // to questions
  bool is_dry_run = false;               // commands are tried and change nothing
  std::string capture_directory;         // where the answers of the kernel are stored; empty: nowhere
  bool is_anonymous = false;             // without names and addresses in the capture
  std::string user;                      // empty: the first of the switch
  std::vector<std::string> libraries;    // files of command libraries of others
  std::string (*published)() = nullptr;  // a text to print instead of running
  std::vector<requested_fault> faults;
  uint32 longest_wait_sec = 0;  // 0: what the services' clients ask for
};

// Reads the options. Help, the version or the error of a wrong option is printed, and sets `exit_code`: the program is
// done.
std::optional<options> read_options(int argc, char** argv, int& exit_code);

// "reject", "cut:10" and so on; nothing when the text is not a fault.
std::optional<injected_fault> parse_fault(const std::string& text);

}  // namespace host
