// "watch": a show command again and again.
#pragma once

#include "shell/output/command_output.h"
#include "shell/session/state.h"

namespace host {

// Runs a show command every so many seconds. At a terminal each reading is drawn on a clear screen, with a table of
// rates below, elsewhere it is printed as text; in the structured form it is a document on a line. Ends with Ctrl-C,
// without an error when the reader is gone, or with the first reading when its command is refused. `usual` is how the
// command alone would be shown.
int watch(shell& session, const command_line& line, const output_settings& usual);

}  // namespace host
