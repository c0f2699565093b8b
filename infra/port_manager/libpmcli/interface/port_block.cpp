// The common detailed block with which every detailed view begins.

#include <cstdio>
#include <cstring>

#include "interface/port_fields.h"
#include "platform/if_index.h"
#include "platform/port_channel.h"
#include "pmcli/interface.h"
#include "support/kind.h"
#include "support/print.h"
#include "support/text.h"

using namespace pmcli;

namespace {

using intf_data = pm_cli_common_show_intf_data_t;

// The binding of a virtual Ethernet interface.
void print_binding(cmd_rx_handle_t* rx, const pm_port_info_t& port) {
  if (kind_of(port.if_index) != IF_TYPE_VETHERNET) return;
  if (port.bound_ifindex != 0)
    print_if_index(rx, "    Bound Interface is %s \n", tag::bound_interface, port.bound_ifindex);
  else
    cmd_prt(rx, "    Bound Interface is -- \n");
}

void print_multi_chassis_status(cmd_rx_handle_t* rx, const pm_port_info_t& port) {
  char status[MCEC_STATUS_BYTES] = {};
  mcecm_api_sdb_sh_int_po(port.if_index, status);
  status[sizeof status - 1] = '\0';
  if (status[0] == '\0') return;
  print_text(rx, " %s", tag::multi_chassis_status, status);
  cmd_prt(rx, "\n");
}

// A routed interface shows its router's address, followed by the burned-in one.
void print_hardware(cmd_rx_handle_t* rx, const pm_port_info_t& port, const intf_data& data) {
  print_text(rx, "  Hardware: %s", tag::hardware, data.hardware);
  if (data.physical || data.port_channel) {
    print_mac(rx, ", address: %s", tag::address, data.layer2 ? burned_in_mac(port) : port.router_mac);
    print_mac(rx, " (bia %s)", tag::burned_in_address, burned_in_mac(port));
  }
  cmd_prt(rx, "\n");
}

void print_address(cmd_rx_handle_t* rx, const ipconf_if_inet_addr_info_t& address) {
  if (address.inet_addr.addr_type != INET_ADDR_TYPE_IPV4) return;
  print_ipv4(rx, "  Internet Address is %s", tag::ip_address, address.inet_addr.a.ipv4_addr);
  print_u32(rx, "/%s\n", tag::prefix_length, address.prefix_len);
}

// A figure on the 0..255 scale travels as text.
struct figure_text {
  explicit figure_text(uint16 figure) { std::snprintf(text, sizeof text, "%d", figure); }
  char text[8];
};

// Transmit load before receive load.
void print_loads(cmd_rx_handle_t* rx, const intf_data& data) {
  print_text(rx, "     reliability %s/255,", tag::reliability, figure_text(data.reliability).text);
  print_text(rx, " txload %s/255,", tag::tx_load, figure_text(data.tx_load).text);
  print_text(rx, " rxload %s/255\n", tag::rx_load, figure_text(data.rx_load).text);
}

void print_encapsulation(cmd_rx_handle_t* rx, const pm_port_info_t& port, const intf_data& data) {
  cmd_prt(rx, "  Encapsulation ");
  if (port.admin_si_vlan_id != 0) {
    char text[40];
    std::snprintf(text, sizeof text, "802.1Q Virtual LAN, Vlan ID %u", static_cast<uint32>(port.admin_si_vlan_id));
    cmd_prt(rx, text);
  } else {
    cmd_prt(rx, data.encap);
  }
  cmd_prt(rx, "\n");
}

void print_duplex_and_speed(cmd_rx_handle_t* rx, const pm_port_info_t& port, const intf_data& data) {
  const bool shows_oper = port.oper_port_state == PM_PORT_STATE_UP && port.oper_port_mode != PM_PORT_MODE_IPS;
  print_enum(rx, "  %s-duplex,", tag::duplex, shows_oper ? port.oper_port_duplex : port.admin_port_duplex);
  print_enum(rx, " %s", tag::speed, port.oper_port_speed);
  if (data.fcot_supported)
    print_text(rx, ", media type is %s\n", tag::media_type, data.type);
  else
    cmd_prt(rx, "\n");
}

void print_flow_control(cmd_rx_handle_t* rx, const pm_port_info_t& port) {
  const uint32 flow = port.admin_port_flow_ctrl;
  print_enum(rx, "  Input flow-control is %s,", tag::input_flow_control, flow & PM_FLOW_CTRL_RECEIVE);
  print_enum(rx, " output flow-control is %s\n", tag::output_flow_control, flow & PM_FLOW_CTRL_SEND);
}

void print_times(cmd_rx_handle_t* rx, const intf_data& data) {
  if (data.last_flapped[0] != '\0')
    print_text(rx, "  Last link flapped %s\n", tag::last_link_flapped, data.last_flapped);
  if (data.last_cleared[0] != '\0')
    print_text(rx, "  Last clearing of \"show interface\" counters %s\n", tag::last_counters_cleared,
               data.last_cleared);
}

}  // namespace

void pm_cli_show_port_info(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                           pm_cli_common_show_intf_data_t* port_data) {
  const pm_port_info_t& port = *port_info;
  const intf_data& data = *port_data;
  const bool is_whole_interface = data.sub_interface == 0;

  print_if_index(rx_handle, "%s ", tag::interface, port.if_index);
  print_state_and_reason(rx_handle, port);
  print_binding(rx_handle, port);
  if (data.port_channel) print_multi_chassis_status(rx_handle, port);
  print_hardware(rx_handle, port, data);
  if (port.port_name[0] != '\0')
    print_text(rx_handle, "  Description: %s\n", tag::description, terminate(port.port_name).text);
  print_address(rx_handle, data.inet_addr);
  print_mtu_bandwidth_delay(rx_handle, port, "  MTU %s bytes,", " DLY %s usec,\n");
  print_loads(rx_handle, data);
  print_encapsulation(rx_handle, port, data);
  if (data.layer2) print_enum(rx_handle, "  Port mode is %s\n", tag::port_mode, shown_mode(port));
  if ((data.physical || data.port_channel) && is_whole_interface) print_duplex_and_speed(rx_handle, port, data);
  if (data.flowcontrol_supported) print_flow_control(rx_handle, port);
  if (data.mdix_supported)
    print_enum(rx_handle, "  Auto-mdix is turned %s\n", tag::auto_mdix,
               port.admin_mdix_mode == PM_PORT_MDIX_ON ? 1 : 0);
  if (data.fcot_supported && is_whole_interface)
    print_enum(rx_handle, "  Rate mode is %s\n", tag::rate_mode, port.admin_port_rate_mode);
  if (data.span_supported)
    print_enum(rx_handle, "  Switchport monitor is %s \n", tag::switchport_monitor, port.span_mode);
  if (!is_whole_interface) return;
  if (data.port_channel) print_eth_port_channel_members(rx_handle, port.if_index);
  print_times(rx_handle, data);
}

void pm_cli_show_port_reset_cntr(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                                 pm_cli_common_show_intf_data_t*) {
  print_u32(rx_handle, "  %s interface resets\n", tag::interface_resets, port_info->reset_cntr);
}
