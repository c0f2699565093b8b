/*
 * Command frame: the handlers that the shell calls with a parameter block, and the small utilities that many displays
 * share.
 *
 * Every handler runs on the caller's thread and has released all it took when it returns. The block and all it points
 * to stay the shell's; its queue `q` is used for requests to services. A null block prints nothing and returns 0.
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

/* ---- Show handlers ---------------------------------------------------------------------------------------------- */

/*
 * Show handlers of Ethernet ports, sub-interfaces, port-channels and virtual Ethernet interfaces, called once for each;
 * the second, for Ethernet ports of satellite units, does the same. `arg` of argument 0 points to the if_index_t (null:
 * nothing is shown), `command_id` says which display (pmcli/displays.h); argument 1 is the module or the VLANs that
 * some displays are about.
 *
 * They print by pm_cli_show_eth_port_info(), rates in brief by pm_cli_show_eth_port_counters_brief(), on the block's
 * output handle, and flush it. A display that does not apply to sub-interfaces prints nothing for one. A port outside
 * the module or the VLANs prints nothing, nor does one whose slot or whose membership (from the VLAN manager) cannot be
 * had. On a standby supervisor only "This command is not enabled on Standby SUP." is printed; without a handle only
 * "cmd_paraminfo_to_rxhandle failed ". Returns 0 whatever happened.
 */
uint32 pm_cli_show_eth_port_config(paraminfo_t* param);
uint32 pm_cli_show_sat_eth_port_config(paraminfo_t* param);

/*
 * The same for a management port: the detailed and the brief view by pm_cli_show_mgmt_info(), counters by
 * pm_cli_show_mgmt_counters(), which flush. Other displays that apply to it go to pm_cli_show_eth_port_config(); the
 * rest print nothing and do not flush. Returns 1 when the detailed or the brief view could not get the port record,
 * else 0.
 */
uint32 pm_cli_show_mgmt_port_config(paraminfo_t* param);

/*
 * The same for a loopback: views and tables by pm_cli_show_loopback_port_info(), lists and the block of counters from
 * the IP statistics library; counters that cannot be fetched count as 0. DISPLAY_COUNTERS and DISPLAY_UNSUPPORTED_61
 * print "This information is not available for" and the name. Flushes. Returns 0 whatever happened.
 */
uint32 pm_cli_show_loopback_config(paraminfo_t* param);

/*
 * The same for the in-band interface, of which there is one: the arguments are not looked at. Status, description and
 * brief views by pm_cli_show_inband_port_info(); DISPLAY_COUNTERS and DISPLAY_COUNTERS_ALL print its name and the
 * kernel's counters; DISPLAY_COUNTERS_BRIEF, DISPLAY_NOTHING_105 and DISPLAY_NOTHING_106 nothing; every other id the
 * detailed view. Flushes. Returns 0 whatever happened.
 */
int32 pm_cli_show_inband_port_config(paraminfo_t* param);

/*
 * Show handler of the traffic lines of the interface that argument 0 names: pm_show_eth_stat_info() for DISPLAY_DETAIL;
 * other ids print nothing. Declines silently, on the Ethernet-switch chassis family, an `interface_mask` of argument 0
 * that is exactly IF_MASK_PORT_CHANNEL, IF_MASK_ETH_PORT_CHANNEL or IF_MASK_VETHERNET. Tests no standby state and
 * leaves the flush to the shell. Without an output handle it prints "cmd_paraminfo_to_rxhandle failed ". Returns 0.
 */
uint32 pm_cli_show_eth_stat_info(paraminfo_t* param);

/*
 * Its worker: fetches the port record from the port manager and shows it by print_eth_stat_info(). `option` is 1; any
 * other prints "Option not supported". A record that is unavailable is reported on the terminal.
 */
void pm_show_eth_stat_info(cmd_rx_handle_t* rx_handle, mts_q_handle_t q, int32 option, if_index_t if_index);

/* Whether the display with this command id applies to sub-interfaces: 1, or 0. */
int32 pm_cli_subinterface_supported(uint32 command_id);

/* ---- Transport and libraries ------------------------------------------------------------------------------------ */

/*
 * mts_recv(), called again without limit for as long as it is interrupted. `options` are the caller's; `got` is filled
 * on success, and the caller drops it. Returns the last result: 0, or -1 with the reason in mts_errno_get().
 */
int32 pm_mts_recv_with_eintr(mts_q_handle_t q, mts_msg_ref_t* got, mts_recv_options_t* options);

/* A function of a library opened by name, to be cast to its type. */
typedef void (*pm_library_function_t)(void);

/*
 * Opens a library by file name, with lazy binding, and looks up one function in it. Stores the library's handle, which
 * the caller closes with dlclose() also when the function is missing. Returns the function, or null: silently when it
 * is missing; after "error: unable to open library" and the name when the library cannot be opened, and then no handle
 * is stored.
 */
pm_library_function_t pm_get_function_from_library(const char* filename, const char* symbol, void** handle);

/* ---- Questions -------------------------------------------------------------------------------------------------- */

/* 1 when the answer is exactly one of the characters N, Y, n, y; else 0, also for null. */
uint32 pm_verify_yn(const char* answer);

/*
 * Asks a yes/no question by the shell, for the command of `param`. 1 when the answer begins with y or Y, else 0, also
 * when no answer could be read. An empty line is no; without a terminal the answer is yes. Both arguments stay the
 * caller's.
 */
uint32 pm_confirm_response(const char* prompt_string, paraminfo_t* param);

/* ---- Texts and values ------------------------------------------------------------------------------------------- */

/* A VLAN id as text, "none" for 0. The text belongs to the library and is good until the next call. */
const char* vlan_string_or_none(uint32 vlan);

/*
 * A VLAN set, in wire format, as the shell's range text ("1,10-20"), "none" when it is empty or null. Of `set` as many
 * bytes are read as it says it has, at most 512. Copies into the caller's `dst` as strncpy() does: a text of `len`
 * characters or more is cut and not terminated, so that a caller owns `len` + 1 zeroed bytes. Returns `dst`.
 */
char* vlan_bitmap_string_or_none(char* dst, uint32 len, const vlan_bitset_t* set);

/*
 * Prints `len` bytes on the terminal for debugging: each as "0X" and its hexadecimal digits with a blank after it (a
 * line end after every 65536th), and a line end. Null data prints the line end only.
 */
void dump_data(const uint8* data, uint32 len);

/* The number of leading one bits of a network mask in host order; bits after the first 0 are ignored. */
uint32 ipmask_to_len(uint32 mask);

/*
 * Fills the caller's float of the structured output with `precision` fractional digits; above 9 counts as 9. The digits
 * are those of the value times ten to the power of `precision`, in single precision, truncated. A part that does not
 * fit 32 bits, and either part of what is not a number, is 0.
 */
void float2cmdfloat(cmd_float_t* cmd_flt, float fvalue, uint8 precision);

#ifdef __cplusplus
}
#endif
#endif
