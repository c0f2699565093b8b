#include "settings/candidate.h"

namespace host {

candidate::candidate() : begun_(the_machine()), before_commit_(), state_{begun_, {}} {}

machine_changes candidate::changes() const { return rebased(changes_between(begun_, state_.model), the_machine()); }

machine_changes candidate::changes_in_trial() const {
  return rebased(changes_between(begun_, the_machine()), state_.model);
}

void candidate::begin_again(const machine_changes& changes, const changes_made& made) {
  begun_ = the_machine();
  before_commit_.reset();
  state_ = {begun_, {}};
  if (made.refused.empty()) return;
  const trial on_candidate(state_);
  machine_changes left;
  for (const auto& [if_index, status] : made.refused) {
    if (const auto it = changes.created.find(if_index); it != changes.created.end()) left.created.insert(*it);
    if (const auto it = changes.deleted.find(if_index); it != changes.deleted.end()) left.deleted.insert(*it);
    const auto changed = changes.changed.find(if_index);
    interface* const port = the_machine().find(if_index);
    if (changed != changes.changed.end() && port != nullptr) port->settings = changed->second.after;
  }
  apply_changes(the_machine(), left);
  forget_changes();
}

void candidate::compare_again() {
  if (before_commit_)
    begun_ = *std::exchange(before_commit_, std::nullopt);
  else if (changes().is_empty())
    begin_again();
}

}  // namespace host
