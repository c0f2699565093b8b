#include "shell/output/chain/gather.h"

namespace host {
namespace {

// A longer one is broken: a handler that prints without end must not fill the memory.
constexpr std::size_t kLongestLine = 1 << 20;

}  // namespace

void line_gatherer::text(std::string_view text) {
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    text_ += text.substr(0, end);
    end_line();
    text.remove_prefix(end + 1);
  }
  text_ += text;
  break_long_line();
}

std::string& line_gatherer::current() {
  break_long_line();
  return text_;
}

void line_gatherer::break_long_line() {
  if (text_.size() > kLongestLine) end_line();
}

void line_gatherer::end_line() {
  next_.take(made());
  text_.clear();
  marks_.clear();
  cells_.clear();
  is_title_ = false;
  is_bound_ = false;
  is_of_channel_ = false;
  has_failed_ = false;
  has_short_names_ = false;
}

void line_gatherer::flush() {
  if (!text_.empty() && next_.take_part(made())) {
    text_.clear();
    marks_.clear();
    cells_.clear();
  }
  next_.flush();
}

void line_gatherer::end() {
  if (!text_.empty()) end_line();
  next_.end();
}

}  // namespace host
