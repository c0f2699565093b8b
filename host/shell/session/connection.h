// The session's connection with its switch.
#pragma once

#include <string>

namespace host {

struct shell;

// The switch answers what the session has to know of it, and who its user is: the one with this name, without a name
// the one that the switch chooses. Returns an exit code, after an error.
int begin_session(shell& session, const std::string& user);

// Makes a lost connection again before a line runs. What the switch kept for the session is gone then: a message names
// it. A dry run of the whole session begins again.
void renew_connection(shell& session);

}  // namespace host
