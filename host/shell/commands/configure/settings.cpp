// Settings of the chosen interfaces.
#include <algorithm>
#include <array>
#include <string>

#include "messages/calls/command_account.h"
#include "messages/calls/session.h"
#include "shell/commands/configure/own_connection.h"
#include "shell/commands/configure/setting_commands.h"
#include "shell/commands/configure/setting_outcome.h"
#include "shell/library/command_queue.h"
#include "shell/library/interface_kinds.h"
#include "shell/library/selection.h"
#include "shell/output/command_output.h"
#include "shell/platform/prompts.h"
#include "shell/session/modes.h"
#include "switch/range_text.h"

namespace host {
namespace {

// ---- The values of a setting's tokens, which must outlive the call.

struct token_values {
  std::array<uint32, kMaxSettingTokens> numbers{};
  uint16 half_number = 0;
  std::string text;
};

void* value_of(const setting_token& token, const command_line& line, uint32& number, token_values& values) {
  switch (token.holds) {
    case token_value::none: return nullptr;
    case token_value::of_form: number = line.what->form->value; return &number;
    case token_value::number: number = line.number.value_or(0); return &number;
    case token_value::half_number:
      values.half_number = static_cast<uint16>(line.number.value_or(0));
      return &values.half_number;
    case token_value::text: values.text = line.free_text; return values.text.data();
  }
  return nullptr;
}

void add_tokens(const command_line& line, command_parameters& parameters, token_values& values) {
  parameters.begin_setting(line.is_no);
  const setting_tokens& tokens = line.what->tokens;
  for (std::size_t i = 0; i < tokens.count; ++i)
    parameters.add_token(tokens.token[i].id, value_of(tokens.token[i], line, values.numbers[i], values));
}

int32 worse(int32 one, int32 other) { return one == kForbiddenSetting || one == 1 ? one : other; }

// Calls the command library for a setting of all ranges: one call for as many of them as an argument holds. A command
// that is refused or not confirmed sends nothing, and ends with its first call. Returns the worst result.
int32 set_ranges(const invocation& run, mts_q_handle_t q, const setting_results& results) {
  const kept_answers answers;
  const configured_interfaces& configured = run.session.configured;
  int32 worst = 0;
  for (std::span<const vsh_intf_mono_range_t> left = configured.ranges; !left.empty();) {
    command_parameters parameters(run.session.library, run.session.user, q, kNoDisplayId);
    token_values values;
    add_tokens(run.line, parameters, values);
    const auto block = left.first(std::min<std::size_t>(left.size(), PARAM_MAX_RANGES));
    worst = worse(worst, run.session.library.set_port_config(parameters.for_ranges(configured.mask, block)));
    if (!results.was_asked) break;
    left = left.subspan(block.size());
  }
  return worst;
}

}  // namespace

int set_ports(const invocation& run) {
  const std::string setting = words_of_command(run.line);
  const ports_before before(run);
  if (!may_go_on(run)) return before.report(setting, {}, kUnconfirmed), kNotPermitted;
  const command_queue q;
  command_account account(q.handle);
  session_begin_changes(setting);
  const int32 worst = set_ranges(run, q.handle, account.settings);
  run.output.flush();
  before.report(setting, account.settings.ports, reason_of_silence(worst, account.settings));
  return exit_code_of(worst, account.settings);
}

namespace {

// The words of values have the help of the form that ends with them.
constexpr auto kWordsOfForms = [] {
  std::array<word_help, kNumSettingForms> words{};
  std::size_t count = 0;
  for_each_form([&](const setting&, const setting_form& form) {
    const bool is_word = form.kind == form_kind::word;
    words[count++] = is_word ? word_help{form.syntax.substr(form.syntax.rfind(' ') + 1), form.help} : word_help{};
  });
  return words;
}();

constexpr word_help kOtherWords[] = {
    {"add", "Add VLANs"},
    {"auto", "Negotiate with the other end"},
    {"bb-credit", "Credits for frames received"},
    {"bb-scn", "Detect lost credits"},
    {"beacon", "Blink the port LEDs"},
    {"bit-errors", "Bit errors"},
    {"channel-group", "Add the ports to a port-channel"},
    {"default", "Default value"},
    {"dot1q", "VLAN tags"},
    {"duplex", "Full, half or auto"},
    {"encapsulation", "Encapsulation of frames"},
    {"ethertype", "Ethertype of VLAN tags"},
    {"extended", "Credits for long distances"},
    {"failure", "Link failure"},
    {"host", "Ports to hosts"},
    {"ignore", "Keep ports up despite errors"},
    {"ingress", "Also receive packets"},
    {"learning", "Also learn addresses"},
    {"link", "Link of a port"},
    {"max", "Highest speed"},
    {"mode", "Port mode"},
    {"monitor", "Destination ports of mirrored packets"},
    {"mtu", "Largest packet"},
    {"multiplier", "Frames for each credit"},
    {"name", "Description of the ports"},
    {"native", "Untagged VLAN"},
    {"none", "None"},
    {"off", "Off"},
    {"on", "On"},
    {"out-of-service", "Take the ports out of service"},
    {"performance-buffers", "Buffers for fast ports"},
    {"port", "Behaviour of a port"},
    {"private-vlan", "Ports of a private VLAN"},
    {"promiscuous-mode", "Packets that the ports accept"},
    {"receive", "Received pause frames"},
    {"receive-buffer-size", "Largest frame"},
    {"remove", "Remove VLANs"},
    {"send", "Sent pause frames"},
    {"shutdown", "Disable the interfaces"},
    {"speed", "Mbit/s, or auto"},
    {"switchport", "Switched ports and their settings"},
    {"vlan", "VLANs"},
};

// Words with their own help first.
constexpr auto kSettingWords = [] {
  std::array<word_help, std::size(kOtherWords) + kWordsOfForms.size()> words{};
  std::copy(kWordsOfForms.begin(), kWordsOfForms.end(),
            std::copy(std::begin(kOtherWords), std::end(kOtherWords), words.begin()));
  return words;
}();

}  // namespace

constexpr command_group kSettingGroup = {kSettingCommands, kSettingWords};

}  // namespace host
