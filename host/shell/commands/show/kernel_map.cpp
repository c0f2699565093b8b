// "show kernel-map".
#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "platform/if_index.h"
#include "shell/commands/group.h"
#include "shell/grammar/range_text.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "switch/source.h"

namespace host {
namespace {

std::string text_of(const kernel_device& it) {
  switch (it.reason) {
    case name_reason::map_file: return "map file";
    case name_reason::stored: return "stored";
    case name_reason::default_route: return "default route";
    case name_reason::loopback: return "loopback";
    case name_reason::bond: return "bond";
    case name_reason::vlan: return fmt::format("vlan of {}", it.parent);
    case name_reason::device_index: return "device index";
  }
  return {};
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
      run.output.bind_text(kTagMapDevice, it.name);
      run.output.bind_text(kTagMapReason, reason);
      run.output.end_interface();
      continue;
    }
    run.output.text(padded(it.name) + padded(range_text({&it.if_index, 1})) + reason + "\n");
  }
  return kDone;
}

constexpr display kKernelMapShown = {kKernelMapDisplay, {}, "kernel_map", false, false, "devices"};

// clang-format off
constexpr command kKernelMapRows[] = {
    {"show kernel-map", "Kernel device of each interface", show_kernel_map, kKernelMapShown},
};
// clang-format on

constexpr word_help kKernelMapWords[] = {
    {"kernel-map", "Kernel device of each interface"},
};

}  // namespace

constexpr command_group kKernelMapCommands = {kKernelMapRows, kKernelMapWords};

}  // namespace host
