// "show changes": the changes of this session, as commands, with the previous ones.
#include <fmt/format.h>

#include <deque>
#include <map>
#include <string>

#include "settings/change_journal.h"
#include "shell/commands/configure/setting_differences.h"
#include "shell/commands/group.h"
#include "shell/grammar/range_text.h"
#include "shell/library/interface_kinds.h"
#include "shell/output/command_output.h"
#include "shell/output/rendering.h"
#include "shell/output/schema/schema.h"
#include "switch/model.h"

namespace host {
namespace {

// The settings of a port after a step: those before a later step, or the current ones.
command_list commands_after(const std::deque<change_step>& steps, std::size_t at, const interface& port) {
  for (std::size_t later = at + 1; later < steps.size(); ++later)
    if (const auto found = steps[later].before.find(port.if_index); found != steps[later].before.end())
      return commands_with(port, found->second);
  return commands_of(port);
}

// The port that a step changed, as it is now or was when a later step deleted it.
const interface* port_of(const std::deque<change_step>& steps, std::size_t at, const machine& of, if_index_t if_index) {
  for (std::size_t later = at + 1; later < steps.size(); ++later)
    for (const interface& deleted : steps[later].deleted)
      if (deleted.if_index == if_index) return &deleted;
  return of.find(if_index);
}

std::map<if_index_t, setting_difference> differences(const std::deque<change_step>& steps, std::size_t at,
                                                     const machine& of) {
  const change_step& step = steps[at];
  std::map<if_index_t, setting_difference> found;
  for (const auto& [if_index, settings] : step.before)
    if (const interface* const port = port_of(steps, at, of, if_index); port != nullptr)
      found[if_index] = difference_between(commands_with(*port, settings), commands_after(steps, at, *port));
  for (const if_index_t it : step.created) found[it] = {{}, {"interface " + range_text({&it, 1})}};
  for (const interface& it : step.deleted) found[it.if_index] = {{"interface " + range_text({&it.if_index, 1})}, {}};
  return found;
}

void print_step(command_output& output, std::size_t number, const change_step& step, const std::string& user,
                const std::map<if_index_t, setting_difference>& found) {
  output.text(
      fmt::format("{}  {}  {}{}{}\n", number, utc_text(step.at_sec), user, user.empty() ? "" : "  ", step.command));
  for (const auto& [made, ports] : grouped(found)) {
    output.text(fmt::format("     {}\n", range_text(ports)));
    for (const std::string& line : made.before) output.text(fmt::format("     - {}\n", line));
    for (const std::string& line : made.after) output.text(fmt::format("     + {}\n", line));
  }
}

void record_step(command_output& output, std::size_t number, const change_step& step, const std::string& user,
                 const std::map<if_index_t, setting_difference>& found) {
  for (const auto& [if_index, made] : found) {
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

std::string text_without_steps(const shell& session) {
  if (!session.edited) return "Nothing was changed in this session.\n";
  if (session.edited->changes_in_trial().is_empty()) return "The candidate has no changes.\n";
  return "The candidate has the changes of an earlier commit only: 'show diff' lists them.\n";
}

int show_changes(const invocation& run) {
  const auto& steps = change_steps(the_machine());
  const std::string user = run.session.user != nullptr ? run.session.user->name : std::string();
  for (std::size_t at = 0; at < steps.size() && !run.output.is_discarding(); ++at) {
    const auto found = differences(steps, at, the_machine());
    if (run.output.is_structured())
      record_step(run.output, at + 1, steps[at], user, found);
    else
      print_step(run.output, at + 1, steps[at], user, found);
  }
  if (steps.empty() && !run.output.is_structured()) run.output.text(text_without_steps(run.session));
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
