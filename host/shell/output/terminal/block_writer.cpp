#include "shell/output/terminal/block_writer.h"

#include "base/write_all.h"

namespace host {

void block_writer::flush() {
  if (sink_) {
    if (!pending_.empty()) sink_(pending_);
    pending_.clear();
    return;
  }
  if (error_ == 0) error_ = write_all(descriptor_, pending_, is_cancelled_);
  pending_.clear();
}

}  // namespace host
