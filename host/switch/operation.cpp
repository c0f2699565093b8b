#include "switch/operation.h"

#include <algorithm>

#include "platform/port_manager.h"
#include "switch/link.h"

namespace host {
namespace {

// Speeds that are set: up to the last one of these both ends agree, at most on so many Mbit/s.
constexpr uint32 kMostOfAutomatic[] = {UINT32_MAX, 2000, 4000};

bool is_up(const interface& port) { return port.oper_state == PM_PORT_STATE_UP; }

uint32 agreed_mode(const interface& port) {
  const uint32 mode = port.settings.admin_mode;
  const bool is_open = mode == PM_PORT_MODE_AUTO || mode == port.at_start.admin_mode;
  return is_open ? port.partner.mode.value_or(mode) : mode;
}

uint32 agreed_speed_mbps(const interface& port) {
  const uint32 speed = port.settings.admin_speed_mbps;
  if (speed >= std::size(kMostOfAutomatic))
    return speed == port.at_start.admin_speed_mbps ? port.partner.speed_mbps.value_or(speed) : speed;
  const uint32 fastest = is_up(port) ? fastest_mbps(port.capabilities.speeds.value_or(0)) : 0;
  return std::min(port.partner.speed_mbps.value_or(fastest), kMostOfAutomatic[speed]);
}

uint8 agreed_duplex(const interface& port) {
  const uint8 duplex = port.settings.admin_duplex;
  const bool is_auto = duplex == PM_PORT_DUPLEX_AUTO;
  if (port.partner.duplex && (is_auto || duplex == port.at_start.admin_duplex)) return *port.partner.duplex;
  return is_auto && is_up(port) ? uint8{PM_PORT_DUPLEX_FULL} : duplex;
}

// A side that is on or off ignores the partner; one that is desired is on when the partner agrees.
uint16 agreed_flow_control(const interface& port) {
  uint16 agreed = 0;
  for (const uint16 side : {PM_FLOW_CTRL_RECEIVE, PM_FLOW_CTRL_SEND}) {
    const uint16 requested = port.settings.admin_flow_control.value_or(0) & side;
    const bool is_desired = (requested & PM_FLOW_CTRL_DESIRED) != 0;
    agreed |= is_desired ? port.partner.flow_control & PM_FLOW_CTRL_ON & side : requested;
  }
  return is_up(port) ? agreed : uint16{0};
}

}  // namespace

void negotiate(interface& port) {
  port.oper_mode = agreed_mode(port);
  port.oper_speed_mbps = agreed_speed_mbps(port);
  port.oper_duplex = agreed_duplex(port);
  port.oper_flow_control = agreed_flow_control(port);
}

void follow_settings(interface& port, const port_settings& before) {
  if (port.settings.admin_state != before.admin_state) {
    if (port.settings.admin_state == PM_PORT_STATE_DOWN) {
      port.link_before_shutdown = interface::link { port.oper_state, port.state_reason };
      set_link(port, PM_PORT_STATE_DOWN, PM_REASON_ADMIN_DOWN);
    } else {
      const auto link = port.link_before_shutdown.value_or(interface::link{PM_PORT_STATE_UP, PM_REASON_NONE});
      set_link(port, link.state, link.reason);
      port.link_before_shutdown.reset();
    }
  }
  negotiate(port);
}

}  // namespace host
