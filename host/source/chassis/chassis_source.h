// The source of a simulated switch: its traffic follows from the clock, everything else is in the model.
#pragma once

#include "source/chassis/traffic.h"
#include "switch/source.h"

namespace host {

class chassis_source : public switch_source {
 public:
  bool update_statistics(interface& port, uint32 now_sec) override { return follow_traffic(port, now_sec); }
};

}  // namespace host
