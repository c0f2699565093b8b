#include "shell/output/chain/colour.h"

#include <string_view>

namespace host {
namespace {

constexpr std::string_view kRed = "\x1b[31m", kYellow = "\x1b[33m", kUsual = "\x1b[0m";

}  // namespace

text_line colouring_sink::coloured(const text_line& it) {
  if (it.marks.empty()) return it;
  text_.clear();
  std::size_t done = 0;
  for (const line_mark& mark : it.marks) {
    text_.append(it.text.substr(done, mark.begin - done)).append(mark.what == severity::alarm ? kRed : kYellow);
    text_.append(it.text.substr(mark.begin, mark.end - mark.begin)).append(kUsual);
    done = mark.end;
  }
  text_.append(it.text.substr(done));
  text_line made = it;
  made.text = text_;
  made.marks = {};
  return made;
}

}  // namespace host
