// Waits that another context can end: a signal handler, or another thread.
#pragma once

#include "platform/types.h"

namespace host {

bool waits_are_cancelled();

// Sleeps for so many seconds. Returns ETIMEDOUT, EINTR when a signal was handled meanwhile, or ECANCELED.
int32 sleep_interruptibly(uint32 seconds);

}  // namespace host
