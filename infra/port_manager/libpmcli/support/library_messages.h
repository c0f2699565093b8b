// The messages about a service's client library that cannot be used.
#pragma once

#include <cstdio>

namespace pmcli {

inline void print_library_not_opened(const char* filename) {
  std::printf("error: unable to open library %s\n", filename);
}

// `error`: the loader's text, or null.
inline void print_function_not_found(const char* error, const char* symbol) {
  std::printf("error: %s in dlsym for %s\n", error != nullptr ? error : "(null)", symbol);
}

}  // namespace pmcli
