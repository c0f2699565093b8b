#include "shell/session/unconfirmed_commit.h"

#include <fmt/format.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/port_status.h"
#include "messages/calls/session.h"
#include "shell/output/command_output.h"
#include "shell/output/terminal/print_error.h"
#include "shell/session/state.h"
#include "switch/range_text.h"

namespace host {
namespace {

constexpr std::string_view kLate = "the commit was not confirmed in time";
constexpr std::string_view kNothingWaits = "no commit is waiting for confirmation.";

std::string text_of_rollback(std::string_view reason, std::span<const if_index_t> interfaces, uint32 num_refused) {
  return fmt::format("{}: it was rolled back for {}{}", reason, range_text(interfaces),
                     num_refused == 0 ? "." : ", but some interfaces refused that.");
}

void report_rollback(shell& session, std::string_view reason, const answered_rollback& done) {
  session.seconds_to_confirm.reset();
  leave_interfaces_lost_to_user(session);
  print_error(text_of_rollback(reason, done.interfaces, done.num_refused));
}

int report_abort(command_output& output, const std::optional<answered_rollback>& done) {
  if (!done) return output.complain(kNothingWaits), kUsage;
  if (done->num_refused == 0) {
    output.text(fmt::format("Rolled back for {}.\n", range_text(done->interfaces)));
    return kDone;
  }
  output.complain(text_of_rollback("the commit is aborted", done->interfaces, done->num_refused));
  return kSomeInterfacesFailed;
}

struct left_session {
  int code = kDone;
  uint32 number = kOwnSession;
};

// The session with this number whose shell has ended, or the only such one. `word` is the command. A dry run ends none.
left_session find_left_commit(const shell& session, command_output& output, uint32 number, std::string_view word) {
  if (session.trying) return output.complain(kNothingWaits), left_session{kUsage};
  const auto sessions = session_list();
  if (!sessions) return {kServiceFailed};
  std::vector<uint32> left;
  for (const listed_session& it : *sessions) {
    if (!it.seconds_to_confirm || (number != kOwnSession && it.number != number)) continue;
    if (it.has_ended) left.push_back(it.number);
    if (it.has_ended || number == kOwnSession || it.is_own) continue;
    output.complain(fmt::format("session {} is still in use: its shell ends its commit.", number));
    return {kUsage};
  }
  if (left.size() == 1) return {kDone, left.front()};
  if (left.empty() && number == kOwnSession)
    output.complain(kNothingWaits);
  else if (left.empty())
    output.complain(
        fmt::format("no commit of session {} is waiting. 'show sessions' lists those that hold one.", number));
  else
    output.complain(fmt::format("the commits of sessions {} are waiting. Type '{} session' and one of them.",
                                fmt::join(left, ", "), word));
  return {kUsage};
}

int refuse_end(command_output& output) {
  output.complain(fmt::format("{}.", text_of_port_status(kPortStatusLookOnly)));
  return kNotPermitted;
}

int confirm_own_commit(shell& session, command_output& output) {
  const auto answer = session_confirm();
  if (!answer) return kUsage;
  if (answer->is_refused) return refuse_end(output);
  const answered_confirmation& done = answer->done;
  if (done.end == commit_end::rolled_back) {
    report_rollback(session, kLate, {done.interfaces, done.num_refused});
    return kUsage;
  }
  session.seconds_to_confirm.reset();
  if (done.end == commit_end::none_waits) return output.complain(kNothingWaits), kUsage;
  output.text(fmt::format("Confirmed for {}.\n", range_text(done.interfaces)));
  return kDone;
}

int abort_own_commit(shell& session, command_output& output) {
  const auto answer = session_roll_back();
  if (!answer) return kServiceFailed;
  if (answer->is_refused) return refuse_end(output);
  session.seconds_to_confirm.reset();
  leave_interfaces_lost_to_user(session);
  return report_abort(output, answer->done);
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
  const auto left = session_leave();
  if (left && left->kept_seconds) {
    print_error(fmt::format("the commit still waits: 'confirm' in another shell, or it is rolled back in {} seconds.",
                            *left->kept_seconds));
    return kDone;
  }
  if (!left || !left->rolled_back) {
    print_error("the commit was not confirmed, and the session service did not report its rollback.");
    return kServiceFailed;
  }
  report_rollback(session, "the commit was not confirmed", *left->rolled_back);
  return left->rolled_back->num_refused == 0 ? kUsage : kSomeInterfacesFailed;
}

bool is_waiting_for_confirmation(const shell& session, command_output& output) {
  if (!session.seconds_to_confirm) return false;
  output.complain(fmt::format("nothing was changed: a commit waits for 'confirm' and is rolled back in {} seconds.",
                              *session.seconds_to_confirm));
  return true;
}

int confirm_commit(shell& session, command_output& output, uint32 number) {
  if (number == kOwnSession && session.seconds_to_confirm) return confirm_own_commit(session, output);
  const auto [code, left] = find_left_commit(session, output, number, "confirm");
  if (code != kDone) return code;
  const auto answer = session_confirm(left);
  if (!answer) return kServiceFailed;
  if (answer->is_refused) return refuse_end(output);
  const answered_confirmation& done = answer->done;
  if (done.end == commit_end::none_waits) return output.complain(kNothingWaits), kUsage;
  if (done.end == commit_end::rolled_back)
    return output.complain(text_of_rollback(kLate, done.interfaces, done.num_refused)), kUsage;
  output.text(fmt::format("Confirmed for {}.\n", range_text(done.interfaces)));
  return kDone;
}

int abort_commit(shell& session, command_output& output, uint32 number) {
  if (number == kOwnSession && session.seconds_to_confirm) return abort_own_commit(session, output);
  const auto [code, left] = find_left_commit(session, output, number, "abort");
  if (code != kDone) return code;
  const auto answer = session_roll_back(left);
  if (!answer) return kServiceFailed;
  return answer->is_refused ? refuse_end(output) : report_abort(output, answer->done);
}

}  // namespace host
