// The place in front of the terminal or file.
#pragma once

#include <optional>

#include "shell/output/chain/line_sink.h"
#include "shell/output/terminal/progress_line.h"

namespace host {

// Nothing passes once the command is cancelled; while something is shown, the line of progress is hidden.
class gate_sink : public line_link {
 public:
  // Both may be null.
  gate_sink(bool (*is_cancelled)(), progress_line* progress, line_sink& next)
      : line_link(next), is_cancelled_(is_cancelled), progress_(progress) {}

  void take(const text_line& it) override {
    if (is_shut()) return;
    const auto quiet = hold_progress();
    next().take(it);
  }

  bool take_part(const text_line& it) override {
    if (is_shut()) return false;
    const auto quiet = hold_progress();
    return next().take_part(it);
  }

  void flush() override {
    const auto quiet = hold_progress();
    next().flush();
  }

  void end() override {
    const auto quiet = hold_progress();
    next().end();
  }

  bool is_shut() const { return is_cancelled_ != nullptr && is_cancelled_(); }

  std::optional<progress_line::pause> hold_progress() {
    return progress_ != nullptr ? std::optional<progress_line::pause>(std::in_place, *progress_) : std::nullopt;
  }

 private:
  bool (*is_cancelled_)();
  progress_line* progress_;
};

}  // namespace host
