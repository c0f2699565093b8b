// Collects settings that are committed together.
#pragma once

#include <optional>
#include <utility>

#include "settings/machine_changes.h"
#include "settings/trial.h"

namespace host {

// A copy of the machine that takes settings until they are committed.
class candidate {
 public:
  // Begins as a copy of the machine.
  candidate();

  // For a trial.
  trial_state& state() { return state_; }

  // The changes that a commit would make now. Not to be called in a trial of the candidate.
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
};

}  // namespace host
