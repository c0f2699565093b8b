#include "count_allocations.h"

#include <cstdlib>

// The C library's own functions under their other names; these stand in front of them for the whole process.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
}

namespace {
std::uint64_t allocations = 0;
}

std::uint64_t allocations_so_far() { return allocations; }

extern "C" {

void* malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
  ++allocations;
  return __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size) {
  ++allocations;
  return __libc_realloc(block, size);
}
}
