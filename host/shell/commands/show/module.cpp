// "show module resources".
#include <fmt/format.h>

#include <optional>

#include "messages/calls/module_resources.h"
#include "platform/module_resources.h"
#include "platform/platform_data.h"
#include "shell/commands/group.h"
#include "shell/commands/show/library_display.h"
#include "shell/output/schema/schema.h"
#include "transport/failures.h"

namespace host {
namespace {

constexpr uint32 tuple_id(uint32 code, uint16 tag) { return code << 24 | tag; }

const char* level_of(uint32 category) {
  switch (category) {
    case PM_RESOURCE_GLOBAL_BUFFER_GROUP: return "module";
    case PM_RESOURCE_PORT_GROUP: return "port group";
    case PM_RESOURCE_LOCAL_BUFFER_GROUP: return "buffer group";
    case PM_RESOURCE_PORT: return "port";
    default: return nullptr;
  }
}

void bind_resource(command_output& output, const module_resource& node, const char* level) {
  const auto bind = [&output](uint16 tag, std::optional<uint32> number) {
    if (number) output.bind({tuple_id(CMD_TYPE_UINT32, tag), &*number});
  };
  const auto number_of_group = [](uint32 group) { return group == 0 ? std::nullopt : std::optional(group); };
  const bool is_port = node.category == PM_RESOURCE_PORT;
  output.bind({tuple_id(CMD_TYPE_STRING, kTagResourceLevel), level});
  if (is_port) output.bind({tuple_id(CMD_TYPE_IF_INDEX, kTagResourcePort), &node.id});
  bind(kTagResourcePortGroup, number_of_group(node.port_group));
  bind(kTagResourceBufferGroup, number_of_group(node.buffer_group));
  bind(is_port ? kTagResourceBbCredits : kTagResourceTotalBuffers, node.buffers);
  bind(kTagResourceAvailableBuffers, node.available_buffers);
  bind(kTagResourcePerformanceBuffers, node.performance_buffers);
  bind(kTagResourceAvailablePerformanceBuffers, node.available_performance_buffers);
  bind(kTagResourceBandwidth, node.bandwidth_mbps);
  bind(kTagResourceAvailableBandwidth, node.available_bandwidth_mbps);
  if (node.rate_mode) output.bind({tuple_id(CMD_TYPE_ENUM, kTagResourceRateMode), &*node.rate_mode});
}

// A record for each group and port; that of the module begins them.
int bind_module_resources(const invocation& run, uint32 module) {
  const command_queue q;
  const auto nodes = ask_module_resources(q.handle, module);
  if (!nodes) return kServiceFailed;
  for (const module_resource& node : *nodes)
    if (const char* const level = level_of(node.category); level != nullptr) bind_resource(run.output, node, level);
  return kDone;
}

int show_module_resources(const invocation& run) {
  if (const int checked = check_module(run); checked != kDone) return checked;
  const uint32 module = *run.line.number;
  const std::size_t num_failures = noted_failures().size();
  if (pdb_is_module_tamber(module * 256 + 2) == 0) {
    if (noted_failures().size() != num_failures) return kServiceFailed;  // it is not known
    run.output.complain(
        fmt::format("module {}: 'show module resources' does not apply to this kind of module.", module));
    return kSomeInterfacesFailed;
  }
  if (run.output.is_structured()) return bind_module_resources(run, module);
  return run_display(run, [&run, module](paraminfo_t* block) {
    run.session.library.show_module_resources(block, static_cast<uint8>(module));
  });
}

constexpr display kModuleResourcesShown = {
    kModuleResourcesDisplay, {}, "module_resources", false, false, "resources", true};

// clang-format off
constexpr command kModuleRows[] = {
    {"show module MODULE resources", "Buffers and bandwidth of a module", show_module_resources, kModuleResourcesShown},
};
// clang-format on

constexpr word_help kModuleWords[] = {
    {"resources", "Buffers and bandwidth"},
};

}  // namespace

constexpr command_group kModuleCommands = {kModuleRows, kModuleWords};

}  // namespace host
