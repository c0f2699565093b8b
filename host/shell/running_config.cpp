#include "shell/running_config.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "platform/interface_manager.h"
#include "platform/port_config.h"
#include "service/port_config.h"
#include "service/port_manager_messages.h"
#include "shell/interface_ranges.h"
#include "shell/words.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

// ---- Commands for values.

struct word_of_value {
  uint32 value;
  const char* word;
};

template <std::size_t Count>
std::string with_word(const char* command, const word_of_value (&words)[Count], uint32 value) {
  const auto* const found =
      std::find_if(std::begin(words), std::end(words), [value](const word_of_value& it) { return it.value == value; });
  if (found != std::end(words)) return std::string(command) + " " + found->word;
  return "! no command for: " + std::string(command) + " " + std::to_string(value);
}

std::string on_or_no(bool is_on, const char* command) { return (is_on ? "" : "no ") + std::string(command); }

std::string with_number(const char* command, uint64 number) {
  return std::string(command) + " " + std::to_string(number);
}

constexpr word_of_value kModes[] = {
    {PM_PORT_MODE_ACCESS, "access"},
    {PM_PORT_MODE_TRUNK, "trunk"},
    {PM_PORT_MODE_FABRIC, "fabric"},
    {PM_PORT_MODE_PVLAN_HOST, "private-vlan host"},
    {PM_PORT_MODE_PVLAN_PROMISCUOUS, "private-vlan promiscuous"},
    {PM_PORT_MODE_AUTO, "auto"},
    {PM_PORT_MODE_E, "e"},
    {PM_PORT_MODE_F, "f"},
    {PM_PORT_MODE_FL, "fl"},
    {PM_PORT_MODE_FX, "fx"},
    {PM_PORT_MODE_NP, "np"},
    {PM_PORT_MODE_SD, "sd"},
    {PM_PORT_MODE_ST, "st"},
    {PM_PORT_MODE_TL, "tl"},
};
constexpr word_of_value kSpeeds[] = {{0, "auto"},    {1, "auto max 2000"}, {2, "auto max 4000"},
                                     {10, "10"},     {100, "100"},         {1000, "1000"},
                                     {2000, "2000"}, {4000, "4000"},       {8000, "8000"}};
constexpr word_of_value kDuplexes[] = {{1, "full"}, {2, "half"}, {3, "auto"}};
constexpr word_of_value kTrunkingModes[] = {{1, "off"}, {2, "on"}, {3, "auto"}};
constexpr word_of_value kEncapsulations[] = {{1, "normal"}, {2, "eisl"}, {3, "internal"}};
constexpr word_of_value kMonitors[] = {{1, ""}, {2, "ingress"}, {3, "ingress learning"}};

std::string describe(const interface& port) {
  return port.settings.description.empty() ? "no description"
                                           : "description " + text_argument(port.settings.description);
}

std::string credit(const interface& port) {
  constexpr uint32 kModeFx = 0x80000000, kModeE = 0x40000000;
  const std::string text = with_number("switchport bb-credit", port.settings.receive_credit & ~(kModeFx | kModeE));
  if ((port.settings.receive_credit & kModeFx) != 0) return text + " mode fx";
  return (port.settings.receive_credit & kModeE) != 0 ? text + " mode e" : text;
}

std::string buffers(const interface& port) {
  return port.settings.performance_buffers == UINT32_MAX
             ? "switchport bb-credit performance-buffers default"
             : with_number("switchport bb-credit performance-buffers", port.settings.performance_buffers);
}

std::string monitor(const interface& port) {
  if (port.settings.span_monitor.value_or(0) == 0) return "no switchport monitor";
  std::string text = with_word("switchport monitor", kMonitors, *port.settings.span_monitor);
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

// As many lines as a list of VLANs needs: a line takes a limited number of ranges.
std::string allowed_vlans(const interface& port) {
  constexpr std::size_t kRangesOfLine = 60;
  const std::string command = "switchport trunk allowed vlan ";
  const std::vector<uint16>& vlans = port.settings.allowed_vlans;
  if (vlans.empty()) return command + "none";
  std::string text;
  std::size_t ranges = 0;
  for (std::size_t first = 0; first < vlans.size(); ++ranges) {
    std::size_t last = first;
    while (last + 1 < vlans.size() && vlans[last + 1] == vlans[last] + 1) ++last;
    if (ranges == 0)
      text += command;
    else
      text += ranges % kRangesOfLine == 0 ? "\n  " + command + "add " : ",";
    text += std::to_string(vlans[first]);
    if (last != first) text += "-" + std::to_string(vlans[last]);
    first = last + 1;
  }
  return text;
}

template <uint16 kSide>
std::string pause(const interface& port) {
  const std::string side = kSide == PM_FLOW_CTRL_RECEIVE ? "receive" : "send";
  const uint32 bits = port.settings.admin_flow_control.value_or(0) & kSide;
  return "flowcontrol " + side + ((bits & PM_FLOW_CTRL_DESIRED) != 0 ? " desired" : bits != 0 ? " on" : " off");
}

std::string membership(const interface& port) {
  return port.settings.channel == 0 ? "no channel-group"
                                    : with_number("channel-group", take_apart(port.settings.channel).number);
}

// ---- Defaults.

bool carries_usual_vlans(const interface& port) {
  constexpr std::size_t kEveryVlan = 4094;
  return port.settings.allowed_vlans.size() == (port.settings.admin_mode == PM_PORT_MODE_TRUNK ? kEveryVlan : 0);
}

template <uint16 kSide>
bool has_no_pause(const interface& port) {
  return (port.settings.admin_flow_control.value_or(0) & kSide) == 0;
}

bool is_usually_routed(const interface& port) {
  const if_index_type_t kind = take_apart(port.if_index).type;
  return !port.addresses.empty() || if_index_is_sub_intf(port.if_index) != 0 || kind == IF_TYPE_LOOPBACK ||
         kind == IF_TYPE_MGMT;
}

// A port of one speed has it, whatever it is set to.
bool has_usual_speed(const interface& port) {
  const uint8 speeds = port.capabilities.speeds.value_or(0);
  return port.settings.admin_speed_mbps == 0 || (speeds != 0 && fastest_mbps(speeds) == slowest_mbps(speeds));
}

// So is what the source does not know.
template <auto Member>
bool is_as_made(const interface& port) {
  if constexpr (requires { (port.settings.*Member).has_value(); }) {
    if (!(port.settings.*Member).has_value()) return true;
  }
  return port.settings.*Member == port_settings{}.*Member;
}

// ---- The settings, in the order in which they must be made.

struct setting_in_words {
  uint8 type;  // PM_CFG_...
  bool (*is_usual)(const interface& port);
  std::string (*command)(const interface& port);
};

using set = port_settings;
using port = const interface&;

// clang-format off
constexpr setting_in_words kSettings[] = {
    {PM_CFG_NAME, is_as_made<&set::description>, describe},
    {PM_CFG_SWITCHPORT, [](port it) { return (it.settings.layer == IF_LAYER_3) == is_usually_routed(it); },
                        [](port it) { return on_or_no(it.settings.layer == IF_LAYER_2, "switchport"); }},
    {PM_CFG_PORT_MODE, [](port it) { return it.settings.admin_mode == default_port_mode(take_apart(it.if_index).type, it.settings.layer); },
                       [](port it) { return it.settings.admin_mode == 0 ? "no switchport mode" : with_word("switchport mode", kModes, it.settings.admin_mode); }},
    {PM_CFG_SPEED, has_usual_speed, [](port it) { return with_word("switchport speed", kSpeeds, it.settings.admin_speed_mbps); }},
    {PM_CFG_DUPLEX, is_as_made<&set::admin_duplex>, [](port it) { return with_word("switchport duplex", kDuplexes, it.settings.admin_duplex); }},
    {HOST_CFG_ACCESS_VLAN, is_as_made<&set::access_vlan>, [](port it) { return with_number("switchport access vlan", it.settings.access_vlan.value_or(0)); }},
    {HOST_CFG_NATIVE_VLAN, is_as_made<&set::native_vlan>, [](port it) { return with_number("switchport trunk native vlan", it.settings.native_vlan.value_or(0)); }},
    {HOST_CFG_ALLOWED_VLANS, carries_usual_vlans, allowed_vlans},
    {HOST_CFG_RECEIVE_PAUSE, has_no_pause<PM_FLOW_CTRL_RECEIVE>, pause<PM_FLOW_CTRL_RECEIVE>},
    {HOST_CFG_SEND_PAUSE, has_no_pause<PM_FLOW_CTRL_SEND>, pause<PM_FLOW_CTRL_SEND>},
    {HOST_CFG_CHANNEL, is_as_made<&set::channel>, membership},
    {PM_CFG_MTU, is_as_made<&set::mtu_bytes>, [](port it) { return with_number("switchport mtu", it.settings.mtu_bytes.value_or(0)); }},
    {PM_CFG_TRUNKING_MODE, is_as_made<&set::trunking_mode>, [](port it) { return with_word("switchport trunk mode", kTrunkingModes, it.settings.trunking_mode); }},
    {PM_CFG_ENCAP, is_as_made<&set::encapsulation>, [](port it) { return with_word("switchport encapsulation", kEncapsulations, it.settings.encapsulation); }},
    {PM_CFG_BEACON, is_as_made<&set::beacon_on>, [](port it) { return on_or_no(it.settings.beacon_on, "switchport beacon"); }},
    {PM_CFG_RX_BB_CREDIT, is_as_made<&set::receive_credit>, credit},
    {PM_CFG_PERFORMANCE_BUFFERS, is_as_made<&set::performance_buffers>, buffers},
    {PM_CFG_BB_CREDIT_EXTENDED, is_as_made<&set::extended_credit>, [](port it) { return with_number("switchport bb-credit extended", it.settings.extended_credit); }},
    {PM_CFG_BB_CREDIT_MULTIPLIER, is_as_made<&set::credit_multiplier>, [](port it) { return with_number("switchport bb-credit multiplier", it.settings.credit_multiplier); }},
    {PM_CFG_BB_SCN, is_as_made<&set::bb_scn>, [](port it) { return on_or_no(it.settings.bb_scn == 1, "switchport bb-scn"); }},
    {PM_CFG_RXBUFSIZE, is_as_made<&set::receive_buffer_bytes>, [](port it) { return with_number("switchport receive-buffer-size", it.settings.receive_buffer_bytes); }},
    {PM_CFG_PROMISCUOUS, is_as_made<&set::promiscuous_mode>, [](port it) { return std::string("switchport promiscuous-mode ") + (it.settings.promiscuous_mode == 1 ? "on" : "off"); }},
    {PM_CFG_IGNORE, is_as_made<&set::ignore_bit_errors>, [](port it) { return on_or_no(it.settings.ignore_bit_errors == 1, "switchport ignore bit-errors"); }},
    {PM_CFG_MONITOR, is_as_made<&set::span_monitor>, monitor},
    {PM_CFG_PORT_DOWN_ON_LINK_FAILURE, is_as_made<&set::down_on_link_failure>, [](port it) { return on_or_no(it.settings.down_on_link_failure == 3, "port down on link failure"); }},
    {PM_CFG_SERVICE_STATE, is_as_made<&set::service_state>, [](port it) { return on_or_no(it.settings.service_state == 1, "out-of-service"); }},
    {PM_CFG_PORT_STATE, is_as_made<&set::admin_state>, [](port it) { return on_or_no(it.settings.admin_state == 2, "shutdown"); }},
};
// clang-format on

// Whether a port that a command created took the setting over from its parent, whatever that will be.
bool is_of_parent(const interface& port, uint8 type) {
  const bool is_taken_over = type == PM_CFG_MTU || type == PM_CFG_SPEED || type == PM_CFG_DUPLEX;
  return port.is_created && if_index_is_sub_intf(port.if_index) != 0 && is_taken_over;
}

}  // namespace

std::string settings_of(const interface& it) {
  std::string lines;
  if (it.settings.is_edge) lines += "  switchport host\n";
  interface at_start = it;
  at_start.settings = it.at_start;
  for (const setting_in_words& row : kSettings) {
    if (!has_setting_of_its_own(it, row.type)) continue;
    if (row.is_usual(it) && row.is_usual(at_start) && !is_of_parent(it, row.type)) continue;
    lines += "  " + row.command(it) + "\n";
  }
  return lines;
}

std::string running_config(const machine& of, std::span<const if_index_t> interfaces,
                           std::span<const if_index_t> deleted) {
  std::string text = "! Settings of " + text_argument(of.name) + "\nconfigure\n";
  if (!deleted.empty()) text += "no interface " + range_text(deleted) + "\n";
  for (std::size_t first = 0; first < interfaces.size();) {
    const interface* const it = of.find(interfaces[first]);
    const std::string lines = it != nullptr ? settings_of(*it) : std::string();
    const bool is_created = it != nullptr && it->is_created;
    const auto is_like_first = [&](const interface* other) {
      return other != nullptr && other->is_created == is_created && settings_of(*other) == lines;
    };
    std::size_t end = first + 1;
    while (end < interfaces.size() && is_next(interfaces[end - 1], interfaces[end]) &&
           is_like_first(of.find(interfaces[end])))
      ++end;
    if (is_created || !lines.empty())
      text += "interface " + range_text(interfaces.subspan(first, end - first)) + "\n" + lines;
    first = end;
  }
  return text + "end\n";
}

}  // namespace host
