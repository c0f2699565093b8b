// Calls of the library's displays.
#pragma once

#include "shell/library/command_library.h"
#include "shell/library/command_queue.h"
#include "shell/library/parameters.h"
#include "shell/output/command_output.h"
#include "shell/session/invocation.h"

namespace host {

// Calls a handler of a display. If one of another library does not return 0, it failed, which is an error of the
// command.
void call_handler(const invocation& run, command_handler handler, paraminfo_t* block);

// Returns an exit code: not kDone, after a complaint, when the line names a module that the switch does not have.
int check_module(const invocation& run);

// Calls `show` with a block without interfaces. Failures are those that the output noted.
template <typename Show>
int run_display(const invocation& run, Show show) {
  const command_queue q;
  command_parameters parameters(run.session.library, run.session.user, q.handle, kNoDisplayId);
  show(parameters.for_ranges(0, {}));
  run.output.flush();
  return run.output.failed() ? kServiceFailed : kDone;
}

}  // namespace host
