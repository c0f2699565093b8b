// The table of commands.
#include <algorithm>
#include <vector>

#include "shell/commands/configure/setting_commands.h"
#include "shell/commands/group.h"
#include "shell/grammar/syntax.h"
#include "shell/library/views.h"

namespace host {
namespace {

constexpr const command_group* kGroups[] = {
    &kInterfaceCommands,       &kOverviewCommands,  &kCounterCommands,       &kDriverCounterCommands,
    &kHardwareCommands,        &kTrunkCommands,     &kTransceiverCommands,   &kModuleCommands,
    &kAddressCommands,         &kNeighborCommands,  &kLldpCommands,          &kSpanningTreeCommands,
    &kPanelCommands,           &kKernelMapCommands, &kWatchCommands,         &kEventCommands,
    &kClearCommands,           &kClockCommands,     &kConfigurationCommands, &kModeCommands,
    &kChosenInterfaceCommands, &kUndoCommands,      &kChangesCommands,       &kCandidateCommands,
    &kTransportCommands,       &kSessionsCommands,  &kVersionCommands,       &kHistoryCommands,
    &kTerminalCommands,        &kHelpCommands,      &kSettingGroup,
};

// The help of words that several groups have.
constexpr word_help kCommonWords[] = {
    {"all", "All of them"},
    {"allowed", "VLANs that trunks carry"},
    {"brief", "One line for each interface"},
    {"configure", "Enter the configuration"},
    {"counters", "Counters of interfaces"},
    {"description", "Descriptions"},
    {"detail", "In detail"},
    {"detailed", "In detail"},
    {"down", "Interfaces that are down"},
    {"end", "Leave the configuration"},
    {"errors", "Only errors"},
    {"flowcontrol", "Flow control and pause frames"},
    {"interface", "Interfaces: settings, state and traffic"},
    {"module", "A module or its ports"},
    {"neighbors", "Neighbors on the links"},
    {"no", "Remove a setting or restore its default"},
    {"port-channel", "All port-channels"},
    {"show", "Show information"},
    {"terminal", "Settings of this terminal"},
    {"trunk", "Trunks"},
    {"up", "Only interfaces that are up"},
};

// The table with added commands.
std::vector<command>& commands_and_added() {
  static std::vector<command> commands = [] {
    std::vector<command> all;
    for (const command_group* const group : kGroups)
      all.insert(all.end(), group->commands.begin(), group->commands.end());
    return all;
  }();
  return commands;
}

std::vector<word_help>& added_words() {
  static std::vector<word_help> words;
  return words;
}

std::string_view find_help(std::span<const word_help> words, std::string_view word) {
  const auto known = std::find_if(words.begin(), words.end(), [word](const word_help& it) { return it.word == word; });
  return known == words.end() ? std::string_view() : known->help;
}

// The number of words that two commands share at their beginning.
std::size_t num_common_words(const command_syntax& one, const command_syntax& other) {
  std::size_t count = 0;
  while (count < std::min(one.num_words, other.num_words) && one.words[count].text == other.words[count].text) ++count;
  return count;
}

}  // namespace

std::span<const command> all_commands() { return commands_and_added(); }

std::string_view help_of_word(std::string_view word) {
  if (const std::string_view help = find_help(kCommonWords, word); !help.empty()) return help;
  for (const command_group* const group : kGroups)
    if (const std::string_view help = find_help(group->words, word); !help.empty()) return help;
  return find_help(added_words(), word);
}

void add_command(const command& added) {
  std::vector<command>& commands = commands_and_added();
  auto place = commands.begin();
  std::size_t most = 0;
  for (auto other = commands.begin(); other != commands.end(); ++other) {
    const std::size_t common = num_common_words(other->syntax, added.syntax);
    if (common < most) continue;
    most = common;
    place = other + 1;
  }
  commands.insert(place, added);
}

void add_word(std::string_view word, std::string_view help) { added_words().push_back({word, help}); }

}  // namespace host
