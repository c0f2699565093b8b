#include "source/open/open_switch.h"

#include <memory>
#include <utility>

#include "base/files.h"
#include "base/program_directory.h"
#include "base/state_directory.h"
#include "settings/settings.h"
#include "source/chassis/chassis_source.h"
#include "source/chassis/giant.h"
#include "source/chassis/switch_file.h"
#include "source/kernel/baselines.h"
#include "source/kernel/capture.h"
#include "source/kernel/kernel_source.h"
#include "source/replay/capture_folder.h"
#include "source/replay/replay_source.h"
#include "switch/clock.h"
#include "switch/model.h"
#include "switch/source.h"

namespace host {
namespace {

namespace fs = std::filesystem;

// The demonstration switch: in the source tree when the program was built there, else relative to the program.
std::string demonstration_switch() {
  std::error_code error;
  for (const char* const place : {PMCLI_SWITCHES, "../switches", "../share/pmcli/switches"}) {
    const fs::path file = program_directory() / place / "campus.yaml";
    if (fs::exists(file, error)) return fs::weakly_canonical(file, error).string();
  }
  return "campus.yaml";
}

// The file of cleared counters; empty: only for the session.
std::string cleared_counters_file(const switch_options& requested) {
  return requested.has_session_counters ? "" : state_file("cleared-counters." + kernel_namespace());
}

// The file of the interfaces of devices; empty: none.
std::string interface_names_file() {
  const std::string file = state_file("interface-names." + kernel_namespace());
  make_directories_of(file);  // the source reports a file that it cannot write
  return file;
}

// The file of the list of devices; empty: none.
std::string device_list_file() { return state_file("device-list." + kernel_namespace()); }

std::unique_ptr<kernel_source> make_kernel_source(const switch_options& requested, capture* capturing) {
  auto interfaces = requested.map_file.empty() ? requested_interfaces{} : read_map_file(requested.map_file);
  const std::string counters = cleared_counters_file(requested), names = interface_names_file();
  if (capturing != nullptr)
    return std::make_unique<capturing_source>(*capturing, std::move(interfaces), counters, names);
  return std::make_unique<kernel_source>(std::move(interfaces), counters, names, device_list_file());
}

machine read_kernel(kernel_source& kernel, bool is_for_counters) {
  if (is_for_counters)
    if (auto counted = kernel.read_counters()) return std::move(*counted);
  return kernel.read();
}

// The clock stops at the moment of the capture, unless the user has stopped it.
void open_replay(const switch_options& requested) {
  auto replay = std::make_unique<replay_source>(read_capture_folder(requested.replay_directory));
  if (!requested.clock) clock_set(replay->clock());
  the_machine() = replay->read();
  set_source(std::move(replay));
}

}  // namespace

opened_switch open_switch(const switch_options& requested, capture* capturing, bool is_for_counters) {
  if (!requested.replay_directory.empty()) {
    open_replay(requested);
    return {};
  }
  if (requested.is_kernel) {
    auto kernel = make_kernel_source(requested, capturing);
    the_machine() = read_kernel(*kernel, is_for_counters);
    opened_switch opened{{}, kernel->names_fault()};
    set_source(std::move(kernel));
    return opened;
  }
  std::string file = requested.switch_file;
  if (file.empty() && requested.giant_ports == 0) file = demonstration_switch();
  the_machine() = file.empty() ? make_giant(requested.giant_ports) : load_switch_file(file);
  if (requested.has_defaults) set_to_defaults(the_machine());
  set_source(std::make_unique<chassis_source>());
  return {file, {}};
}

}  // namespace host
