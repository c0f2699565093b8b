// Lines to a file descriptor, gathered into blocks, or to a function in its place.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace host {

// Takes output, block by block.
using output_sink = std::function<void(std::string_view)>;

class block_writer {
 public:
  explicit block_writer(int descriptor, output_sink sink = {}) : descriptor_(descriptor), sink_(std::move(sink)) {}

  void line(std::string_view text) {
    pending_ += text;
    pending_ += '\n';
    if (pending_.size() >= kBlockBytes) flush();
  }

  // Without the newline that line() adds.
  void text(std::string_view text) { pending_ += text; }

  void flush();

  int descriptor() const { return descriptor_; }

 private:
  static constexpr std::size_t kBlockBytes = 32 * 1024;

  int descriptor_;
  output_sink sink_;
  std::string pending_;
};

}  // namespace host
