// The table of commands.
#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "shell/commands/configure/setting_commands.h"
#include "shell/commands/handlers.h"
#include "shell/grammar/grammar.h"
#include "shell/library/views.h"

namespace host {
namespace {

constexpr display kDetailed = {kDetailedDisplay, {}, "detailed", false, true};
constexpr display kBrief = {kBriefDisplay, {}, "brief", false, true};
constexpr display kStatus = {kStatusDisplay, {}, "status", false, true};
constexpr display kErrorStatus = {kErrorStatusDisplay, {}, "error_status", false, true};
constexpr display kDescription = {kDescriptionDisplay, {}, "description", false, true};
constexpr display kMacAddress = {kMacAddressDisplay, {}, "mac_address", false, true};
constexpr display kIfIndex = {kIfIndexDisplay, {}, "ifindex", false, true};
constexpr display kDebounce = {kDebounceDisplay, {}, "debounce", false, true};
constexpr display kCapabilities = {kCapabilityDisplay, {}, "capabilities", false, true};
constexpr display kCounters = {kCountersDisplay, {}, "counters", false, true};
constexpr display kRates = {kRatesDisplay, {}, "rates", false, true};
constexpr display kDetailedCounters = {kDetailedCountersDisplay, {}, "detailed_counters", false, true};
constexpr display kAllCounters = {kAllCountersDisplay, {}, "all_counters", false, true};
constexpr display kErrorCounters = {kErrorCountersDisplay, {}, "error_counters", false, true};
constexpr display kTrunkCounters = {kTrunkCountersDisplay, {}, "trunk_counters", false, true};
constexpr display kStormControl = {kStormControlDisplay, {}, "storm_control", false, true};
constexpr display kFlowControl = {kFlowControlDisplay, {}, "flow_control", false, true};
constexpr display kTransport = {kTransportDisplay, "transport", "transport"};
constexpr display kTransceiver = {kTransceiverDisplay, {}, "transceiver", true, true};
constexpr display kTransceiverDetails = {kTransceiverDetailsDisplay, {}, "transceiver_details", true, true};
constexpr display kCalibration = {kCalibrationDisplay, {}, "transceiver_calibrations", true, true};
constexpr display kTrunk = {kTrunkDisplay, {}, "trunk", false, true};
constexpr display kTrunkDetail = {kSwitchportDisplay, {}, "trunk_detail", false, true};
constexpr display kAllowedVlans = {kAllowedVlansDisplay, {}, "trunk_allowed", false, true};
constexpr display kForwardingVlans = {kForwardingVlansDisplay, {}, "trunk_forwarding", false, true};
constexpr display kOverview = {kOverviewDisplay, {}, "overview", false, true};
constexpr display kPanel = {kPanelDisplay, {}, "panel", true, true, "ports"};
constexpr display kVersion = {kVersionDisplay, "version", "version"};
constexpr display kClock = {kClockDisplay, "clock", "clock"};
constexpr display kHistory = {kHistoryDisplay, {}, "history", false, false, "commands"};
constexpr display kText = kSentences;
constexpr display kKernelMap = {kKernelMapDisplay, {}, "kernel_map", false, false, "devices"};
constexpr display kChanges = {kChangesDisplay, {}, "changes", false, false, "changes"};
constexpr display kDiff = {kDiffDisplay, {}, "diff", true, false, "differences"};
constexpr display kModuleResources = {kModuleResourcesDisplay, {}, "module_resources", false, false, "resources", true};
constexpr display kStartupConfig = {kStartupConfigDisplay, {}, "startup_config", false, false, "commands"};
constexpr display kRunningConfig = {kRunningConfigDisplay, {}, "running_config", false, false, "commands"};

// clang-format off
constexpr command kGeneralCommands[] = {
    {"show interface [RANGE]", "Settings, state and traffic, in detail", show_interface, kDetailed, DISPLAY_DETAIL},
    {"show interface [RANGE] overview", "State, VLAN, speed, rates and errors, as wide as the terminal", show_overview, kOverview},
    {"show interface [RANGE] brief", "State, address, speed and MTU", show_interface, kBrief, DISPLAY_BRIEF},
    {"show interface [RANGE] status", "State, VLAN, duplex, speed and type", show_interface, kStatus, DISPLAY_STATUS},
    {"show interface [RANGE] status up", "The same of those that are up", show_interface, kStatus, DISPLAY_STATUS_UP},
    {"show interface [RANGE] status down", "The same of those that are switched off", show_interface, kStatus, DISPLAY_STATUS_ADMIN_DOWN},
    {"show interface [RANGE] status inactive", "The same of those that are inactive", show_interface, kStatus, DISPLAY_STATUS_INACTIVE},
    {"show interface [RANGE] status module MODULE", "The same of the ports of a module", show_interface, kStatus, DISPLAY_STATUS_OF_MODULE},
    {"show interface [RANGE] status err-disabled", "Ports shut by an error", show_interface, kErrorStatus, DISPLAY_ERROR_DISABLED},
    {"show interface [RANGE] description", "Descriptions", show_interface, kDescription, DISPLAY_DESCRIPTION},
    {"show interface [RANGE] mac-address", "Hardware addresses", show_interface, kMacAddress, DISPLAY_MAC_ADDRESS},
    {"show interface [RANGE] ifindex", "Interface indexes", show_interface, kIfIndex, DISPLAY_IF_INDEX},
    {"show interface [RANGE] debounce", "How long a link must be down to count", show_interface, kDebounce, DISPLAY_DEBOUNCE},
    {"show interface [RANGE] capabilities", "What the ports can do", show_interface, kCapabilities, DISPLAY_CAPABILITIES},
    {"show interface [RANGE] detailed", "Settings, state and traffic, with loads and times computed", show_interface, kDetailed, COMPUTED_DETAILED_VIEW},
    {"show interface [RANGE] counters", "Bytes and packets received and sent", show_interface, kCounters, DISPLAY_RECEIVED},
    {"show interface [RANGE] counters brief", "Rates of bytes and packets", show_interface, kRates, DISPLAY_COUNTERS_BRIEF},
    {"show interface [RANGE] counters detailed", "The counters that are not 0", show_interface, kDetailedCounters, DISPLAY_COUNTERS_NONZERO},
    {"show interface [RANGE] counters detailed all", "Every counter", show_interface, kAllCounters, DISPLAY_COUNTERS_ALL},
    {"show interface [RANGE] counters errors", "Errors in three tables", show_interface, kErrorCounters, DISPLAY_ERRORS_FIRST},
    {"show interface [RANGE] counters errors module MODULE", "The first table of the ports of a module", show_interface, kErrorCounters, DISPLAY_ERRORS_FIRST_OF_MODULE},
    {"show interface [RANGE] counters trunk", "Packets on trunks", show_interface, kTrunkCounters, DISPLAY_TRUNK_COUNTERS},
    {"show interface [RANGE] counters storm-control", "Storm control: levels and what was discarded", show_interface, kStormControl, DISPLAY_STORM_CONTROL},
    {"show interface [RANGE] flowcontrol", "Flow control: settings and pause frames", show_interface, kFlowControl, DISPLAY_FLOW_CONTROL},
    {"show interface [RANGE] flowcontrol module MODULE", "The same of the ports of a module", show_interface, kFlowControl, DISPLAY_FLOW_CONTROL_OF_MODULE},
    {"show interface [RANGE] transceiver", "Transceivers: identity, state and measured values", show_interface, kTransceiver, DISPLAY_TRANSCEIVER},
    {"show interface [RANGE] transceiver details", "The same with the limits of the values", show_interface, kTransceiverDetails, DISPLAY_TRANSCEIVER_DETAIL},
    {"show interface [RANGE] transceiver calibrations", "Their identity, state and calibration constants", show_interface, kCalibration, DISPLAY_TRANSCEIVER_CALIBRATION},
    {"show interface [RANGE] trunk", "Trunks: native VLAN, status, port-channel", show_interface, kTrunk, DISPLAY_TRUNK_STATUS},
    {"show interface [RANGE] trunk allowed", "The VLANs that trunks carry", show_interface, kAllowedVlans, DISPLAY_TRUNK_ALLOWED_VLANS},
    {"show interface [RANGE] trunk forwarding", "The VLANs in which spanning tree lets them forward", show_interface, kForwardingVlans, DISPLAY_TRUNK_FORWARDING_VLANS},
    {"show interface [RANGE] trunk detail", "Trunks in detail", show_interface, kTrunkDetail, DISPLAY_TRUNK_DETAIL},
    {"show interface [RANGE] trunk detail module MODULE", "The same of the ports of a module", show_interface, kTrunkDetail, DISPLAY_TRUNK_DETAIL_OF_MODULE},
    {"show interface [RANGE] trunk detail native-vlan VLANS", "The same of those with such a native VLAN", show_interface, kTrunkDetail, DISPLAY_TRUNK_DETAIL_OF_VLANS},
    {"show transceiver", "The transceivers of all ports", show_transceivers, kTransceiver, DISPLAY_TRANSCEIVER},
    {"show transceiver details", "The same with the limits of their values", show_transceivers, kTransceiverDetails, DISPLAY_TRANSCEIVER_DETAIL},
    {"show transceiver calibrations", "Their calibration constants", show_transceivers, kCalibration, DISPLAY_TRANSCEIVER_CALIBRATION},
    {"show module MODULE resources", "How a module shares out buffers and bandwidth", show_module_resources, kModuleResources},
    {"show panel", "The fronts of the modules, with the state of each port", show_panel, kPanel},
    {"show kernel-map", "Which device of the kernel an interface is", show_kernel_map, kKernelMap},
    {"watch INTERVAL COMMAND", "Repeat a show command until Ctrl-C, with the rates of the traffic that it counts", nullptr, kText},
    {"clear counters", "Clear the counters of all interfaces", clear_all, kText},
    {"clear counters all", "The same", clear_all, kText},
    {"clear counters interface RANGE", "Those of some interfaces", clear_range, kText},
    {"clear counters ethernet", "Those of all Ethernet ports", clear_ethernet, kText},
    {"clear counters port-channel", "Those of all port-channels", clear_port_channels, kText},
    {"clear counters loopback", "Those of all loopbacks", clear_loopbacks, kText},
    {"clear counters in-band", "Those of the in-band interface, when the user may", clear_inband, kText},
    {"clear counters mgmt PORT", "Those of a management port", clear_management, kText},
    {"clock advance SECONDS", "Move the shell's clock on, and the traffic with it", advance_clock, kText},
    {"show running-config", "The commands that make the settings of all interfaces", show_running_config, kRunningConfig},
    {"show running-config interface RANGE", "Those of some interfaces", show_running_config, kRunningConfig},
    {"show startup-config", "The commands that were stored under the name of the switch", show_startup_config, kStartupConfig},
    {"copy running-config startup-config", "Keep the settings under the name of the switch", copy_running_config, kText},
    {"write", "The same", copy_running_config, kText},
    {"copy startup-config running-config", "Run the commands of the startup-config", nullptr, kText},
    {"copy FILE running-config", "Run the commands of a file", nullptr, kText},
    {"copy running-config FILE", "Write the settings to a file", copy_running_config, kText},
    {"configure [terminal]", "Go to the configuration", configure, kText, 0, kExecMode},
    {"configure candidate", "The same, to collect settings and to commit them together", configure_candidate, kText, 0, kExecMode},
    {"configure dry-run", "The same, to try settings and change none", configure_dry_run, kText, 0, kExecMode},
    {"interface RANGE", "Choose interfaces, creating missing loopbacks and sub-interfaces", choose_interfaces, kText, 0, kConfigureMode | kInterfaceMode},
    {"no interface RANGE", "Delete loopbacks and sub-interfaces of ports", delete_interfaces, kText, 0, kConfigureMode | kInterfaceMode},
    {"undo [CHANGES]", "Take back the last settings, creations or deletions", undo, kSettingShown},
    {"show changes", "What was set, created and deleted in this session, as 'undo' takes it back", show_changes, kChanges},
    {"show diff", "What a commit of the candidate would change", show_diff, kDiff},
    {"commit", "Make the settings of the candidate", commit, kSettingShown, 0, kConfigureMode | kInterfaceMode},
    {"commit confirmed SECONDS", "The same, rolled back after so long without 'confirm'", commit_confirmed, kSettingShown, 0, kConfigureMode | kInterfaceMode},
    {"confirm", "Keep what 'commit confirmed' made", confirm_commit, kText, 0, kConfigureMode | kInterfaceMode},
    {"discard", "Forget the changes of the candidate", discard, kText, 0, kConfigureMode | kInterfaceMode},
    {"do COMMAND", "Run a command of the exec mode", nullptr, kText, 0, kConfigureMode | kInterfaceMode},
    {"show transport", "Messages between this shell and the services", show_transport, kTransport},
    {"show history", "The last lines that were entered at the prompt", show_history, kHistory},
    {"show version", "Versions, the platform and the command library", show_version, kVersion},
    {"show clock", "The time of the shell's clock, in UTC", show_clock, kClock},
    {"terminal length LINES", "Stop after so many lines in this session; 0: never", set_screen_lines, kText},
    {"help", "All commands", help, kText},
    {"find WORD", "The commands that have a word in their words or help", find_commands, kText},
    {"end", "Leave the configuration", leave_configuration, kText, 0, kConfigureMode | kInterfaceMode},
    {"exit", "Leave the configuration of interfaces, the configuration, the shell", leave_mode, kText},
    {"quit", "Leave the shell", leave, kText},
};
// clang-format on

// All of them: those of the interface mode last.
constexpr auto kCommands = [] {
  constexpr std::size_t kGeneral = std::size(kGeneralCommands);
  return [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
    return std::array{(kIndex < kGeneral ? kGeneralCommands[kIndex < kGeneral ? kIndex : 0]
                                         : kSettingCommands[kIndex < kGeneral ? 0 : kIndex - kGeneral])...};
  }
  (std::make_index_sequence<kGeneral + std::size(kSettingCommands)>());
}();

struct word_help {
  std::string_view word;
  std::string_view help;
};

constexpr word_help kWords[] = {
    {"add", "Put VLANs to them"},
    {"advance", "Move it on"},
    {"all", "Every one of them"},
    {"allowed", "The VLANs that they carry"},
    {"auto", "As both ends agree"},
    {"bb-credit", "Credits for frames received"},
    {"bb-scn", "Count credits that were lost"},
    {"beacon", "Let the ports blink"},
    {"bit-errors", "Bit errors"},
    {"brief", "A line for each"},
    {"calibrations", "Calibration constants"},
    {"candidate", "Collect settings and commit them together"},
    {"capabilities", "What the ports can do"},
    {"changes", "What was changed in this session"},
    {"channel-group", "Put ports into a port-channel"},
    {"clear", "Let counters start from 0"},
    {"clock", "The clock of this shell"},
    {"commit", "Make the settings of the candidate"},
    {"configure", "Go to the configuration"},
    {"confirm", "Keep what 'commit confirmed' made"},
    {"confirmed", "Roll back without 'confirm'"},
    {"copy", "Write settings to a file, or run those of one"},
    {"counters", "Counters of interfaces"},
    {"debounce", "How long a link must be down to count"},
    {"default", "The usual value"},
    {"description", "Descriptions"},
    {"detail", "In detail"},
    {"detailed", "In detail"},
    {"details", "With the limits of the values"},
    {"diff", "What a commit of the candidate would change"},
    {"discard", "Forget the changes of the candidate"},
    {"do", "Run a command of the exec mode"},
    {"dot1q", "Tags of VLANs"},
    {"down", "Interfaces that are switched off, or stay down"},
    {"dry-run", "Try settings without changing anything"},
    {"duplex", "Full, half or auto"},
    {"encapsulation", "How frames are packed"},
    {"end", "Leave the configuration"},
    {"err-disabled", "Only ports shut by an error"},
    {"errors", "Only errors"},
    {"ethernet", "All Ethernet ports"},
    {"ethertype", "The number of VLAN tags"},
    {"exit", "Leave the mode, or the shell"},
    {"extended", "Credits for long distances"},
    {"failure", "The link fails"},
    {"find", "Find commands"},
    {"forwarding", "The VLANs in which spanning tree lets them forward"},
    {"flowcontrol", "Flow control and pause frames"},
    {"help", "Show all commands"},
    {"history", "Lines entered at the prompt"},
    {"host", "Ports to hosts"},
    {"ifindex", "Interface indexes"},
    {"ignore", "Leave a port up in spite of errors"},
    {"in-band", "The in-band interface"},
    {"inactive", "Only interfaces that are inactive"},
    {"ingress", "They also take packets"},
    {"interface", "Interfaces: settings, state and traffic"},
    {"kernel-map", "Devices of the kernel"},
    {"learning", "They also learn addresses"},
    {"length", "Lines of a screen"},
    {"link", "The link of a port"},
    {"loopback", "All loopbacks"},
    {"mac-address", "Hardware addresses"},
    {"max", "The fastest speed"},
    {"mgmt", "A management port"},
    {"mode", "What kind of port it is"},
    {"module", "A module, or only its ports"},
    {"monitor", "Ports that copies of packets are sent to"},
    {"mtu", "The largest packet"},
    {"multiplier", "A credit for so many frames"},
    {"name", "The description of the ports"},
    {"native", "The VLAN without tags"},
    {"native-vlan", "Only those with such a native VLAN"},
    {"no", "Take a setting back"},
    {"none", "Not any"},
    {"off", "Off"},
    {"on", "On"},
    {"out-of-service", "Take the ports out of service"},
    {"overview", "One row for each interface"},
    {"panel", "The fronts of the modules"},
    {"performance-buffers", "Buffers for fast ports"},
    {"port", "What a port does"},
    {"port-channel", "All port-channels"},
    {"private-vlan", "Ports of a private VLAN"},
    {"promiscuous-mode", "Whose packets the ports take"},
    {"quit", "Leave the shell"},
    {"receive", "Packets that ask the port to stop"},
    {"receive-buffer-size", "The largest frame"},
    {"remove", "Take VLANs from them"},
    {"resources", "Buffers and bandwidth"},
    {"running-config", "The settings as they are now"},
    {"send", "Packets that ask the other end to stop"},
    {"show", "Show what the switch knows"},
    {"shutdown", "Switch the interfaces off"},
    {"speed", "Mbit/s, or auto"},
    {"startup-config", "The settings that were stored"},
    {"status", "A line for each: state, VLAN, duplex, speed, type"},
    {"storm-control", "Levels of storm control and what was discarded"},
    {"switchport", "Switched ports and their settings"},
    {"terminal", "This terminal"},
    {"transceiver", "Modules in ports"},
    {"transport", "Messages between this shell and the services"},
    {"trunk", "Trunks"},
    {"undo", "Take back the last setting, creation or deletion"},
    {"version", "Versions and the platform"},
    {"vlan", "VLANs"},
    {"up", "Only interfaces that are up"},
    {"watch", "Repeat a show command"},
    {"write", "Store the settings as the startup-config"},
};

// A word of a setting's value has the help of the form that ends with it.
constexpr std::string_view find_help_of_form(std::string_view word) {
  for (const setting& of : kSettings)
    for (const setting_form& it : of.forms)
      if (it.kind == form_kind::word && it.syntax.substr(it.syntax.rfind(' ') + 1) == word) return it.help;
  return {};
}

constexpr std::string_view find_help(std::string_view word) {
  for (const word_help& known : kWords) {
    if (known.word == word) return known.help;
  }
  return find_help_of_form(word);
}

constexpr bool every_word_has_help() {
  for (const command& entry : kCommands) {
    for (std::size_t i = 0; i < entry.syntax.num_words; ++i) {
      const syntax_word& word = entry.syntax.words[i];
      if (word.kind == syntax_kind::literal && find_help(word.text).empty()) return false;
    }
  }
  return true;
}
static_assert(every_word_has_help());

// The table with what was added.
std::vector<command>& command_list() {
  static std::vector<command> commands(kCommands.begin(), kCommands.end());
  return commands;
}

std::vector<word_help>& added_words() {
  static std::vector<word_help> words;
  return words;
}

// With how many equal words two commands begin.
std::size_t num_common_words(const command_syntax& one, const command_syntax& other) {
  std::size_t count = 0;
  while (count < std::min(one.num_words, other.num_words) && one.words[count].text == other.words[count].text) ++count;
  return count;
}

}  // namespace

std::span<const command> all_commands() { return command_list(); }

std::string_view help_of_word(std::string_view word) {
  const std::string_view known = find_help(word);
  if (!known.empty()) return known;
  const auto added = std::find_if(added_words().begin(), added_words().end(),
                                  [word](const word_help& entry) { return entry.word == word; });
  return added == added_words().end() ? std::string_view() : added->help;
}

void add_command(const command& added) {
  std::vector<command>& commands = command_list();
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
