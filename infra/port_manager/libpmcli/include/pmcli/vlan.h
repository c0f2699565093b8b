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
 * The attributes of a VLAN from the VLAN manager, whose client library the caller has opened (`libvm_handle`), into the
 * caller's record. A function that the library lacks is printed. Returns 0 or 0x40290000.
 */
syserr_t pm_cli_get_vlan_info_from_vlan_mgr(void* libvm_handle, mts_q_handle_t src_q, vdc_vlan_id_t* vv_p,
                                            vlan_info_resp_t* vlan_info_p);

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

/*
 * The native VLAN of a port, from the interface manager. Failures are printed; the error of the call is returned, which
 * is 0 also when only the record's own status is bad: then `vlan_id` is left alone, which is intended.
 */
syserr_t pm_cli_get_native_vlan(if_index_t if_index, vlan_id_t* vlan_id);

/*
 * The VLANs in which a port forwards, from the spanning-tree service through its client library. What is missing is
 * printed. Returns 0 or -1.
 */
syserr_t pm_cli_get_stp_forwarding_info(if_index_t if_index, mts_q_handle_t src_q, vlan_bitset_t* stp_forwarding_vlans);

/*
 * The private VLANs of a port, from their service through its client library: the association of a port to a host, the
 * mapping of a promiscuous one, and the VLANs in operation; 0 and empty where there are none. Port-channels of kind 22
 * are not asked about, and their outputs left alone. Failures are printed. Returns 0 or -1.
 */
syserr_t pm_cli_get_pvlan_info(if_index_t if_index, mts_q_handle_t src_q, vlan_id_t* pvhost_primary,
                               vlan_id_t* pvhost_secondary, vlan_id_t* pvmapping_primary,
                               vlan_bitset_t* pvmapping_secondary, vlan_bitset_t* pvoperational_vlans);

/* The VLAN lines of detailed views. The first cuts a long list. */
void print_vlan_memb_info(cmd_rx_handle_t* rx_handle, const trunk_port_memb_t* membership);
void print_allowed_vlan_info(cmd_rx_handle_t* rx_handle, const trunk_port_memb_t* membership);

/* One row of the trunk status, the allowed-VLAN, the error-disabled and the spanning-tree forwarding tables. */
void pm_cli_print_eth_trunk_brief(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info, mts_q_handle_t q);
void pm_cli_print_eth_trunk_allowed_vlans(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                          mts_q_handle_t q);
void pm_cli_print_eth_trunk_errored_vlans(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                          const vlan_bitset_t* vlans);
void pm_cli_print_eth_trunk_stp_forwarding(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                           mts_q_handle_t q);

#ifdef __cplusplus
}
#endif
#endif
