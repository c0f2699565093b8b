// The candidate: its differences and its commit.
#include "shell/session/candidate.h"

#include <fmt/format.h>

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "messages/calls/session.h"
#include "shell/commands/configure/change_texts.h"
#include "shell/commands/configure/own_connection.h"
#include "shell/commands/configure/setting_outcome.h"
#include "shell/commands/group.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "shell/session/unconfirmed_commit.h"
#include "switch/range_text.h"

namespace host {
namespace {

constexpr char kNoCandidate[] = "there is no candidate. Type 'configure candidate' first.";

// ---- What a commit would change, as commands.

// The commands of a change of some interfaces, with those that delete and create them.
command_changes with_interface(const candidate_change& change, std::span<const if_index_t> interfaces) {
  command_changes all = change.settings;
  const std::string itself = "interface " + range_text(interfaces);
  if (change.is_deleted) all.before.insert(all.before.begin(), itself);
  if (change.is_created) all.after.insert(all.after.begin(), itself);
  return all;
}

// Red and green, as for alarms and normal values.
void print_command(command_output& output, char sign, const std::string& command, severity colour) {
  constexpr std::string_view kIndent = "  ";
  line_gatherer& line = output.line();
  line.current().append(kIndent).append(1, sign).append(" ").append(command);
  line.add_mark({kIndent.size(), line.current().size(), colour});
  line.set_of_channel();
  line.end_line();
}

// Interfaces with the same change are shown together.
void print_changes(command_output& output, const std::vector<candidate_change>& changes) {
  std::map<if_index_t, candidate_change> shown;
  for (candidate_change it : changes) {
    const if_index_t if_index = std::exchange(it.if_index, 0);
    shown.emplace(if_index, std::move(it));
  }
  for (const auto& [change, interfaces] : grouped(shown)) {
    output.text(range_text(interfaces) + "\n");
    const command_changes all = with_interface(change, interfaces);
    for (const std::string& command : all.before) print_command(output, '-', command, severity::alarm);
    for (const std::string& command : all.after) print_command(output, '+', command, severity::normal);
  }
}

void record_changes(command_output& output, const std::vector<candidate_change>& changes) {
  for (const candidate_change& it : changes) {
    const command_changes all = with_interface(it, {&it.if_index, 1});
    char name[64];
    output.begin_interface(sprintf_if_index(name, it.if_index));
    output.bind_text(kTagDiffBefore, joined(all.before));
    output.bind_text(kTagDiffAfter, joined(all.after));
    output.end_interface();
  }
}

// ---- Commit

int configure_candidate(const invocation& run) {
  if (!begin_candidate(run.session)) return kServiceFailed;
  run.session.mode = kConfigureMode;
  return kDone;
}

int show_diff(const invocation& run) {
  if (!run.session.edited) {
    run.output.complain(kNoCandidate);
    return kUsage;
  }
  const auto changes = session_candidate_changes(true);
  if (!changes) return kServiceFailed;
  if (run.output.is_structured())
    record_changes(run.output, *changes);
  else if (changes->empty())
    run.output.text("The candidate is the same as the running configuration.\n");
  else
    print_changes(run.output, *changes);
  return kDone;
}

std::vector<if_index_t> interfaces_of(const std::vector<candidate_change>& changes) {
  std::vector<if_index_t> interfaces;
  for (const candidate_change& it : changes) interfaces.push_back(it.if_index);
  return interfaces;
}

std::string text_of_commit(const answered_changes& made, std::optional<uint32> seconds) {
  const std::string interfaces = range_text(made.applied);
  if (!seconds) return fmt::format("Committed for {}.\n", interfaces);
  return fmt::format("Committed for {}. Type 'confirm', or it is rolled back in {} seconds.\n", interfaces, *seconds);
}

// With `seconds` the commit waits that long for its confirmation.
int commit_changes(const invocation& run, std::optional<uint32> seconds) {
  const auto changes = session_candidate_changes(false);
  if (!changes) return kServiceFailed;
  const ports_before before(run, interfaces_of(*changes));
  if (changes->empty() && !run.output.is_structured()) run.output.text("There is nothing to commit.\n");
  if (!seconds && !may_commit(run, *changes)) return before.report(run.line.text, {}, kUnconfirmed), kNotPermitted;
  const auto answer = [&] {
    const auto quiet = run.output.hold_progress();  // a process may be started for the rollback
    return session_commit(run.line.text, seconds);
  }();
  if (!answer) return kServiceFailed;
  if (!answer->fault.empty()) {
    run.output.complain(
        fmt::format("nothing was committed: the process that rolls back cannot start: {}.", answer->fault));
    return before.report(run.line.text, {}, "the process that rolls back could not start"), kServiceFailed;
  }
  if (!answer->made.applied.empty()) {
    run.output.text(text_of_commit(answer->made, seconds));
    run.session.seconds_to_confirm = seconds;
    run.session.committed_in = answer->session;
  }
  std::vector<pm_port_cfg_status_t> refused = answer->made.refused;
  const int code = report_refusals(run, "commit", refused);
  before.report(run.line.text, refused);
  leave_interfaces_lost_to_user(run.session);
  return code;
}

int commit_candidate(const invocation& run, std::optional<uint32> seconds) {
  if (!run.session.edited) {
    run.output.complain(kNoCandidate);
    return kUsage;
  }
  if (is_waiting_for_confirmation(run.session, run.output)) return kUsage;
  return commit_changes(run, run.session.is_trial() ? std::nullopt : seconds);  // a dry run reverts everything anyway
}

int commit(const invocation& run) { return commit_candidate(run, std::nullopt); }

int commit_confirmed(const invocation& run) {
  if (*run.line.number <= kLongestConfirmationSec) return commit_candidate(run, run.line.number);
  run.output.complain(fmt::format("'commit confirmed' takes 1 to {} seconds.", kLongestConfirmationSec));
  return kUsage;
}

int discard(const invocation& run) {
  if (!run.session.edited) {
    run.output.complain(kNoCandidate);
    return kUsage;
  }
  if (!session_candidate(candidate_step::discard)) return kServiceFailed;
  leave_interfaces_lost_to_user(run.session);
  return kDone;
}

int confirm_commit(const invocation& run) {
  return confirm_commit(run.session, run.output, run.line.number.value_or(kOwnSession));
}

int abort_commit(const invocation& run) {
  return abort_commit(run.session, run.output, run.line.number.value_or(kOwnSession));
}

constexpr display kDiffShown = {kDiffDisplay, {}, "diff", true, false, "differences"};

// clang-format off
constexpr command kCandidateRows[] = {
    {"configure candidate", "Collect settings and commit them together", configure_candidate, kSentences, nullptr, kExecMode},
    {"show diff", "Differences between the candidate and the switch", show_diff, kDiffShown},
    {"commit", "Apply the candidate", commit, kSettingShown, nullptr, kConfigureMode | kInterfaceMode},
    {"commit confirmed SECONDS", "Apply the candidate; roll back without 'confirm'", commit_confirmed, kSettingShown, nullptr, kConfigureMode | kInterfaceMode},
    {"confirm", "Keep a commit that waits for confirmation", confirm_commit, kSentences, nullptr, kConfigureMode | kInterfaceMode},
    {"confirm session SESSION", "Keep the commit that an ended session left", confirm_commit, kSentences, nullptr, kConfigureMode | kInterfaceMode},
    {"abort", "Roll back a commit that waits for confirmation", abort_commit, kSentences, nullptr, kConfigureMode | kInterfaceMode},
    {"abort session SESSION", "Roll back the commit that an ended session left", abort_commit, kSentences, nullptr, kConfigureMode | kInterfaceMode},
    {"discard", "Discard the changes of the candidate", discard, kSentences, nullptr, kConfigureMode | kInterfaceMode},
};
// clang-format on

constexpr word_help kCandidateWords[] = {
    {"abort", "Roll back a commit that waits for confirmation"},  {"session", "The commit that an ended session left"},
    {"candidate", "Collect settings and commit them together"},   {"commit", "Apply the candidate"},
    {"confirm", "Keep a commit that waits for confirmation"},     {"confirmed", "Roll back without 'confirm'"},
    {"diff", "Differences between the candidate and the switch"}, {"discard", "Discard the changes of the candidate"},
};

}  // namespace

constexpr command_group kCandidateCommands = {kCandidateRows, kCandidateWords};

}  // namespace host
