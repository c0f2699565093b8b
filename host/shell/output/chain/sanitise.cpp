#include "shell/output/chain/sanitise.h"

#include "base/printable.h"

namespace host {

text_line sanitising_sink::safe(const text_line& it) {
  if (is_plain_ascii(it.text)) return it;
  text_.clear();
  marks_.clear();
  std::size_t done = 0;
  const auto append_to = [&](std::size_t end) {
    append_printable(text_, it.text.substr(done, end - done), "\t");
    done = end;
    return text_.size();
  };
  for (const line_mark& mark : it.marks) {
    const std::size_t begin = append_to(mark.begin);
    marks_.add({begin, append_to(mark.end), mark.what});
  }
  append_to(it.text.size());
  text_line made = it;
  if (text_ != it.text) made.cells = {};  // they lie elsewhere now
  made.text = text_;
  made.marks = marks_;
  return made;
}

void sanitising_sink::take(const text_line& it) { next().take(safe(it)); }

bool sanitising_sink::take_part(const text_line& it) { return next().take_part(safe(it)); }

}  // namespace host
