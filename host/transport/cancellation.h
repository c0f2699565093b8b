// Waits that another context can end: a signal handler, or another thread.
#pragma once

#include "platform/types.h"

namespace host {

bool waits_are_cancelled();

// A descriptor that can be read while waits are cancelled, to be polled with others. Never closed; -1 when there is
// none.
int cancellation_descriptor();

// Sleeps for so many seconds. Returns ETIMEDOUT, EINTR when a signal was handled meanwhile, or ECANCELED.
int32 sleep_interruptibly(uint32 seconds);

}  // namespace host
