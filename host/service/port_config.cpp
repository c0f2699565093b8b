#include "service/port_config.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/card_config.h"
#include "platform/port_config.h"
#include "service/answers.h"
#include "service/port_manager_messages.h"
#include "switch/clock.h"

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

bool has_service_state(if_index_type_t kind) { return is_port(kind); }

// ---- What each setting does -----------------------------------------------------------------------------------------

// Each returns the port's status and changes nothing when that is not 0.
using apply_function = uint32 (*)(interface& port, const setting_value& value);

void set_link(interface& port, uint8 state, uint8 reason) {
  if (port.oper_state != state) port.link_change_sec = static_cast<uint32>(clock_now());
  port.oper_state = state;
  port.state_reason = reason;
}

uint32 apply_state(interface& port, const setting_value& value) {
  const uint32 state = value.number();
  if (state != PM_PORT_STATE_UP && state != PM_PORT_STATE_DOWN) return PM_ERR_VALUE_OUT_OF_RANGE;
  if (state == port.admin_state) return 0;
  port.admin_state = static_cast<uint8>(state);
  if (state == PM_PORT_STATE_DOWN) {
    port.link_before_shutdown = interface::link { port.oper_state, port.state_reason };
    set_link(port, PM_PORT_STATE_DOWN, PM_REASON_ADMIN_DOWN);
  } else {
    const auto before = port.link_before_shutdown.value_or(interface::link{PM_PORT_STATE_UP, PM_REASON_NONE});
    set_link(port, before.state, before.reason);
  }
  return 0;
}

uint32 apply_mode(interface& port, const setting_value& value) {
  port.admin_mode = value.number();
  if (port.admin_mode != 0x80000000) port.oper_mode = port.admin_mode;  // that bit asks for the default
  return 0;
}

uint32 apply_speed(interface& port, const setting_value& value) {
  struct speed {
    uint32 mbps;
    uint8 capability;
  };
  constexpr speed kSpeeds[] = {
      {0, 0}, {10, CRDCFG_SPEED_10M}, {100, CRDCFG_SPEED_100M}, {1000, CRDCFG_SPEED_1G}, {10000, CRDCFG_SPEED_10G}};
  const uint32 wanted = value.number();
  const auto found = std::find_if(std::begin(kSpeeds), std::end(kSpeeds), [=](speed s) { return s.mbps == wanted; });
  if (found == std::end(kSpeeds)) return PM_ERR_SPEED_NOT_SUPPORTED;
  if (found->capability != 0 && (port.capabilities.speeds & found->capability) == 0) return PM_ERR_SPEED_NOT_SUPPORTED;
  port.admin_speed_mbps = wanted;
  if (wanted != 0) port.oper_speed_mbps = wanted;
  return 0;
}

uint32 apply_duplex(interface& port, const setting_value& value) {
  const uint32 duplex = value.number();
  if (duplex < PM_PORT_DUPLEX_FULL || duplex > PM_PORT_DUPLEX_AUTO) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.admin_duplex = static_cast<uint8>(duplex);
  if (duplex != PM_PORT_DUPLEX_AUTO) port.oper_duplex = port.admin_duplex;
  return 0;
}

// On is 1, off is 2.
uint32 apply_beacon(interface& port, const setting_value& value) {
  if (value.number() != 1 && value.number() != 2) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.beacon_on = value.number() == 1;
  return 0;
}

uint32 apply_name(interface& port, const setting_value& value) {
  port.description = value.text();
  return 0;
}

uint32 apply_mtu(interface& port, const setting_value& value) {
  constexpr uint32 kSmallest = 576, kLargest = 9216;  // bytes
  if (value.number() < kSmallest || value.number() > kLargest) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.mtu_bytes = static_cast<uint16>(value.number());
  return 0;
}

uint32 apply_service_state(interface& port, const setting_value& value) {
  if (value.number() > 1) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.service_state = value.number();
  return 0;
}

// 2 is switched, 3 is routed.
uint32 apply_switchport(interface& port, const setting_value& value) {
  if (value.number() != 2 && value.number() != 3) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.layer = value.number();
  return 0;
}

uint32 apply_monitor(interface& port, const setting_value& value) {
  if (value.number() > 3) return PM_ERR_VALUE_OUT_OF_RANGE;
  port.span_monitor_on = value.number() != 0;
  return 0;
}

struct setting_rule {
  uint8 type;
  uint8 length;  // bytes of the value
  bool (*has_it)(if_index_type_t kind);
  bool of_channel;  // a member's is its channel's
  apply_function apply;
};

constexpr setting_rule kRules[] = {
    {PM_CFG_PORT_STATE, 1, is_any, false, apply_state},
    {PM_CFG_PORT_MODE, 4, has_mode, true, apply_mode},
    {PM_CFG_SPEED, 4, has_speed, true, apply_speed},
    {PM_CFG_BEACON, 1, is_port, false, apply_beacon},
    {PM_CFG_NAME, PM_PORT_NAME_BYTES, is_any, false, apply_name},
    {PM_CFG_DUPLEX, 1, has_speed, true, apply_duplex},
    {PM_CFG_MTU, 4, is_ethernet_or_channel, true, apply_mtu},
    {PM_CFG_SERVICE_STATE, 4, has_service_state, false, apply_service_state},
    {PM_CFG_SWITCHPORT, 4, is_ethernet_or_channel, true, apply_switchport},
    {PM_CFG_MONITOR, 4, is_ethernet_or_channel, false, apply_monitor},
};

uint32 apply_to(interface& port, const setting_rule& rule, const setting_value& value) {
  if (!rule.has_it(kind_of(port))) return PM_ERR_NOT_ALLOWED_ON_INTERFACE;
  if (rule.of_channel && port.channel != 0) return PM_ERR_PORT_IN_CHANNEL;
  return rule.apply(port, value);
}

void apply_to_range(const range_request& range, const setting_rule& rule, const setting_value& value,
                    answer_writer* answer) {
  const auto [error, ports] = find_range(range);
  if (error != 0) return answer->append(pm_port_cfg_status_t{range.low, static_cast<uint32>(error)});
  for (interface& port : ports) answer->append(pm_port_cfg_status_t{port.if_index, apply_to(port, rule, value)});
}

}  // namespace

reply configure_ports(octets bytes) {
  setting_request head;
  if (bytes.size() < sizeof head) return reject();
  std::memcpy(&head, bytes.data(), sizeof head);
  bytes = bytes.subspan(sizeof head);
  if (bytes.size() < head.cfg_length) return reject();
  const setting_value value{bytes.first(head.cfg_length)};
  const octets ranges = bytes.subspan(head.cfg_length);
  if (ranges.size() % sizeof(range_request) != 0 || ranges.size() / sizeof(range_request) != head.num_ranges)
    return reject();

  const auto rule = std::find_if(std::begin(kRules), std::end(kRules),
                                 [&head](const setting_rule& candidate) { return candidate.type == head.cfg_type; });
  if (rule == std::end(kRules)) return answer_error(PM_ERR_UNKNOWN_TLV);
  if (rule->length != head.cfg_length) return reject();
  answer_writer answer(head.num_ranges * sizeof(pm_port_cfg_status_t));
  for (std::size_t at = 0; at < ranges.size(); at += sizeof(range_request)) {
    range_request range;
    std::memcpy(&range, ranges.data() + at, sizeof range);
    apply_to_range(range, *rule, value, &answer);
  }
  return answer.finish();
}

}  // namespace host
