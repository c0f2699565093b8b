// Stops the output at the end of each screen until a key is pressed.
#pragma once

#include <cstddef>
#include <string_view>

namespace host {

struct screen_size {
  std::size_t rows;
  std::size_t columns;
};
// The size that the terminal reports, else COLUMNS of the environment, else 24 rows of 80 columns.
screen_size size_of(int terminal);

// Shows a question on the terminal `screen` and reads a character from the terminal `keys`, without waiting for the end
// of a line and without showing it; -1 when there is none or a signal came first.
int ask_for_key(int screen, int keys, std::string_view question);

class pager {
 public:
  // `terminal` takes the output, keys come from standard input.
  // `lines` of a screen; 0: as the terminal reports.
  explicit pager(int terminal, std::size_t lines = 0) : terminal_(terminal), lines_(lines) {}

  // Whether a line fits below those before it.
  bool has_room(std::string_view line) const {
    return rows_used_ == 0 || rows_used_ + rows_of(line) < rows_of_screen();
  }

  // Erases the lines so far from the screen, which all fit it.
  void erase();

  // To be called before each line. Asks at the end of a screen; false when the user ends the output.
  bool make_room(std::string_view line);

 private:
  std::size_t rows_of(std::string_view line) const;
  std::size_t rows_of_screen() const;
  bool ask();

  int terminal_;
  std::size_t lines_;
  std::size_t rows_used_ = 0;
};

}  // namespace host
