// Numbers as a row of small bars.
#pragma once

#include <span>
#include <string>

namespace host {

// A character for each of the last `width` values, whose height is its share of the greatest of them; values are not
// negative. Blocks of UTF-8, or ASCII.
std::string sparkline(std::span<const double> values, std::size_t width, bool is_utf8);

}  // namespace host
