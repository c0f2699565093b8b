// Questions to the user.
#pragma once

#include <string>

namespace host {

// From now on every question is answered with yes.
void assume_yes();

// From now on no question is asked: each is answered as without a terminal.
void ask_nobody();

// Asks a question with yes or no. Without a terminal the answer is yes, as with assume_yes().
bool confirm(const std::string& question);

// While one lives, the answer to a question also answers it when it is asked again.
class kept_answers {
 public:
  kept_answers();
  ~kept_answers();
  kept_answers(const kept_answers&) = delete;
  kept_answers& operator=(const kept_answers&) = delete;
};

}  // namespace host
