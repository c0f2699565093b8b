#include "shell/output/block_writer.h"

#include <unistd.h>

#include <cerrno>

namespace host {

void block_writer::flush() {
  if (sink_) {
    if (!pending_.empty()) sink_(pending_);
    pending_.clear();
    return;
  }
  std::string_view left = pending_;
  while (!left.empty()) {
    const ssize_t written = write(descriptor_, left.data(), left.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) break;  // the reader is gone: what is left is lost to it
    left.remove_prefix(static_cast<std::size_t>(written));
  }
  pending_.clear();
}

}  // namespace host
