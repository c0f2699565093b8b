// Stops the host's clock for as long as it lives.
#pragma once

#include "switch/clock.h"

namespace host {

class stopped_clock {
 public:
  explicit stopped_clock(std::time_t at) { clock_set(at); }
  ~stopped_clock() { clock_follow_machine(); }
  stopped_clock(const stopped_clock&) = delete;
  stopped_clock& operator=(const stopped_clock&) = delete;
};

}  // namespace host
