// Functions of the C library that this program defines itself: the libraries that it loads then call these.
#include "shell/platform/libc_calls.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "base/c_edge.h"
#include "messages/calls/client_libraries.h"
#include "messages/calls/device_names.h"
#include "switch/clock.h"
#include "transport/failures.h"

namespace host {
namespace {

constexpr std::string_view kClearInband = "echo > /proc/vexa/hw/inband/dicounts";
constexpr char kInbandDevice[] = "eth2";

// The exit status of a shell for an unknown command.
constexpr int kNotRun = 127 << 8;

using open_function = void* (*)(const char*, int);

using close_function = int (*)(void*);

close_function next_dlclose() {
  static const auto next = reinterpret_cast<close_function>(dlsym(RTLD_NEXT, "dlclose"));
  return next;
}

open_function next_dlopen() {
  static const auto next = reinterpret_cast<open_function>(dlsym(RTLD_NEXT, "dlopen"));
  return next;
}

// Whether a library has all functions that the command library looks up; missing ones are noted.
bool has_functions(void* opened, const client_library& library) {
  bool has_all = true;
  for (const char* const function : library.functions) {
    if (dlsym(opened, function) != nullptr) continue;
    note_failure({library.file, fault::without_function, 0, function});
    has_all = false;
  }
  return has_all;
}

// A complete client library that stays open: closing it has no effect, and opening it again gives the same handle.
struct resident_library {
  const client_library* library;
  int mode;
  void* handle;
};

// Libraries are closed until the process ends: it is never destroyed.
std::vector<resident_library>& resident_libraries() {
  static auto* const opened = new std::vector<resident_library>;
  return *opened;
}

bool is_resident(const void* handle) {
  return std::ranges::any_of(resident_libraries(), [=](const resident_library& it) { return it.handle == handle; });
}

// Opens a client library; missing parts are noted as a failure of the command.
void* open_client_library(const client_library& library, int mode) {
  std::vector<resident_library>& resident = resident_libraries();
  for (const resident_library& it : resident)
    if (it.library == &library && it.mode == mode) return it.handle;
  void* const opened = next_dlopen()(library.file, mode);
  if (opened == nullptr)
    note_failure({library.file, fault::not_opened});
  else if (has_functions(opened, library))
    resident.push_back({&library, mode, opened});
  return opened;
}

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

// Runs no command. The effect of the in-band driver is applied to the device of the in-band interface.
extern "C" int system(const char* command) {
  if (command == nullptr) return 0;
  return host::no_throw(-1, [command] {
    host::system_commands().emplace_back(command);
    if (command != host::kClearInband) return host::kNotRun;
    return host::ask_to_clear_device(host::kInbandDevice) ? 0 : 1 << 8;
  });
}

// Notes client libraries that are missing. The loader looks for others where their caller's file says: the call is the
// last that is done for them, so that an optimised build hands the caller on.
extern "C" void* dlopen(const char* file, int mode) {
  const host::client_library* const library = file == nullptr ? nullptr : host::find_client_library(file);
  if (library != nullptr)
    return host::no_throw<void*>(nullptr, [=] { return host::open_client_library(*library, mode); });
  return host::next_dlopen()(file, mode);
}

extern "C" int dlclose(void* handle) noexcept { return host::is_resident(handle) ? 0 : host::next_dlclose()(handle); }
