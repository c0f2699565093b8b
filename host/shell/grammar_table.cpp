// The table of commands.
#include <algorithm>
#include <iterator>

#include "shell/commands.h"
#include "shell/grammar.h"

namespace host {
namespace {

constexpr display kDetailed = {kDetailedDisplay, {}};
constexpr display kTransport = {kTransportDisplay, "transport"};
constexpr display kText = {kNoDisplay, {}};

constexpr command kCommands[] = {
    {"show interface [RANGE]", "Settings, state and traffic of interfaces, in detail", show_interface, kDetailed, 1},
    {"show transport", "Messages between this shell and the services", show_transport, kTransport},
    {"help", "All commands", help, kText},
    {"exit", "Leave the shell", leave, kText},
    {"quit", "Leave the shell", leave, kText},
};

struct word_help {
  std::string_view word;
  std::string_view help;
};

constexpr word_help kWords[] = {
    {"exit", "Leave the shell"},
    {"help", "Show all commands"},
    {"interface", "Interfaces: settings, state and traffic"},
    {"quit", "Leave the shell"},
    {"show", "Show what the switch knows"},
    {"transport", "Messages between this shell and the services"},
};

constexpr std::string_view find_help(std::string_view word) {
  for (const word_help& known : kWords) {
    if (known.word == word) return known.help;
  }
  return {};
}

constexpr bool every_word_has_help() {
  for (const command& entry : kCommands) {
    for (std::size_t i = 0; i < entry.syntax.num_words; ++i) {
      const syntax_word& word = entry.syntax.words[i];
      if (!word.is_range && find_help(word.text).empty()) return false;
    }
  }
  return true;
}
static_assert(every_word_has_help());

}  // namespace

std::span<const command> all_commands() { return kCommands; }

std::string_view help_of_word(std::string_view word) { return find_help(word); }

}  // namespace host
