#include "switch/settings_merge.h"

#include <cstddef>
#include <iterator>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/port_manager.h"
#include "switch/source.h"

namespace host {
namespace {

// Every setting; the names do not compile when there are more or fewer.
template <typename Settings>
auto all_of(Settings& settings) {
  auto& [description, admin_mode, admin_speed_mbps, admin_duplex, admin_state, mtu_bytes, beacon_on, span_monitor,
         service_state, layer, channel, access_vlan, native_vlan, allowed_vlans, admin_flow_control, is_edge,
         trunking_mode, encapsulation, receive_buffer_bytes, promiscuous_mode, receive_credit, performance_buffers,
         extended_credit, credit_multiplier, ignore_bit_errors, bb_scn, down_on_link_failure, attribute_31,
         attribute_36, attribute_44, attribute_84, attribute_85] = settings;
  return std::tie(description, admin_mode, admin_speed_mbps, admin_duplex, admin_state, mtu_bytes, beacon_on,
                  span_monitor, service_state, layer, channel, access_vlan, native_vlan, allowed_vlans,
                  admin_flow_control, is_edge, trunking_mode, encapsulation, receive_buffer_bytes, promiscuous_mode,
                  receive_credit, performance_buffers, extended_credit, credit_multiplier, ignore_bit_errors, bb_scn,
                  down_on_link_failure, attribute_31, attribute_36, attribute_44, attribute_84, attribute_85);
}

template <typename Value>
void merge(Value& now, const Value& from, const Value& to) {
  if (from != to) now = to;
}

// Absent without any side that is known.
std::optional<uint16> merged_flow_control(const std::optional<uint16>& now, const std::optional<uint16>& from,
                                          const std::optional<uint16>& to) {
  if (from == to) return now;
  if (!to) return to;
  uint16 merged = now.value_or(0);
  for (const uint16 side : {PM_FLOW_CTRL_RECEIVE, PM_FLOW_CTRL_SEND}) {
    const uint16 wanted = *to & side;
    if (wanted != (from.value_or(0) & side)) merged = static_cast<uint16>((merged & ~side) | wanted);
  }
  return merged;
}

using set = port_settings;

// Copies settings of `wanted` to `port`.
using copy_step = void (*)(set& port, const set& wanted);

template <auto... Member>
void copy(set& port, const set& wanted) {
  (..., (port.*Member = wanted.*Member));
}

// A port that joins a channel takes its settings over at once.
void join_channel(set& port, const set& wanted) {
  if (wanted.channel == port.channel || wanted.channel == 0) return;
  copy<&set::channel, &set::admin_mode, &set::admin_speed_mbps, &set::layer, &set::mtu_bytes, &set::access_vlan,
       &set::native_vlan, &set::admin_flow_control, &set::admin_duplex, &set::trunking_mode, &set::encapsulation,
       &set::allowed_vlans>(port, wanted);
}

// A port is switched off before anything else and switched on when all is done; it leaves a channel before it takes
// settings of its own.
constexpr copy_step kSteps[] = {
    [](set& port, const set& wanted) {
      if (wanted.admin_state != PM_PORT_STATE_UP) port.admin_state = wanted.admin_state;
    },
    [](set& port, const set& wanted) {
      if (wanted.channel != port.channel) port.channel = 0;
    },
    join_channel,
    copy<&set::description>,
    copy<&set::layer, &set::admin_mode, &set::access_vlan, &set::native_vlan, &set::allowed_vlans, &set::is_edge>,
    copy<&set::admin_speed_mbps, &set::admin_duplex>,
    copy<&set::admin_flow_control>,
    copy<&set::mtu_bytes>,
    copy<&set::beacon_on>,
    [](set& port, const set& wanted) {
      const uint8 state = port.admin_state;
      port = wanted;
      port.admin_state = state;
    },
    copy<&set::admin_state>,
};

uint32 apply_step(interface& port, const set& wanted) {
  const set before = std::exchange(port.settings, wanted);
  const uint32 status = the_source().apply_settings(port, before);
  if (status != 0) port.settings = before;
  return status;
}

}  // namespace

port_settings merged_settings(port_settings now, const port_settings& from, const port_settings& to) {
  const std::optional<uint16> flow_control =
      merged_flow_control(now.admin_flow_control, from.admin_flow_control, to.admin_flow_control);
  const auto into = all_of(now);
  const auto one = all_of(from), other = all_of(to);
  [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
    (..., merge(std::get<kIndex>(into), std::get<kIndex>(one), std::get<kIndex>(other)));
  }
  (std::make_index_sequence<std::tuple_size_v<decltype(into)>>());
  now.admin_flow_control = flow_control;
  return now;
}

uint32 apply_in_steps(interface& port, const port_settings& wanted) {
  std::vector<set> before;  // each step that was made
  for (const copy_step step : kSteps) {
    set next = port.settings;
    step(next, wanted);
    if (next == port.settings) continue;
    const set now = port.settings;
    const uint32 status = apply_step(port, next);
    if (status == 0) {
      before.push_back(now);
      continue;
    }
    for (auto it = before.rbegin(); it != before.rend(); ++it) apply_step(port, *it);
    return status;
  }
  return 0;
}

}  // namespace host
