#include "shell/session/candidate.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>

#include "shell/commands/configure/own_connection.h"
#include "shell/commands/configure/setting_differences.h"
#include "shell/commands/configure/setting_outcome.h"
#include "shell/commands/handlers.h"
#include "shell/grammar/range_text.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "shell/output/terminal/print_error.h"
#include "shell/platform/prompts.h"
#include "shell/session/shell.h"
#include "switch/clock.h"
#include "switch/source.h"

namespace host {
namespace {

constexpr char kNoCandidate[] = "there is no candidate. Type 'configure candidate' first.";
constexpr char kDiscarded[] = " changes of the candidate were discarded: they were not committed.";

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

// Red and green where alarms and what is normal are.
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
  const auto bind_text = [&output](uint16 tag, const std::string& text) {
    output.bind({uint32{CMD_TYPE_STRING} << 24 | tag, text.c_str()});
  };
  for (const auto& [if_index, change] : shown) {
    const setting_difference all = with_interface(change, {&if_index, 1});
    char name[64];
    output.begin_interface(sprintf_if_index(name, if_index));
    bind_text(kTagDiffBefore, joined(all.before));
    bind_text(kTagDiffAfter, joined(all.after));
    output.end_interface();
  }
}

// ---- Commit.

std::vector<pm_port_cfg_status_t> refusals_of(const changes_made& made) {
  std::vector<pm_port_cfg_status_t> refused;
  for (const auto& [if_index, status] : made.refused) refused.push_back({if_index, status});
  return refused;
}

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

bool is_for_candidate(const command_line& line) {
  constexpr int (*kCommands[])(const invocation&) = {set_ports, set_ports_of_host, choose_interfaces, delete_interfaces,
                                                     undo,      show_changes};
  return std::find(std::begin(kCommands), std::end(kCommands), line.what->run) != std::end(kCommands);
}

bool may_leave_candidate(shell& session) {
  if (session.edited == nullptr || is_of_file_within(session)) return true;
  if (has_changes(session)) {
    if (!confirm("The candidate has changes that are not committed. Discard them? (y/n) [n] ")) return false;
    if (command_output* const output = command_output::running()) output->text("The" + std::string(kDiscarded) + "\n");
  }
  session.edited.reset();
  return true;
}

void end_candidate(shell& session) {
  if (has_changes(session)) print_error("the" + std::string(kDiscarded));
  session.edited.reset();
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

namespace {

constexpr uint32 kLongestConfirmation = 86'400;  // seconds

// What takes the changes back when this shell is gone, for a switch that outlives it. False after a complaint.
bool start_guardian(const invocation& run, const machine_changes& changes, std::unique_ptr<guardian>& keeper) {
  if (!the_source().devices()) return true;
  std::string error;
  const auto quiet = run.output.hold_progress();
  keeper = guardian::start(reversed(changes), error);
  if (keeper == nullptr)
    run.output.complain("nothing was committed: the process that would roll it back cannot start: " + error + ".");
  return keeper != nullptr;
}

std::string text_of_commit(const changes_made& made, std::optional<uint32> seconds) {
  std::string text = "Committed for " + range_text(made.applied) + ".";
  if (seconds) text += " Type 'confirm', or it is rolled back in " + std::to_string(*seconds) + " seconds.";
  return text + "\n";
}

// With `seconds` the commit waits so long for its confirmation.
int commit_changes(const invocation& run, std::optional<uint32> seconds) {
  const machine_changes changes = run.session.edited->changes();
  const ports_before before(run, changes.ports());
  if (changes.is_empty() && !run.output.is_structured()) run.output.text("There is nothing to commit.\n");
  if (!seconds && !may_commit(run, changes)) return before.report(run.line.text, {}, kUnconfirmed), kNotPermitted;
  std::unique_ptr<guardian> keeper;
  if (seconds && !changes.is_empty() && !start_guardian(run, changes, keeper))
    return before.report(run.line.text, {}, "no process could start that would roll it back"), kServiceFailed;
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
  if (is_waiting_for_confirmation(run)) return kUsage;
  return commit_changes(run, trial::is_running() ? std::nullopt : seconds);  // a dry run takes all back anyway
}

}  // namespace

int commit(const invocation& run) { return commit_candidate(run, std::nullopt); }

int commit_confirmed(const invocation& run) {
  if (*run.line.number <= kLongestConfirmation) return commit_candidate(run, run.line.number);
  run.output.complain("'commit confirmed' waits for 1 to " + std::to_string(kLongestConfirmation) + " seconds.");
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

}  // namespace host
