// A command that runs.
#pragma once

#include "shell/grammar/command_line.h"
#include "shell/output/exit_codes.h"
#include "shell/session/state.h"

namespace host {

class command_output;

struct invocation {
  const command_line& line;
  shell& session;
  command_output& output;
};

}  // namespace host
