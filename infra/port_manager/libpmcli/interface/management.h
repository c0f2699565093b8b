// The management port: a kernel device of the supervisor.
#pragma once

#include "platform/if_index.h"
#include "platform/types.h"

namespace pmcli {

// The name of the kernel device behind a management port, at most 15 characters, terminated, into `size` bytes (16 hold
// any). The chassis type is asked once in the life of the process; one that cannot be read counts as 0.
void pm_get_mgmt_kernel_ifname(if_index_t if_index, char* buf, uint32 size);

}  // namespace pmcli
