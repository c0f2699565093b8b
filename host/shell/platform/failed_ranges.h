// The ranges that a command reported as failed.
#pragma once

namespace host {

// Frees the records that the library handed over. To be called when the command has ended.
void release_failed_ranges();

}  // namespace host
