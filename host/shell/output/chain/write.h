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

  int error() const { return writer_.error(); }  // an errno; 0: none

 private:
  block_writer writer_;
  bool at_once_;
};

}  // namespace host
