// Marks of optical diagnostics that are printed as plain text.
#pragma once

#include "shell/output/chain/line_sink.h"

namespace host {

// Such a line binds no value: the answer that it is made of says whether its quantity is outside of its limits
// (messages/calls/diagnostic_marks.h).
class marking_sink : public line_link {
 public:
  using line_link::line_link;

  void take(const text_line& it) override;
};

}  // namespace host
