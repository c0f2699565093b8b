// Running lines.
#pragma once

#include <string>
#include <string_view>

#include "messages/calls/switch_facts.h"
#include "shell/session/state.h"
#include "switch/interface_names.h"

namespace host {

struct command;
struct invocation;

// The names of the kernel's devices, as they are when one is looked for: the model is then that of the line. The
// session must outlive them.
interface_names device_names(shell& session);

// The shell shows the time of the switch.
void take_over_clock(const switch_clock& clock);

// Has the switch updated for a command, which is null when it is not known yet: only the counters for one that shows
// nothing else, if the source can read them alone. Returns a sentence with the reason when that fails, else an empty
// text.
std::string refresh_for(const command* shown);

// The same, unless it was done for this line; then the sentence is that of the first time.
const std::string& refresh_model(shell& session, const command* shown = nullptr);

// Runs a line: a command, or a question when it ends with "?". Returns an exit code.
int run_line(shell& session, std::string_view line);

// Runs the handler of a command as its effect allows. A dry run skips what changes more than the machine. A commit that
// waits for its confirmation refuses changes of the switch. Settings, creations and deletions, and what undoes or lists
// them, are for the candidate when there is one: they run in a trial of it. Returns an exit code.
int run_handler(const invocation& run);

// Reads commands line by line from standard input. Returns the first exit code that is not 0.
int run_input(shell& session);

}  // namespace host
