// Counter tables, one row for each interface. Prints nothing yet: the rows come with the counter displays.

#include "pmcli/counters.h"

void pm_cli_show_port_1st_counters_errors_table(cmd_rx_handle_t*, if_index_t, pm_cli_common_error_stat_t*) {}
void pm_cli_show_port_2nd_counters_errors_table(cmd_rx_handle_t*, if_index_t, pm_cli_common_error_stat_t*) {}
void pm_cli_show_port_3rd_counters_errors_table(cmd_rx_handle_t*, if_index_t, pm_cli_common_error_stat_t*) {}
void pm_cli_show_port_counters_trunk(cmd_rx_handle_t*, pm_cli_common_trunk_stat_t*, if_index_t) {}
void pm_cli_show_eth_port_stats_rx(cmd_rx_handle_t*, statscl_portcl_stats_msg_t*) {}
void pm_cli_show_eth_port_stats_tx(cmd_rx_handle_t*, statscl_portcl_stats_msg_t*) {}
void pm_cli_show_port_flow_ctrl(cmd_rx_handle_t*, const pm_port_info_t*, statscl_portcl_stats_msg_t*) {}
void pm_cli_show_eth_port_counters_brief(cmd_rx_handle_t*, mts_q_handle_t, if_index_t, vsh_user_mode_state_t) {}
void pm_cli_show_loopback_port_counters(cmd_rx_handle_t*, mts_q_handle_t, if_index_t) {}
