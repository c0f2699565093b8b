// Lists of commands.
#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "base/text.h"
#include "shell/commands/group.h"
#include "shell/output/command_output.h"

namespace host {
namespace {

constexpr std::size_t kHelpWidth = 28;

// The chosen commands with their help, a line for each. Returns false when there is none.
template <typename IsChosen>
bool list_commands(const invocation& run, IsChosen is_chosen) {
  std::size_t width = 0;
  for (const command& entry : all_commands())
    if (is_chosen(entry)) width = std::max({width, kHelpWidth, entry.syntax.text.size() + 2});
  for (const command& entry : all_commands())
    if (is_chosen(entry)) run.output.text(fmt::format("  {:{}}{}\n", entry.syntax.text, width, entry.help));
  return width > 0;
}

int help(const invocation& run) {
  list_commands(run, [&run](const command& entry) { return (entry.modes & run.session.mode) != 0; });
  run.output.text(
      "\n"
      "Words may be abbreviated. TAB completes a word, ? lists what may come next.\n"
      "A RANGE looks like 'ethernet 1/1-4, 1/7', 'all except mgmt 0' or '\"e*1/[1-3]\"'. Output goes through any "
      "number of\n");
  for (const pipe_word& word : kPipeWords) {
    const std::string written = fmt::format("| {}{}", word.word, syntax_of(word.argument));
    run.output.text(fmt::format("  {:{}} {}\n", written, kHelpWidth - 1, word.help));
  }
  return kDone;
}

int find_commands(const invocation& run) {
  const std::string& part = run.line.search_word;
  const bool is_found = list_commands(run, [&part](const command& entry) {
    return contains_ignoring_case(entry.syntax.text, part) || contains_ignoring_case(entry.help, part);
  });
  if (is_found) return kDone;
  run.output.complain(fmt::format("no command has '{}' in its words or its help.", part));
  return kUsage;
}

// clang-format off
constexpr command kHelpRows[] = {
    {"help", "All commands", help, kSentences},
    {"find WORD", "Commands that contain a word", find_commands, kSentences},
};
// clang-format on

constexpr word_help kHelpWords[] = {
    {"find", "Find commands"},
    {"help", "Show all commands"},
};

}  // namespace

constexpr command_group kHelpCommands = {kHelpRows, kHelpWords};

}  // namespace host
