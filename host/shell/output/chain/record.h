// Lines that become messages of the structured form, and the document's own lines in their place.
#pragma once

#include "shell/output/chain/line_sink.h"
#include "shell/output/document/document.h"

namespace host {

class recording_sink : public line_link {
 public:
  // `made` outlives this. `drops_layout`: lines of the channel that bind nothing are layout.
  recording_sink(document& made, bool drops_layout, line_sink& next)
      : line_link(next), document_(made), drops_layout_(drops_layout) {}

  // Of the command, for the end of the document.
  void set_exit_code(int code) { exit_code_ = code; }

  // A line without a bound value becomes a message.
  void take(const text_line& it) override;
  bool take_part(const text_line&) override { return false; }
  void end() override;

  // Hands on the lines of the document that are complete.
  void hand_on();

  // Whether the document had no more room for a message since the last call of forget().
  bool has_lost() const { return has_lost_; }
  void forget() { has_lost_ = false; }

 private:
  document& document_;
  bool drops_layout_;
  int exit_code_ = 0;
  bool has_lost_ = false;
};

}  // namespace host
