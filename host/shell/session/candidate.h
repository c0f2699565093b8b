// Settings that are collected and committed together.
#pragma once

#include <optional>
#include <utility>

#include "platform/types.h"
#include "settings/machine_changes.h"
#include "settings/trial.h"

namespace host {

struct command_line;
struct shell;

// A copy of the machine that settings are made of until they are committed.
class candidate {
 public:
  // Begins as the machine is. It lives until the configuration is left that a line of so many files in each other
  // began.
  explicit candidate(uint32 num_files);

  // For a trial.
  trial_state& state() { return state_; }
  uint32 num_files() const { return num_files_; }

  // What a commit would change of the machine as it is now.
  machine_changes changes() const;

  // The same, to be called in a trial of the candidate, which is the_machine() there.
  machine_changes changes_in_trial() const;

  // An interface of the candidate, or null.
  const interface* find(if_index_t if_index) const { return state_.model.find(if_index); }

  // Begins again as the machine is. Those changes that were refused stay.
  void begin_again(const machine_changes& changes = {}, const changes_made& made = {});

  // It began again after a commit that may be rolled back: the machine as it was just before that commit.
  void keep_before_commit(machine before) { before_commit_ = std::move(before); }

  // The commit was rolled back: what it changed differs again, unless it was discarded meanwhile.
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

// Whether a command is for the candidate, when there is one: settings, creations and deletions, and what takes them
// back or lists them. All others are for the machine.
bool is_for_candidate(const command_line& line);

// The configuration is left, or the shell. False when its candidate has changes that are not committed and the user,
// asked, does not give them up. Without a terminal they are discarded. `configure` in a file that a candidate reads
// neither begins nor ends one.
bool may_leave_candidate(shell& session);

// The file that began a candidate ends, or the session: changes that are not committed are discarded, which is said.
void end_candidate(shell& session);

}  // namespace host
