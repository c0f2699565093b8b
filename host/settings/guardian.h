// A separate process that rolls back changes of the kernel's devices when this one cannot.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "settings/machine_changes.h"

namespace host {

// The end of this process, of its connection or of its session rolls the changes back: the guardian then finds the
// other end of its socket closed.
class guardian {
 public:
  // Starts it, before the changes that `back` reverses are made. Null when it cannot start; `error` says why.
  static std::unique_ptr<guardian> start(const machine_changes& back, std::string& error);

  // Rolls the changes back unless they were confirmed.
  ~guardian();
  guardian(const guardian&) = delete;
  guardian& operator=(const guardian&) = delete;

  // The changes were made: they are rolled back after this time of the machine's clock.
  void begin(uint32 seconds);

  // True when the guardian has rolled the changes back. If it was killed, the caller's own clock decides.
  bool has_ended() const;

  // Ends it without a rollback. False when it had already rolled back.
  bool confirm();

  // Requests the rollback now, unless it is done, and waits. Returns how many interfaces refused; nothing when the
  // guardian was killed and the changes remain.
  std::optional<uint32> roll_back();

 private:
  guardian(int socket, int child) : socket_(socket), child_(child) {}

  void end();

  int socket_;  // -1: it has ended
  int child_;
  std::optional<uint32> num_refused_ = {};
};

}  // namespace host
