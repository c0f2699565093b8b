// Writing a text to a descriptor.
#pragma once

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

namespace host {

// Writes the whole text; waits for a full pipe that does not block. Returns 0 or an errno: ECANCELED when a
// signal came and `is_cancelled` returned true; a null one never does.
inline int write_all(int descriptor, std::string_view text, bool (*is_cancelled)() = nullptr) {
  while (!text.empty()) {
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
      continue;
    }
    if (errno == EAGAIN) {
      pollfd reader{descriptor, POLLOUT, 0};
      if (poll(&reader, 1, -1) >= 0) continue;
    }
    if (errno != EINTR) return errno;
    if (is_cancelled != nullptr && is_cancelled()) return ECANCELED;
  }
  return 0;
}

}  // namespace host
