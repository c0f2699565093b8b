// Texts of fixed width.
#pragma once

#include <cstddef>
#include <cstring>

#include "platform/if_index.h"

namespace pmcli {

// The content of a fixed-width field that need not be terminated.
template <std::size_t Width>
struct terminated_text {
  char text[Width + 1];
};

template <std::size_t Width>
terminated_text<Width> terminate(const char (&field)[Width]) {
  terminated_text<Width> copy;
  std::memcpy(copy.text, field, Width);
  copy.text[Width] = '\0';
  return copy;
}

// Copies at most `size` - 1 characters of a terminated text and terminates the copy. A size of 0 writes nothing.
inline void copy_text(char* to, std::size_t size, const char* from) {
  if (size == 0) return;
  const std::size_t length = strnlen(from, size - 1);
  std::memcpy(to, from, length);
  to[length] = '\0';
}

// Appends under the same bound.
inline void append_text(char* to, std::size_t size, const char* from) {
  const std::size_t used = strnlen(to, size);
  copy_text(to + used, size - used, from);
}

// The full name of an interface.
struct interface_name {
  explicit interface_name(if_index_t if_index) { sprintf_if_index(text, if_index); }
  char text[80] = {};
};

}  // namespace pmcli
