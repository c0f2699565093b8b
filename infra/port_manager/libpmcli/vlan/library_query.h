// Queries whose request a client library builds and whose answer it takes apart.
#pragma once

#include <dlfcn.h>

#include "platform/types.h"
#include "support/library_messages.h"
#include "support/scope.h"

namespace pmcli {

// A function of a library that is open. Null after that was printed; also without a library, for a null handle would be
// searched for in the whole process.
template <typename Function>
Function find_function(void* library, const char* symbol) {
  dlerror();
  auto* const address = library != nullptr ? dlsym(library, symbol) : nullptr;
  const char* const error = library != nullptr ? dlerror() : nullptr;
  if (error == nullptr && address != nullptr) return reinterpret_cast<Function>(address);
  print_function_not_found(error, symbol);
  return nullptr;
}

// A request as a client library builds it.
struct built_request {
  heap_block<void> payload;
  uint32 size = 0;  // bytes
};

}  // namespace pmcli
