// A commit that is rolled back unless it is confirmed.
#pragma once

#include "platform/types.h"

namespace host {

class command_output;
struct shell;

// To be called before a line runs: a commit whose time is over is rolled back, with a message.
void check_confirmation(shell& session);

// Keeps the commit that waits, with a message. False, after an error, when its time was over and it was rolled back.
bool confirm_commit(shell& session, command_output& output);

// The session ends: rolls back an unconfirmed commit, with a message. Returns the exit code.
int end_unconfirmed_commit(shell& session);

// True, after an error, when a commit waits for its confirmation: nothing else may be changed meanwhile.
bool is_waiting_for_confirmation(const shell& session, command_output& output);

}  // namespace host
