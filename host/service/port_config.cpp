#include "service/port_config.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/card_config.h"
#include "platform/interface_manager.h"
#include "platform/port_config.h"
#include "service/answers.h"
#include "service/change_settings.h"
#include "service/port_manager_messages.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

using octets = std::span<const std::byte>;

// A value as it travelled.
struct setting_value {
  octets bytes;

  uint32 number() const {
    uint32 value = 0;
    for (const std::byte byte : bytes) value = value << 8 | std::to_integer<uint32>(byte);
    return value;
  }
  std::string text() const {
    const std::string_view all(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return std::string(all.substr(0, all.find('\0')));
  }
};

// ---- Rules ----------------------------------------------------------------------------------------------------------

if_index_type_t kind_of(const interface& port) {
  if_index_type_t kind = IF_TYPE_NONE;
  if_index_get_type(port.if_index, &kind);
  return kind;
}

bool is_any(if_index_type_t kind) { return kind != IF_TYPE_INBAND; }

bool is_ethernet_or_channel(if_index_type_t kind) {
  return kind == IF_TYPE_ETHERNET || kind == IF_TYPE_ETHERNET_L3 || kind == IF_TYPE_SATELLITE ||
         kind == IF_TYPE_VETHERNET || kind == IF_TYPE_ETH_PORT_CHANNEL || kind == IF_TYPE_PORT_CHANNEL;
}

bool has_mode(if_index_type_t kind) { return is_ethernet_or_channel(kind) || kind == IF_TYPE_FC; }

bool has_speed(if_index_type_t kind) { return has_mode(kind) || kind == IF_TYPE_MGMT; }

bool is_port(if_index_type_t kind) {
  return kind == IF_TYPE_ETHERNET || kind == IF_TYPE_ETHERNET_L3 || kind == IF_TYPE_SATELLITE || kind == IF_TYPE_FC;
}

bool is_fibre_channel(if_index_type_t kind) { return kind == IF_TYPE_FC || kind == IF_TYPE_PORT_CHANNEL; }

// ---- What each setting does -----------------------------------------------------------------------------------------

// Each returns the port's status and changes nothing when that is not 0.
using apply_function = uint32 (*)(interface& port, const setting_value& value);

uint32 apply_state(interface& port, const setting_value& value) {
  const uint32 state = value.number();
  if (state != PM_PORT_STATE_UP && state != PM_PORT_STATE_DOWN) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.settings.admin_state = static_cast<uint8>(state);
  return 0;
}

bool is_outside_first_of_group(const interface& port) {
  constexpr uint32 kPortsOfGroup = 4;
  return port.capabilities.e_mode_on_first_only && take_apart(port.if_index).port % kPortsOfGroup != 0;
}

uint32 apply_mode(interface& port, const setting_value& value) {
  constexpr uint32 kDefaultWanted = 0x80000000, kModeE = 0x4;
  const bool is_default = value.number() == kDefaultWanted;
  const uint32 mode = is_default ? default_port_mode(kind_of(port), port.settings.layer) : value.number();
  if (mode == kModeE && is_outside_first_of_group(port)) return PM_ERR_MODE_E_OUTSIDE_FIRST_PORT;
  port.settings.admin_mode = mode;
  if (mode == PM_PORT_MODE_TRUNK && port.settings.allowed_vlans.empty()) port.settings.allowed_vlans = every_vlan();
  return 0;
}

struct speed {
  uint32 mbps;
  uint8 capability;
};
constexpr speed kEthernetSpeeds[] = {
    {0, 0}, {10, CRDCFG_SPEED_10M}, {100, CRDCFG_SPEED_100M}, {1000, CRDCFG_SPEED_1G}, {10000, CRDCFG_SPEED_10G}};
// 1 and 2 are auto up to 2000 and 4000.
constexpr speed kFibreChannelSpeeds[] = {{0, 0}, {1, 0}, {2, 0}, {1000, 0}, {2000, 0}, {4000, 0}, {8000, 0}};

bool supports(const interface& port, uint32 mbps) {
  const std::span<const speed> known = kind_of(port) == IF_TYPE_FC ? std::span<const speed>(kFibreChannelSpeeds)
                                                                   : std::span<const speed>(kEthernetSpeeds);
  const auto found = std::find_if(known.begin(), known.end(), [=](const speed& s) { return s.mbps == mbps; });
  const uint8 own = port.capabilities.speeds.value_or(0);  // 0: nothing is known of it
  return found != known.end() && (found->capability == 0 || own == 0 || (own & found->capability) != 0);
}

uint32 apply_speed(interface& port, const setting_value& value) {
  const uint32 wanted = value.number();
  if (!supports(port, wanted)) return PM_ERR_SPEED_NOT_SUPPORTED;
  port.settings.admin_speed_mbps = wanted;
  return 0;
}

uint32 apply_duplex(interface& port, const setting_value& value) {
  const uint32 duplex = value.number();
  if (duplex < PM_PORT_DUPLEX_FULL || duplex > PM_PORT_DUPLEX_AUTO) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.settings.admin_duplex = static_cast<uint8>(duplex);
  return 0;
}

// On is 1, off is 2.
uint32 apply_beacon(interface& port, const setting_value& value) {
  if (value.number() != 1 && value.number() != 2) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.settings.beacon_on = value.number() == 1;
  return 0;
}

uint32 apply_name(interface& port, const setting_value& value) {
  port.settings.description = value.text();
  return 0;
}

uint32 apply_mtu(interface& port, const setting_value& value) {
  constexpr uint32 kSmallest = 576, kLargest = 9216;  // bytes
  if (value.number() < kSmallest || value.number() > kLargest) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.settings.mtu_bytes = static_cast<uint16>(value.number());
  return 0;
}

// 2 is switched, 3 is routed.
uint32 apply_switchport(interface& port, const setting_value& value) {
  if (value.number() != IF_LAYER_2 && value.number() != IF_LAYER_3) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.settings.layer = value.number();
  if (port.settings.admin_mode == 0) port.settings.admin_mode = default_port_mode(kind_of(port), port.settings.layer);
  return 0;
}

uint32 apply_receive_buffer(interface& port, const setting_value& value) {
  constexpr uint32 kSmallest = 256, kLargest = 2112;  // bytes
  if (value.number() < kSmallest || value.number() > kLargest) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.settings.receive_buffer_bytes = static_cast<uint16>(value.number());
  return 0;
}

// The count, and in the two highest bits for which mode it is.
uint32 apply_receive_credit(interface& port, const setting_value& value) {
  constexpr uint32 kModeBits = 0xC0000000, kMost = 255;
  if ((value.number() & ~kModeBits) > kMost) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.settings.receive_credit = value.number();
  return 0;
}

// A number that is kept as it is when it lies within its bounds.
template <auto Member, uint32 kLowest, uint32 kHighest>
uint32 apply_number(interface& port, const setting_value& value) {
  if (value.number() < kLowest || value.number() > kHighest) return PM_ERR_VALUE_OUT_OF_RANGE;
  using member = std::remove_reference_t<decltype(port.settings.*Member)>;
  if constexpr (requires { typename member::value_type; })
    port.settings.*Member = static_cast<typename member::value_type>(value.number());
  else
    port.settings.*Member = static_cast<member>(value.number());
  return 0;
}

using set = port_settings;

// ---- VLANs, flow control and membership -----------------------------------------------------------------------------

template <auto Vlan>
uint32 apply_vlan(interface& port, const setting_value& value) {
  constexpr uint32 kLastVlan = 4094;
  if (value.number() == 0 || value.number() > kLastVlan) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.settings.*Vlan = static_cast<uint16>(value.number());
  return 0;
}

bool is_in(const vlan_bitset_t& vlans, uint32 id) { return (vlans.bits[id / 8] & 0x80U >> (id % 8)) != 0; }

uint32 apply_allowed_vlans(interface& port, const setting_value& value) {
  allowed_vlans_value wanted;
  std::memcpy(&wanted, value.bytes.data(), sizeof wanted);
  if (wanted.action > ALLOWED_VLANS_REMOVE) return PM_ERR_VALUE_OUT_OF_RANGE;
  std::vector<uint16> vlans;
  for (const uint16 id : every_vlan()) {
    const bool was = std::binary_search(port.settings.allowed_vlans.begin(), port.settings.allowed_vlans.end(), id);
    const bool named = is_in(wanted.vlans, id);
    if (wanted.action == ALLOWED_VLANS_REMOVE ? was && !named : named || (wanted.action == ALLOWED_VLANS_ADD && was))
      vlans.push_back(id);
  }
  port.settings.allowed_vlans = std::move(vlans);
  return 0;
}

// The side is one of PM_FLOW_CTRL_*.
template <uint16 kSide>
uint32 apply_flow_control(interface& port, const setting_value& value) {
  constexpr uint16 kBits[] = {0, PM_FLOW_CTRL_ON, PM_FLOW_CTRL_DESIRED};  // by FLOW_CONTROL_*
  if (value.number() > FLOW_CONTROL_DESIRED) return PM_ERR_VALUE_OUT_OF_RANGE;
  const uint16 other = port.settings.admin_flow_control.value_or(0) & ~kSide;
  port.settings.admin_flow_control = static_cast<uint16>(other | (kSide & kBits[value.number()]));
  return 0;
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
      const index_fields fields = take_apart(it.if_index);
      if (fields.type == family && fields.number == number && if_index_is_sub_intf(it.if_index) == 0)
        return it.if_index;
    }
  }
  return 0;
}

// A member is what its channel is set to; its description, state and membership stay its own.
void take_over(const interface& channel, interface& port) {
  for (const auto member : {&set::admin_mode, &set::admin_speed_mbps, &set::layer})
    port.settings.*member = channel.settings.*member;
  for (const auto member : {&set::mtu_bytes, &set::access_vlan, &set::native_vlan, &set::admin_flow_control})
    port.settings.*member = channel.settings.*member;
  port.settings.admin_duplex = channel.settings.admin_duplex;
  port.settings.trunking_mode = channel.settings.trunking_mode;
  port.settings.encapsulation = channel.settings.encapsulation;
  port.settings.allowed_vlans = channel.settings.allowed_vlans;
}

// 0 takes the port out of its channel; it keeps what it took over.
uint32 apply_channel(interface& port, const setting_value& value) {
  if (value.number() == 0) {
    port.settings.channel = 0;
    return 0;
  }
  const if_index_t channel = channel_for(port, value.number());
  if (channel == 0) return PM_ERR_NO_SUCH_INTERFACE;
  if (port.settings.channel == channel) return 0;
  if (port.settings.channel != 0) return PM_ERR_PORT_IN_CHANNEL;
  port.settings.channel = channel;
  take_over(*the_machine().find(channel), port);
  return 0;
}

struct setting_rule {
  uint8 type;
  uint16 length;  // bytes of the value
  bool (*has_it)(if_index_type_t kind);
  bool of_channel;  // a member's is its channel's
  apply_function apply;
};

// clang-format off
constexpr setting_rule kRules[] = {
    {PM_CFG_PORT_STATE,                1, is_any,                 false, apply_state},
    {PM_CFG_PORT_MODE,                 4, has_mode,               true,  apply_mode},
    {PM_CFG_SPEED,                     4, has_speed,              true,  apply_speed},
    {PM_CFG_TRUNKING_MODE,             1, has_mode,               true,  apply_number<&set::trunking_mode, 1, 3>},
    {PM_CFG_BEACON,                    1, is_port,                false, apply_beacon},
    {PM_CFG_NAME, PM_PORT_NAME_BYTES,     is_any,                 false, apply_name},
    {PM_CFG_RXBUFSIZE,                 2, is_fibre_channel,       true,  apply_receive_buffer},
    {PM_CFG_DUPLEX,                    1, has_speed,              true,  apply_duplex},
    {PM_CFG_ENCAP,                     1, has_mode,               true,  apply_number<&set::encapsulation, 1, 3>},
    {PM_CFG_PROMISCUOUS,               4, has_mode,               false, apply_number<&set::promiscuous_mode, 1, 2>},
    {PM_CFG_RX_BB_CREDIT,              4, is_fibre_channel,       true,  apply_receive_credit},
    {PM_CFG_PERFORMANCE_BUFFERS,       4, is_fibre_channel,       true,  apply_number<&set::performance_buffers, 0, UINT32_MAX>},
    {PM_CFG_MTU,                       4, is_ethernet_or_channel, true,  apply_mtu},
    {PM_CFG_31,                        4, is_any,                 false, apply_number<&set::attribute_31, 1, 2>},
    {PM_CFG_36,                        4, has_mode,               false, apply_number<&set::attribute_36, 1, 2>},
    {PM_CFG_BB_CREDIT_EXTENDED,        4, is_fibre_channel,       true,  apply_number<&set::extended_credit, 0, 4095>},
    {PM_CFG_BB_CREDIT_MULTIPLIER,      4, is_fibre_channel,       true,  apply_number<&set::credit_multiplier, 0, 255>},
    {PM_CFG_IGNORE,                    1, is_fibre_channel,       false, apply_number<&set::ignore_bit_errors, 1, 2>},
    {PM_CFG_44,                        1, has_mode,               false, apply_number<&set::attribute_44, 0, 3>},
    {PM_CFG_SERVICE_STATE,             4, is_port,                false, apply_number<&set::service_state, 0, 1>},
    {PM_CFG_BB_SCN,                    1, is_fibre_channel,       true,  apply_number<&set::bb_scn, 1, 2>},
    {PM_CFG_SWITCHPORT,                4, is_ethernet_or_channel, true,  apply_switchport},
    {PM_CFG_MONITOR,                   4, is_ethernet_or_channel, false, apply_number<&set::span_monitor, 0, 3>},
    {PM_CFG_PORT_DOWN_ON_LINK_FAILURE, 4, is_port,                true,  apply_number<&set::down_on_link_failure, 3, 4>},
    {PM_CFG_84,                        1, is_port,                false, apply_number<&set::attribute_84, 1, 2>},
    {PM_CFG_85,                        1, is_any,                 false, apply_number<&set::attribute_85, 0, 1>},
    {HOST_CFG_ACCESS_VLAN,             2, is_ethernet_or_channel, true,  apply_vlan<&set::access_vlan>},
    {HOST_CFG_NATIVE_VLAN,             2, is_ethernet_or_channel, true,  apply_vlan<&set::native_vlan>},
    {HOST_CFG_ALLOWED_VLANS, sizeof(allowed_vlans_value), is_ethernet_or_channel, true, apply_allowed_vlans},
    {HOST_CFG_RECEIVE_PAUSE,           1, is_ethernet_or_channel, true,  apply_flow_control<PM_FLOW_CTRL_RECEIVE>},
    {HOST_CFG_SEND_PAUSE,              1, is_ethernet_or_channel, true,  apply_flow_control<PM_FLOW_CTRL_SEND>},
    {HOST_CFG_CHANNEL,                 2, is_port,                false, apply_channel},
};
// clang-format on

// A member's setting may be its channel's.
bool is_of_channel(const setting_rule& rule) { return rule.of_channel && !the_source().hands_settings_to_members(); }

// A member takes what it can of its channel's setting.
void hand_to_members(const interface& channel, const setting_rule& rule, const setting_value& value) {
  for (const if_index_t member : the_machine().members_of(channel.if_index)) {
    change_settings(*the_machine().find(member), [&](interface& port) { return rule.apply(port, value); });
  }
}

uint32 apply_to(interface& port, const setting_rule& rule, const setting_value& value) {
  if (port.refusal != 0) return port.refusal;
  if (port.is_locked) return PM_ERR_PORT_LOCKED;
  if (!rule.has_it(kind_of(port))) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  if (is_of_channel(rule) && port.settings.channel != 0) return PM_ERR_PORT_IN_CHANNEL;
  const uint32 status = change_settings(port, [&](interface& it) { return rule.apply(it, value); });
  if (status != 0) return status;
  if (is_of_channel(rule)) hand_to_members(port, rule, value);
  return 0;
}

const setting_rule* rule_of(uint8 type) {
  const auto* const found = std::find_if(std::begin(kRules), std::end(kRules),
                                         [type](const setting_rule& candidate) { return candidate.type == type; });
  return found == std::end(kRules) ? nullptr : found;
}

}  // namespace

bool has_setting_of_its_own(const interface& port, uint8 type) {
  const setting_rule* const rule = rule_of(type);
  return rule != nullptr && rule->has_it(kind_of(port)) && !(is_of_channel(*rule) && port.settings.channel != 0) &&
         the_source().applies_setting(type);
}

reply configure_ports(octets bytes) {
  setting_request head;
  if (bytes.size() < sizeof head) return reject();
  std::memcpy(&head, bytes.data(), sizeof head);
  bytes = bytes.subspan(sizeof head);
  if (bytes.size() < head.cfg_length) return reject();
  const setting_value value{bytes.first(head.cfg_length)};
  const octets ranges = bytes.subspan(head.cfg_length);
  if (ranges.size() != head.num_ranges * sizeof(range_request)) return reject();

  const setting_rule* const rule = rule_of(head.cfg_type);
  if (rule == nullptr) return answer_error(PM_ERR_UNKNOWN_TLV);
  if (rule->length != head.cfg_length) return reject();
  return answer_statuses(ranges, [&](interface& port) { return apply_to(port, *rule, value); });
}

}  // namespace host
