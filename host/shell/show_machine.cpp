// Displays of the whole machine: transceivers of all ports, VLANs, resources of modules.
#include "shell/commands.h"
#include "shell/output/command_output.h"
#include "shell/parameters.h"
#include "shell/shell.h"

namespace host {
namespace {

constexpr uint32 kNoDisplayId = 0;

// Calls `show` with a block that names no interface. What failed is told by what was printed.
template <typename Show>
int run_display(const invocation& run, Show show) {
  const command_queue q;
  command_parameters parameters(run.session.who, q.handle, kNoDisplayId);
  show(parameters.for_ranges(0, {}));
  run.output.flush();
  return run.output.failed() ? kServiceFailed : kDone;
}

}  // namespace

int show_transceivers(const invocation& run) { return run_display(run, run.session.library.show_transceivers); }

int show_transceivers_details(const invocation& run) {
  return run_display(run, run.session.library.show_transceivers_details);
}

int show_transceivers_calibrations(const invocation& run) {
  return run_display(run, run.session.library.show_transceivers_calibrations);
}

int show_module_resources(const invocation& run) {
  return run_display(run, [&run](paraminfo_t* block) {
    run.session.library.show_module_resources(block, static_cast<uint8>(*run.line.number));
  });
}

int show_vlans(const invocation& run) { return run_display(run, run.session.library.show_vlans); }

}  // namespace host
