// Interface tables, one row for each interface. Prints nothing yet: the rows come with the tables.

#include "pmcli/interface.h"

void print_eth_port_info_brief(cmd_rx_handle_t*, pm_port_info_t*, mts_q_handle_t) {}
void print_eth_port_status_line(cmd_rx_handle_t*, pm_port_info_t*, mts_q_handle_t) {}
void print_eth_port_err_status_line(cmd_rx_handle_t*, pm_port_info_t*, mts_q_handle_t) {}
void print_eth_port_description(cmd_rx_handle_t*, pm_port_info_t*) {}
void print_eth_port_mac_address(cmd_rx_handle_t*, pm_port_info_t*) {}
void print_port_ifindex(cmd_rx_handle_t*, pm_port_info_t*) {}
void print_port_debounce(cmd_rx_handle_t*, pm_port_info_t*) {}
