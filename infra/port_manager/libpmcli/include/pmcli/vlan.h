/* VLANs and trunks of a port. */
#ifndef PMCLI_VLAN_H
#define PMCLI_VLAN_H

#include "platform/cmd_channel.h"
#include "platform/interface_manager.h"
#include "platform/port_manager.h"
#include "platform/types.h"
#include "platform/vlan_manager.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Trunking membership of a port from the VLAN manager, whose client library the caller has opened (`dl_handle`). The
 * record keeps its content when the answer holds none for the port. Returns 0 or -1.
 */
syserr_t pm_cli_get_vlan_memb_info(void* dl_handle, mts_q_handle_t mts_q, if_index_t if_index,
                                   trunk_port_memb_t* vlan_mem_list);

/*
 * Layer of a port, and its access VLAN when it is layer 2, from the interface manager. `if_info` keeps the answer to
 * the layer query. Failures are printed; the error of the call is returned. `vlan_id` is left alone unless it is known.
 */
syserr_t pm_cli_get_layer_mode_access_vlan(if_index_t if_index, mts_q_handle_t src_q, if_info_t* if_info,
                                           vlan_id_t* vlan_id);

/* The VLAN lines of the detailed view. */
void print_vlan_memb_info(cmd_rx_handle_t* rx_handle, const trunk_port_memb_t* membership);

/* One row of the trunk status, the allowed-VLAN and the spanning-tree forwarding tables. */
void pm_cli_print_eth_trunk_brief(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info, mts_q_handle_t q);
void pm_cli_print_eth_trunk_allowed_vlans(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                          mts_q_handle_t q);
void pm_cli_print_eth_trunk_stp_forwarding(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                           mts_q_handle_t q);

#ifdef __cplusplus
}
#endif
#endif
