// A commit that is rolled back unless it is confirmed.
#pragma once

#include "platform/types.h"

namespace host {

class command_output;
struct shell;

// To be called before a line runs: a commit whose time is over is rolled back, with a message.
void check_confirmation(shell& session);

// Keeps the commit of this session, or else the one that a shell has left behind in the session with this number;
// kOwnSession is any. Returns the exit code.
int confirm_commit(shell& session, command_output& output, uint32 number);

// Rolls it back.
int abort_commit(shell& session, command_output& output, uint32 number);

// The session ends: a commit that waits is rolled back, unless the switch keeps it, with a message. Returns the exit
// code.
int end_unconfirmed_commit(shell& session);

// True, after an error, when a commit waits for its confirmation: nothing else may be changed meanwhile.
bool is_waiting_for_confirmation(const shell& session, command_output& output);

}  // namespace host
