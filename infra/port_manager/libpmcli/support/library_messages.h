// What is printed when a service's client library cannot serve.
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
