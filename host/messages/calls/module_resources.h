// The decoded resources of a module.
#pragma once

#include <optional>
#include <vector>

#include "platform/if_index.h"
#include "platform/mts.h"

namespace host {

// A node of the tree of platform/module_resources.h. Values that the module does not report are absent.
struct module_resource {
  uint32 category = 0;    // PM_RESOURCE_...
  uint32 id = 0;          // number of the group, or interface index of the port
  uint32 port_group = 0;  // that it is in, or is; 0: none
  uint32 buffer_group = 0;
  std::optional<uint32> buffers;  // credits of a port
  std::optional<uint32> available_buffers;
  std::optional<uint32> performance_buffers;
  std::optional<uint32> available_performance_buffers;
  std::optional<uint32> bandwidth_mbps;
  std::optional<uint32> available_bandwidth_mbps;
  std::optional<uint32> rate_mode;  // 1 dedicated, 2 shared
};

// Asks for the resources of a module (from 1): its nodes from the top, each followed by what is in it. None when the
// service failed, when its answer is damaged, or when the line card reports an error; the account of failures says why.
std::optional<std::vector<module_resource>> ask_module_resources(mts_q_handle_t q, uint32 module);

}  // namespace host
