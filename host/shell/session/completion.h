// Help and completion at the end of a line.
#pragma once

#include <string>

#include "shell/grammar/suggester.h"

namespace host {

// The text for a "?" at the end of a line.
std::string help_text(suggestions found);

// The text that completes the last word of a line as far as it is clear.
struct completion {
  std::string addition;  // to be inserted
  std::string choices;   // to be shown, one line each, when there is more than one
};
completion complete(suggestions found);

}  // namespace host
