// Lines to a file descriptor, gathered into blocks, or to a text in its place.
#pragma once

#include <string>
#include <string_view>

namespace host {

class block_writer {
 public:
  explicit block_writer(int descriptor, std::string* text = nullptr) : descriptor_(descriptor), text_(text) {}

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
  std::string* text_;
  std::string pending_;
};

}  // namespace host
