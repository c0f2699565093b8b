// Marks in colour: alarms red, warnings yellow, what is as it should be green, what is switched off faint.
#pragma once

#include <string>

#include "shell/output/chain/line_sink.h"

namespace host {

class colouring_sink : public line_link {
 public:
  using line_link::line_link;

  void take(const text_line& it) override { next().take(coloured(it)); }
  bool take_part(const text_line& it) override { return next().take_part(coloured(it)); }

 private:
  text_line coloured(const text_line& it);

  std::string text_;
};

}  // namespace host
