#include "shell/session/connection.h"

#include <fmt/format.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "messages/calls/session.h"
#include "messages/calls/switch_facts.h"
#include "shell/output/document/account.h"
#include "shell/output/terminal/print_error.h"
#include "shell/session/modes.h"
#include "shell/session/state.h"
#include "transport/failures.h"
#include "transport/transport.h"

namespace host {
namespace {

// Reports why the service of the switch gave no answer. Returns the exit code.
int report_no_answer() {
  for (const failure& it : noted_failures()) print_error(sentence_of(it));
  return kServiceFailed;
}

// Returns an exit code.
int choose_user(const std::string& name, shell& session) {
  auto answer = ask_user(name);
  if (!answer) return report_no_answer();
  if (!answer->refusal.empty()) return print_error(answer->refusal + "."), kNotPermitted;
  session.user.reset();
  if (answer->user) session.user = std::make_shared<const session_user>(std::move(*answer->user));
  if (name.empty() || session.user != nullptr) return kDone;
  const std::vector<std::string>& names = answer->names;
  print_error(names.empty()
                  ? fmt::format("unknown user '{}' in --user. This switch has no users.", name)
                  : fmt::format("unknown user '{}' in --user. Expected one of {}.", name, fmt::join(names, ", ")));
  return kUsage;
}

// The session in which the switch keeps the commit of the lost connection; nothing when it does not.
std::optional<listed_session> find_kept_commit(uint32 committed_in) {
  const auto sessions = session_list();
  if (!sessions) return std::nullopt;
  const auto found = std::find_if(sessions->begin(), sessions->end(), [=](const listed_session& it) {
    return it.number == committed_in && it.has_ended && it.seconds_to_confirm;
  });
  return found == sessions->end() ? std::nullopt : std::optional(*found);
}

// What the switch kept for the session until its connection was lost.
void report_lost_state(const shell& session) {
  const auto kept = session.seconds_to_confirm ? find_kept_commit(session.committed_in) : std::nullopt;
  if (kept)
    print_error(
        fmt::format("the connection was made again. The commit waits in session {}: type 'confirm session {}', "
                    "or it is rolled back in {} seconds.",
                    kept->number, kept->number, *kept->seconds_to_confirm));
  std::vector<std::string_view> lost;
  if (session.edited) lost.push_back("the candidate");
  if (session.trying && !session.trying->is_of_whole_session()) lost.push_back("the dry run");
  if (session.seconds_to_confirm && !kept) lost.push_back("the commit that waited for 'confirm'");
  if (!lost.empty())
    print_error(fmt::format("the connection was made again. Gone with the earlier one: {}.", fmt::join(lost, ", ")));
}

}  // namespace

int begin_session(shell& session, const std::string& user) {
  auto about = ask_switch_facts();
  if (!about) return report_no_answer();
  session.about = std::move(*about);
  session.requested_user = user;
  return choose_user(user, session);
}

void renew_connection(shell& session) {
  transport_renew();
  if (!std::exchange(session.has_new_connection, false)) return;
  report_lost_state(session);
  const bool is_dry = session.trying && session.trying->is_of_whole_session();
  session.edited.reset();
  session.trying.reset();
  session.seconds_to_confirm.reset();
  if (is_dry && !begin_dry_run(session, begun_dry_run::kWholeSession)) {
    report_no_answer();
    session.is_leaving = true;  // its lines would change the switch
    return;
  }
  if (begin_session(session, session.requested_user) == kDone) leave_lost_interfaces(session);
  forget_failures();
}

}  // namespace host
