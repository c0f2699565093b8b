// The links of the chain that a command's lines pass.
#pragma once

#include "shell/output/chain/line.h"

namespace host {

class line_sink {
 public:
  line_sink() = default;
  virtual ~line_sink() = default;
  line_sink(const line_sink&) = delete;
  line_sink& operator=(const line_sink&) = delete;

  virtual void take(const text_line& it) = 0;

  // Shows the beginning of a line whose rest comes later. False when it is needed as a whole: then it comes again.
  virtual bool take_part(const text_line& it) = 0;

  // Hands on all that was held back.
  virtual void flush() = 0;

  // There are no more lines. Called once.
  virtual void end() = 0;
};

// A sink that hands on what it makes of the lines.
class line_link : public line_sink {
 public:
  // `next` outlives this.
  explicit line_link(line_sink& next) : next_(next) {}

  bool take_part(const text_line& it) override { return next_.take_part(it); }
  void flush() override { next_.flush(); }
  void end() override { next_.end(); }

 protected:
  line_sink& next() { return next_; }

 private:
  line_sink& next_;
};

}  // namespace host
