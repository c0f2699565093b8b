// Guards that release resources at the end of a scope.
#pragma once

#include <dlfcn.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "platform/mts.h"

namespace pmcli {

struct free_block {
  void operator()(void* block) const { std::free(block); }
};

// A heap block that a service handed over.
template <typename T>
using heap_block = std::unique_ptr<T, free_block>;

// A file descriptor of the kernel; one below 0 is none.
class file_descriptor {
 public:
  explicit file_descriptor(int descriptor) : descriptor_(descriptor) {}
  ~file_descriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  file_descriptor(const file_descriptor&) = delete;
  file_descriptor& operator=(const file_descriptor&) = delete;

  explicit operator bool() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

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

// A message that was sent or received; dropped exactly once.
class message {
 public:
  explicit message(mts_q_handle_t q) : q_(q) {}
  ~message() { drop(); }
  message(const message&) = delete;
  message& operator=(const message&) = delete;

  // To be filled by the transport or by a client function; call hold() when it succeeded.
  mts_msg_ref_t* ref() { return &ref_; }
  void hold() { is_held_ = true; }

  // Leaves it to the transport, which frees it with the queue.
  void leave() { is_held_ = false; }

  // Returns the transport's result; 0 when there was nothing to drop.
  int32 drop() {
    if (!is_held_) return 0;
    is_held_ = false;
    return mts_drop(q_, &ref_);
  }

 private:
  mts_q_handle_t q_;
  mts_msg_ref_t ref_{};
  bool is_held_ = false;
};

}  // namespace pmcli
