// Collects settings and commits them together.
#pragma once

#include <optional>
#include <utility>

#include "platform/types.h"
#include "settings/machine_changes.h"
#include "settings/trial.h"

namespace host {

struct shell;

// A copy of the machine that takes settings until they are committed.
class candidate {
 public:
  // Begins as a copy of the machine. It ends when the configuration is left that a line began; `num_files` counts the
  // nested files of that line.
  explicit candidate(uint32 num_files);

  // For a trial.
  trial_state& state() { return state_; }
  uint32 num_files() const { return num_files_; }

  // The changes that a commit would make now.
  machine_changes changes() const;

  // The same, to be called in a trial of the candidate, which is the_machine() there.
  machine_changes changes_in_trial() const;

  // An interface of the candidate, or null.
  const interface* find(if_index_t if_index) const { return state_.model.find(if_index); }

  // Begins again as a copy of the machine, with the refused changes.
  void begin_again(const machine_changes& changes = {}, const changes_made& made = {});

  // The machine just before a commit that may be rolled back.
  void keep_before_commit(machine before) { before_commit_ = std::move(before); }

  // The commit was rolled back: its changes are in the candidate again, unless they were discarded meanwhile.
  void compare_again();

 private:
  machine begun_;
  std::optional<machine> before_commit_;
  trial_state state_;
  uint32 num_files_;
};

// leave_lost_interfaces() of the candidate when there is one, otherwise of the machine. Not to be called in a trial of
// the candidate.
void leave_interfaces_lost_to_user(shell& session);

// The configuration or the shell is left. False when the candidate has uncommitted changes and the user answers not to
// discard them. Without a terminal they are discarded. `configure` in a file that a candidate reads neither begins nor
// ends one.
bool may_leave_candidate(shell& session);

// The file or the session that began a candidate ends: uncommitted changes are discarded with a message.
void end_candidate(shell& session);

}  // namespace host
