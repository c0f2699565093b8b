// Complete lines of what the library prints, in pieces, on its output channel and with printf.
#pragma once

#include <string>
#include <string_view>

#include "shell/output/chain/line_sink.h"

namespace host {

class line_gatherer {
 public:
  // `next` outlives this.
  explicit line_gatherer(line_sink& next) : next_(next) {}

  // Plain text with any number of lines.
  void text(std::string_view text);

  // The line that is being printed; may be changed at its end.
  std::string& current();

  // Ends the line and hands it on.
  void end_line();

  // ---- Attributes, until the line ends.

  void set_bound() { is_bound_ = true; }
  void set_of_channel() { is_of_channel_ = true; }
  void set_failed() { has_failed_ = true; }
  void add_mark(const line_mark& mark) { marks_.add(mark); }
  void add_cell(const line_cell& cell) { cells_.add(cell); }
  void set_title() { is_title_ = true; }  // of the columns of a table without rules
  void set_short_names() { has_short_names_ = true; }
  bool has_short_names() const { return has_short_names_; }  // interfaces in it are named in short

  // Hands on the line as far as it is printed, and all that sinks hold back.
  void flush();

  // Ends the last line, and the chain.
  void end();

 private:
  text_line made() const {
    const line_role role = is_title_ ? line_role::title : line_role::other;
    return {text_, marks_, is_bound_, is_of_channel_, has_failed_, cells_, role};
  }
  void break_long_line();

  line_sink& next_;
  std::string text_;
  line_marks marks_;
  line_cells cells_;
  bool is_title_ = false;
  bool is_bound_ = false;
  bool is_of_channel_ = false;
  bool has_failed_ = false;
  bool has_short_names_ = false;
};

}  // namespace host
