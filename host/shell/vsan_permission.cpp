// What platform/vsan.h asks of the shell: whether its user may see a port.
#include "platform/vsan.h"
#include "switch/vsan_access.h"

boolean vsh_fc_intf_perm_check(const vsh_fc_intf_perm_check_info_t* info) {
  if (info == nullptr || info->vsan_mask == nullptr || info->trunk_vsan_list == nullptr) return 0;
  const bool is_trunking = host::is_trunking_mode(info->oper_port_mode);
  return host::may_see_port(*info->vsan_mask, {info->port_vsan, is_trunking, *info->trunk_vsan_list}) ? 1 : 0;
}
