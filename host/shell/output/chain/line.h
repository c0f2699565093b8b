// A line of a command's output on its way to the terminal, the file or the document.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace host {

// What a mark says of its value, from the least: it is switched off, it is as it should be.
enum class severity : uint8 { off, normal, warning, alarm };

// Bytes of a line that mark a value.
struct line_mark {
  std::size_t begin;
  std::size_t end;
  severity what;

  bool operator==(const line_mark&) const = default;
};

// Bytes of a line that a placeholder of the channel printed, with their padding.
struct line_cell {
  std::size_t begin;
  std::size_t end;
  uint32 id;  // of its tuple; 0: none
};

// Parts of a line, in order. Further ones are left out.
template <typename Part>
class line_parts {
 public:
  void add(const Part& part) {
    if (count_ < parts_.size()) parts_[count_++] = part;
  }
  void clear() { count_ = 0; }
  operator std::span<const Part>() const { return std::span(parts_).first(count_); }

 private:
  std::array<Part, 64> parts_;
  std::size_t count_ = 0;
};

using line_marks = line_parts<line_mark>;
using line_cells = line_parts<line_cell>;

// A table of a display.
struct line_table {
  std::vector<std::string> columns;  // their titles
};

enum class line_role : uint8 {
  other,
  rule,   // of a header
  title,  // of the columns
  row,
  continuation,  // further lines of a row
};

// `text` and what lies below it belong to the sender, until the call returns; `table` lives until the output ends.
struct text_line {
  std::string_view text;  // without its newline
  std::span<const line_mark> marks = {};
  bool is_bound = false;       // the document has a value of it
  bool is_of_channel = false;  // the line, or its last part, was printed on the channel
  bool has_failed = false;     // it reports a failure

  std::span<const line_cell> cells = {};  // only while pipes work on tables
  line_role role = line_role::other;
  const line_table* table = nullptr;         // that it is a part of
  std::span<const std::string> values = {};  // of a row, one for each column
};

}  // namespace host
