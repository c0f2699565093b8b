/*
 * Selecting interfaces: the callbacks with which the shell asks which interfaces exist and whether a command may use
 * them, and the permission checks of users who are restricted to some VSANs. The answers come from the port manager.
 * Texts are printed on the terminal.
 */
#ifndef PMCLI_SELECTION_H
#define PMCLI_SELECTION_H

#include <stdbool.h>

#include "platform/if_index.h"
#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A list of interfaces; `list` is a heap block, null when it is empty. */
typedef struct if_index_list_t {
  uint32 length;
  if_index_t* list;
} if_index_list_t;

/* One range to be verified, and the queue on which to ask. */
typedef struct if_index_verify_info_t {
  if_index_range_t if_range;
  mts_q_handle_t mts_q;
} if_index_verify_info_t;

/*
 * Enumeration callback: the existing interfaces of the kind that argument 0's `interface_mask` names (exactly one bit,
 * IF_MASK_...). Its `arg` may point to an intf_range_t: with ranges, the list holds the interfaces within them, one in
 * two ranges twice; without, all of the kind. Names are filtered by pm_cli_check_to_add_in_if_index_listing(). The port
 * manager lists them, from the running or the startup configuration, as the shell says that the command is about; the
 * in-band interface comes from the platform. IF_MASK_BAY and IF_MASK_EXTERNAL_FC sort the list, others keep the port
 * manager's order.
 *
 * The list is emptied first. Returns 1 and the list, a block of malloc() that the caller frees, or null when there is
 * no such interface; or -1 and an empty list: silently for a null block, IF_MASK_UNLISTED_16 and IF_MASK_UNLISTED_24,
 * else after the reason was printed (another mask, the transport, the heap).
 */
int32 pm_cli_if_index_enum_func(paraminfo_t* param, if_index_list_t* ifindex_list_ptr);

/*
 * Verification callback: whether the command may use the interfaces of its first argument of type
 * PARAM_TYPE_INTERFACES. `iface_mask` are the kinds that it accepts. The port manager is asked. For a configuration
 * command (an argument with TOKEN_CONF_INTERFACES) that names sub-interfaces or loopbacks which do not exist yet, or
 * the "no" form of one on sub-interfaces, it is also asked to create or delete them, within 120 seconds. Unless it is a
 * show command, the ranges then go to pm_cli_check_user_vsan_perms().
 *
 * Returns
 * - 0 when the command may use them, and for IF_MASK_UNLISTED_16 and IF_MASK_UNLISTED_24, which are not verified;
 * - PM_CLI_REFUSED (-10) when it must not: silently for a null block, a mask of 0, what cannot be deleted, an in-band
 *   interface other than the active supervisor's, and most statuses of the port manager; the others are printed;
 * - PM_CLI_FAILED (-1) without such an argument and when the transport or the heap fails, which is printed; and
 *   silently when the port manager rejects the request or its answer is too short;
 * - the two other results of pm_cli_check_user_vsan_perms();
 * - the port manager's status 0x40E30011 as it is.
 */
int32 pm_cli_if_index_verification_func(interface_mask_t iface_mask, paraminfo_t* param);

/*
 * Whether an interface's name belongs to the family that argument 0's mask names. With IF_MASK_FC, IF_MASK_BAY or
 * IF_MASK_EXTERNAL_FC in it, names that begin with f, b or e are accepted for exactly that mask, other names always,
 * and false is returned when there is no name. Every other mask accepts all. `param` must not be null.
 */
bool pm_cli_check_to_add_in_if_index_listing(if_index_t if_index, paraminfo_t* param);

/*
 * Verifies one range with the port manager that owns its low end. Returns its status, 0 for success; or -1, silently
 * unless a message could not be dropped, when there is no answer. `if_info` stays the caller's and must not be null.
 */
syserr_t pm_if_index_verify_cb(if_index_verify_info_t* if_info);

/*
 * Whether the user of the command, by the block's `vsan_mask`, may use all interfaces of the ranges. Only ranges whose
 * low end is a Fibre-Channel port, a port-channel of the older family or an FCIP tunnel (IF_TYPE_FC,
 * IF_TYPE_PORT_CHANNEL, IF_TYPE_FCIP) are looked at; all others pass. Ports come from the port manager, the VSANs of
 * their trunks from the VSAN manager (a failure counts as none), the verdict from the shell.
 *
 * Returns, as two's complement, 0 when all may be used; PM_CLI_VSAN_DENIED (-13) at the first that may not; or
 * PM_CLI_FAILED (-1) after "error: getting port info range" or "error: parsing port info range". No argument may be
 * null.
 */
uint32 pm_cli_check_user_vsan_perms(paraminfo_t* param, const intf_range_t* intf_range);

/*
 * The same for one interface. Returns 0; 0x40290000 when it is denied, when the port manager does not answer with
 * exactly one port, and after "error: parsing port info range"; or -1 in two's complement after "error: getting port
 * info range".
 */
uint32 pm_cli_check_if_index_for_vsan_perm(paraminfo_t* param, if_index_t if_index);

#ifdef __cplusplus
}
#endif
#endif
