#include "shell/session/unconfirmed_commit.h"

#include <fmt/format.h>

#include <string_view>

#include "messages/calls/session.h"
#include "shell/output/command_output.h"
#include "shell/output/terminal/print_error.h"
#include "shell/session/state.h"
#include "switch/range_text.h"

namespace host {
namespace {

constexpr std::string_view kLate = "the commit was not confirmed in time";

void report_rollback(shell& session, std::string_view reason, const answered_rollback& done) {
  session.seconds_to_confirm.reset();
  leave_interfaces_lost_to_user(session);
  print_error(fmt::format("{}: it was rolled back for {}{}", reason, range_text(done.interfaces),
                          done.num_refused == 0 ? "." : ", but some interfaces refused that."));
}

}  // namespace

void check_confirmation(shell& session) {
  if (!session.seconds_to_confirm) return;
  const auto begun = session_begin_line();
  if (!begun) return;
  session.seconds_to_confirm = begun->seconds_to_confirm;
  if (begun->rolled_back) report_rollback(session, kLate, *begun->rolled_back);
}

int end_unconfirmed_commit(shell& session) {
  if (!session.seconds_to_confirm) return kDone;
  const auto done = session_roll_back();
  if (!done) {
    print_error("the commit was not confirmed, and the session service did not report its rollback.");
    return kServiceFailed;
  }
  report_rollback(session, "the commit was not confirmed", *done);
  return done->num_refused == 0 ? kUsage : kSomeInterfacesFailed;
}

bool is_waiting_for_confirmation(const shell& session, command_output& output) {
  if (!session.seconds_to_confirm) return false;
  output.complain(fmt::format("nothing was changed: a commit waits for 'confirm' and is rolled back in {} seconds.",
                              *session.seconds_to_confirm));
  return true;
}

bool confirm_commit(shell& session, command_output& output) {
  const auto answer = session_confirm();
  if (!answer) return false;
  if (!answer->is_kept) {
    report_rollback(session, kLate, {answer->interfaces, answer->num_refused});
    return false;
  }
  session.seconds_to_confirm.reset();
  output.text(fmt::format("Confirmed for {}.\n", range_text(answer->interfaces)));
  return true;
}

}  // namespace host
