// What must be released is released by its scope.
#pragma once

#include <dlfcn.h>

#include <cstdlib>
#include <memory>

namespace pmcli {

struct free_block {
  void operator()(void* block) const { std::free(block); }
};

// A heap block that a service handed over.
template <typename T>
using heap_block = std::unique_ptr<T, free_block>;

// A function found in a library; `error` is the loader's text or null, good until the next call of the loader.
template <typename Function>
struct library_symbol {
  Function function;
  const char* error;
  explicit operator bool() const { return error == nullptr && function != nullptr; }
};

// A service's client library, opened by name.
class service_library {
 public:
  service_library(const char* name, int binding) : handle_(dlopen(name, binding)) {}
  ~service_library() { close(); }
  service_library(const service_library&) = delete;
  service_library& operator=(const service_library&) = delete;

  explicit operator bool() const { return handle_ != nullptr; }
  void* handle() const { return handle_; }

  template <typename Function>
  library_symbol<Function> find(const char* symbol) const {
    dlerror();
    const auto function = reinterpret_cast<Function>(dlsym(handle_, symbol));
    return {function, dlerror()};
  }

  void close() {
    if (handle_ != nullptr) dlclose(handle_);
    handle_ = nullptr;
  }

 private:
  void* handle_;
};

}  // namespace pmcli
