// The candidate: its differences and its commit.
#include "shell/session/candidate.h"

#include <fmt/format.h>

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "settings/change_journal.h"
#include "shell/commands/configure/own_connection.h"
#include "shell/commands/configure/setting_differences.h"
#include "shell/commands/configure/setting_outcome.h"
#include "shell/commands/group.h"
#include "shell/grammar/range_text.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "switch/clock.h"
#include "switch/source.h"

namespace host {
namespace {

constexpr char kNoCandidate[] = "there is no candidate. Type 'configure candidate' first.";

// ---- What a commit would change, as commands.

struct shown_change {
  bool is_deleted = false;
  bool is_created = false;
  setting_difference settings;

  auto operator<=>(const shown_change&) const = default;
};

std::map<if_index_t, shown_change> shown_changes(const candidate& of, const machine_changes& changes) {
  std::map<if_index_t, shown_change> shown;
  for (const auto& [if_index, change] : changes.changed) {
    const interface* port = std::as_const(the_machine()).find(if_index);
    if (port == nullptr) port = of.find(if_index);
    if (port == nullptr) continue;
    shown[if_index].settings =
        difference_between(commands_with(*port, change.before), commands_with(*port, change.after));
  }
  for (const auto& [if_index, it] : changes.deleted) shown[if_index].is_deleted = true;
  for (const auto& [if_index, it] : changes.created) {
    shown[if_index].is_created = true;
    shown[if_index].settings = difference_between(commands_with(it, it.at_start), commands_of(it));
  }
  return shown;
}

setting_difference with_interface(const shown_change& change, std::span<const if_index_t> interfaces) {
  setting_difference all = change.settings;
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

void print_changes(command_output& output, const std::map<if_index_t, shown_change>& shown) {
  for (const auto& [change, interfaces] : grouped(shown)) {
    output.text(range_text(interfaces) + "\n");
    const setting_difference all = with_interface(change, interfaces);
    for (const std::string& command : all.before) print_command(output, '-', command, severity::alarm);
    for (const std::string& command : all.after) print_command(output, '+', command, severity::normal);
  }
}

void record_changes(command_output& output, const std::map<if_index_t, shown_change>& shown) {
  for (const auto& [if_index, change] : shown) {
    const setting_difference all = with_interface(change, {&if_index, 1});
    char name[64];
    output.begin_interface(sprintf_if_index(name, if_index));
    output.bind_text(kTagDiffBefore, joined(all.before));
    output.bind_text(kTagDiffAfter, joined(all.after));
    output.end_interface();
  }
}

// ---- Commit.

std::vector<pm_port_cfg_status_t> refusals_of(const changes_made& made) {
  std::vector<pm_port_cfg_status_t> refused;
  for (const auto& [if_index, status] : made.refused) refused.push_back({if_index, status});
  return refused;
}

int configure_candidate(const invocation& run) {
  if (run.session.edited == nullptr) run.session.edited = std::make_unique<candidate>(run.session.num_files);
  run.session.mode = kConfigureMode;
  return kDone;
}

int show_diff(const invocation& run) {
  if (run.session.edited == nullptr) {
    run.output.complain(kNoCandidate);
    return kUsage;
  }
  const auto shown = shown_changes(*run.session.edited, run.session.edited->changes());
  if (run.output.is_structured())
    record_changes(run.output, shown);
  else if (shown.empty())
    run.output.text("The candidate is the same as the running configuration.\n");
  else
    print_changes(run.output, shown);
  return kDone;
}

constexpr uint32 kLongestConfirmation = 86'400;  // seconds

// Starts the rollback process, for a switch that outlives this shell. False after an error.
bool start_guardian(const invocation& run, const machine_changes& changes, std::unique_ptr<guardian>& keeper) {
  if (!the_source().devices()) return true;
  std::string error;
  const auto quiet = run.output.hold_progress();
  keeper = guardian::start(reversed(changes), error);
  if (keeper == nullptr)
    run.output.complain(fmt::format("nothing was committed: the process that rolls back cannot start: {}.", error));
  return keeper != nullptr;
}

std::string text_of_commit(const changes_made& made, std::optional<uint32> seconds) {
  const std::string interfaces = range_text(made.applied);
  if (!seconds) return fmt::format("Committed for {}.\n", interfaces);
  return fmt::format("Committed for {}. Type 'confirm', or it is rolled back in {} seconds.\n", interfaces, *seconds);
}

// With `seconds` the commit waits that long for its confirmation.
int commit_changes(const invocation& run, std::optional<uint32> seconds) {
  const machine_changes changes = run.session.edited->changes();
  const ports_before before(run, changes.ports());
  if (changes.is_empty() && !run.output.is_structured()) run.output.text("There is nothing to commit.\n");
  if (!seconds && !may_commit(run, changes)) return before.report(run.line.text, {}, kUnconfirmed), kNotPermitted;
  std::unique_ptr<guardian> keeper;
  if (seconds && !changes.is_empty() && !start_guardian(run, changes, keeper))
    return before.report(run.line.text, {}, "the process that rolls back could not start"), kServiceFailed;
  std::optional<machine> before_commit;
  if (seconds) before_commit = the_machine();
  begin_changes(run.line.text);
  const changes_made made = apply_changes(the_machine(), changes);
  if (!made.applied.empty()) run.output.text(text_of_commit(made, seconds));
  if (seconds && !made.applied.empty()) {
    if (keeper) keeper->begin(*seconds);
    const auto deadline_sec = static_cast<uint32>(clock_now()) + *seconds;
    run.session.unconfirmed =
        std::make_unique<unconfirmed_commit>(unconfirmed_commit{made.applied, deadline_sec, std::move(keeper)});
  }
  std::vector<pm_port_cfg_status_t> refused = refusals_of(made);
  const int code = report_refusals(run, "commit", refused);
  before.report(run.line.text, refused);
  run.session.edited->begin_again(changes, made);
  if (run.session.unconfirmed && before_commit) run.session.edited->keep_before_commit(std::move(*before_commit));
  leave_interfaces_lost_to_user(run.session);
  return code;
}

int commit_candidate(const invocation& run, std::optional<uint32> seconds) {
  if (run.session.edited == nullptr) {
    run.output.complain(kNoCandidate);
    return kUsage;
  }
  if (is_waiting_for_confirmation(run.session, run.output)) return kUsage;
  return commit_changes(run, trial::is_running() ? std::nullopt : seconds);  // a dry run reverts everything anyway
}

int commit(const invocation& run) { return commit_candidate(run, std::nullopt); }

int commit_confirmed(const invocation& run) {
  if (*run.line.number <= kLongestConfirmation) return commit_candidate(run, run.line.number);
  run.output.complain(fmt::format("'commit confirmed' takes 1 to {} seconds.", kLongestConfirmation));
  return kUsage;
}

int discard(const invocation& run) {
  if (run.session.edited == nullptr) {
    run.output.complain(kNoCandidate);
    return kUsage;
  }
  run.session.edited->begin_again();
  leave_interfaces_lost_to_user(run.session);
  return kDone;
}

int confirm_commit(const invocation& run) {
  if (run.session.unconfirmed == nullptr) {
    run.output.complain("no commit is waiting for confirmation.");
    return kUsage;
  }
  const std::vector<if_index_t> interfaces = run.session.unconfirmed->interfaces;
  if (!confirm_commit(run.session)) return kUsage;
  run.output.text(fmt::format("Confirmed for {}.\n", range_text(interfaces)));
  return kDone;
}

constexpr display kDiffShown = {kDiffDisplay, {}, "diff", true, false, "differences"};

// clang-format off
constexpr command kCandidateRows[] = {
    {"configure candidate", "Collect settings and commit them together", configure_candidate, kSentences, nullptr, kExecMode},
    {"show diff", "Differences between the candidate and the switch", show_diff, kDiffShown},
    {"commit", "Apply the candidate", commit, kSettingShown, nullptr, kConfigureMode | kInterfaceMode},
    {"commit confirmed SECONDS", "Apply the candidate; roll back without 'confirm'", commit_confirmed, kSettingShown, nullptr, kConfigureMode | kInterfaceMode},
    {"confirm", "Keep a commit that waits for confirmation", confirm_commit, kSentences, nullptr, kConfigureMode | kInterfaceMode},
    {"discard", "Discard the changes of the candidate", discard, kSentences, nullptr, kConfigureMode | kInterfaceMode},
};
// clang-format on

constexpr word_help kCandidateWords[] = {
    {"candidate", "Collect settings and commit them together"},   {"commit", "Apply the candidate"},
    {"confirm", "Keep a commit that waits for confirmation"},     {"confirmed", "Roll back without 'confirm'"},
    {"diff", "Differences between the candidate and the switch"}, {"discard", "Discard the changes of the candidate"},
};

}  // namespace

constexpr command_group kCandidateCommands = {kCandidateRows, kCandidateWords};

}  // namespace host
