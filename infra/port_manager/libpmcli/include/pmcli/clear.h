/*
 * Clearing counters: each owner is asked to reset its own.
 *
 * Failures are printed on the terminal, and clearing goes on with the next interface; silent cases are listed below.
 *
 * Range handlers take the interfaces from the first argument whose type or token id is PARAM_TYPE_CONF_INTERFACES or
 * PARAM_TYPE_INTERFACES; its `arg` points to an intf_range_t. A parameter block without such an argument is reported
 * ("error: token id list does not contain CONF_INTF"), a null block is not. A list without ranges clears nothing. The
 * block and all it points to stay the shell's; its queue `q` is used for requests to services.
 */
#ifndef PMCLI_CLEAR_H
#define PMCLI_CLEAR_H

#include "platform/if_index.h"
#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Handlers of ranges ----------------------------------------------------------------------------------------- */

/*
 * Clears at the port manager what a command names; a management port at the kernel, as pm_cli_mgmt_clear_counters()
 * does. Skips in silence a range that cannot be counted (loopbacks, virtual Ethernet interfaces and ports of satellite
 * units among them) and one of more than 65536 interfaces. A failed request, and each interface that the answer
 * refuses, is printed.
 *
 * Returns 0, also after such failures; 1 for a null block and one without ranges, and when the kind of an interface
 * cannot be read or the heap is exhausted, which ends the command.
 */
int32 pm_cli_clear_counters(paraminfo_type* param);

/*
 * Clears port-channels. On the Ethernet-switch chassis family the block goes to the command of the Ethernet
 * port-channel service, whose result is not looked at; on others to pm_cli_clear_counters(). Returns 0.
 */
int32 pm_cli_clear_port_channel_counters(paraminfo_type* param);

/*
 * Clears Ethernet ports and virtual Ethernet interfaces: at the statistics client where it keeps their counters, else
 * at the port manager. The client keeps them on the Ethernet-switch chassis family; on chassis 17 only those of virtual
 * Ethernet interfaces. Skips ranges as pm_cli_clear_counters() does, but for loopbacks, virtual Ethernet interfaces and
 * ports of satellite units, through which it steps. An interface that is refused prints "error: clearing counters".
 *
 * Returns 0, also after such failures; 1 for a null block and one without ranges, and before anything is cleared when
 * the client is needed and its library (silently) or its function (printed) is missing.
 */
int32 pm_cli_eth_clear_counters(paraminfo_t* param);

/*
 * Clears loopbacks at the IP statistics library, opened by name. A missing library is silent; a missing function and
 * an interface that is refused are printed.
 */
void pm_cli_loopback_clear_counters(paraminfo_t* param);

/* ---- All of a kind ---------------------------------------------------------------------------------------------- */

/*
 * Clears every loopback, then every port-channel, as the two functions for them below do on the queue of the command. A
 * null block clears nothing. Returns 0.
 */
int32 pm_cli_clear_all_counters(paraminfo_type* param);

/*
 * Lists the interfaces of a kind at the port manager and clears them there one by one; refusals are printed. Returns 0;
 * the error of the listing, after it was printed as a transport failure; or -1 when the listing's message cannot be
 * dropped, printed likewise.
 */
int32 pm_cli_clear_all_interface_counters(if_index_type_t type, mts_q_handle_t q);

/*
 * Clears the Ethernet-class ports (IF_TYPE_ETHERNET), then the virtual Ethernet interfaces, that the port manager
 * lists, each where pm_cli_eth_clear_counters() does. Ports of other kinds are left alone. A failed listing and a
 * refused interface are printed. Ends when the statistics client is needed and its library (silently) or its function
 * (printed) is missing.
 */
void pm_cli_clear_all_eth_counters(mts_q_handle_t q);

/* Clears the loopbacks that the port manager lists, as pm_cli_loopback_clear_counters() does. A failed listing is
 * printed. */
void pm_cli_clear_all_loopback_counters(mts_q_handle_t q);

/*
 * Clears the first 256 port-channels of the port-channel map at the distributed statistics service, within 5 seconds
 * each. A channel that is refused prints "error: clearing counters". Returns 0.
 */
int32 pm_clear_all_port_channel_counters(mts_q_handle_t q);

/* ---- Single interfaces ------------------------------------------------------------------------------------------ */

/* Clears the in-band interface through its driver, by a command of the machine's shell whose result is not looked at.
 */
void pm_cli_inband_clear_counters(void);

/*
 * Clears a management port at the kernel: the device "eth" with the port's number from 0 (0 also when it cannot be
 * read). A failure prints "clear mgmt0:" and a line with the error.
 */
void pm_cli_mgmt_clear_counters(if_index_t if_index, mts_q_handle_t q);

#ifdef __cplusplus
}
#endif
#endif
