#include "shell/output/chain/mark.h"

#include <string_view>

#include "messages/calls/diagnostic_marks.h"
#include "shell/output/rendering.h"

namespace host {
namespace {

constexpr std::string_view kIndent = "  ";

bool is_row_of(std::string_view text, std::string_view quantity) {
  return text.starts_with(kIndent) && text.substr(kIndent.size()).starts_with(quantity);
}

// Where a word begins in a text; npos when it is not there.
std::size_t find_word(std::string_view text, std::string_view word) {
  for (std::size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
    const std::size_t end = at + word.size();
    if (at > 0 && text[at - 1] == ' ' && (end == text.size() || text[end] == ' ')) return at;
  }
  return std::string_view::npos;
}

// The mark of a row whose answer has it.
void add_mark(line_marks& marks, std::string_view row, uint32 mark) {
  const std::string_view word = mark_text(mark);
  const std::size_t begin = find_word(row, word);
  if (begin != std::string_view::npos) marks.add({begin, begin + word.size(), *severity_of_mark(mark)});
}

}  // namespace

void marking_sink::take(const text_line& it) {
  if (it.is_of_channel) return next().take(it);
  line_marks marks;
  for (const auto& [quantity, mark] : noted_marks())
    if (is_row_of(it.text, quantity)) add_mark(marks, it.text, mark);
  text_line marked = it;
  marked.marks = marks;
  next().take(marked);
}

}  // namespace host
