/*
 * Command frame: the handlers that the shell calls with a parameter block, and the small utilities that many displays
 * share.
 *
 * Every handler runs on the caller's thread and has released all it took when it returns.
 */
#ifndef PMCLI_COMMAND_H
#define PMCLI_COMMAND_H

#include "platform/bitset.h"
#include "platform/cmd_channel.h"
#include "platform/mts.h"
#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Show handlers, called once for each interface: `arg` of argument 0 points to its if_index_t, `command_id` says which
 * display. All return 0 to the shell whatever happened; what went wrong is printed. On a standby supervisor they print
 * only that.
 */
uint32 pm_cli_show_eth_port_config(paraminfo_t* param);     /* Ethernet ports, sub-interfaces, port-channels */
uint32 pm_cli_show_sat_eth_port_config(paraminfo_t* param); /* Ethernet ports of satellite units             */
uint32 pm_cli_show_mgmt_port_config(paraminfo_t* param);    /* the management port; 1 when its record is missing */
uint32 pm_cli_show_loopback_config(paraminfo_t* param);     /* loopback interfaces                           */

/* The same for the in-band interface, of which there is one: the arguments are not looked at. */
int32 pm_cli_show_inband_port_config(paraminfo_t* param);

/*
 * Show handler of the traffic lines (command id 1 only; others print nothing). Declines port-channels and virtual
 * interfaces of the Ethernet-switch chassis family. Tests no standby state and leaves the flush to the shell.
 */
uint32 pm_cli_show_eth_stat_info(paraminfo_t* param);

/* Its worker: port record from the port manager, then print_eth_stat_info(). `option` is 1. */
void pm_show_eth_stat_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, int32 option, if_index_t if_index);

/* 0 when the display with this command id does not apply to sub-interfaces, else 1. */
int32 pm_cli_subinterface_supported(uint32 command_id);

/* mts_recv(), taken up again for as long as it is interrupted. Returns its last result. */
int32 pm_mts_recv_with_eintr(mts_q_handle_t q, mts_msg_ref_t* got, mts_recv_options_t* options);

/* A function of a library opened by name, to be cast to its type. */
typedef void (*pm_library_function_t)(void);

/*
 * Opens a library by file name and looks up one function in it. Stores the library's handle, which the caller closes
 * also when the function is null. A library that cannot be opened is reported; null is returned and no handle is
 * stored.
 */
pm_library_function_t pm_get_function_from_library(const char* filename, const char* symbol, void** handle);

/* 1 when the answer is exactly one of the characters N, Y, n, y; else 0, also for null. */
uint32 pm_verify_yn(const char* answer);

/* Asks a yes/no question: 1 for yes. An empty line is no; without a terminal the answer is yes. */
uint32 pm_confirm_response(const char* prompt_string, paraminfo_t* param);

/* A VLAN id as text, "none" for 0. The text is good until the next call. */
const char* vlan_string_or_none(uint32 vlan);

/*
 * A VLAN set as range text, "none" when it is empty or null, into `dst` with the semantics of strncpy: a text of `len`
 * characters or more is cut and not terminated, so callers own len + 1 zeroed bytes. Returns `dst`.
 */
char* vlan_bitmap_string_or_none(char* dst, uint32 len, const vlan_bitset_t* set);

/* Prints bytes in hexadecimal, for debugging. */
void dump_data(const uint8* data, uint32 len);

/* Number of leading one bits of a network mask. */
uint32 ipmask_to_len(uint32 mask);

/* Fills a float of the structured output with `precision` fractional digits, at most 9. Out of range: digits 0. */
void float2cmdfloat(cmd_float_t* cmd_flt, float fvalue, uint8 precision);

#ifdef __cplusplus
}
#endif
#endif
