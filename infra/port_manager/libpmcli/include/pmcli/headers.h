/*
 * Headers of the tabular displays. The shell calls a header handler once, before the rows; each prints through the
 * output channel as plain text, without tagged values.
 */
#ifndef PMCLI_HEADERS_H
#define PMCLI_HEADERS_H

#include "platform/cmd_channel.h"
#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Header handlers. `arg` of argument 0 points to the interface ranges of the command; `command_id` says which header.
 * They flush and return 0, also when the id has no header. Most headers are left out when the first interface is a
 * sub-interface.
 */
uint32 pm_cli_show_common_header(paraminfo_t* param);
uint32 pm_cli_show_eth_header(paraminfo_t* param);      /* brief, counters brief, trunk counters, error-disabled */
uint32 pm_pcm_cli_show_header(paraminfo_t* param);      /* port-channels                                         */
uint32 pm_cli_show_loopback_header(paraminfo_t* param); /* description, brief                                    */
uint32 pm_cli_show_mgmt_header(paraminfo_t* param);     /* description, brief                                    */
uint32 pm_cli_show_inband_header(paraminfo_t* param);   /* brief; takes no output handle and flushes nothing     */

/* Header printers. */
void pm_cli_print_eth_brief_header(cmd_rx_handle_t* rx_handle);
void pm_pcm_cli_print_eth_brief_header(cmd_rx_handle_t* rx_handle);
void pm_cli_print_eth_err_disabled_status_header(cmd_rx_handle_t* rx_handle);
void pm_cli_print_eth_errored_vlan_status_header(cmd_rx_handle_t* rx_handle);
void pm_cli_show_port_counters_trunk_header(cmd_rx_handle_t* rx_handle);
void pm_cli_print_mgmt_brief_header_for_lumar(cmd_rx_handle_t* rx_handle);
void pm_cli_print_loop_brief_header(cmd_rx_handle_t* rx_handle);
void pm_cli_print_status_header(cmd_rx_handle_t* rx_handle);
void pm_cli_print_eth_mac_address_header(cmd_rx_handle_t* rx_handle);
void pm_cli_print_ethernet_storm_ctrl_header(cmd_rx_handle_t* rx_handle);
void pm_cli_print_trunk_brief_status_header(cmd_rx_handle_t* rx_handle);
void pm_cli_print_eth_port_counters_brief_header(cmd_rx_handle_t* rx_handle);
void pm_cli_print_description_header(cmd_rx_handle_t* rx_handle); /* flushes */
void pm_cli_print_inband_brief_header(void);                      /* with printf */

#ifdef __cplusplus
}
#endif
#endif
