/*
 * Selecting interfaces: the callbacks with which the shell asks which interfaces exist and whether a command may use
 * them, and the permission checks of users who are restricted to some VSANs. The answers come from the port manager.
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
 * Enumeration callback: the existing interfaces of the kind that argument 0's mask names (exactly one bit), those in
 * its ranges when it has some. An interface in two ranges is listed twice. Returns 1 and the list, which the caller
 * frees; or -1 and an empty list after the reason was printed.
 */
int32 pm_cli_if_index_enum_func(paraminfo_t* param, if_index_list_t* ifindex_list_ptr);

/*
 * Verification callback. Returns 0 when the command may use the interfaces that it names; -10 when it must not; -1 for
 * a transport or memory failure; -13 when the user's VSANs forbid it; or the port manager's status 0x40E30011. The
 * reason was printed, where there is one to print.
 */
int32 pm_cli_if_index_verification_func(interface_mask_t iface_mask, paraminfo_t* param);

/* Whether the interface's name belongs to the family that argument 0's mask names. */
bool pm_cli_check_to_add_in_if_index_listing(if_index_t if_index, paraminfo_t* param);

/* Verifies one range with the port manager: its status, or -1. */
syserr_t pm_if_index_verify_cb(if_index_verify_info_t* if_info);

/* Whether the user may use all interfaces of the ranges: 0, -13 (denied) or -1 (failure), in two's complement. */
uint32 pm_cli_check_user_vsan_perms(paraminfo_t* param, const intf_range_t* intf_range);

/* The same for one interface: 0, 0x40290000 (denied or not found) or -1 (failure). */
uint32 pm_cli_check_if_index_for_vsan_perm(paraminfo_t* param, if_index_t if_index);

#ifdef __cplusplus
}
#endif
#endif
