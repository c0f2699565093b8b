#include "settings/settings.h"

#include <strings.h>

#include <algorithm>

#include "platform/card_config.h"
#include "platform/interface_manager.h"
#include "settings/table.h"
#include "switch/if_index_layout.h"
#include "switch/operation.h"
#include "switch/source.h"

namespace host {
namespace {

bool has_sub_interfaces(const machine& of, if_index_t parent) {
  return std::any_of(of.interfaces.begin(), of.interfaces.end(), [parent](const interface& it) {
    return if_index_is_sub_intf(it.if_index) != 0 && parent_of(it.if_index) == parent;
  });
}

if_index_type_t kind_of(const interface& port) { return decode_index(port.if_index).type; }

template <typename... Kind>
bool is_one_of(if_index_type_t kind, Kind... kinds) {
  return ((kind == kinds) || ...);
}

uint32 number_in(const setting_value& value) { return std::get<uint32>(value); }

// Whether a number is one of the values of the forms, or within the bounds of an argument.
bool is_within(const setting& of, uint32 number) {
  const bool is_word = std::any_of(of.forms.begin(), of.forms.end(), [number](const setting_form& it) {
    return (it.kind == form_kind::word || it.kind == form_kind::off) && it.value == number;
  });
  if (is_word || of.kind == setting_kind::word) return is_word;
  const uint32 plain = number & ~form_bits(of);
  return plain >= of.lowest && plain <= of.highest;
}

bool is_within(const setting& of, const interface& port, const setting_value& value) {
  if (const auto* const text = std::get_if<std::string>(&value)) return text->size() <= of.highest;
  if (std::holds_alternative<std::vector<uint16>>(value)) return true;
  const bool can_be_usual =
      std::any_of(of.forms.begin(), of.forms.end(), [](const setting_form& it) { return it.kind == form_kind::usual; });
  return is_within(of, number_in(value)) || (can_be_usual && value == usual_value(of, port));
}

bool takes(if_index_type_t channel, if_index_type_t member) {
  return channel == IF_TYPE_ETH_PORT_CHANNEL ? member != IF_TYPE_FC
                                             : member == IF_TYPE_FC || member == IF_TYPE_ETHERNET;
}

// The whole port-channel with a number that takes a port, of the newer family first; 0 when there is none.
if_index_t channel_for(const interface& port, uint32 number) {
  for (const if_index_type_t family : {IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL}) {
    if (!takes(family, kind_of(port))) continue;
    for (const interface& it : the_machine().interfaces) {
      const index_fields fields = decode_index(it.if_index);
      if (fields.type == family && fields.number == number && fields.sub_interface == 0) return it.if_index;
    }
  }
  return 0;
}

}  // namespace

// ---- Kinds ----------------------------------------------------------------------------------------------------------

bool is_any_but_inband(if_index_type_t kind) { return kind != IF_TYPE_INBAND; }

bool is_ethernet_or_channel(if_index_type_t kind) {
  return is_one_of(kind, IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE, IF_TYPE_VETHERNET,
                   IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL);
}

bool is_fibre_channel_port(if_index_type_t kind) { return kind == IF_TYPE_FC; }

bool can_monitor(if_index_type_t kind) { return is_ethernet_or_channel(kind) && kind != IF_TYPE_SATELLITE; }

bool has_layer(if_index_type_t kind) { return is_ethernet_or_channel(kind) && kind != IF_TYPE_ETHERNET; }

bool is_fibre_channel(if_index_type_t kind) { return is_one_of(kind, IF_TYPE_FC, IF_TYPE_PORT_CHANNEL); }

bool has_mode(if_index_type_t kind) { return is_ethernet_or_channel(kind) || kind == IF_TYPE_FC; }

bool has_speed(if_index_type_t kind) { return has_mode(kind) || kind == IF_TYPE_MGMT; }

bool is_port(if_index_type_t kind) {
  return is_one_of(kind, IF_TYPE_ETHERNET, IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE, IF_TYPE_FC);
}

// ---- Layer and mode -------------------------------------------------------------------------------------------------

// An interface with an address, a sub-interface, a loopback and a management port are routed.
setting_value usual_layer(const interface& port) {
  const bool is_routed = !port.addresses.empty() || if_index_is_sub_intf(port.if_index) != 0 ||
                         is_one_of(kind_of(port), IF_TYPE_LOOPBACK, IF_TYPE_MGMT);
  return uint32{is_routed ? IF_LAYER_3 : IF_LAYER_2};
}

uint32 refuses_layer(const interface& port, const setting_value& value) {
  const bool is_parent = number_in(value) == IF_LAYER_2 && has_sub_interfaces(the_machine(), port.if_index);
  return is_parent ? uint32{PM_ERR_SUB_INTERFACE_ON_L2} : 0;
}

// A routed port has no mode, a switched one the usual one until another is set.
void follow_layer(interface& port) {
  port_settings& settings = port.settings;
  if (settings.layer == IF_LAYER_3 || settings.admin_mode == 0)
    settings.admin_mode = default_port_mode(kind_of(port), settings.layer);
}

setting_value usual_mode(const interface& port) { return default_port_mode(kind_of(port), port.settings.layer); }

uint32 refuses_mode(const interface& port, const setting_value& value) {
  constexpr uint32 kPortsOfGroup = 4;
  constexpr uint32 kNotOfChannels[] = {PM_PORT_MODE_F,  PM_PORT_MODE_FL, PM_PORT_MODE_FX,
                                       PM_PORT_MODE_SD, PM_PORT_MODE_ST, PM_PORT_MODE_TL};
  const bool is_channel = is_one_of(kind_of(port), IF_TYPE_ETH_PORT_CHANNEL, IF_TYPE_PORT_CHANNEL);
  const auto* const found = std::find(std::begin(kNotOfChannels), std::end(kNotOfChannels), number_in(value));
  if (is_channel && found != std::end(kNotOfChannels)) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  if (kind_of(port) == IF_TYPE_SATELLITE && number_in(value) == PM_PORT_MODE_FABRIC)
    return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  const bool is_first = decode_index(port.if_index).port % kPortsOfGroup == 0;
  return number_in(value) == PM_PORT_MODE_E && port.capabilities.e_mode_on_first_only && !is_first
             ? PM_ERR_MODE_E_OUTSIDE_FIRST_PORT
             : 0;
}

// A new trunk carries all VLANs.
void follow_mode(interface& port) {
  port_settings& settings = port.settings;
  const bool has_vlans = is_ethernet_or_channel(kind_of(port));
  if (has_vlans && settings.admin_mode == PM_PORT_MODE_TRUNK && settings.allowed_vlans.empty())
    settings.allowed_vlans = every_vlan();
}

// ---- Speed and size -------------------------------------------------------------------------------------------------

uint32 refuses_speed(const interface& port, const setting_value& value) {
  // 1 and 2 are automatic, up to 2000 and 4000.
  constexpr uint32 kOfFibreChannel[] = {0, 1, 2, 1000, 2000, 4000, 8000};
  const uint32 mbps = number_in(value);
  const auto* const found = std::find(std::begin(kOfFibreChannel), std::end(kOfFibreChannel), mbps);
  if (is_fibre_channel(kind_of(port)) && found != std::end(kOfFibreChannel)) return 0;
  if (kind_of(port) == IF_TYPE_FC) return PM_ERR_SPEED_NOT_SUPPORTED;
  if (mbps == 0) return 0;
  const auto bit = speed_bit(mbps);
  const auto own = port.capabilities.speeds.value_or(0);  // 0: nothing is known of it
  return bit != 0 && (own == 0 || (own & bit) != 0) ? 0 : uint32{PM_ERR_SPEED_NOT_SUPPORTED};
}

uint32 refuses_receive_buffer(const interface&, const setting_value& value) {
  constexpr uint32 kUnit = 4;  // bytes
  return number_in(value) % kUnit != 0 ? uint32{PM_ERR_VALUE_OUT_OF_RANGE} : 0;
}

uint32 refuses_mtu(const interface& port, const setting_value& value) {
  const auto [lowest, highest] = port.capabilities.mtu;
  return number_in(value) < lowest || number_in(value) > highest ? uint32{PM_ERR_VALUE_OUT_OF_RANGE} : 0;
}

// ---- VLANs, flow control, membership --------------------------------------------------------------------------------

setting_value usual_allowed_vlans(const interface& port) {
  return port.settings.admin_mode == PM_PORT_MODE_TRUNK ? every_vlan() : std::vector<uint16>();
}

std::optional<setting_value> get_allowed_vlans(const port_settings& from) { return from.allowed_vlans; }

void put_allowed_vlans(interface& to, const setting_value& value) {
  to.settings.allowed_vlans = std::get<std::vector<uint16>>(value);
}

std::optional<setting_value> get_flow_control(const port_settings& from, uint16 side) {
  if (!from.admin_flow_control) return std::nullopt;
  const uint32 bits = *from.admin_flow_control & side;
  if ((bits & PM_FLOW_CTRL_DESIRED) != 0) return uint32{kFlowControlDesired};
  return uint32{bits != 0 ? kFlowControlOn : kFlowControlOff};
}

void put_flow_control(interface& to, uint16 side, const setting_value& value) {
  constexpr uint16 kBits[] = {0, PM_FLOW_CTRL_ON, PM_FLOW_CTRL_DESIRED};  // by FLOW_CONTROL_...
  const uint16 other = to.settings.admin_flow_control.value_or(0) & ~side;
  to.settings.admin_flow_control = static_cast<uint16>(other | (side & kBits[number_in(value)]));
}

std::optional<setting_value> get_channel(const port_settings& from) {
  return from.channel == 0 ? 0 : uint32{decode_index(from.channel).number};
}

uint32 refuses_channel(const interface& port, const setting_value& value) {
  if (number_in(value) == 0) return 0;
  const if_index_t channel = channel_for(port, number_in(value));
  if (channel == 0) return PM_ERR_NO_SUCH_INTERFACE;
  return port.settings.channel == 0 || port.settings.channel == channel ? 0 : uint32{PM_ERR_PORT_IN_CHANNEL};
}

// A new member becomes what its port-channel is set to; a port that leaves one keeps that.
void put_channel(interface& to, const setting_value& value) {
  const if_index_t channel = number_in(value) == 0 ? 0 : channel_for(to, number_in(value));
  const bool is_new = channel != 0 && to.settings.channel != channel;
  to.settings.channel = channel;
  if (is_new) take_over_settings(*the_machine().find(channel), to);
}

// ---- Texts and switches ---------------------------------------------------------------------------------------------

std::optional<setting_value> get_description(const port_settings& from) { return from.description; }

void put_description(interface& to, const setting_value& value) {
  to.settings.description = std::get<std::string>(value);
}

std::optional<setting_value> get_beacon(const port_settings& from) { return uint32{from.beacon_on ? 1U : 2U}; }

void put_beacon(interface& to, const setting_value& value) { to.settings.beacon_on = number_in(value) == 1; }

// ---- The table ------------------------------------------------------------------------------------------------------

std::span<const setting> all_settings() { return kSettings; }

const setting* find_setting(uint8 type) {
  const auto* const found =
      std::find_if(std::begin(kSettings), std::end(kSettings), [type](const setting& it) { return it.type == type; });
  return found == std::end(kSettings) ? nullptr : found;
}

setting_value usual_value(const setting& of, const interface& port) {
  return of.traits.usual != nullptr ? of.traits.usual(port) : *of.get(port_settings{});
}

bool is_usual(const setting& of, const interface& port) {
  const auto value = of.get(port.settings);
  return !value || *value == usual_value(of, port);
}

uint32 form_bits(const setting& of) {
  uint32 bits = 0;
  for (const setting_form& form : of.forms)
    if (form.kind == form_kind::argument) bits |= form.value;
  return bits;
}

bool is_equal(const setting& of, const port_settings& one, const port_settings& other) {
  return of.get(one) == of.get(other);
}

void copy_setting(const setting& of, const port_settings& from, port_settings& to) {
  if (of.type == HOST_CFG_CHANNEL) {  // its number alone does not say which port-channel it is
    to.channel = from.channel;
    return;
  }
  const auto value = of.get(from);
  if (!value) return;
  interface port;
  port.settings = std::move(to);
  of.put(port, *value);
  to = std::move(port.settings);
}

uint32 set_value(const setting& of, interface& port, const setting_value& value) {
  if (of.traits.refuses != nullptr)
    if (const uint32 status = of.traits.refuses(port, value); status != 0) return status;
  if (!is_within(of, port, value)) return PM_ERR_VALUE_OUT_OF_RANGE;
  of.put(port, value);
  if (of.traits.follow != nullptr) of.traits.follow(port);
  return 0;
}

port_settings default_settings(const interface& port) {
  interface fresh = port;
  fresh.settings = port_settings{};
  for (const setting& it : kSettings)
    if (!it.has_it(kind_of(port)))
      if (const auto value = it.get(port.settings)) it.put(fresh, *value);
  if (has_layer(kind_of(port))) fresh.settings.layer = std::get<uint32>(usual_layer(fresh));
  if (has_mode(kind_of(port))) follow_layer(fresh);
  return fresh.settings;
}

void set_to_defaults(machine& of) {
  for (interface& port : of.interfaces) {
    const port_settings before = port.settings;
    port.settings = default_settings(port);
    if (has_layer(kind_of(port)) && has_sub_interfaces(of, port.if_index)) {
      port.settings.layer = IF_LAYER_3;
      port.settings.admin_mode = 0;
      follow_layer(port);
    }
    port.at_start = port.settings;
    follow_settings(port, before);
  }
}

void take_over_settings(const interface& channel, interface& member) {
  for (const setting& it : kSettings)
    if (it.traits.of_channel && it.has_it(kind_of(channel)))
      if (const auto value = it.get(channel.settings))
        if (it.has_it(kind_of(member)) && set_value(it, member, *value) != 0)
          set_value(it, member, usual_value(it, member));
}

void inherit_settings(const interface& parent, interface& made) {
  for (const setting& it : kSettings)
    if (it.traits.of_parent)
      if (const auto value = it.get(parent.settings)) it.put(made, *value);
}

bool is_of_channel(const setting& of) { return of.traits.of_channel && !the_source().hands_settings_to_members(); }

bool has_setting_of_its_own(const interface& port, const setting& of) {
  return of.has_it(decode_index(port.if_index).type) && !(is_of_channel(of) && port.settings.channel != 0) &&
         the_source().applies_setting(of.type);
}

std::optional<uint32> number_of_word(const setting& of, std::string_view word) {
  const auto is_word = [word](const setting_form& it) {
    return it.kind == form_kind::word && it.syntax.size() == word.size() &&
           strncasecmp(it.syntax.data(), word.data(), word.size()) == 0;
  };
  const auto found = std::find_if(of.forms.begin(), of.forms.end(), is_word);
  if (found == of.forms.end()) return std::nullopt;
  return found->value;
}

}  // namespace host
