// A line of a command's output on its way to the terminal, the file or the document.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

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

// The marks of a line, in order. Further ones are left out.
class line_marks {
 public:
  void add(const line_mark& mark) {
    if (count_ < marks_.size()) marks_[count_++] = mark;
  }
  void clear() { count_ = 0; }
  operator std::span<const line_mark>() const { return std::span(marks_).first(count_); }

 private:
  std::array<line_mark, 64> marks_;
  std::size_t count_ = 0;
};

// `text` and `marks` belong to the sender, until the call returns.
struct text_line {
  std::string_view text;  // without its newline
  std::span<const line_mark> marks = {};
  bool is_bound = false;       // the document has a value of it
  bool is_of_channel = false;  // the line, or its last part, was printed on the channel
  bool has_failed = false;     // it reports a failure
};

}  // namespace host
