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

// Columns with their widths, as they fit some rows.
class fitted_layout {
 public:
  // `columns` outlive this. Columns without any text are omitted; when the others do not fit, texts are cut, and then
  // columns omitted, those of the highest rank first.
  fitted_layout(std::span<const fitted_column> columns, const table_rows& rows, std::size_t width);

  // Lines without blanks at their ends. A text that is longer than all that the layout was made for is cut if its
  // column allows it; otherwise it moves what follows.
  std::string titles() const;
  std::string line(const std::vector<std::string>& row) const;

 private:
  // A column of the table that is printed.
  struct shown_column {
    std::size_t index;
    std::size_t natural;  // characters of its longest text
    std::size_t width;
  };

  template <typename TextOf>
  std::string line_of(TextOf text_of) const;
  void leave_out(std::size_t width);
  void widen(std::size_t width);
  std::size_t total_width() const;
  friend bool fits(std::span<const fitted_column> columns, const table_rows& rows, std::size_t width);

  std::span<const fitted_column> columns_;
  std::vector<shown_column> shown_;
};

// The titles and a line for each row, in the layout that fits them.
std::vector<std::string> fitted_lines(std::span<const fitted_column> columns, const table_rows& rows,
                                      std::size_t width);

}  // namespace host
