// Fields of a port record that several displays read alike.
#pragma once

#include "platform/port_manager.h"
#include "support/print.h"

namespace pmcli {

// The burned-in MAC address: the last six bytes of the world-wide name.
inline const uint8* burned_in_mac(const pm_port_info_t& port) { return port.port_wwn + PM_WWN_BYTES - PM_MAC_BYTES; }

// The operational mode, but for a trunk the configured one.
inline uint32 shown_mode(const pm_port_info_t& port) {
  return port.oper_port_mode == PM_PORT_MODE_TRUNK ? port.admin_port_mode : port.oper_port_mode;
}

// The rest of the status line: the state, the reason unless the port is up, and the end of the line.
inline void print_state_and_reason(cmd_rx_handle_t* rx, const pm_port_info_t& port) {
  print_enum(rx, "is %s", tag::state, port.oper_port_state);
  if (port.oper_port_state != PM_PORT_STATE_UP) print_enum(rx, " (%s)", tag::state_reason, port.oper_state_reason);
  cmd_prt(rx, "\n");
}

// The line of MTU, bandwidth and delay; its begin and its end are worded by the display.
inline void print_mtu_bandwidth_delay(cmd_rx_handle_t* rx, const pm_port_info_t& port, const char* mtu_format,
                                      const char* delay_format) {
  print_u32(rx, mtu_format, tag::mtu, port.admin_rxbufsize);
  print_u32(rx, " BW %s Kbit,", tag::bandwidth, port.admin_port_bandwidth);
  print_u32(rx, delay_format, tag::delay, port.admin_port_delay * 10);  // recorded in tens of microseconds
}

}  // namespace pmcli
