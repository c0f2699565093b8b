#include "config/switchport_commands.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <optional>

#include "config/management_port.h"
#include "config/send_setting.h"
#include "platform/port_config.h"
#include "pmcli/config.h"
#include "pmcli/displays.h"

namespace pmcli {

namespace {

// Distances from the range: the sub-command, and the arguments after it.
enum : uint32 { kSubCommand = 2, kNext = 3, kAfterNext = 4, kLast = 5 };

constexpr const char* kNoIsNotSupported = "'no' option is not supported with this command";
constexpr const char* kModeNotAllowed = "error: port mode configuration not allowed";

struct row;
using value_rule = outcome (*)(const config_command& command, const row& row);

// A sub-command, the TLV that it becomes, and how its value is found.
struct row {
  uint32 token;
  uint8 type;
  uint8 length;
  value_rule rule;
  uint32 plain = 0;  // the value without further words
  uint32 no = 0;     // the value of the "no" form
  const char* bundle_refusal = nullptr;
};

outcome send(const row& row, uint32 number) { return send_setting({row.type, row.length, number}); }

// ---- Values of words --------------------------------------------------------------------------------------------

struct word {
  uint32 token;
  uint32 value;
};

template <std::size_t Count>
std::optional<uint32> value_of(const word (&words)[Count], uint32 token) {
  const auto found =
      std::find_if(std::begin(words), std::end(words), [token](const word& w) { return w.token == token; });
  return found != std::end(words) ? std::optional(found->value) : std::nullopt;
}

constexpr word kSpeeds[] = {
    // Mbit/s
    {TOKEN_SPEED_10, 10},     {TOKEN_SPEED_100, 100},   {TOKEN_SPEED_1000, 1000},
    {TOKEN_SPEED_2000, 2000}, {TOKEN_SPEED_4000, 4000}, {TOKEN_SPEED_8000, 8000},
};
constexpr word kDuplexes[] = {{TOKEN_DUPLEX_AUTO, 3}, {TOKEN_DUPLEX_FULL, 1}, {TOKEN_DUPLEX_HALF, 2}};
constexpr word kEncapsulations[] = {{TOKEN_ENCAP_NORMAL, 1}, {TOKEN_ENCAP_EISL, 2}, {TOKEN_ENCAP_INTERNAL, 3}};
constexpr word kPromiscuous[] = {{TOKEN_PROMISCUOUS_ON, 1}, {TOKEN_PROMISCUOUS_OFF, 2}};
constexpr word kAttribute44[] = {{TOKEN_ATTRIBUTE_44_1, 1}, {TOKEN_ATTRIBUTE_44_2, 2}};

// ---- Rules ------------------------------------------------------------------------------------------------------

outcome fixed(const config_command& command, const row& row) {
  if (command.is_bundle && row.bundle_refusal != nullptr) return refuse(row.bundle_refusal);
  return send(row, command.is_no ? row.no : row.plain);
}

outcome name(const config_command& command, const row& row) {
  constexpr std::size_t kLongest = PM_PORT_NAME_BYTES - 1;
  const char* const text = command.is_no ? "" : command.text(kNext);
  if (strnlen(text, kLongest + 1) > kLongest) {
    std::printf("error: name too long. max size allowed is %d\n", static_cast<int32>(kLongest));
    return end_command(1);
  }
  return send_setting({row.type, row.length, 0, text});
}

bool is_refused_on_channels(uint32 mode) {
  constexpr uint32 kModes[] = {PM_PORT_MODE_SD, PM_PORT_MODE_ST, PM_PORT_MODE_TL,
                               PM_PORT_MODE_F,  PM_PORT_MODE_FL, PM_PORT_MODE_FX};
  return std::find(std::begin(kModes), std::end(kModes), mode) != std::end(kModes);
}

outcome mode(const config_command& command, const row& row) {
  if (is_vsan_restricted(command.param)) return refuse(kModeNotAllowed, PM_CLI_NOT_PERMITTED);
  if (command.is_no) return send(row, command.kind == IF_TYPE_ETHERNET_L3 ? uint32{PM_PORT_MODE_ACCESS} : row.no);
  if (command.num_behind() < kNext) return refuse("error: more arguments expected for mode");
  if (command.num_behind() > kAfterNext) return refuse("error: invalid arguments for this mode");
  const bool is_by_number = command.token(kNext) == TOKEN_MODE_BY_NUMBER;
  const auto value = command.value<uint32>(is_by_number ? kAfterNext : kNext);
  if (!value) return refuse("error: more arguments expected for mode");
  if (!is_by_number && command.is_bundle && is_refused_on_channels(*value))
    return refuse("This mode not supported for port channels");
  if (command.kind == IF_TYPE_SATELLITE && *value == PM_PORT_MODE_FABRIC)
    return refuse("error: fabric mode not supported for interface type");
  return send(row, *value);
}

std::optional<uint32> speed_of(const config_command& command) {
  enum : uint32 { kAuto = 0, kAutoMax2000 = 1, kAutoMax4000 = 2 };
  if (command.is_no) return kAuto;
  if (command.token(kNext) != TOKEN_SPEED_AUTO) return value_of(kSpeeds, command.token(kNext));
  if (command.token(kAfterNext) != TOKEN_AUTO_MAX) return kAuto;
  if (command.token(kLast) == TOKEN_AUTO_MAX_2000) return kAutoMax2000;
  return command.token(kLast) == TOKEN_AUTO_MAX_4000 ? kAutoMax4000 : kAuto;
}

outcome speed(const config_command& command, const row& row) {
  if (is_refused_off_console(command)) return end_command(1);
  const auto value = speed_of(command);
  if (!value) {
    std::printf("error: invalid port speed - %d\n", static_cast<int32>(command.token(kNext)));
    return end_command(1);
  }
  if (*value == 1000 && is_gigabit_refused(command)) return end_command(1);
  return send(row, *value);
}

outcome duplex(const config_command& command, const row& row) {
  if (is_refused_off_console(command)) return end_command(1);
  if (command.is_no) return send(row, row.no);
  const auto value = value_of(kDuplexes, command.token(kNext));
  if (value) return send(row, *value);
  std::printf("error: invalid port duplex - %d\n", static_cast<int32>(command.token(kNext)));
  return end_command(1);
}

outcome not_implemented(const char* words) {
  std::printf("Command - %s - is not implemented yet\n", words);
  return end_command(0);
}

outcome trunk_mode(const config_command& command, const row& row) {
  constexpr uint32 kFirst = 1, kLastMode = 3;
  if (is_vsan_restricted(command.param)) return refuse(kModeNotAllowed, PM_CLI_NOT_PERMITTED);
  if (command.is_no) return refuse(kNoIsNotSupported);
  if (command.token(kNext) == TOKEN_TRUNK_ENCAPSULATION_DOT1Q)
    return not_implemented("switchport trunk encapsulation dot1q");
  if (command.token(kNext) != TOKEN_TRUNK_MODE_WORD || command.num_behind() > kAfterNext)
    return refuse("error: invalid arguments for trunk mode");
  if (command.num_behind() < kAfterNext) return send(row, row.plain);
  const uint32 value = command.value<uint32>(kAfterNext).value_or(0);
  return value >= kFirst && value <= kLastMode ? send(row, value) : refuse("error: invalid trunk mode");
}

constexpr const char* kInvalidCredit = "error: invalid arguments for BB_credit";

outcome send_credit(uint8 type, const std::optional<uint32>& value) {
  return value ? send_setting({type, 4, *value}) : refuse(kInvalidCredit);
}

std::optional<uint32> credit_with_mode(const config_command& command) {
  constexpr uint32 kModeFx = 0x80000000, kModeE = 0x40000000;
  auto count = command.value<uint32>(kNext);
  if (count && command.token(kLast) == TOKEN_CREDIT_MODE_FX) *count |= kModeFx;
  if (count && command.token(kLast) == TOKEN_CREDIT_MODE_E) *count |= kModeE;
  return count;
}

std::optional<uint32> extended_credit(const config_command& command) {
  if (command.token(kAfterNext) != TOKEN_CREDIT_EXTENDED_COUNT) return std::nullopt;
  const auto own = command.value<uint32>(kAfterNext);
  return own ? own : command.value<uint32>(kLast);
}

std::optional<uint32> credit_multiplier(const config_command& command) {
  const auto following = command.value<uint32>(kAfterNext);
  return following ? following : command.value<uint32>(kNext);
}

// One sub-command for four settings; the next word selects one.
outcome bb_credit(const config_command& command, const row&) {
  constexpr uint32 kDefaultBuffers = 0xFFFFFFFF;
  if (command.num_behind() > kLast) return refuse(kInvalidCredit);
  const bool is_no = command.is_no;
  switch (command.token(kNext)) {
    case TOKEN_CREDIT_COUNT:
      return send_credit(PM_CFG_RX_BB_CREDIT, is_no ? std::optional<uint32>(0) : credit_with_mode(command));
    case 0:  // nothing follows
    case TOKEN_CREDIT_DEFAULT: return send_credit(PM_CFG_RX_BB_CREDIT, 0);
    case TOKEN_PERFORMANCE_BUFFERS_1:
    case TOKEN_PERFORMANCE_BUFFERS_2:
    case TOKEN_PERFORMANCE_BUFFERS_3:
      return send_credit(PM_CFG_PERFORMANCE_BUFFERS,
                         is_no ? kDefaultBuffers : command.value<uint32>(kAfterNext).value_or(kDefaultBuffers));
    case TOKEN_CREDIT_EXTENDED:
      return send_credit(PM_CFG_BB_CREDIT_EXTENDED, is_no ? std::optional<uint32>(0) : extended_credit(command));
    case TOKEN_CREDIT_MULTIPLIER:
      return send_credit(PM_CFG_BB_CREDIT_MULTIPLIER, is_no ? std::optional<uint32>(0) : credit_multiplier(command));
    default: return send_credit(PM_CFG_RX_BB_CREDIT, is_no ? std::optional<uint32>(0) : std::nullopt);
  }
}

outcome receive_buffer_size(const config_command& command, const row& row) {
  if (command.num_behind() > kNext) return refuse("error: invalid arguments for receive buffer size");
  if (command.is_no || command.token(kNext) != TOKEN_RXBUFSIZE_BYTES) return send(row, row.plain);
  const uint32 size = command.value<uint16>(kNext).value_or(static_cast<uint16>(row.plain));
  return size % 4 == 0 ? send(row, size) : refuse("error: invalid receive buffer size (not a multiple of 4)");
}

outcome encapsulation(const config_command& command, const row& row) {
  if (command.num_behind() > kNext) return refuse("error: invalid arguments for encapsulation");
  if (command.is_no) return send(row, row.no);
  const auto value = value_of(kEncapsulations, command.token(kNext));
  return value ? send(row, *value) : refuse("error: invalid encapsulation");
}

outcome mtu(const config_command& command, const row& row) {
  if (command.num_behind() > kNext) return refuse("error: invalid arguments for mtu");
  if (command.is_no || command.token(kNext) != TOKEN_MTU_BYTES) return send(row, row.plain);
  return send(row, command.value<uint32>(kNext).value_or(row.plain));
}

outcome promiscuous_mode(const config_command& command, const row& row) {
  if (command.num_behind() > kNext) return refuse("error: invalid arguments for promiscuous mode");
  if (command.is_no || command.num_behind() < kNext) return send(row, row.no);
  const auto value = value_of(kPromiscuous, command.token(kNext));
  return value ? send(row, *value) : refuse("error: invalid promiscuous mode");
}

outcome ignore(const config_command& command, const row& row) {
  if (command.num_behind() < kNext) return refuse("error : invalid arguments to switchport ignore");
  if (command.token(kNext) == TOKEN_BIT_ERRORS) return send(row, command.is_no ? row.no : row.plain);
  std::printf("error: invalid bit error option  - %d\n", static_cast<int32>(command.token(kNext)));  // two blanks
  return end_command(1);
}

outcome attribute_44(const config_command& command, const row& row) {
  return send(row, command.is_no ? row.no : value_of(kAttribute44, command.token(kNext)).value_or(row.plain));
}

outcome dot1q_ethertype(const config_command&, const row&) { return not_implemented("switchport dot1q ethertype"); }

outcome host(const config_command& command, const row&) {
  if (command.is_no) return refuse("The 'no' form of this command has no effect on the system");
  std::fputs(
      " Warning: portfast should only be enabled on ports connected to a single\n"
      " host. Connecting hubs, concentrators, switches, bridges, etc... to this\n"
      " interface  when portfast is enabled, can cause temporary bridging loops.\n"
      " Use with CAUTION\n",
      stdout);
  _lib_api steps[] = {
      {"removing port from port-channel", "libethpcmcli.so", {.name = "pcm_switchport_host_func"}},
      {"setting port to switchport mode access", nullptr, {.function = pm_cli_set_eth_switchport_mode_access}},
      {"setting stp port type to edge", "libstp.so", {.name = "stp_switchport_host_func"}},
  };
  pm_cli_run_macro(command.param, steps, static_cast<uint32>(std::size(steps)));
  return end_command(0);
}

outcome monitor(const config_command& command, const row& row) {
  enum : uint32 { kOn = 1, kOnWithOneWord = 2, kOnWithTwoWords = 3 };
  if (command.kind == IF_TYPE_SATELLITE) return refuse("error: switchport monitor not supported for interface type");
  if (command.is_no) return send(row, row.no);
  if (command.num_behind() < kNext) return send(row, kOn);
  if (command.num_behind() == kNext) return send(row, kOnWithOneWord);
  if (command.num_behind() == kAfterNext) return send(row, kOnWithTwoWords);
  return refuse("error: invalid arguments for monitor");
}

// ---- The sub-commands -------------------------------------------------------------------------------------------

constexpr const char* kBeaconOnBundle = "Beacon mode not supported for port channels";
constexpr const char* kBbScnOnBundle = "BBSCN mode not supported for port channels";

constexpr row kRows[] = {
    // token, TLV type, length, rule, plain, no, refusal on a bundle
    {TOKEN_SWITCHPORT_NAME, PM_CFG_NAME, PM_PORT_NAME_BYTES, name},
    {TOKEN_SWITCHPORT_MODE, PM_CFG_PORT_MODE, 4, mode, 0, 0x80000000},
    {TOKEN_SWITCHPORT_BEACON, PM_CFG_BEACON, 1, fixed, 1, 2, kBeaconOnBundle},
    {TOKEN_SWITCHPORT_ATTRIBUTE_84, PM_CFG_84, 1, fixed, 1, 2,
     kBeaconOnBundle},  // the text speaks of the beacon, too: intended
    {TOKEN_SWITCHPORT_SPEED, PM_CFG_SPEED, 4, speed},
    {TOKEN_SWITCHPORT_TRUNK_MODE, PM_CFG_TRUNKING_MODE, 1, trunk_mode, 2},
    {TOKEN_SWITCHPORT_BB_CREDIT, PM_CFG_RX_BB_CREDIT, 4, bb_credit},
    {TOKEN_SWITCHPORT_RXBUFSIZE, PM_CFG_RXBUFSIZE, 2, receive_buffer_size, 2112},
    {TOKEN_SWITCHPORT_ENCAP, PM_CFG_ENCAP, 1, encapsulation, 0, 1},
    {TOKEN_SWITCHPORT_MTU, PM_CFG_MTU, 4, mtu, 1500},
    {TOKEN_SWITCHPORT_PROMISCUOUS, PM_CFG_PROMISCUOUS, 4, promiscuous_mode, 0, 2},
    {TOKEN_SWITCHPORT_ATTRIBUTE_36, PM_CFG_36, 4, fixed, 1, 2},
    {TOKEN_SWITCHPORT_DUPLEX, PM_CFG_DUPLEX, 1, duplex, 0, 3},
    {TOKEN_SWITCHPORT_IGNORE, PM_CFG_IGNORE, 1, ignore, 1, 2},
    {TOKEN_SWITCHPORT_ATTRIBUTE_44, PM_CFG_44, 1, attribute_44, 0, 3},
    {TOKEN_SWITCHPORT_BB_SCN, PM_CFG_BB_SCN, 1, fixed, 1, 2, kBbScnOnBundle},
    {TOKEN_SWITCHPORT_DOT1Q_ETHERTYPE, 0, 0, dot1q_ethertype},
    {TOKEN_SWITCHPORT_HOST, 0, 0, host},
    {TOKEN_SWITCHPORT_MONITOR, PM_CFG_MONITOR, 4, monitor, 0, 0},
    {TOKEN_SWITCHPORT_ATTRIBUTE_85, PM_CFG_85, 1, fixed, 0, 0},
};

}  // namespace

outcome read_switchport_command(const config_command& command) {
  const uint32 token = command.token(kSubCommand);
  const auto found =
      std::find_if(std::begin(kRows), std::end(kRows), [token](const row& r) { return r.token == token; });
  if (found != std::end(kRows)) return found->rule(command, *found);
  std::printf("error: invalid switchport config %d\n", static_cast<int32>(command.keyword()));
  return end_command(1);
}

}  // namespace pmcli
