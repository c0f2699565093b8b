// The description of a setting, and the functions on settings. The settings themselves are in settings/table.h.
#pragma once

#include <array>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "switch/model.h"

namespace host {

// A number, a text, or VLANs in ascending order.
using setting_value = std::variant<uint32, std::string, std::vector<uint16>>;

// ---- How a setting is written

// What a token of a setting carries besides its id: the value of the form, or the argument of the line.
enum class token_value : uint8 { none, of_form, number, half_number, text };

// A token that a setting passes to the command library after the interface range. A value without its own word has the
// id 0.
struct setting_token {
  uint32 id = 0;
  token_value holds = token_value::none;
};

enum { kMaxSettingTokens = 5 };

// The tokens of a setting, and how many there are.
struct setting_tokens {
  std::array<setting_token, kMaxSettingTokens> token{};
  std::size_t count = 0;

  constexpr setting_tokens() = default;
  constexpr setting_tokens(std::initializer_list<setting_token> given) {
    for (const setting_token& it : given) token[count++] = it;
  }
};

enum class form_kind : uint8 {
  word,      // gives a value; without words the command alone gives it
  argument,  // a number, a text or a list of VLANs follows; `value` are bits that go with the number
  off,       // the command with "no" gives a value
  usual      // the command with "no" asks for the usual value
};

// One way to write a setting: "COMMAND syntax" or "no COMMAND syntax".
struct setting_form {
  form_kind kind;
  std::string_view syntax;
  std::string_view help;
  setting_tokens tokens{};  // after those of the setting
  uint32 value = 0;
  bool is_of_host = false;  // the command library has no token for it
};

// ---- Settings

// The type of its value.
enum class setting_kind : uint8 { word, number, text, vlans };

// Whether a command may take a link down.
enum class may_cut : uint8 { never, always, unless_off };

// The step by which the kernel source applies a setting.
enum class kernel_step : uint8 { none, state, alias, mtu, speed, flow_control, vlans, beacon, bond };

// Members of some settings.
struct setting_traits {
  // The value of a port for which nothing was set; null: that of new settings.
  setting_value (*usual)(const interface& port) = nullptr;
  // The status with which a port refuses a value within the bounds; null: it takes all of them.
  uint32 (*refuses)(const interface& port, const setting_value& value) = nullptr;
  // Other settings that follow once the port has the value.
  void (*follow)(interface& port) = nullptr;

  bool of_channel = false;  // a member of a port-channel has its channel's
  bool of_parent = false;   // a new sub-interface has its parent's
  may_cut cuts = may_cut::never;
  kernel_step step = kernel_step::none;
  std::string_view key = {};                  // in switch files, its maps first: "vlan access"
  std::optional<uint32> asks_for_usual = {};  // a number with which the command library asks for the usual value
};

struct setting {
  uint8 type;                           // PM_CFG_... or HOST_CFG_...
  std::string_view command;             // before its forms; empty when it has no command
  std::span<const setting_form> forms;  // the first one with a value writes it
  setting_tokens tokens;                // for the command library; none: the host makes it

  setting_kind kind;
  uint16 num_bytes;        // of the value on its way to the port manager
  uint32 lowest, highest;  // of a number; the longest text, in bytes
  bool (*has_it)(if_index_type_t kind);

  // The value in the settings of a port; nothing where the source does not know it.
  std::optional<setting_value> (*get)(const port_settings& from);
  void (*put)(interface& to, const setting_value& value);

  setting_traits traits = {};
};

// The settings, in the order in which they must be made.
std::span<const setting> all_settings();

// The setting of a type; null when there is none.
const setting* find_setting(uint8 type);

// ---- Functions on settings

// The value that a port has when nothing was set.
setting_value usual_value(const setting& of, const interface& port);

// Whether a port has the default value. An unknown value counts as the default.
bool is_usual(const setting& of, const interface& port);

// The bits that the forms of a number add to it.
uint32 form_bits(const setting& of);

// Whether two ports have the same value.
bool is_equal(const setting& of, const port_settings& one, const port_settings& other);

// Copies a setting from one port to another. An unknown value is not copied.
void copy_setting(const setting& of, const port_settings& from, port_settings& to);

// Sets a port to a value, and other settings that follow from it. Returns 0, or the status with which the port refuses:
// then it is unchanged.
uint32 set_value(const setting& of, interface& port, const setting_value& value);

// The settings of a port of the same hardware for which nothing was set. Those that cannot be set on its kind are part
// of the hardware.
port_settings default_settings(const interface& port);

// Gives all interfaces these settings; ports with sub-interfaces are routed. They operate accordingly.
void set_to_defaults(machine& of);

// Gives a new member the settings of its port-channel. Its description, state and membership stay its own. Settings
// that it refuses get their defaults, so its settings depend only on those of the port-channel.
void take_over_settings(const interface& channel, interface& member);

// Gives a new sub-interface the settings that it has from its parent.
void inherit_settings(const interface& parent, interface& made);

// Whether the switch passes the setting of a port-channel to its members. A source may leave this to its devices.
bool is_of_channel(const setting& of);

// Whether a port of its kind has the setting, and has it itself: a member's may be its channel's; and the source makes
// it.
bool has_setting_of_its_own(const interface& port, const setting& of);

// The number that a word of a form gives, in upper or lower case; nothing for another word.
std::optional<uint32> number_of_word(const setting& of, std::string_view word);

}  // namespace host
