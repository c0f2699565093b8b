// The end of the chain: a file descriptor, or a function in its place.
#pragma once

#include <utility>

#include "shell/output/chain/line_sink.h"
#include "shell/output/terminal/block_writer.h"

namespace host {

class writing_sink : public line_sink {
 public:
  // `at_once`: each line is written when it comes, not when a block is full.
  writing_sink(block_writer writer, bool at_once) : writer_(std::move(writer)), at_once_(at_once) {}

  void take(const text_line& it) override {
    writer_.line(it.text);
    if (at_once_) writer_.flush();
  }

  bool take_part(const text_line& it) override {
    writer_.text(it.text);
    return true;
  }

  void flush() override { writer_.flush(); }
  void end() override { writer_.flush(); }

  // Writes to another descriptor until it returns to its own.
  void redirect(int descriptor) {
    terminal_ = writer_.descriptor();
    writer_.redirect(descriptor);
  }
  void return_to_terminal() { writer_.redirect(terminal_); }

  int error() const { return writer_.error(); }  // an errno; 0: none

 private:
  block_writer writer_;
  int terminal_ = -1;
  bool at_once_;
};

}  // namespace host
