// Statuses of ports besides those of the port manager; the platform reports their texts in the same way.
#pragma once

#include <string>

#include "platform/types.h"

namespace host {

// The user lacks the right to change devices of the kernel, or the session that to change the switch.
enum : uint32 { kPortStatusNoRight = 0x40F00001, kPortStatusLookOnly = 0x40F00010 };

inline bool is_missing_right(uint32 status) { return status == kPortStatusNoRight || status == kPortStatusLookOnly; }

// Returns the status code for a text, valid in this process, that of the services; equal texts share a code. At most
// 65,535 texts are kept; further ones get PM_ERR_GENERAL.
uint32 status_of_text(const std::string& text);

// The same for a text that soon changes, such as one with a time: its status is valid until 4,096 further ones were
// made.
uint32 status_of_passing_text(const std::string& text);

// Whether a number may be such a status, of any process.
bool is_status_of_text(uint32 status);

// Its text, owned here as long as the status is valid; null for any other number.
const char* text_of_port_status(uint32 status);

}  // namespace host
