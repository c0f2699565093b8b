#include "shell/grammar/cut_line.h"

#include "shell/grammar/words.h"

namespace host {

cut_line::cut_line(std::string_view line, int)
    : text(line),
      is_comment(host::is_comment(line)),
      parts(split_outside_quotes(line, '|')),
      words(split_words(parts.front().text)) {}

}  // namespace host
