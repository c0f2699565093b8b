#include <dlfcn.h>

#include "pmcli/command.h"
#include "support/library_messages.h"

using namespace pmcli;

pm_library_function_t pm_get_function_from_library(const char* filename, const char* symbol, void** handle) {
  void* const library = dlopen(filename, RTLD_LAZY);
  if (library == nullptr) {
    print_library_not_opened(filename);
    return nullptr;
  }
  *handle = library;
  dlerror();  // so that a text found afterwards belongs to this lookup
  return reinterpret_cast<pm_library_function_t>(dlsym(library, symbol));
}
