// Writes lines in blocks to a file descriptor or to a function.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace host {

// Takes output, block by block.
using output_sink = std::function<void(std::string_view)>;

class block_writer {
 public:
  // Waiting for a reader ends when a signal came and `is_cancelled`, if it is not null, returns true.
  explicit block_writer(int descriptor, output_sink sink = {}, bool (*is_cancelled)() = nullptr)
      : descriptor_(descriptor), sink_(std::move(sink)), is_cancelled_(is_cancelled) {}

  void line(std::string_view text) {
    pending_ += text;
    pending_ += '\n';
    if (pending_.size() >= kBlockBytes) flush();
  }

  // Without the newline that line() adds.
  void text(std::string_view text) { pending_ += text; }

  // After a write that failed nothing more is written.
  void flush();
  int error() const { return error_; }  // an errno; 0: none

  int descriptor() const { return descriptor_; }

  // Changes the descriptor and clears the error.
  void redirect(int descriptor) {
    flush();
    descriptor_ = descriptor;
    error_ = 0;
  }

 private:
  static constexpr std::size_t kBlockBytes = 32 * 1024;

  int descriptor_;
  output_sink sink_;
  bool (*is_cancelled_)();
  int error_ = 0;
  std::string pending_;
};

}  // namespace host
