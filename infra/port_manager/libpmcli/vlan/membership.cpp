// VLAN membership of a port. Prints nothing yet, and no membership is found: both come with the trunk displays.

#include "pmcli/vlan.h"

syserr_t pm_cli_get_vlan_memb_info(void*, mts_q_handle_t, if_index_t, trunk_port_memb_t*) { return -1; }

void print_vlan_memb_info(cmd_rx_handle_t*, const trunk_port_memb_t*) {}
