// The tree of a module's resources, node by node.
#pragma once

#include <optional>

#include "platform/module_resources.h"
#include "support/reader.h"

namespace pmcli {

inline constexpr int32 kNotReceived = -1;

// The head of a node, and the values that displays show.
struct resource_node {
  uint32 category;
  uint32 id;
  uint16 num_values;
  uint16 num_children;
  int32 bb_credit = kNotReceived;
  int32 bandwidth = kNotReceived;  // Mbit/s
  int32 rate_mode = kNotReceived;
  int32 available_buffers = kNotReceived;
  int32 available_performance = kNotReceived;
  int32 performance_buffers = kNotReceived;
  int32 available_bandwidth = kNotReceived;  // Mbit/s
};

// The head alone; none when it does not fit.
std::optional<resource_node> read_node_head(reader* at);

// Reads the values after a head into it, as many as fit; the children follow.
void read_node_values(reader* at, resource_node* node);

}  // namespace pmcli
