// Functions of the C library that this program defines itself: the libraries that it loads then call these.
#include "shell/libc_calls.h"

#include <cstdlib>
#include <ctime>

#include "base/c_edge.h"
#include "switch/clock.h"
#include "switch/kernel_device.h"

namespace host {
namespace {

constexpr std::string_view kClearInband = "echo > /proc/vexa/hw/inband/dicounts";
constexpr char kInbandDevice[] = "eth2";

// As a shell reports a command that it does not find.
constexpr int kNotRun = 127 << 8;

}  // namespace

std::vector<std::string>& system_commands() {
  static std::vector<std::string> commands;
  return commands;
}

}  // namespace host

// The host's clock.
extern "C" time_t time(time_t* result) noexcept {
  const time_t now = host::clock_now();
  if (result != nullptr) *result = now;
  return now;
}

// Runs nothing. What the in-band driver would do is done to the device that stands for it.
extern "C" int system(const char* command) {
  if (command == nullptr) return 0;
  return host::no_throw(-1, [command] {
    host::system_commands().emplace_back(command);
    if (command != host::kClearInband) return host::kNotRun;
    return host::clear_kernel_counters(host::kInbandDevice) ? 0 : 1 << 8;
  });
}
