// Blocks from the heap that a called function leaves to its caller.
#pragma once

#include <cstdlib>
#include <memory>

namespace host {

struct free_block {
  void operator()(void* block) const { std::free(block); }
};

template <typename Record>
using heap_block = std::unique_ptr<Record, free_block>;

}  // namespace host
