// Heap blocks of the library's own.
#pragma once

#include <cstdio>
#include <cstring>

#include "platform/types.h"

namespace pmcli {

// Reports that there is no memory, and where. `size` is the requested size in bytes.
inline void report_malloc_failure(uint32 size, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  const char* const slash = std::strrchr(file, '/');
  std::printf("(Error) Malloc Failure in %s[%d] for size %d\n", slash != nullptr ? slash + 1 : file, line,
              static_cast<int32>(size));
}

}  // namespace pmcli
