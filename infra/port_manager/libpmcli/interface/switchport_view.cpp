// The switchport-style detailed view of a port, a port-channel, a loopback or the management port.

#include <cstdio>

#include "interface/eth_statistics.h"
#include "interface/management.h"
#include "interface/port_fields.h"
#include "platform/eth_statistics.h"
#include "platform/if_index.h"
#include "pm/port_attributes.h"
#include "pmcli/interface.h"
#include "support/errors.h"
#include "support/kind.h"
#include "support/print.h"
#include "support/text.h"

using namespace pmcli;

namespace {

bool is_ips(const pm_port_info_t& port) { return port.oper_port_mode == PM_PORT_MODE_IPS; }

void print_speed_and_duplex(cmd_rx_handle_t* rx, const pm_port_info_t& port) {
  const bool shows_oper = port.oper_port_state == PM_PORT_STATE_UP && !is_ips(port);
  print_enum(rx, "    Speed is %s\n", tag::speed, port.oper_port_speed);
  print_enum(rx, "    Duplex mode is %s\n", tag::duplex, shows_oper ? port.oper_port_duplex : port.admin_port_duplex);
}

void print_flow_control_directions(cmd_rx_handle_t* rx, const pm_port_info_t& port) {
  const uint16 flow = port.admin_port_flow_ctrl;
  char line[80];
  std::snprintf(line, sizeof line - 1, "    Receive flow-control is %s, Send flow-control is %s\n",
                port_flowctrl_mode_string(flow & PM_FLOW_CTRL_RECEIVE),
                port_flowctrl_mode_string(flow & PM_FLOW_CTRL_SEND));
  cmd_prt(rx, line);
}

// An IPS port shows two lines of mode, which is intended.
void print_port_lines(cmd_rx_handle_t* rx, const pm_port_info_t& port) {
  if (is_ips(port)) cmd_prt(rx, "    Port mode is IPS\n");
  print_enum(rx, "    Port mode is %s\n", tag::port_mode, shown_mode(port));
  print_speed_and_duplex(rx, port);
  print_flow_control_directions(rx, port);
}

// The status line is printed a second time as the first of the common lines, which is intended.
void print_channel(cmd_rx_handle_t* rx, mts_q_handle_t q, pm_port_info_t* record, if_index_type_t type) {
  const pm_port_info_t& port = *record;
  print_eth_port_common_info(rx, record);
  show_eth_intf_resp_t statistics{};
  if (is_ips(port) && !fetch_eth_statistics(q, port.if_index, type, &statistics)) return;

  print_mac(rx, "    Hardware is GigabitEthernet, address is %s\n", tag::address, burned_in_mac(port));
  uint16 sub_interface = 0;
  if (if_index_get_sub_intf(port.if_index, &sub_interface) != 0) sub_interface = 0;
  print_eth_mtu_bw_dly(rx, record, sub_interface);
  if (sub_interface == 0) print_port_lines(rx, port);
  if (pm_is_bundle_port_type(port.if_index) && !if_index_is_sub_intf(port.if_index))
    print_eth_port_channel_members(rx, port.if_index);
  pm_cli_eth_intf_stats_print(rx, &statistics, 0);
}

void print_management(cmd_rx_handle_t* rx, mts_q_handle_t q, pm_port_info_t* port) {
  print_eth_port_common_info(rx, port);
  char device[16] = "";
  pm_get_mgmt_kernel_ifname(port->if_index, device, sizeof device);
  print_mgmt_port_config(rx, 1, q, port->if_index, nullptr, nullptr, nullptr, device);
}

}  // namespace

void print_eth_port_status(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info) {
  const pm_port_info_t& port = *port_info;
  print_if_index(rx_handle, "%s ", tag::interface, port.if_index);
  const auto status = static_cast<syserr_t>(static_cast<uint32>(port.status));
  if (status != 0) {
    std::printf("    Error: %X:%s\n", static_cast<uint32>(status), system_error_text(status));
    return;
  }
  print_state_and_reason(rx_handle, port);
}

void print_eth_port_common_info(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info) {
  const pm_port_info_t& port = *port_info;
  print_eth_port_status(rx_handle, port_info);
  if (port.port_name[0] != '\0')
    print_text(rx_handle, "    Port description is %s\n", tag::description, terminate(port.port_name).text);
  if (port.is_part_of_bundle == 1)
    print_text_as_number(rx_handle, "    Belongs to %s\n", tag::member_of, interface_name(port.bundle_if_index).text);
}

// Unlike in the common block, four leading blanks and no comma at the end, which is intended.
void print_eth_mtu_bw_dly(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, int) {
  print_mtu_bandwidth_delay(rx_handle, *port_info, "    MTU %s bytes,", " DLY %s usec\n");
}

void print_eth_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t mts_q, pm_port_info_t* port_info) {
  const if_index_type_t type = kind_of(port_info->if_index);
  switch (type) {
    case IF_TYPE_ETHERNET:
    case IF_TYPE_LOOPBACK:
    case IF_TYPE_MGMT:
    case IF_TYPE_PORT_CHANNEL:
    case IF_TYPE_ETH_PORT_CHANNEL: break;
    default: std::printf("error: invalid if index type(%d)\n", type); return;
  }
  if (type == IF_TYPE_PORT_CHANNEL && port_info->phy_port_layer == PM_PHY_LAYER_FC) return;

  print_eth_port_status(rx_handle, port_info);
  switch (type) {
    case IF_TYPE_ETHERNET_L3:  // refused above, and kept with its kin
    case IF_TYPE_PORT_CHANNEL:
    case IF_TYPE_ETH_PORT_CHANNEL: return print_channel(rx_handle, mts_q, port_info, type);
    case IF_TYPE_LOOPBACK:
      print_eth_port_common_info(rx_handle, port_info);
      return print_loopback_port_config(rx_handle, port_info->if_index);
    case IF_TYPE_MGMT: return print_management(rx_handle, mts_q, port_info);
    default: return;  // an Ethernet-class port shows its status only
  }
}
