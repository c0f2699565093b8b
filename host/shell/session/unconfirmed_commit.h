// A commit that is rolled back unless it is confirmed.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/types.h"
#include "shell/session/guardian.h"

namespace host {

class command_output;
struct shell;

struct unconfirmed_commit {
  std::vector<if_index_t> interfaces;     // that it changed
  uint32 deadline_sec = 0;                // by the shell's clock
  std::unique_ptr<guardian> keeper = {};  // of the kernel's devices; null: their state ends with the shell
};

// To be called before a line runs: rolls back a commit whose time is over, with a message.
void check_confirmation(shell& session);

// Keeps the commit that waits. False, after an error, when its time was over and it was rolled back.
bool confirm_commit(shell& session);

// The session ends: rolls back an unconfirmed commit, with a message. Returns the exit code.
int end_unconfirmed_commit(shell& session);

// True, after an error, when a commit waits for its confirmation: nothing else may be changed meanwhile.
bool is_waiting_for_confirmation(const shell& session, command_output& output);

}  // namespace host
