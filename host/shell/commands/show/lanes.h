// What is measured in the lanes of a transceiver.
#pragma once

#include "platform/if_index.h"
#include "shell/session/invocation.h"

namespace host {

// Prints the lanes of an interface that the output has begun; nothing for a module with one lane.
void show_lanes(const invocation& run, if_index_t if_index);

}  // namespace host
