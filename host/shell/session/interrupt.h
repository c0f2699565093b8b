// Ctrl-C while a command runs.
#pragma once

namespace host {

// True when the command that runs, or ran last, was interrupted.
bool was_interrupted();

// While it lives, Ctrl-C interrupts the command and those that it runs: the transport gives up, further output is
// discarded. A command that goes on for seconds nevertheless is left together with the shell when Ctrl-C is pressed
// again.
class interrupt_scope {
 public:
  interrupt_scope();
  ~interrupt_scope();
  interrupt_scope(const interrupt_scope&) = delete;
  interrupt_scope& operator=(const interrupt_scope&) = delete;
};

}  // namespace host
