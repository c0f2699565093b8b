// The VSAN manager, and the shell's verdict on what a user may see.
#pragma once

#include <functional>
#include <map>
#include <vector>

#include "platform/vsan.h"

namespace pmcli_test {

struct recorded_vsan {
  std::map<if_index_t, vsan_bitset_t> port_vsans;
  // Of each call of the VSAN manager and of pm_get_port_info_range(): a permission check asks both.
  std::vector<mts_q_handle_t> permission_queues;
  std::function<boolean(const vsh_fc_intf_perm_check_info_t&)> is_permitted;  // without it all is
};

}  // namespace pmcli_test
