// The loopback of the machine that runs the tests.
#pragma once

#include <fstream>
#include <string>

#include "platform/types.h"

namespace host {

// What the kernel itself says of it: a file of its statistics, such as "rx_packets".
inline uint64 kernel_says(const std::string& counter) {
  std::ifstream file("/sys/class/net/lo/statistics/" + counter);
  uint64 value = 0;
  file >> value;
  return value;
}

}  // namespace host
