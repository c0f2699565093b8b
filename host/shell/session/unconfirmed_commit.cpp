#include "shell/session/unconfirmed_commit.h"

#include <fmt/format.h>

#include <utility>

#include "settings/change_journal.h"
#include "shell/grammar/range_text.h"
#include "shell/output/command_output.h"
#include "shell/output/terminal/print_error.h"
#include "shell/session/state.h"
#include "switch/clock.h"
#include "switch/source.h"

namespace host {
namespace {

// The guardian does it, or the journal when there is none. Returns how many interfaces refused.
std::size_t take_back(unconfirmed_commit& commit) {
  const std::optional<uint32> refused = commit.keeper ? commit.keeper->roll_back() : std::nullopt;
  the_source().refresh(the_machine());
  return refused ? *refused : take_change_back(the_machine()).refused.size();
}

// Returns how many interfaces refused.
std::size_t roll_back(shell& session, const std::string& reason) {
  const std::unique_ptr<unconfirmed_commit> commit = std::exchange(session.unconfirmed, nullptr);
  const std::size_t refused = take_back(*commit);
  if (session.edited) session.edited->compare_again();
  leave_interfaces_lost_to_user(session);
  print_error(fmt::format("{}: it was rolled back for {}{}", reason, range_text(commit->interfaces),
                          refused == 0 ? "." : ", but some interfaces refused that."));
  return refused;
}

}  // namespace

void check_confirmation(shell& session) {
  if (session.unconfirmed == nullptr) return;
  const bool is_over = clock_now() >= static_cast<std::time_t>(session.unconfirmed->deadline_sec);
  if (is_over || (session.unconfirmed->keeper && session.unconfirmed->keeper->has_ended()))
    roll_back(session, "the commit was not confirmed in time");
}

int end_unconfirmed_commit(shell& session) {
  if (session.unconfirmed == nullptr) return kDone;
  return roll_back(session, "the commit was not confirmed") == 0 ? kUsage : kSomeInterfacesFailed;
}

bool is_waiting_for_confirmation(const shell& session, command_output& output) {
  if (session.unconfirmed == nullptr) return false;
  const std::time_t left = static_cast<std::time_t>(session.unconfirmed->deadline_sec) - clock_now();
  output.complain(
      fmt::format("nothing was changed: a commit waits for 'confirm' and is rolled back in {} seconds.", left));
  return true;
}

bool confirm_commit(shell& session) {
  if (!session.unconfirmed->keeper || session.unconfirmed->keeper->confirm()) {
    session.unconfirmed.reset();
    return true;
  }
  roll_back(session, "the commit was not confirmed in time");
  return false;
}

}  // namespace host
