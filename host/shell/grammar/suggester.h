// What may be typed at the end of a line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/grammar/cut_line.h"
#include "shell/grammar/syntax.h"
#include "switch/interface_name.h"
#include "switch/interface_names.h"

namespace host {

struct suggestion {
  std::string word;
  std::string help;
  const interface_word* kind = nullptr;  // of a word of interfaces
};

// What may be typed at the end of a line, whose last word may be incomplete.
struct suggestions {
  std::string_view begun;  // the end of the line, which they would complete
  std::vector<suggestion> words;
  std::vector<suggestion> hints;               // other than words: numbers, expressions, the end of the line
  const interface_word* numbers_of = nullptr;  // a number of this word may be typed there
  std::optional<interface_number> after;       // the number is the last of a span that begins with this
  bool needs_whole_number = false;             // with all of its parts
  bool creates_interfaces = false;             // the command makes those that do not exist
  bool is_in_text = false;                     // a "?" there belongs to an expression, a text or a comment
  std::string error;                           // of the words before
};
suggestions suggest(const cut_line& line, shell_mode mode = kExecMode,
                    const interface_names& names = interface_names());

}  // namespace host
