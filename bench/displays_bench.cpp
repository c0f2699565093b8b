// Time, bytes and allocations of each display for one interface, on a switch of 512 ports, from the typed line to the
// bytes that leave the process.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "count_allocations.h"
#include "service/services.h"
#include "shell/library/command_library.h"
#include "shell/session/run.h"
#include "source/chassis/chassis_source.h"
#include "source/chassis/giant.h"
#include "switch/model.h"
#include "switch/source.h"
#include "transport/transport.h"

namespace {

constexpr uint32 kPorts = 512;

// Lines that show every Ethernet port of the switch.
constexpr const char* kLines[] = {
    "show interface",
    "show interface | json",
    "show interface brief",
    "show interface status",
    "show interface description",
    "show interface mac-address",
    "show interface ifindex",
    "show interface debounce",
    "show interface capabilities",
    "show interface flowcontrol",
    "show interface trunk",
    "show interface transceiver",
    "show interface counters",
    "show interface counters brief",
    "show interface counters errors",
    "show interface counters detailed",
    "show interface overview",
};

host::shell& session() {
  static host::shell one = [] {
    const auto program = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const std::string libraries = (program / PMCLI_LIBRARY_DIRECTORY).lexically_normal().string();
    host::the_machine() = host::make_giant(kPorts);
    host::set_source(std::make_unique<host::chassis_source>());
    host::transport_register(host::all_services());
    host::shell made;
    made.library = host::load_command_library(libraries + "/libpmcli_common.so");
    return made;
  }();
  return one;
}

// While it lives, standard output goes to a file.
class output_to {
 public:
  explicit output_to(int file) : real_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    dup2(file, STDOUT_FILENO);
  }
  ~output_to() {
    std::fflush(stdout);
    dup2(real_, STDOUT_FILENO);
    close(real_);
  }
  output_to(const output_to&) = delete;
  output_to& operator=(const output_to&) = delete;

 private:
  int real_;
};

// What a line prints, in bytes.
double bytes_of(const char* line) {
  const int file = memfd_create("output", 0);
  {
    const output_to memory(file);
    host::run_line(session(), line);
  }
  struct stat status {};
  fstat(file, &status);
  close(file);
  return static_cast<double>(status.st_size);
}

void show(benchmark::State& state, const char* line) {
  const auto interfaces = static_cast<double>(host::the_machine().interfaces.size());
  const double bytes = bytes_of(line);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  const auto before = allocations_so_far();
  {
    const output_to null(nowhere);
    for ([[maybe_unused]] auto iteration : state) host::run_line(session(), line);
  }
  close(nowhere);
  const auto runs = static_cast<double>(state.iterations());
  state.counters["allocations"] = static_cast<double>(allocations_so_far() - before) / runs / interfaces;
  state.counters["bytes"] = bytes / interfaces;
  state.counters["time"] =
      benchmark::Counter(interfaces * runs, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// A fixed piece of work: times of displays are compared with it where machines differ.
void format_numbers(benchmark::State& state) {
  char text[32];
  for ([[maybe_unused]] auto iteration : state)
    for (unsigned number = 0; number < 100; ++number)
      benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%u", number * 40'503'211U));
}

}  // namespace

int main(int argc, char** argv) {
  session();
  for (const char* const line : kLines) benchmark::RegisterBenchmark(line, show, line)->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("reference: 100 numbers by snprintf", format_numbers)->Unit(benchmark::kMicrosecond);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
