// A process of its own that takes changes of the kernel's devices back when the shell cannot.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "settings/machine_changes.h"

namespace host {

// Whatever ends this process, its connection or its session, takes the changes back: the guardian then finds that the
// other end of its socket is gone.
class guardian {
 public:
  // Starts it, before the changes that `back` reverses are made. Null when it cannot start; `error` says why.
  static std::unique_ptr<guardian> start(const machine_changes& back, std::string& error);

  // Takes the changes back unless they were confirmed.
  ~guardian();
  guardian(const guardian&) = delete;
  guardian& operator=(const guardian&) = delete;

  // The changes were made: they are taken back after so many seconds of the machine's time.
  void begin(uint32 seconds);

  // True when the guardian has taken the changes back. One that was killed has not: the shell's own clock then decides.
  bool has_ended() const;

  // Ends it without taking them back. False when it took them back before that.
  bool confirm();

  // Has it take them back now, if it has not yet, and waits. Returns how many interfaces refused that; nothing when the
  // guardian was killed and they are still there.
  std::optional<uint32> roll_back();

 private:
  guardian(int socket, int child) : socket_(socket), child_(child) {}

  void end();

  int socket_;  // -1: it has ended
  int child_;
  std::optional<uint32> num_refused_ = {};
};

}  // namespace host
