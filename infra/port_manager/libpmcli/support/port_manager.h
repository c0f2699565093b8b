// Calls of the port manager.
#pragma once

#include "platform/types.h"

namespace pmcli {

// Seconds that the port manager has to answer.
inline constexpr int32 kPortManagerTimeout = 60;

}  // namespace pmcli
