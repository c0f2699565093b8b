// The log of the daemon: lines on standard error, with their priority for the journal.
#pragma once

#include <string_view>

namespace host {

enum class log_level { error = 3, warning = 4, notice = 5, info = 6 };

// One line; bytes that a terminal would obey are replaced.
void log_line(log_level level, std::string_view text);

}  // namespace host
