#include "shell/output/chain/colour.h"

#include <string_view>

namespace host {
namespace {

constexpr std::string_view kUsual = "\x1b[0m";

std::string_view colour_of(severity what) {
  switch (what) {
    case severity::off: return "\x1b[2m";
    case severity::normal: return "\x1b[32m";
    case severity::warning: return "\x1b[33m";
    case severity::alarm: return "\x1b[31m";
  }
  return kUsual;
}

}  // namespace

text_line colouring_sink::coloured(const text_line& it) {
  if (it.marks.empty()) return it;
  text_.clear();
  std::size_t done = 0;
  for (const line_mark& mark : it.marks) {
    text_.append(it.text.substr(done, mark.begin - done)).append(colour_of(mark.what));
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
