#include "module/resource_tree.h"

#include <algorithm>
#include <iterator>

namespace pmcli {

namespace {

struct value_member {
  uint16 type;
  int32 resource_node::*member;
};

constexpr value_member kValues[] = {
    {PM_RESOURCE_BB_CREDIT, &resource_node::bb_credit},
    {PM_RESOURCE_BANDWIDTH, &resource_node::bandwidth},
    {PM_RESOURCE_RATE_MODE, &resource_node::rate_mode},
    {PM_RESOURCE_AVAILABLE_BUFFERS, &resource_node::available_buffers},
    {PM_RESOURCE_AVAILABLE_PERFORMANCE, &resource_node::available_performance},
    {PM_RESOURCE_PERFORMANCE_BUFFERS, &resource_node::performance_buffers},
    {PM_RESOURCE_AVAILABLE_BANDWIDTH, &resource_node::available_bandwidth},
};

}  // namespace

std::optional<resource_node> read_node_head(reader* at) {
  resource_node node{at->u32(), at->u32(), at->u16(), at->u16()};
  return at->ok() ? std::optional(node) : std::nullopt;
}

// Only values of four bytes are looked at.
void read_node_values(reader* at, resource_node* node) {
  constexpr uint16 kNumberBytes = 4;
  for (uint16 i = 0; i < node->num_values; ++i) {
    const uint16 type = at->u16();
    const uint16 length = at->u16();
    reader value = at->sub(length);
    if (!at->ok()) return;
    if (length != kNumberBytes) continue;
    const auto* const known =
        std::find_if(std::begin(kValues), std::end(kValues), [type](const value_member& v) { return v.type == type; });
    if (known != std::end(kValues)) node->*known->member = static_cast<int32>(value.u32());
  }
}

}  // namespace pmcli
