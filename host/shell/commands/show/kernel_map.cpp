// "show kernel-map".
#include <algorithm>
#include <string>

#include "messages/calls/switch_facts.h"
#include "platform/if_index.h"
#include "shell/commands/group.h"
#include "shell/output/command_output.h"
#include "shell/output/schema/schema.h"
#include "switch/range_text.h"

namespace host {
namespace {

int show_kernel_map(const invocation& run) {
  const auto answer = ask_devices();
  if (!answer) return kServiceFailed;
  if (!answer->is_kernel) {
    run.output.complain("this switch is not read from the kernel. Start the shell with --kernel.");
    return kUsage;
  }
  static constexpr std::size_t kWidth = 18;
  const auto padded = [](const std::string& text) {
    return text + std::string(std::max(kWidth, text.size() + 2) - text.size(), ' ');
  };
  for (const device_interface& it : answer->devices) {
    if (run.output.is_structured()) {
      char name[64];
      run.output.begin_interface(sprintf_if_index(name, it.if_index), it.if_index);
      run.output.bind_text(kTagMapDevice, it.name);
      run.output.bind_text(kTagMapReason, it.reason);
      run.output.end_interface();
      continue;
    }
    run.output.text(padded(it.name) + padded(range_text({&it.if_index, 1})) + it.reason + "\n");
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
