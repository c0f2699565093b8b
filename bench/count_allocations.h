// How often this process has asked the heap for memory.
#pragma once

#include <cstdint>

std::uint64_t allocations_so_far();
