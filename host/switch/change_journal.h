// What the last command that changed, created or deleted ports has done, so that it can be taken back.
#pragma once

#include <vector>

#include "switch/model.h"

namespace host {

// A command begins. What came before it is forgotten as soon as it changes something.
void begin_changes();

// To be called before a port is changed.
void note_change(const interface& port);

// To be called after a port was created, and after one was deleted, with what it was.
void note_created(if_index_t if_index);
void note_deleted(interface port);

// The ports that the last command changed, created or deleted, sorted; none once they were taken back.
std::vector<if_index_t> changed_ports();

// Puts the ports back to what they were before the last command that changed any, deletes those that it created and
// creates those that it deleted, and has the source make it so. Those that were different were restored, or refused
// with a status; both are sorted. A second call returns none.
struct changes_back {
  struct refusal {
    if_index_t if_index;
    uint32 status;
  };
  std::vector<if_index_t> restored;
  std::vector<refusal> refused;
};
changes_back take_changes_back(machine& of);

}  // namespace host
