/*
 * Headers of the tabular displays. The shell calls a header handler once, before the rows; each prints as plain text,
 * without tagged values. No service is called.
 */
#ifndef PMCLI_HEADERS_H
#define PMCLI_HEADERS_H

#include "platform/cmd_channel.h"
#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Header handlers -------------------------------------------------------------------------------------------- */

/*
 * Each prints the header of the display with the block's `command_id` (pmcli/displays.h) through its output handle and
 * flushes, also when the id has no header. `arg` of argument 0 points to the interface ranges of the command, an
 * intf_range_t; it is read only when `parameter_count` is not 0. When the first interface is a sub-interface, all
 * headers are left out but those of the status tables, brief tables, descriptions, error-disabled ports, errored VLANs
 * and interface indexes. A null block prints nothing; without a handle "cmd_paraminfo_to_rxhandle failed " is printed
 * on the terminal. Each returns 0.
 *
 * The first has the headers of all tables but brief, description and trunk counters; the others of the displays named.
 */
uint32 pm_cli_show_common_header(paraminfo_t* param);
uint32 pm_cli_show_eth_header(paraminfo_t* param);      /* brief, rates, trunk counters, DISPLAY_ERROR_STATUS */
uint32 pm_pcm_cli_show_header(paraminfo_t* param);      /* description, brief, rates, trunk counters, errored VLANs */
uint32 pm_cli_show_loopback_header(paraminfo_t* param); /* description, brief */
uint32 pm_cli_show_mgmt_header(paraminfo_t* param);     /* description, brief */

/*
 * The header of DISPLAY_BRIEF for the in-band interface, on the terminal; other ids print nothing. Takes no output
 * handle, reads no argument and flushes nothing. Returns 0.
 */
uint32 pm_cli_show_inband_header(paraminfo_t* param);

/* ---- Header printers -------------------------------------------------------------------------------------------- */

/*
 * Each prints the header of one table through the output handle, which must not be null: a rule, the titles of the
 * columns, a rule. They cannot fail, and but for the one of descriptions do not flush.
 */
void pm_cli_print_eth_brief_header(cmd_rx_handle_t* rx_handle);               /* brief table of ports */
void pm_pcm_cli_print_eth_brief_header(cmd_rx_handle_t* rx_handle);           /* brief table of port-channels */
void pm_cli_print_eth_err_disabled_status_header(cmd_rx_handle_t* rx_handle); /* error-disabled status */
void pm_cli_print_eth_errored_vlan_status_header(cmd_rx_handle_t* rx_handle); /* status of errored VLANs */
void pm_cli_show_port_counters_trunk_header(cmd_rx_handle_t* rx_handle);      /* trunk counters */
void pm_cli_print_mgmt_brief_header_for_lumar(cmd_rx_handle_t* rx_handle);    /* brief table of the management port */
void pm_cli_print_loop_brief_header(cmd_rx_handle_t* rx_handle);              /* brief table of loopbacks */
void pm_cli_print_status_header(cmd_rx_handle_t* rx_handle);                  /* status table */
void pm_cli_print_eth_mac_address_header(cmd_rx_handle_t* rx_handle);         /* MAC addresses */
void pm_cli_print_ethernet_storm_ctrl_header(cmd_rx_handle_t* rx_handle);     /* storm-control counters */
void pm_cli_print_trunk_brief_status_header(cmd_rx_handle_t* rx_handle);      /* trunk status */
void pm_cli_print_eth_port_counters_brief_header(cmd_rx_handle_t* rx_handle); /* rates in brief */
void pm_cli_print_description_header(cmd_rx_handle_t* rx_handle);             /* descriptions; flushes */

/* Prints the header of the in-band interface's brief table on the terminal. */
void pm_cli_print_inband_brief_header(void);

#ifdef __cplusplus
}
#endif
#endif
