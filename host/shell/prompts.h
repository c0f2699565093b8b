// Questions to the user.
#pragma once

namespace host {

// From now on every question is answered with yes.
void assume_yes();

// From now on nobody is asked: a question is answered as without a terminal.
void ask_nobody();

// While one lives, the answer to a question also answers it when it is asked again.
class kept_answers {
 public:
  kept_answers();
  ~kept_answers();
  kept_answers(const kept_answers&) = delete;
  kept_answers& operator=(const kept_answers&) = delete;
};

}  // namespace host
