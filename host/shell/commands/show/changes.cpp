// "show changes": the changes of this session, as commands, with the previous ones.
#include <fmt/format.h>

#include <map>
#include <string>

#include "messages/calls/session.h"
#include "shell/commands/configure/change_texts.h"
#include "shell/commands/group.h"
#include "shell/library/interface_kinds.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"
#include "shell/output/schema/schema.h"
#include "switch/range_text.h"

namespace host {
namespace {

void print_step(command_output& output, std::size_t number, const session_step& step, const std::string& user) {
  output.text(
      fmt::format("{}  {}  {}{}{}\n", number, utc_text(step.at_sec), user, user.empty() ? "" : "  ", step.command));
  const std::map<if_index_t, command_changes> changes(step.changes.begin(), step.changes.end());
  for (const auto& [made, ports] : grouped(changes)) {
    output.text(fmt::format("     {}\n", range_text(ports)));
    for (const std::string& line : made.before) output.text(fmt::format("     - {}\n", line));
    for (const std::string& line : made.after) output.text(fmt::format("     + {}\n", line));
  }
}

void record_step(command_output& output, std::size_t number, const session_step& step, const std::string& user) {
  for (const auto& [if_index, made] : step.changes) {
    char name[64];
    output.begin_interface(sprintf_if_index(name, if_index));
    const auto counted = static_cast<uint32>(number);
    output.bind({uint32{CMD_TYPE_UINT32} << 24 | kTagChangeStep, &counted});
    output.bind_text(kTagChangedAt, utc_text(step.at_sec));
    output.bind_text(kTagChangeUser, user);
    output.bind_text(kTagChangeCommand, step.command);
    output.bind_text(kTagChangeBefore, joined(made.before));
    output.bind_text(kTagChangeAfter, joined(made.after));
    output.end_interface();
  }
}

// Nothing when the candidate's changes are not known.
std::string text_without_steps(const shell& session) {
  if (!session.edited) return "Nothing was changed in this session.\n";
  const auto changes = session_candidate_changes(false);
  if (!changes) return {};
  if (changes->empty()) return "The candidate has no changes.\n";
  return "The candidate has the changes of an earlier commit only: 'show diff' lists them.\n";
}

int show_changes(const invocation& run) {
  const std::string user = run.session.user != nullptr ? run.session.user->name : std::string();
  const auto last = session_last_steps(0);
  if (!last) return kServiceFailed;
  for (uint32 at = 0; at < last->num_steps && !run.output.is_discarding(); ++at) {
    const auto step = session_step_at(at);
    if (!step) return kServiceFailed;
    if (run.output.is_structured())
      record_step(run.output, at + 1, *step, user);
    else
      print_step(run.output, at + 1, *step, user);
  }
  if (last->num_steps == 0 && !run.output.is_structured()) run.output.text(text_without_steps(run.session));
  return kDone;
}

constexpr display kChangesShown = {kChangesDisplay, {}, "changes", false, false, "changes"};

// clang-format off
constexpr command kChangesRows[] = {
    {"show changes", "Changes of this session that 'undo' reverts", show_changes, kChangesShown, nullptr, kEveryMode, command_effect::shows_settings},
};
// clang-format on

constexpr word_help kChangesWords[] = {
    {"changes", "Changes of this session"},
};

}  // namespace

constexpr command_group kChangesCommands = {kChangesRows, kChangesWords};

}  // namespace host
