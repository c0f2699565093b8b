// Lines until the user has seen enough.
#pragma once

#include "shell/output/chain/line_sink.h"
#include "shell/output/terminal/pager.h"

namespace host {

// Stops at the end of each screen.
class paging_sink : public line_link {
 public:
  paging_sink(int terminal, std::size_t lines, line_sink& next) : line_link(next), pager_(terminal, lines) {}

  void take(const text_line& it) override {
    if (!has_left_) has_left_ = !pager_.make_room(it.text);
    if (!has_left_) next().take(it);
  }

  bool take_part(const text_line& it) override { return !has_left_ && line_link::take_part(it); }

  // True once the user left.
  bool has_left() const { return has_left_; }

 private:
  pager pager_;
  bool has_left_ = false;
};

}  // namespace host
