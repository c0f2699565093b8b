// Lines that are tables: a header between two rules, and the rows below it.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "shell/output/chain/line_sink.h"

namespace host {

// Hands on each line with its part in a table, and rows with their values. Columns are those of the header; a value
// belongs to the column whose title is the name of its field, else to the one below whose title it is printed.
// A line with the role of a title begins a table without rules. A header is held until its first row comes.
class table_sink : public line_link {
 public:
  using line_link::line_link;

  void take(const text_line& it) override;
  bool take_part(const text_line&) override { return false; }
  void end() override;

  // Where a text of the header or a row is, in characters.
  struct piece {
    std::size_t begin;
    std::size_t end;
    std::string text;
    uint32 id = 0;  // of its tuple; 0: none
  };

 private:
  enum class state : uint8 { outside, in_header, below_header, in_rows };

  struct column_place {
    std::size_t begin;
    std::size_t end;
  };

  void hold(const text_line& it, line_role role);
  void release(const line_table* as);
  void begin_rows(const text_line* first);
  void take_row(const text_line& it);

  state state_ = state::outside;
  std::vector<std::pair<std::string, line_role>> held_;  // lines of the header
  std::deque<line_table> tables_;
  std::vector<column_place> places_;  // of the last one's columns
  bool is_of_channel_ = false;        // its rows are printed on the channel
};

}  // namespace host
