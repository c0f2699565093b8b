/* Virtual SANs: which a port carries, and which a user may see. */
#ifndef PLATFORM_VSAN_H
#define PLATFORM_VSAN_H

#include "platform/bitset.h"
#include "platform/port_manager.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The VSANs that a trunking port carries, into the caller's set. Returns 0, or a system error and leaves the set alone.
 */
int32 vsan_get_port_trunking_membership(mts_q_handle_t q, if_index_t if_index, vsan_bitset_t* vsans);

/* A port and the VSANs that its user may see. Native; all owned by the caller. */
typedef struct vsh_fc_intf_perm_check_info_t {
  const vsan_bitset_t* vsan_mask; /* VSANs of the user */
  if_index_t if_index;
  pm_port_mode_t oper_port_mode;
  pm_port_mode_t admin_port_mode;
  uint32 port_vsan;
  const vsan_bitset_t* trunk_vsan_list; /* VSANs that the port carries */
  uint32 parse_cmd_mode;                /* prc_mode of the parameter block */
} vsh_fc_intf_perm_check_info_t;

/* Whether the shell lets the user at the port: not zero is allowed. */
boolean vsh_fc_intf_perm_check(const vsh_fc_intf_perm_check_info_t* info);

#ifdef __cplusplus
}
#endif
#endif
