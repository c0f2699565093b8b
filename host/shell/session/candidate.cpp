#include "shell/session/candidate.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <utility>

#include "shell/grammar/range_text.h"
#include "shell/output/command_output.h"
#include "shell/output/terminal/print_error.h"
#include "shell/platform/prompts.h"
#include "shell/session/invocation.h"
#include "shell/session/modes.h"

namespace host {
namespace {

constexpr char kDiscarded[] = " changes of the candidate were discarded: they were not committed.";

bool has_changes(const shell& session) { return session.edited != nullptr && !session.edited->changes().is_empty(); }

// A line of a file that the candidate reads, or of one that began before it.
bool is_of_file_within(const shell& session) { return session.num_files > session.edited->num_files(); }

}  // namespace

candidate::candidate(uint32 num_files)
    : begun_(the_machine()), before_commit_(), state_{begun_, {}}, num_files_(num_files) {}

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

void leave_interfaces_lost_to_user(shell& session) {
  std::optional<trial> on_candidate;
  if (session.edited) on_candidate.emplace(session.edited->state());
  leave_lost_interfaces(session);
}

bool may_leave_candidate(shell& session) {
  if (session.edited == nullptr || is_of_file_within(session)) return true;
  if (has_changes(session)) {
    if (!confirm("The candidate has changes that are not committed. Discard them? (y/n) [n] ")) return false;
    if (command_output* const output = command_output::running()) output->text(fmt::format("The{}\n", kDiscarded));
  }
  session.edited.reset();
  return true;
}

void end_candidate(shell& session) {
  if (has_changes(session)) print_error(fmt::format("the{}", kDiscarded));
  session.edited.reset();
}

}  // namespace host
