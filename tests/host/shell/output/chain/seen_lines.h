// The end of a chain that keeps what it gets.
#pragma once

#include <string>
#include <vector>

#include "shell/output/chain/line_sink.h"

namespace session {

struct seen_line {
  std::string text;
  std::vector<host::line_mark> marks = {};
  bool is_bound = false;
  bool is_of_channel = false;
  bool has_failed = false;

  bool operator==(const seen_line&) const = default;
};

class seen_lines : public host::line_sink {
 public:
  void take(const host::text_line& it) override { lines.push_back(copy_of(it)); }
  bool take_part(const host::text_line& it) override {
    parts.push_back(copy_of(it));
    return takes_parts;
  }
  void flush() override { ++num_flushed; }
  void end() override { ++num_ended; }

  std::vector<std::string> texts() const {
    std::vector<std::string> all;
    for (const seen_line& it : lines) all.push_back(it.text);
    return all;
  }

  bool takes_parts = true;
  std::vector<seen_line> lines;
  std::vector<seen_line> parts;
  int num_flushed = 0;
  int num_ended = 0;

 private:
  static seen_line copy_of(const host::text_line& it) {
    return {std::string(it.text), {it.marks.begin(), it.marks.end()}, it.is_bound, it.is_of_channel, it.has_failed};
  }
};

using texts = std::vector<std::string>;

}  // namespace session
