// Permissions of the shell's user: whether a port is visible, and whether the user is restricted to some VSANs.
#include "base/vsan_access.h"
#include "platform/vsan.h"
#include "platform/vsh.h"

uint32 vsh_is_user_vsan_restricted(const paraminfo_t* param) {
  return param != nullptr && host::is_restricted_to(param->vsan_mask) ? 1 : 0;
}

boolean vsh_fc_intf_perm_check(const vsh_fc_intf_perm_check_info_t* info) {
  if (info == nullptr || info->vsan_mask == nullptr || info->trunk_vsan_list == nullptr) return 0;
  const bool is_trunking = host::is_trunking_mode(info->oper_port_mode);
  return host::may_see_port(*info->vsan_mask, {info->port_vsan, is_trunking, *info->trunk_vsan_list}) ? 1 : 0;
}
