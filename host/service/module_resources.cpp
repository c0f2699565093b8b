#include "service/module_resources.h"

#include <algorithm>
#include <vector>

#include "messages/port_manager_messages.h"
#include "platform/module_resources.h"
#include "service/answers.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

constexpr uint32 kPortsOfGroup = 6;
constexpr uint32 kBuffersOfGroup = 2'000, kPerformanceOfGroup = 144, kMbpsOfGroup = 12'800;
constexpr uint32 kUsualCredits = 16, kUsualPerformance = 0;
constexpr uint32 kDedicated = 1, kShared = 2;

struct shared_out {
  uint32 buffers = 0, performance = 0, mbps = 0;
};

// A node without children, and the resources of its ports.
struct tree_node {
  reply bytes;
  shared_out used;
};

struct node_value {
  uint16 type;
  uint32 number;
};

reply node(uint32 category, uint32 id, std::initializer_list<node_value> values, const std::vector<reply>& children) {
  reply bytes;
  pm_mod_resource_alloc_resp_data_t head{};
  head.cat.category = category;
  head.cat.id = id;
  head.num_val_tlvs = static_cast<uint16>(values.size());
  head.num_sub_cat = static_cast<uint16>(children.size());
  append_bytes(bytes, head);
  for (const node_value& value : values) {
    append_bytes(bytes, pm_mod_resource_tlv_t{value.type, sizeof(be32)});
    append_bytes(bytes, be32(value.number));
  }
  for (const reply& child : children)
    bytes.payload.insert(bytes.payload.end(), child.payload.begin(), child.payload.end());
  return bytes;
}

tree_node port_node(const interface& port) {
  constexpr uint32 kModeBits = 0xC0000000;
  const uint32 credits =
      (port.settings.receive_credit & ~kModeBits) != 0 ? port.settings.receive_credit & ~kModeBits : kUsualCredits;
  const uint32 performance =
      port.settings.performance_buffers != UINT32_MAX ? port.settings.performance_buffers : kUsualPerformance;
  const uint32 mbps = port.oper_speed_mbps.value_or(0);
  const uint32 mode = port.rate_mode == kShared ? kShared : kDedicated;
  return {node(PM_RESOURCE_PORT, port.if_index,
               {{PM_RESOURCE_BB_CREDIT, credits},
                {PM_RESOURCE_PERFORMANCE_BUFFERS, performance},
                {PM_RESOURCE_BANDWIDTH, mbps},
                {PM_RESOURCE_RATE_MODE, mode}},
               {}),
          {credits, performance, mbps}};
}

uint32 left(uint32 all, uint32 used) { return all - std::min(all, used); }

// A port group with the one buffer group in it.
tree_node port_group(uint32 number, std::span<const interface* const> ports) {
  tree_node group;
  std::vector<reply> children;
  for (const interface* const port : ports) {
    tree_node child = port_node(*port);
    group.used.buffers += child.used.buffers;
    group.used.performance += child.used.performance;
    group.used.mbps += child.used.mbps;
    children.push_back(std::move(child.bytes));
  }
  const reply buffers = node(PM_RESOURCE_LOCAL_BUFFER_GROUP, number,
                             {{PM_RESOURCE_BB_CREDIT, kBuffersOfGroup},
                              {PM_RESOURCE_AVAILABLE_BUFFERS, left(kBuffersOfGroup, group.used.buffers)}},
                             children);
  group.bytes = node(
      PM_RESOURCE_PORT_GROUP, number,
      {{PM_RESOURCE_BANDWIDTH, kMbpsOfGroup}, {PM_RESOURCE_AVAILABLE_BANDWIDTH, left(kMbpsOfGroup, group.used.mbps)}},
      {buffers});
  return group;
}

std::vector<const interface*> fibre_channel_ports(uint32 slot) {
  std::vector<const interface*> ports;
  for (const interface& it : the_machine().interfaces) {
    const index_fields fields = decode_index(it.if_index);
    if (fields.type == IF_TYPE_FC && fields.slot == slot) ports.push_back(&it);
  }
  return ports;
}

reply module_node(uint32 slot) {
  const std::vector<const interface*> ports = fibre_channel_ports(slot);
  std::vector<reply> groups;
  shared_out used;
  for (std::size_t first = 0; first < ports.size(); first += kPortsOfGroup) {
    const std::size_t count = std::min<std::size_t>(kPortsOfGroup, ports.size() - first);
    tree_node group = port_group(static_cast<uint32>(groups.size() + 1), std::span(ports).subspan(first, count));
    used.buffers += group.used.buffers;
    used.performance += group.used.performance;
    groups.push_back(std::move(group.bytes));
  }
  const auto count = static_cast<uint32>(groups.size());
  const uint32 buffers = count * kBuffersOfGroup, performance = count * kPerformanceOfGroup;
  const reply global = node(PM_RESOURCE_GLOBAL_BUFFER_GROUP, 0,
                            {{PM_RESOURCE_BB_CREDIT, buffers},
                             {PM_RESOURCE_PERFORMANCE_BUFFERS, performance},
                             {PM_RESOURCE_AVAILABLE_BUFFERS, left(buffers, used.buffers)},
                             {PM_RESOURCE_AVAILABLE_PERFORMANCE, left(performance, used.performance)}},
                            groups);
  return node(PM_RESOURCE_MODULE, slot, {}, {global});
}

}  // namespace

reply answer_module_resources(std::span<const std::byte> bytes) {
  const auto request = read_request<module_request>(bytes);
  if (!request) return reject();
  const auto& cards = the_machine().cards;
  const bool shares = std::any_of(cards.begin(), cards.end(), [&request](const card& it) {
    return it.slot == request->slot && it.shares_resources;
  });
  reply answer;
  append_bytes(answer, pm_mod_resource_alloc_resp_payload_t{shares ? 0U : 1U});
  if (!shares) return answer;
  const reply tree = module_node(request->slot);
  answer.payload.insert(answer.payload.end(), tree.payload.begin(), tree.payload.end());
  return answer;
}

}  // namespace host
