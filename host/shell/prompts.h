// Questions to the user.
#pragma once

namespace host {

// From now on every question is answered with yes.
void assume_yes();

// From now on nobody is asked: a question is answered as without a terminal.
void ask_nobody();

}  // namespace host
