// Lines until the user has seen enough.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "shell/output/chain/line_sink.h"
#include "shell/output/chain/write.h"
#include "shell/output/terminal/external_pager.h"
#include "shell/output/terminal/pager.h"

namespace host {

// Shows the lines page by page: what does not fit a screen goes to a program, when one is chosen, else the shell stops
// at the end of each screen. The lines of the first screen are shown at once and then again by the program, in their
// place.
class paging_sink : public line_link {
 public:
  paging_sink(int terminal, std::size_t lines, line_sink& next) : line_link(next), pager_(terminal, lines) {}

  // Uses a program. `writer` is the end of the chain, `begin` is called when the program takes the terminal.
  void use(const std::string& program, writing_sink& writer, std::function<void()> begin) {
    program_ = program;
    writer_ = &writer;
    begin_ = std::move(begin);
  }

  void take(const text_line& it) override;
  bool take_part(const text_line& it) override;
  void flush() override;
  void end() override;

  // True once the user left.
  bool has_left() const { return has_left_; }

  // Whether a program has the terminal: nothing else may be written there.
  bool is_in_program() const { return outside_.is_running(); }

 private:
  struct kept_line {
    std::string text;
    std::vector<line_mark> marks;
  };

  bool begin_program();
  void hand_to_program(const text_line& it);

  pager pager_;
  bool has_left_ = false;
  std::string program_;  // empty: none, or no more
  writing_sink* writer_ = nullptr;
  std::function<void()> begin_;
  external_pager outside_;
  std::vector<kept_line> kept_;  // of the first screen
};

}  // namespace host
