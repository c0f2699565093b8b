#include "shell/output/chain/page.h"

#include <fmt/format.h>

#include <cstring>

#include "shell/output/terminal/print_error.h"

namespace host {

void paging_sink::take(const text_line& it) {
  if (has_left_) return;
  if (is_in_program()) return hand_to_program(it);
  if (!program_.empty()) {
    if (!pager_.has_room(it.text) && begin_program()) return hand_to_program(it);
    kept_.push_back({std::string(it.text), {it.marks.begin(), it.marks.end()}});
  }
  has_left_ = !pager_.make_room(it.text);
  if (!has_left_) next().take(it);
}

// What is shown after a part of a line, or beside the output, is not known: the program could not take its place.
bool paging_sink::take_part(const text_line& it) {
  if (has_left_ || is_in_program()) return false;
  program_.clear();
  return line_link::take_part(it);
}

void paging_sink::flush() {
  if (!is_in_program()) program_.clear();
  line_link::flush();
}

void paging_sink::end() {
  line_link::end();
  if (!is_in_program()) return;
  outside_.finish();
  writer_->return_to_terminal();
}

// False when it does not start.
bool paging_sink::begin_program() {
  pager_.erase();
  if (const int error = outside_.start(program_); error != 0) {
    static std::string reported;
    if (reported != program_)
      print_error(fmt::format("the pager '{}' cannot be started: {}. Check $PAGER.", program_, std::strerror(error)));
    reported = program_;
    program_.clear();
    for (const kept_line& line : kept_)
      if (pager_.make_room(line.text)) next().take({line.text, line.marks});
    return false;
  }
  begin_();
  writer_->redirect(outside_.descriptor());
  for (const kept_line& line : kept_) hand_to_program({line.text, line.marks});
  kept_.clear();
  return true;
}

void paging_sink::hand_to_program(const text_line& it) {
  if (has_left_) return;
  next().take(it);
  has_left_ = writer_->error() != 0;
}

}  // namespace host
