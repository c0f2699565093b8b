// Alarms in red and warnings in yellow.
#pragma once

#include <string>
#include <string_view>

namespace host {

// A line of optical diagnostics with its mark ("++", "--", "+" or "-" behind the measured value) coloured; every other
// line as it is.
std::string with_coloured_mark(std::string_view line);

}  // namespace host
