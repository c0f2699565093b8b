// What the last command that changed ports has changed, so that it can be taken back.
#pragma once

#include <vector>

#include "switch/model.h"

namespace host {

// A command begins. What came before it is forgotten as soon as it changes something.
void begin_changes();

// To be called before a port is changed.
void note_change(const interface& port);

// Puts the ports back to what they were before the last command that changed any. Returns those that were different,
// sorted; a second call returns none.
std::vector<if_index_t> take_changes_back(machine& of);

}  // namespace host
