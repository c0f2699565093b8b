#include <cstring>
#include <span>

#include "client/request.h"
#include "messages/calls/module_resources.h"
#include "platform/module_resources.h"
#include "transport/transport.h"

namespace host {
namespace {

using byte_span = std::span<const std::byte>;
using node_head = pm_mod_resource_alloc_resp_data_t;

constexpr uint32 kAllValues = 65535;
constexpr std::size_t kMostNodes = 4096;

// Takes a record from the front of the bytes; false when they end before it.
template <typename Record>
bool take(byte_span& from, Record& record) {
  if (from.size() < sizeof record) return false;
  std::memcpy(&record, from.data(), sizeof record);
  from = from.subspan(sizeof record);
  return true;
}

std::optional<uint32>* value_of(module_resource& node, uint16 type) {
  switch (type) {
    case PM_RESOURCE_BB_CREDIT: return &node.buffers;
    case PM_RESOURCE_BANDWIDTH: return &node.bandwidth_mbps;
    case PM_RESOURCE_RATE_MODE: return &node.rate_mode;
    case PM_RESOURCE_AVAILABLE_BUFFERS: return &node.available_buffers;
    case PM_RESOURCE_AVAILABLE_PERFORMANCE: return &node.available_performance_buffers;
    case PM_RESOURCE_PERFORMANCE_BUFFERS: return &node.performance_buffers;
    case PM_RESOURCE_AVAILABLE_BANDWIDTH: return &node.available_bandwidth_mbps;
    default: return nullptr;
  }
}

bool take_value(byte_span& from, module_resource& node) {
  pm_mod_resource_tlv_t head;
  if (!take(from, head) || from.size() < head.length) return false;
  byte_span value = from.first(head.length);
  from = from.subspan(head.length);
  be32 number;
  if (auto* const member = value_of(node, head.type); member != nullptr && value.size() == sizeof number) {
    take(value, number);
    *member = uint32{number};
  }
  return true;
}

// Nodes follow their parents, which name the groups that they are in. False for a tree that ends early.
bool take_tree(byte_span from, std::vector<module_resource>& nodes) {
  struct parent {
    uint32 left;
    uint32 port_group, buffer_group;
  };
  std::vector<parent> parents{{1, 0, 0}};
  while (!parents.empty()) {
    if (parents.back().left == 0) {
      parents.pop_back();
      continue;
    }
    --parents.back().left;
    node_head head;
    if (nodes.size() == kMostNodes || !take(from, head)) return false;
    module_resource node;
    node.category = head.cat.category;
    node.id = head.cat.id;
    node.port_group = node.category == PM_RESOURCE_PORT_GROUP ? node.id : parents.back().port_group;
    node.buffer_group = node.category == PM_RESOURCE_LOCAL_BUFFER_GROUP ? node.id : parents.back().buffer_group;
    for (uint32 i = 0; i < head.num_val_tlvs; ++i)
      if (!take_value(from, node)) return false;
    parents.push_back({head.num_sub_cat, node.port_group, node.buffer_group});
    nodes.push_back(node);
  }
  return true;
}

}  // namespace

std::optional<std::vector<module_resource>> ask_module_resources(mts_q_handle_t q, uint32 module) {
  const pm_mod_resource_category_t category{PM_RESOURCE_MODULE, module - 1};
  mts_msg_ref_t answer{};
  if (pm_get_module_resources(q, 1, &category, kAllValues, module * 256 + 2, &answer) != 0) return std::nullopt;
  byte_span payload = payload_of(answer);
  pm_mod_resource_alloc_resp_payload_t head;
  std::vector<module_resource> nodes;
  const bool is_whole = take(payload, head) && head.err_status == 0 && take_tree(payload, nodes);
  mts_drop(q, &answer);
  if (is_whole) return nodes;
  transport_note_damaged(MTS_SAP_PORT_MANAGER);
  return std::nullopt;
}

}  // namespace host
