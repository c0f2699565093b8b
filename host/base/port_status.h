// Statuses of ports beyond the port manager's own: each is a text that the platform tells as any other.
#pragma once

#include <string>

#include "platform/types.h"

namespace host {

// The user lacks the right to change devices of the kernel.
enum : uint32 { kPortStatusNoRight = 0x40F00001 };

// The status with this text, the same for the same text. It is good for this process. At most 65,535 texts are kept;
// further ones get PM_ERR_GENERAL.
uint32 status_of_text(const std::string& text);

// Its text, owned here for as long as the process lives; null for any other number.
const char* text_of_port_status(uint32 status);

}  // namespace host
