// A running shell: what its commands share.
#pragma once

#include <string>
#include <string_view>

#include "platform/mts.h"
#include "shell/exit_codes.h"
#include "shell/library.h"
#include "switch/model.h"

namespace host {

struct shell {
  command_library library;
  std::string switch_name;
  const user* who = nullptr;  // null: nobody in particular, with all rights
  bool is_interactive = false;
  bool is_leaving = false;  // set by "exit"
};

// A transport queue for one command.
struct command_queue {
  command_queue();
  ~command_queue();
  command_queue(const command_queue&) = delete;
  command_queue& operator=(const command_queue&) = delete;

  mts_q_handle_t handle;
};

// Runs a line: a command, or a question when it ends with "?". Returns an exit code.
int run_line(shell& session, std::string_view line);

// Text for a "?" at the end of a line, and the text that completes the line's last word as far as it is clear.
std::string help_text(std::string_view line);
struct completion {
  std::string addition;  // to be inserted
  std::string choices;   // to be shown, one line each, when there is more than one
};
completion complete(std::string_view line);

// Reads commands from the user until the end of the input. Returns an exit code.
int run_interactively(shell& session);

// Reads commands line by line from standard input. Returns the first exit code that is not 0.
int run_input(shell& session);

}  // namespace host
