// Lines that pass a command's pipes.
#pragma once

#include "shell/output/chain/line_sink.h"
#include "shell/output/pipes.h"

namespace host {

class filtering_sink : public line_link {
 public:
  // `filters` outlive this.
  filtering_sink(line_filters& filters, line_sink& next) : line_link(next), filters_(filters) {}

  void take(const text_line& it) override {
    if (filters_.empty())
      next().take(it);
    else if (!filters_.take(it, [this](const text_line& line) { next().take(line); }))
      return;
    has_passed_ = true;
  }

  // Pipes work on whole lines.
  bool take_part(const text_line& it) override { return filters_.empty() && line_link::take_part(it); }

  // Lines that pipes held back, such as a count, come now.
  void end() override {
    filters_.finish([this](const text_line& line) { next().take(line); });
    line_link::end();
  }

  // Whether a line passed, or is kept by a pipe, since the last call of forget().
  bool has_passed() const { return has_passed_; }
  void forget() { has_passed_ = false; }

 private:
  line_filters& filters_;
  bool has_passed_ = false;
};

}  // namespace host
