// A command as the user wrote it, with the values of its arguments.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/vlan_set.h"
#include "shell/grammar/syntax.h"
#include "shell/output/pipes.h"
#include "switch/interface_range.h"

namespace host {

// A command as the user wrote it.
struct command_line {
  const command* what = nullptr;    // null: an empty line
  const command* before = nullptr;  // that runs it, such as "watch INTERVAL"; null: the session does
  std::string_view written;         // the whole line as it was typed
  std::string text;                 // with all words in full, without pipes, "do" and "watch INTERVAL"
  std::string written_range;        // empty: none
  interface_range range;
  std::optional<uint32> number;  // of a module: UINT32_MAX also for what is greater
  std::optional<uint32> every;   // seconds: the command is watched
  std::string module;            // its number as written; empty: none
  std::string file;              // its name
  std::string search_word;
  std::string free_text;
  std::vector<vlan_span> vlans;
  std::optional<std::array<uint8, 6>> mac;
  bool is_no = false;  // begins with "no"
  std::vector<pipe_stage> pipes;
};

// The command with its argument, as it can be typed again.
std::string words_of_command(const command_line& line);

}  // namespace host
