// Lines that are safe for a terminal.
#pragma once

#include <string>

#include "shell/output/chain/line_sink.h"

namespace host {

// Writes visibly what is not printable; tabs stay.
class sanitising_sink : public line_link {
 public:
  using line_link::line_link;

  void take(const text_line& it) override;
  bool take_part(const text_line& it) override;

 private:
  text_line safe(const text_line& it);

  std::string text_;
  line_marks marks_;
};

}  // namespace host
