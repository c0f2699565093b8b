// The loader of libraries by name. The library's objects are linked so that their calls of the functions below
// arrive here (see tests/support/CMakeLists.txt); the calls of tests and of libc itself do not.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "support/recording_state.h"

namespace pmcli_test {
namespace {

// The open library behind a handle; a failure of the test when it was never opened or is closed.
open_library* find_open(RecordingPlatform& platform, void* handle, const char* function) {
  for (open_library& library : platform.internals().open_libraries) {
    if (&library != handle) continue;
    if (library.is_open) return &library;
    ADD_FAILURE() << function << "() on " << library.name << ", which was closed before";
    return nullptr;
  }
  ADD_FAILURE() << function << "() on a handle that was never opened";
  return nullptr;
}

}  // namespace

void RecordingPlatform::close(void* library_handle) {
  open_library* const library = find_open(*this, library_handle, "dlclose");
  if (library == nullptr) return;
  library->is_open = false;
  loader_events.push_back("close " + library->name);
  std::string& text = internals().loader_text;
  std::fill(text.begin(), text.end(), '#');  // an error text does not outlive its library
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

void* __wrap_dlopen(const char* name, int mode) {
  RecordingPlatform& platform = platform_for("dlopen");
  const std::string event = std::string(name) + ((mode & RTLD_NOW) != 0 ? " now" : " lazy");
  if (platform.failure_of("dlopen") != 0 || !platform.libraries.contains(name)) {
    platform.loader_events.push_back("miss " + event);
    platform.earlier_loader_error = std::string(name) + ": cannot open shared object file";
    return nullptr;
  }
  platform.loader_events.push_back("open " + event);
  return &platform.internals().open_libraries.emplace_back(open_library{name});
}

void* __wrap_dlsym(void* handle, const char* symbol) {
  RecordingPlatform& platform = platform_for("dlsym");
  const open_library* const library = find_open(platform, handle, "dlsym");
  platform.loader_events.push_back(std::string("find ") + symbol);
  const bool fails = platform.failure_of("dlsym") != 0;
  if (library == nullptr) return nullptr;
  const library_symbols& symbols = platform.libraries[library->name];
  const auto found = symbols.find(symbol);
  if (!fails && found != symbols.end()) return found->second.address;
  platform.earlier_loader_error = platform.loader_error;
  return nullptr;
}

char* __wrap_dlerror(void) {
  RecordingPlatform& platform = platform_for("dlerror");
  if (!platform.earlier_loader_error) return nullptr;
  platform.internals().loader_text = *platform.earlier_loader_error;
  platform.earlier_loader_error.reset();
  return platform.internals().loader_text.data();
}

int __wrap_dlclose(void* handle) {
  platform_for("dlclose").close(handle);
  return 0;
}

}  // extern "C"
