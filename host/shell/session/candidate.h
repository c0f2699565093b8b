// The candidate of the session: it collects settings that are committed together.
#pragma once

#include "platform/types.h"

namespace host {

struct shell;

// It ends when the configuration is left that a line began; `num_files` counts the nested files of that line.
struct begun_candidate {
  uint32 num_files = 0;
};

// False when the session service does not answer; without effect when there is a candidate.
bool begin_candidate(shell& session);

// While it lives, requests are for the candidate of the session, if it has one.
class candidate_scope {
 public:
  // Without `is_used` it does nothing.
  explicit candidate_scope(shell& session, bool is_used = true);
  ~candidate_scope();
  candidate_scope(const candidate_scope&) = delete;
  candidate_scope& operator=(const candidate_scope&) = delete;

  // The session service did not answer: requests would be for the switch.
  bool has_failed() const { return has_failed_; }

 private:
  shell& session_;
  bool is_entered_ = false;
  bool has_failed_ = false;
};

// leave_lost_interfaces() of the candidate when there is one, otherwise of the switch. Not to be called in a scope of
// the candidate.
void leave_interfaces_lost_to_user(shell& session);

// The configuration or the shell is left. False when the candidate has uncommitted changes and the user answers not to
// discard them. Without a terminal they are discarded. `configure` in a file that a candidate reads neither begins nor
// ends one.
bool may_leave_candidate(shell& session);

// The file or the session that began a candidate ends: uncommitted changes are discarded with a message.
void end_candidate(shell& session);

}  // namespace host
