// A table that fits the width of a terminal.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace host {

struct fitted_column {
  std::string_view title;
  uint8 rank;             // 1 is the most important, which is always shown
  bool is_right = false;  // aligned
  std::size_t least = 0;  // characters to which its texts may be cut; 0: they are not cut
};

// The cells of each row, as many as there are columns, printable.
using table_rows = std::vector<std::vector<std::string>>;

// Whether all columns fit with all their text. `width` in characters; 0 has room for everything.
bool fits(std::span<const fitted_column> columns, const table_rows& rows, std::size_t width);

// A line of titles and one for each row, without blanks at their ends. Columns without any text are omitted; when the
// others do not fit, texts are cut, and then columns omitted, those of the highest rank first.
std::vector<std::string> fitted_lines(std::span<const fitted_column> columns, const table_rows& rows,
                                      std::size_t width);

}  // namespace host
