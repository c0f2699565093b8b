// Questions to the user.
#pragma once

namespace host {

// From now on every question is answered with yes.
void assume_yes();

// While one lives, the answer to a question also answers it when it is asked again.
class kept_answers {
 public:
  kept_answers();
  ~kept_answers();
  kept_answers(const kept_answers&) = delete;
  kept_answers& operator=(const kept_answers&) = delete;
};

}  // namespace host
