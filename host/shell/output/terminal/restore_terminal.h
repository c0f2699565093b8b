// The modes of the terminal when a signal ends the shell.
#pragma once

namespace host {

// From now on SIGHUP and SIGTERM, unless they are ignored, set the modes that the terminal has now before they end the
// process. Further calls do nothing.
void restore_terminal_at_end();

}  // namespace host
