/*
 * Clearing counters: each owner is asked to reset its own.
 *
 * Failures are printed on the terminal, and clearing goes on with the next interface. The handlers find their interface
 * ranges among the arguments of the parameter block; a block without any is told, a missing block is not.
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
 * At the port manager; a management port at the kernel. Returns 0, or 1 without ranges, when the kind of an interface
 * cannot be read, and when the heap is exhausted. A range that cannot be counted, or of more than 65536 interfaces, is
 * passed over.
 */
int32 pm_cli_clear_counters(paraminfo_type* param);

/* Port-channels: by the Ethernet port-channel service where there is one, else as above. Returns 0. */
int32 pm_cli_clear_port_channel_counters(paraminfo_type* param);

/*
 * Ethernet ports and virtual Ethernet interfaces: at the statistics client where it keeps them, else at the port
 * manager. Returns 0, or 1 without ranges and without the client.
 */
int32 pm_cli_eth_clear_counters(paraminfo_t* param);

/* Loopbacks, at the IP statistics library. */
void pm_cli_loopback_clear_counters(paraminfo_t* param);

/* ---- All of a kind ---------------------------------------------------------------------------------------------- */

/* Every loopback and every port-channel, on the queue of the command. Returns 0. */
int32 pm_cli_clear_all_counters(paraminfo_type* param);

/* Every interface of a kind, at the port manager. Returns 0, the error of the listing, or -1 when it is not released.
 */
int32 pm_cli_clear_all_interface_counters(if_index_type_t type, mts_q_handle_t q);

/* Every Ethernet port, then every virtual Ethernet interface. */
void pm_cli_clear_all_eth_counters(mts_q_handle_t q);

void pm_cli_clear_all_loopback_counters(mts_q_handle_t q);

/* At most 256 channels. Returns 0. */
int32 pm_clear_all_port_channel_counters(mts_q_handle_t q);

/* ---- Single interfaces ------------------------------------------------------------------------------------------ */

/* The in-band interface, through its driver. */
void pm_cli_inband_clear_counters(void);

/* A management port: the kernel device "eth" with the port's number. */
void pm_cli_mgmt_clear_counters(if_index_t if_index, mts_q_handle_t q);

#ifdef __cplusplus
}
#endif
#endif
