// The clock.
#pragma once

#include <optional>

#include "platform/types.h"

namespace pmcli_test {

struct recorded_clock {
  std::optional<uint32> now;  // what time() says; without it the real time
};

}  // namespace pmcli_test
