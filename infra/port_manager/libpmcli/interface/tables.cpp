// Tables of interfaces: one row for each, with cells of fixed width.

#include <cstdio>
#include <cstring>
#include <optional>

#include "interface/ip_address.h"
#include "interface/port_fields.h"
#include "platform/if_index.h"
#include "pm/port_attributes.h"
#include "pmcli/interface.h"
#include "pmcli/vlan.h"
#include "support/kind.h"
#include "support/print.h"
#include "support/text.h"
#include "transceiver/transceiver_record.h"

using namespace pmcli;

namespace {

bool shows_brief_row(if_index_type_t type) {
  switch (type) {
    case IF_TYPE_ETHERNET:
    case IF_TYPE_LOOPBACK:
    case IF_TYPE_PORT_CHANNEL:
    case IF_TYPE_ETH_PORT_CHANNEL:
    case IF_TYPE_SATELLITE:
    case IF_TYPE_MGMT: return true;
    default: return false;
  }
}

// A port that is not up shows the family of its reason; a loopback its state always.
void print_brief_status(cmd_rx_handle_t* rx, const pm_port_info_t& port, if_index_type_t type) {
  if (port.oper_port_state == PM_PORT_STATE_UP || type == IF_TYPE_LOOPBACK)
    print_enum(rx, "%-10.10s ", tag::state, port.oper_port_state);
  else
    print_enum(rx, "%-10.10s ", tag::brief_state_reason, port_state_reason_unique_enum(port.oper_state_reason));
}

void print_brief_address(cmd_rx_handle_t* rx, const pm_port_info_t& port, mts_q_handle_t q) {
  const std::optional<ipconf_if_inet_addr_info_t> address = ask_first_address(q, port.if_index);
  if (address && address->inet_addr.addr_type == INET_ADDR_TYPE_IPV4)
    print_ipv4(rx, "%-17.17s ", tag::ip_address, address->inet_addr.a.ipv4_addr);
  else
    print_absent(rx, "%-18.18s");
}

void print_name(cmd_rx_handle_t* rx, tuple_id<CMD_TYPE_STRING> tuple, const pm_port_info_t& port) {
  if (port.port_name[0] != '\0')
    print_text(rx, "%-18.18s ", tuple, terminate(port.port_name).text);
  else
    print_absent(rx, "%-19.19s");
}

// A port's VLAN, from the interface manager: a number for an access port, else a word.
void format_vlan(char (&cell)[10], const pm_port_info_t& port, mts_q_handle_t q) {
  if_info_t layer;
  vlan_id_t access_vlan = 0;
  if (pm_cli_get_layer_mode_access_vlan(port.if_index, q, &layer, &access_vlan) != 0)
    copy_text(cell, sizeof cell, "--");
  else if (layer.val.layer != IF_LAYER_2)
    copy_text(cell, sizeof cell, "routed");
  else if (port.oper_port_mode == PM_PORT_MODE_TRUNK)
    copy_text(cell, sizeof cell, "trunk");
  else
    std::snprintf(cell, sizeof cell, "%d", static_cast<int32>(access_vlan));
}

// An Ethernet-class port has no such cell at all, though the header has its column, which is intended.
void print_vlan(cmd_rx_handle_t* rx, const pm_port_info_t& port, if_index_type_t type, mts_q_handle_t q) {
  if (type == IF_TYPE_ETHERNET) return;
  char cell[10] = "routed";
  if (type != IF_TYPE_LOOPBACK && type != IF_TYPE_MGMT) format_vlan(cell, port, q);
  print_text(rx, "%-9.9s ", tag::status_vlan, cell);
}

// A text of 32 bytes that shows "--" until there is something better.
struct type_text {
  char text[32] = "--";
};

// The vendor of the port's transceiver; unchanged when there is none to name.
void name_transceiver_vendor(type_text& type, if_index_t if_index, mts_q_handle_t q) {
  pm_fcot_res_t transceiver;
  if (ask_transceiver(q, if_index, &transceiver) != 0 || transceiver.is_fcot_supported == FCOT_NONE) return;
  switch (transceiver.fcot_type) {
    case FCOT_TYPE_SFP:
    case FCOT_TYPE_SFP_PLUS:
      return copy_text(type.text, sizeof type.text, terminate(transceiver.fi.fcot_info.VendorName).text);
    case FCOT_TYPE_X2:
      return copy_text(type.text, sizeof type.text, terminate(transceiver.fi.x2_fcot_info.vendor_name).text);
    default: return;
  }
}

// The media type of the line card, or else of the transceiver.
type_text find_media_type(const pm_port_info_t& port, if_index_type_t type, mts_q_handle_t q) {
  type_text media;
  if (type != IF_TYPE_ETHERNET_L3 && type != IF_TYPE_ETHERNET) return media;
  pm_cli_common_capability_t capability{};
  if (pm_cli_get_port_capability(port.if_index, &capability) != 0) return media;
  if (capability.type[0] != '\0')
    copy_text(media.text, sizeof media.text, capability.type);
  else
    name_transceiver_vendor(media, port.if_index, q);
  return media;
}

}  // namespace

void print_eth_port_info_brief(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, mts_q_handle_t mts_q) {
  const pm_port_info_t& port = *port_info;
  const if_index_type_t type = kind_of(port.if_index);
  if (!shows_brief_row(type)) {
    std::printf("error: invalid if index type(%d)\n", type);
    return;
  }
  print_if_index(rx_handle, "%-24.24s ", tag::interface, port.if_index);
  print_brief_status(rx_handle, port, type);
  print_brief_address(rx_handle, port, mts_q);
  if (port.oper_port_speed != 0)
    print_enum(rx_handle, "%-8.8s ", tag::speed, port.oper_port_speed);
  else
    print_absent(rx_handle, "%-9.9s");
  if (port.admin_rxbufsize != 0)
    print_u32(rx_handle, "%-5.5s ", tag::mtu, port.admin_rxbufsize);
  else
    print_absent(rx_handle, "%-6.6s");
  cmd_prt(rx_handle, "\n");
}

void print_eth_port_status_line(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, mts_q_handle_t mts_q) {
  const pm_port_info_t& port = *port_info;
  const if_index_type_t type = kind_of(port.if_index);
  const bool is_ips = port.oper_port_mode == PM_PORT_MODE_IPS;
  const bool is_up = port.oper_port_state == PM_PORT_STATE_UP;

  cmd_print_short(rx_handle);
  print_if_index(rx_handle, "%-14.14s ", tag::status_interface, port.if_index);
  print_name(rx_handle, tag::status_description, port);
  print_enum(rx_handle, "%-8.8s ", tag::status_state, port.oper_port_state);
  print_vlan(rx_handle, port, type, mts_q);
  print_enum(rx_handle, "%-7.7s ", tag::status_duplex, is_ips ? port.admin_port_duplex : port.oper_port_duplex);
  print_enum(rx_handle, "%-7.7s ", tag::status_speed, is_up ? port.oper_port_speed : port.admin_port_speed);
  print_text(rx_handle, "%-11.11s\n", tag::status_type, find_media_type(port, type, mts_q).text);
}

void print_eth_port_err_status_line(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info, mts_q_handle_t) {
  const pm_port_info_t& port = *port_info;
  const uint8 reason = port.oper_state_reason;
  const bool is_error_disabled = port_state_reason_unique_enum(reason) == PM_REASON_ERROR_DISABLED;

  cmd_print_short(rx_handle);
  print_if_index(rx_handle, "%-10.10s ", tag::error_status_interface, port.if_index);
  print_name(rx_handle, tag::error_status_description, port);
  print_enum(rx_handle, "%-8.8s ", tag::error_status_state, port.oper_port_state);
  print_enum(rx_handle, "%s\n", tag::error_status_state_reason, is_error_disabled ? reason : uint8{PM_REASON_NONE});
}

void print_eth_port_description(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info) {
  print_if_index(rx_handle, "%-24.24s ", tag::description_interface, port_info->if_index);
  if (port_info->port_name[0] != '\0')
    print_text(rx_handle, "%s\n", tag::description_text, terminate(port_info->port_name).text);
  else
    cmd_prt(rx_handle, "--\n");
}

void print_eth_port_mac_address(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info) {
  print_if_index(rx_handle, "%-26.26s ", tag::mac_interface, port_info->if_index);
  print_mac(rx_handle, "%-15.15s ", tag::mac_address, port_info->router_mac);
  print_mac(rx_handle, "%s\n", tag::mac_burned_in_address, burned_in_mac(*port_info));
}

void print_port_ifindex(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info) {
  cmd_print_short(rx_handle);
  print_if_index(rx_handle, "%-14.14s", tag::ifindex_interface, port_info->if_index);
  print_u32(rx_handle, "  %-10.10s", tag::ifindex, port_info->if_index);
  print_hex32(rx_handle, " (%-10.10s)\n", tag::ifindex_hex, port_info->if_index);
}

void print_port_debounce(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info) {
  const uint16 debounce = port_info->admin_port_link_debounce;
  cmd_print_short(rx_handle);
  print_if_index(rx_handle, "%-13.13s ", tag::debounce_interface, port_info->if_index);
  print_text(rx_handle, "%-14.14s ", tag::debounce, debounce != 0 ? "enable" : "disable");
  print_u32(rx_handle, "%9s\n", tag::debounce_msec, debounce);
}
