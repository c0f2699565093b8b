/*
 * VLANs and trunks of a port.
 *
 * Records are in wire format and stay the caller's; no pointer may be null. "Printed" is on the terminal. Rows and
 * lines print through the output handle and do not flush it.
 */
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

/* ---- Queries ---------------------------------------------------------------------------------------------------- */

/*
 * The attributes of a VLAN from the VLAN manager, whose client library the caller has opened (`libvm_handle`) and
 * closes, into `vlan_info_p`. Returns 0, or 0x40290000 for any failure; only a function that the library lacks is
 * printed.
 */
syserr_t pm_cli_get_vlan_info_from_vlan_mgr(void* libvm_handle, mts_q_handle_t src_q, vdc_vlan_id_t* vv_p,
                                            vlan_info_resp_t* vlan_info_p);

/*
 * Trunking membership of a port from the VLAN manager, whose client library the caller has opened (`dl_handle`) and
 * closes. Takes the last record of the answer that is the port's; without one `vlan_mem_list` keeps its content and 0
 * is returned. Returns 0, or -1 for any failure: a function that the library lacks is printed, and "error" when there
 * is no answer.
 */
syserr_t pm_cli_get_vlan_memb_info(void* dl_handle, mts_q_handle_t mts_q, if_index_t if_index,
                                   trunk_port_memb_t* vlan_mem_list);

/*
 * Layer of a port, and its access VLAN when it is layer 2, from the interface manager. `if_info` is zeroed and keeps
 * the answer to the layer query; `vlan_id`, native, is left alone unless the access VLAN is known. `src_q` is not used.
 * Failures are printed. Returns the error of the call: 0 also when only a record's own status is bad, which is
 * intended.
 */
syserr_t pm_cli_get_layer_mode_access_vlan(if_index_t if_index, mts_q_handle_t src_q, if_info_t* if_info,
                                           vlan_id_t* vlan_id);

/*
 * The native VLAN of a port, from the interface manager, into `vlan_id`, native. Failures are printed and leave it
 * alone. Returns the error of the call: 0 also when only the record's own status is bad, which is intended.
 */
syserr_t pm_cli_get_native_vlan(if_index_t if_index, vlan_id_t* vlan_id);

/*
 * The VLANs in which a port forwards, from the spanning-tree service through its client library, opened by name.
 * Returns 0, or -1 and leaves the set alone: for a failed or rejected request and an answer that is not about exactly
 * one port; only a missing library or function is printed.
 */
syserr_t pm_cli_get_stp_forwarding_info(if_index_t if_index, mts_q_handle_t src_q, vlan_bitset_t* stp_forwarding_vlans);

/*
 * The private VLANs of a port, from their service through its client library, opened by name: the association of a port
 * to a host, the mapping of a promiscuous one (the primary VLANs and the first secondary are native), and the VLANs in
 * operation; 0 and empty where there are none. Ethernet port-channels (kind 22) are not asked about: 0 is returned and
 * the outputs are left alone. Returns 0, or -1 and empty outputs: a missing library or function, and a failed or bad
 * answer, are printed; a request that could not be built or sent is not. The service has 10 seconds to answer.
 */
syserr_t pm_cli_get_pvlan_info(if_index_t if_index, mts_q_handle_t src_q, vlan_id_t* pvhost_primary,
                               vlan_id_t* pvhost_secondary, vlan_id_t* pvmapping_primary,
                               vlan_bitset_t* pvmapping_secondary, vlan_bitset_t* pvoperational_vlans);

/* ---- Lines and rows --------------------------------------------------------------------------------------------- */

/*
 * Each prints VLAN lines of detailed views from a membership that the caller fetched: the native VLAN and the allowed
 * VLANs, cut at 100 characters; the allowed VLANs, cut at 8192. No service is called.
 */
void print_vlan_memb_info(cmd_rx_handle_t* rx_handle, const trunk_port_memb_t* membership);
void print_allowed_vlan_info(cmd_rx_handle_t* rx_handle, const trunk_port_memb_t* membership);

/*
 * Prints a row of the trunk status table: native VLAN from the interface manager, whether the port trunks by its
 * record, its port-channel from the port-channel service. A value that is unavailable shows "--", and failures of the
 * interface manager are printed, too. `q` is not used.
 */
void pm_cli_print_eth_trunk_brief(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info, mts_q_handle_t q);

/*
 * Prints a row of the table of allowed VLANs, from the VLAN manager through its client library, opened by name. When
 * they are unavailable there is no row; texts of pm_cli_get_vlan_memb_info() are printed.
 */
void pm_cli_print_eth_trunk_allowed_vlans(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                          mts_q_handle_t q);

/* Prints a row of the table of error-disabled VLANs, which the caller fetched; null is an empty set. */
void pm_cli_print_eth_trunk_errored_vlans(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                          const vlan_bitset_t* vlans);

/*
 * Prints a row of the table of VLANs in which spanning tree forwards, asked by pm_cli_get_stp_forwarding_info(): "--"
 * when they are unavailable, "none" when there are none.
 */
void pm_cli_print_eth_trunk_stp_forwarding(cmd_rx_handle_t* rx_handle, const pm_port_info_t* port_info,
                                           mts_q_handle_t q);

#ifdef __cplusplus
}
#endif
#endif
