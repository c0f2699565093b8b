// The table of commands.
#include <algorithm>
#include <iterator>

#include "shell/commands.h"
#include "shell/grammar.h"

namespace host {
namespace {

constexpr display kDetailed = {kDetailedDisplay, {}, "detailed"};
constexpr display kBrief = {kBriefDisplay, {}, "brief"};
constexpr display kStatus = {kStatusDisplay, {}, "status"};
constexpr display kErrorStatus = {kErrorStatusDisplay, {}, "error_status"};
constexpr display kDescription = {kDescriptionDisplay, {}, "description"};
constexpr display kMacAddress = {kMacAddressDisplay, {}, "mac_address"};
constexpr display kIfIndex = {kIfIndexDisplay, {}, "ifindex"};
constexpr display kDebounce = {kDebounceDisplay, {}, "debounce"};
constexpr display kCapabilities = {kCapabilityDisplay, {}, "capabilities"};
constexpr display kTransport = {kTransportDisplay, "transport", "transport"};
constexpr display kText = {kNoDisplay, {}};

// clang-format off
constexpr command kCommands[] = {
    {"show interface [RANGE]", "Settings, state and traffic, in detail", show_interface, kDetailed, 1},
    {"show interface [RANGE] brief", "State, address, speed and MTU", show_interface, kBrief, 5},
    {"show interface [RANGE] status", "State, VLAN, duplex, speed and type", show_interface, kStatus, 2},
    {"show interface [RANGE] status up", "The same of those that are up", show_interface, kStatus, 28},
    {"show interface [RANGE] status down", "The same of those that are switched off", show_interface, kStatus, 24},
    {"show interface [RANGE] status inactive", "The same of those that are inactive", show_interface, kStatus, 26},
    {"show interface [RANGE] status module MODULE", "The same of the ports of a module", show_interface, kStatus, 27},
    {"show interface [RANGE] status err-disabled", "Ports shut by an error", show_interface, kErrorStatus, 25},
    {"show interface [RANGE] description", "Descriptions", show_interface, kDescription, 4},
    {"show interface [RANGE] mac-address", "Hardware addresses", show_interface, kMacAddress, 36},
    {"show interface [RANGE] ifindex", "Interface indexes", show_interface, kIfIndex, 104},
    {"show interface [RANGE] debounce", "How long a link must be down to count", show_interface, kDebounce, 22},
    {"show interface [RANGE] capabilities", "What the ports can do", show_interface, kCapabilities, 13},
    {"show transport", "Messages between this shell and the services", show_transport, kTransport},
    {"help", "All commands", help, kText},
    {"exit", "Leave the shell", leave, kText},
    {"quit", "Leave the shell", leave, kText},
};
// clang-format on

struct word_help {
  std::string_view word;
  std::string_view help;
};

constexpr word_help kWords[] = {
    {"brief", "A line for each: state, address, speed, MTU"},
    {"capabilities", "What the ports can do"},
    {"debounce", "How long a link must be down to count"},
    {"description", "Descriptions"},
    {"down", "Only interfaces that are switched off"},
    {"err-disabled", "Only ports shut by an error"},
    {"exit", "Leave the shell"},
    {"help", "Show all commands"},
    {"ifindex", "Interface indexes"},
    {"inactive", "Only interfaces that are inactive"},
    {"interface", "Interfaces: settings, state and traffic"},
    {"mac-address", "Hardware addresses"},
    {"module", "Only the ports of a module"},
    {"quit", "Leave the shell"},
    {"show", "Show what the switch knows"},
    {"status", "A line for each: state, VLAN, duplex, speed, type"},
    {"transport", "Messages between this shell and the services"},
    {"up", "Only interfaces that are up"},
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
      if (!word.is_range && !word.is_number && find_help(word.text).empty()) return false;
    }
  }
  return true;
}
static_assert(every_word_has_help());

}  // namespace

std::span<const command> all_commands() { return kCommands; }

std::string_view help_of_word(std::string_view word) { return find_help(word); }

}  // namespace host
