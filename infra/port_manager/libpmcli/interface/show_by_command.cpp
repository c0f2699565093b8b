// One interface's display by command id: the port record is fetched, shown and freed.

#include <cstdio>
#include <cstring>

#include "interface/port_record.h"
#include "platform/if_index.h"
#include "platform/vlan_manager.h"
#include "pm/port_attributes.h"
#include "pmcli/counters.h"
#include "pmcli/displays.h"
#include "pmcli/interface.h"
#include "pmcli/transceiver.h"
#include "pmcli/vlan.h"
#include "support/command_ids.h"
#include "support/kind.h"
#include "support/scope.h"

using namespace pmcli;

namespace {

struct shown_port {
  cmd_rx_handle_t* rx;
  mts_q_handle_t q;
  if_index_t if_index;
  if_index_type_t type;
  pm_port_info_t* record;

  bool is_trunk() const { return record->admin_port_mode == PM_PORT_MODE_TRUNK; }
};

void show_nothing(const shown_port&) {}

void print_tracked_ports(const shown_port& port) {
  if (port.type == IF_TYPE_ETHERNET || port.type == IF_TYPE_PORT_CHANNEL || port.type == IF_TYPE_ETH_PORT_CHANNEL)
    pm_show_tracked_port_info(port.q, port.if_index);
}

// Statistics of the port; false after that they are unavailable was printed.
bool fetch_statistics(const shown_port& port, statscl_portcl_stats_msg_t* stats) {
  if (pm_cli_get_eth_stat_info(port.if_index, stats) == 0) return true;
  std::puts("stats unavailable");
  return false;
}

void show_detail(const shown_port& port) {
  pm_cli_common_show_intf_data_t data;
  pm_cli_get_port_data(port.if_index, port.q, &data);
  pm_cli_show_port_info(port.rx, port.record, &data);
  // The statistics only decide whether the tracked ports follow; no line shows them here.
  statscl_portcl_stats_msg_t stats;
  if (fetch_statistics(port, &stats)) print_tracked_ports(port);
}

void show_status(const shown_port& port) { print_eth_port_status_line(port.rx, port.record, port.q); }

void show_status_admin_down(const shown_port& port) {
  if (port.record->oper_state_reason == PM_REASON_ADMIN_DOWN) show_status(port);
}

void show_status_inactive(const shown_port& port) {
  if (port.record->oper_state_reason == PM_REASON_INACTIVE) show_status(port);
}

void show_status_up(const shown_port& port) {
  if (port.record->oper_port_state == PM_PORT_STATE_UP) show_status(port);
}

void show_error_status(const shown_port& port) { print_eth_port_err_status_line(port.rx, port.record, port.q); }

void show_error_disabled(const shown_port& port) {
  if (port_state_reason_unique_enum(port.record->oper_state_reason) == PM_REASON_ERROR_DISABLED)
    show_error_status(port);
}

void show_description(const shown_port& port) { print_eth_port_description(port.rx, port.record); }

void show_brief(const shown_port& port) { print_eth_port_info_brief(port.rx, port.record, port.q); }

void show_mac_address(const shown_port& port) { print_eth_port_mac_address(port.rx, port.record); }

void show_debounce(const shown_port& port) {
  if (port.type == IF_TYPE_ETHERNET) print_port_debounce(port.rx, port.record);
}

void show_if_index(const shown_port& port) {
  if (port.type == IF_TYPE_ETHERNET) print_port_ifindex(port.rx, port.record);
}

using diagnostics_printer = void (*)(mts_get_sfp_diag_info_t*, sfp_diag_info_ddm_tlvs_t*, boolean);

template <diagnostics_printer Print>
void show_transceiver(const shown_port& port) {
  if (print_port_fcot_info(port.q, port.record, 1) != 0) return;
  mts_get_sfp_diag_info_t diagnostics{};
  sfp_diag_info_ddm_tlvs_t further_values{};
  if (pm_get_sfp_diag_info_and_print_err(port.q, port.if_index, &diagnostics, &further_values) != 0) return;
  Print(&diagnostics, &further_values, 1);
}

// Ethernet ports show nothing here.
void show_capabilities(const shown_port& port) {
  pm_cli_common_capability_t capability{};
  if (port.type == IF_TYPE_MGMT) {
    pm_cli_get_mgmt_capability(port.if_index, &capability);
    pm_cli_show_port_capabities(port.rx, &capability);
  } else if (port.type == IF_TYPE_ETH_PORT_CHANNEL) {
    if (pm_cli_get_port_capability(port.if_index, &capability) == 0) pm_cli_show_port_capabities(port.rx, &capability);
  }
}

using errors_row = void (*)(cmd_rx_handle_t*, if_index_t, pm_cli_common_error_stat_t*);

template <errors_row Print>
void show_errors(const shown_port& port) {
  statscl_portcl_stats_msg_t stats;
  if (!fetch_statistics(port, &stats)) return;
  pm_cli_common_error_stat_t errors{};
  pm_cli_copy_eth_to_common_ctr_err(&errors, &stats);
  Print(port.rx, port.if_index, &errors);
}

void show_trunk_counters(const shown_port& port) {
  statscl_portcl_stats_msg_t stats;
  if (!fetch_statistics(port, &stats)) return;
  pm_cli_common_trunk_stat_t trunk{};
  pm_cli_copy_eth_to_common_trunk_ctr(&trunk, &stats);
  pm_cli_show_port_counters_trunk(port.rx, &trunk, port.if_index);
}

void show_flow_control(const shown_port& port) {
  statscl_portcl_stats_msg_t stats;
  if (fetch_statistics(port, &stats)) pm_cli_show_port_flow_ctrl(port.rx, port.record, &stats);
}

void show_received(const shown_port& port) {
  statscl_portcl_stats_msg_t stats;
  if (fetch_statistics(port, &stats)) pm_cli_show_eth_port_stats_rx(port.rx, &stats);
}

void show_sent(const shown_port& port) {
  statscl_portcl_stats_msg_t stats;
  if (fetch_statistics(port, &stats)) pm_cli_show_eth_port_stats_tx(port.rx, &stats);
}

void show_detailed_counters(const shown_port& port) {
  statscl_portcl_stats_msg_t stats;
  if (!fetch_statistics(port, &stats)) return;
  pfstat_key_cntrs_t forwarding;
  std::memset(&forwarding, 0, sizeof forwarding);
  pm_cli_get_pfstat_counters(port.if_index, port.q, &forwarding, 0);
  pm_cli_show_common_eth_counters_detailed(port.rx, &forwarding, &stats);
}

void print_vlan_membership(const shown_port& port) {
  service_library vlan_manager(VLAN_MGR_LIBRARY, RTLD_LAZY);
  if (!vlan_manager) {
    std::puts("libvlan_mgr.so missing");
    return;
  }
  trunk_port_memb_t membership{};
  const syserr_t error = pm_cli_get_vlan_memb_info(vlan_manager.handle(), port.q, port.if_index, &membership);
  if (error != 0) std::puts("Couldn't call pm_cli_get_vlan_memb_info");
  vlan_manager.close();
  if (error == 0) print_vlan_memb_info(port.rx, &membership);
}

void show_trunk_detail(const shown_port& port) {
  if (!port.is_trunk()) return;
  print_eth_port_info(port.rx, port.q, port.record);
  print_tracked_ports(port);
  print_vlan_membership(port);
}

using trunk_row = void (*)(cmd_rx_handle_t*, const pm_port_info_t*, mts_q_handle_t);

template <trunk_row Print>
void show_trunk(const shown_port& port) {
  if (port.type != IF_TYPE_MGMT && port.is_trunk()) Print(port.rx, port.record, port.q);
}

using display = void (*)(const shown_port& port);

constexpr command_ids<display> kDisplays[] = {
    {DISPLAY_DETAIL, show_detail},
    {DISPLAY_STATUS, show_status},
    {DISPLAY_COUNTERS, show_nothing},
    {DISPLAY_DESCRIPTION, show_description},
    {DISPLAY_BRIEF, show_brief},
    {DISPLAY_TRANSCEIVER, show_transceiver<pm_print_sfp_diag_info>},
    {DISPLAY_TRANSCEIVER_CALIBRATION, show_transceiver<pm_print_sfp_calibration_info>},
    {DISPLAY_TRANSCEIVER_DETAIL, show_transceiver<pm_print_sfp_diag_detail_info>},
    {DISPLAY_CAPABILITIES, show_capabilities},
    {DISPLAY_ERRORS_FIRST, show_errors<pm_cli_show_port_1st_counters_errors_table>},
    {DISPLAY_TRUNK_COUNTERS, show_trunk_counters},
    {DISPLAY_DEBOUNCE, show_debounce},
    {DISPLAY_FLOW_CONTROL, show_flow_control},
    {DISPLAY_STATUS_ADMIN_DOWN, show_status_admin_down},
    {DISPLAY_ERROR_DISABLED, show_error_disabled},
    {DISPLAY_STATUS_INACTIVE, show_status_inactive},
    {DISPLAY_STATUS_OF_MODULE, show_status},
    {DISPLAY_STATUS_UP, show_status_up},
    {DISPLAY_TRUNK_DETAIL, DISPLAY_TRUNK_DETAIL_OF_VLANS, show_trunk_detail},
    {DISPLAY_STATUS_OF_MODULE_32, show_status},
    {DISPLAY_TRUNK_DETAIL_OF_MODULE_33, show_trunk_detail},
    {DISPLAY_FLOW_CONTROL_OF_MODULE, DISPLAY_FLOW_CONTROL_OF_MODULE_35, show_flow_control},
    {DISPLAY_MAC_ADDRESS, show_mac_address},
    {DISPLAY_TRUNK_STATUS, show_trunk<pm_cli_print_eth_trunk_brief>},
    {DISPLAY_TRUNK_ALLOWED_VLANS, show_trunk<pm_cli_print_eth_trunk_allowed_vlans>},
    {DISPLAY_TRUNK_FORWARDING_VLANS, show_trunk<pm_cli_print_eth_trunk_stp_forwarding>},
    {DISPLAY_NOTHING_OF_MODULE_42, DISPLAY_NOTHING_OF_MODULE_43, show_nothing},
    {DISPLAY_RECEIVED, DISPLAY_RECEIVED_46, show_received},
    {DISPLAY_SENT, DISPLAY_SENT_49, show_sent},
    {DISPLAY_ERRORS_FIRST_OF_MODULE, DISPLAY_ERRORS_FIRST_OF_MODULE_51,
     show_errors<pm_cli_show_port_1st_counters_errors_table>},
    {DISPLAY_ERRORS_SECOND, DISPLAY_ERRORS_SECOND_54, show_errors<pm_cli_show_port_2nd_counters_errors_table>},
    {DISPLAY_ERRORS_THIRD, DISPLAY_ERRORS_THIRD_57, show_errors<pm_cli_show_port_3rd_counters_errors_table>},
    {DISPLAY_COUNTERS_NONZERO, show_detailed_counters},
    {DISPLAY_COUNTERS_ALL, show_nothing},
    {DISPLAY_ERROR_STATUS, show_error_status},
    {DISPLAY_IF_INDEX, show_if_index},
};

}  // namespace

void pm_cli_show_eth_port_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t src_q, uint32 command, if_index_t if_index) {
  const if_index_type_t type = kind_of(if_index);
  const heap_block<pm_port_info_t> record = fetch_port_record(src_q, if_index);
  if (record == nullptr) return;
  const auto show = find_action<display>(kDisplays, command, nullptr);
  if (show == nullptr) {
    std::puts("Option not supported");
    return;
  }
  show({rx_handle, src_q, if_index, type, record.get()});
}
