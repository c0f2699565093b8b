// Trunk tables, one row for each port. Prints nothing yet: the rows come with the trunk displays.

#include "pmcli/vlan.h"

void pm_cli_print_eth_trunk_brief(cmd_rx_handle_t*, const pm_port_info_t*, mts_q_handle_t) {}
void pm_cli_print_eth_trunk_allowed_vlans(cmd_rx_handle_t*, const pm_port_info_t*, mts_q_handle_t) {}
void pm_cli_print_eth_trunk_stp_forwarding(cmd_rx_handle_t*, const pm_port_info_t*, mts_q_handle_t) {}
