#include "shell/grammar/cut_line.h"

#include "base/text.h"

namespace host {

cut_line::cut_line(std::string_view line, int) : written(trim(line)) {
  for (const auto& [text, start] : split_outside_quotes(line, '|')) parts.push_back({text, split_words(text, start)});
}

bool cut_line::is_comment() const { return !command().words.empty() && host::is_comment(command().words.front().text); }

bool cut_line::ends_with_question() const {
  return !parts.back().words.empty() && parts.back().words.back().text.ends_with('?');
}

cut_line cut_line::before_question() const {
  cut_line line = *this;
  line_part& last = line.parts.back();
  line.written.remove_suffix(1);
  last.text = last.text.substr(0, last.text.rfind('?'));
  last.words.back().text.remove_suffix(1);
  if (last.words.back().text.empty()) last.words.pop_back();
  return line;
}

bool is_comment(std::string_view line) { return line.starts_with('!') || line.starts_with('#'); }

}  // namespace host
