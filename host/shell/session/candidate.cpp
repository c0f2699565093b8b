#include "shell/session/candidate.h"

#include <fmt/format.h>

#include "messages/calls/session.h"
#include "shell/output/command_output.h"
#include "shell/output/terminal/print_error.h"
#include "shell/platform/prompts.h"
#include "shell/session/invocation.h"
#include "shell/session/modes.h"

namespace host {
namespace {

constexpr char kDiscarded[] = " changes of the candidate were discarded: they were not committed.";

bool has_changes(const shell& session) {
  if (!session.edited) return false;
  const auto changes = session_candidate_changes(false);
  return changes && !changes->empty();
}

// A line of a file that the candidate reads, or of one that began before it.
bool is_of_file_within(const shell& session) { return session.num_files > session.edited->num_files; }

void drop_candidate(shell& session) {
  if (!session.edited) return;
  session_candidate(candidate_step::end);
  session.edited.reset();
}

}  // namespace

bool begin_candidate(shell& session) {
  if (session.edited) return true;
  if (!session_candidate(candidate_step::begin)) return false;
  session.edited = begun_candidate{session.num_files};
  return true;
}

candidate_scope::candidate_scope(shell& session, bool is_used) : session_(session) {
  if (!session.edited || !is_used || session.is_on_candidate) return;
  is_entered_ = session.is_on_candidate = session_candidate(candidate_step::enter);
  has_failed_ = !is_entered_;
}

candidate_scope::~candidate_scope() {
  if (!is_entered_) return;
  session_candidate(candidate_step::leave);
  session_.is_on_candidate = false;
}

void leave_interfaces_lost_to_user(shell& session) {
  const candidate_scope on_candidate(session);
  leave_lost_interfaces(session);
}

bool may_leave_candidate(shell& session) {
  if (!session.edited || is_of_file_within(session)) return true;
  if (has_changes(session)) {
    if (!confirm("The candidate has changes that are not committed. Discard them? (y/n) [n] ")) return false;
    if (command_output* const output = command_output::running()) output->text(fmt::format("The{}\n", kDiscarded));
  }
  drop_candidate(session);
  return true;
}

void end_candidate(shell& session) {
  if (has_changes(session)) print_error(fmt::format("the{}", kDiscarded));
  drop_candidate(session);
}

}  // namespace host
