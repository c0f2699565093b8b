// Lines that become messages of the structured form, and the document's own lines in their place.
#pragma once

#include "shell/output/chain/line_sink.h"
#include "shell/output/document.h"

namespace host {

class recording_sink : public line_link {
 public:
  // `made` outlives this. `drops_titles`: lines of the channel that bind nothing are titles and rules.
  recording_sink(document& made, bool drops_titles, line_sink& next)
      : line_link(next), document_(made), drops_titles_(drops_titles) {}

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
  bool drops_titles_;
  bool has_lost_ = false;
};

}  // namespace host
