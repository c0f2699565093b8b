#include "support/allocations.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t count = 0;
bool may_fail = false;
bool has_failed_once = false;
std::size_t left = 0;

void* allocate(std::size_t size) {
  ++count;
  const bool fails = may_fail && !has_failed_once && left-- == 0;
  if (!fails) return std::malloc(size);
  has_failed_once = true;
  return nullptr;
}

void* allocate_or_throw(std::size_t size) {
  if (void* const block = allocate(size)) return block;
  throw std::bad_alloc();
}

}  // namespace

// Not inlined: the compiler would see malloc's block reach "delete" and complain.
[[gnu::noinline]] void* operator new(std::size_t size) { return allocate_or_throw(size); }
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
[[gnu::noinline]] void* operator new[](std::size_t size) { return allocate_or_throw(size); }
[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete[](void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

namespace pmcli_test {

std::size_t num_allocations() { return count; }

failing_allocation::failing_allocation(std::size_t spared) {
  left = spared;
  has_failed_once = false;
  may_fail = true;
}

failing_allocation::~failing_allocation() { may_fail = false; }

bool failing_allocation::has_failed() const { return has_failed_once; }

}  // namespace pmcli_test
