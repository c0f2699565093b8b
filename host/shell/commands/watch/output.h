// How commands that run until Ctrl-C write.
#pragma once

#include <unistd.h>

#include <csignal>
#include <string_view>

#include "base/write_all.h"
#include "shell/session/interrupt.h"

namespace host {

// While it lives, writing to a reader that is gone fails and ends nothing.
class broken_pipe_scope {
 public:
  broken_pipe_scope() { outside_ = std::signal(SIGPIPE, SIG_IGN); }
  ~broken_pipe_scope() { std::signal(SIGPIPE, outside_); }
  broken_pipe_scope(const broken_pipe_scope&) = delete;
  broken_pipe_scope& operator=(const broken_pipe_scope&) = delete;

 private:
  void (*outside_)(int) = SIG_DFL;
};

// Returns 0, or the errno with which writing failed. Ctrl-C ends the waiting for a reader.
inline int put(std::string_view text) { return write_all(STDOUT_FILENO, text, was_interrupted); }

}  // namespace host
