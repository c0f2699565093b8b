// Displays of the whole machine: transceivers of all ports, VLANs, resources of modules.
#include <algorithm>

#include "client/resource_tree.h"
#include "platform/module_resources.h"
#include "platform/platform_data.h"
#include "shell/commands/handlers.h"
#include "shell/grammar/range_text.h"
#include "shell/library/parameters.h"
#include "shell/library/views.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "shell/session/shell.h"
#include "switch/source.h"

namespace host {
namespace {

constexpr uint32 kNoDisplayId = 0;

// Calls `show` with a block that names no interface. Failures are those that the output noted.
template <typename Show>
int run_display(const invocation& run, Show show) {
  const command_queue q;
  command_parameters parameters(run.session.who, q.handle, kNoDisplayId);
  show(parameters.for_ranges(0, {}));
  run.output.flush();
  return run.output.failed() ? kServiceFailed : kDone;
}

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

std::string text_of(const kernel_device& it) {
  switch (it.reason) {
    case name_reason::map_file: return "map file";
    case name_reason::stored: return "stored";
    case name_reason::default_route: return "default route";
    case name_reason::loopback: return "loopback";
    case name_reason::bond: return "bond";
    case name_reason::vlan: return "vlan of " + it.parent;
    case name_reason::device_index: return "device index";
  }
  return {};
}

}  // namespace

void call_handler(const invocation& run, command_handler handler, paraminfo_t* block) {
  const uint32 result = handler(block);
  const std::string_view added = result == 0 ? std::string_view() : name_of_added_handler(handler);
  if (added.empty()) return;
  run.output.complain(std::string(added) + " failed: it returned " + std::to_string(result) + ".");
  run.output.note_failure();
}

bool has_named_module(const invocation& run) {
  const auto& words = run.line.what->syntax.words;
  if (std::none_of(words.begin(), words.end(), [](const syntax_word& word) { return word.text == "MODULE"; }))
    return true;
  std::string modules;
  for (const card& it : the_machine().cards) {
    if (it.slot + 1 == run.line.number) return true;
    modules.append(modules.empty() ? "" : ", ").append(std::to_string(it.slot + 1));
  }
  run.output.complain("module " + run.line.module + " does not exist" +
                      (modules.empty() ? "." : "; the modules of this switch are " + modules + "."));
  return false;
}

// The library lists Fibre Channel and Ethernet ports, as text alone.
int show_transceivers(const invocation& run) {
  constexpr if_index_type_t kNotListed[] = {IF_TYPE_ETHERNET_L3, IF_TYPE_SATELLITE};
  const uint32 view = run.line.what->command_id;
  if (run.output.is_structured()) return show_kinds(run, view_of(view).kinds);
  const command_library& library = run.session.library;
  const auto list = view == DISPLAY_TRANSCEIVER          ? library.show_transceivers
                    : view == DISPLAY_TRANSCEIVER_DETAIL ? library.show_transceivers_details
                                                         : library.show_transceivers_calibrations;
  const int listed = run_display(run, list);
  return std::max(listed, show_kinds(run, kNotListed));
}

int show_module_resources(const invocation& run) {
  if (!has_named_module(run)) return kNoSuchInterface;
  const uint32 module = *run.line.number;
  if (pdb_is_module_tamber(module * 256 + 2) == 0) {
    run.output.complain("module " + std::to_string(module) +
                        ": 'show module resources' does not apply to this kind of module.");
    return kSomeInterfacesFailed;
  }
  if (run.output.is_structured()) return bind_module_resources(run, module);
  return run_display(run, [&run, module](paraminfo_t* block) {
    run.session.library.show_module_resources(block, static_cast<uint8>(module));
  });
}

int show_added(const invocation& run) {
  if (!has_named_module(run)) return kNoSuchInterface;
  return run_display(
      run, [&run](paraminfo_t* block) { call_handler(run, view_of(run.line.what->command_id).own.handler, block); });
}

int show_kernel_map(const invocation& run) {
  const auto devices = the_source().devices();
  if (!devices) {
    run.output.complain("this switch is not read from the kernel. Start the shell with --kernel.");
    return kUsage;
  }
  static constexpr std::size_t kWidth = 18;
  const auto padded = [](const std::string& text) {
    return text + std::string(std::max(kWidth, text.size() + 2) - text.size(), ' ');
  };
  for (const kernel_device& it : *devices) {
    const std::string reason = text_of(it);
    if (run.output.is_structured()) {
      char name[64];
      run.output.begin_interface(sprintf_if_index(name, it.if_index), it.if_index);
      run.output.bind({uint32{CMD_TYPE_STRING} << 24 | kTagMapDevice, it.name.c_str()});
      run.output.bind({uint32{CMD_TYPE_STRING} << 24 | kTagMapReason, reason.c_str()});
      run.output.end_interface();
      continue;
    }
    run.output.text(padded(it.name) + padded(range_text({&it.if_index, 1})) + reason + "\n");
  }
  return kDone;
}

}  // namespace host
