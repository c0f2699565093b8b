// The heap of the library, watched. The library's objects are linked so that their calls of the functions below
// arrive here (see tests/support/CMakeLists.txt); the calls of tests and of libc itself do not.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "support/recording_state.h"

namespace pmcli_test {
namespace {

void* watch(RecordingPlatform* platform, void* block, std::size_t size, const std::string& label) {
  if (platform != nullptr && block != nullptr) platform->internals().blocks[block] = {label, size};
  return block;
}

void forget(RecordingPlatform* platform, void* block) {
  if (platform != nullptr) platform->internals().blocks.erase(block);
}

bool fails(RecordingPlatform* platform, const char* function) {
  return platform != nullptr && platform->failure_of(function) != 0;
}

}  // namespace

void* RecordingPlatform::hand_over(const void* bytes, std::size_t size, const std::string& label) {
  void* const block = std::malloc(std::max<std::size_t>(size, 1));
  if (block == nullptr) std::abort();
  if (size != 0) std::memcpy(block, bytes, size);
  return watch(this, block, size, label);
}

void RecordingPlatform::release(void* block) {
  forget(this, block);
  std::free(block);
}

}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

void* __wrap_malloc(size_t size) {
  RecordingPlatform* const platform = RecordingPlatform::active();
  return fails(platform, "malloc") ? nullptr : watch(platform, std::malloc(size), size, "malloc");
}

void* __wrap_calloc(size_t count, size_t size) {
  RecordingPlatform* const platform = RecordingPlatform::active();
  return fails(platform, "calloc") ? nullptr : watch(platform, std::calloc(count, size), count * size, "calloc");
}

void* __wrap_realloc(void* block, size_t size) {
  RecordingPlatform* const platform = RecordingPlatform::active();
  if (fails(platform, "realloc")) return nullptr;
  forget(platform, block);
  return watch(platform, std::realloc(block, size), size, "realloc");
}

void __wrap_free(void* block) {
  forget(RecordingPlatform::active(), block);
  std::free(block);
}

}  // extern "C"
