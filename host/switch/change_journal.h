// What the last command that changed ports has changed, so that it can be taken back.
#pragma once

#include <vector>

#include "switch/model.h"

namespace host {

// A command begins. What came before it is forgotten as soon as it changes something.
void begin_changes();

// To be called before a port is changed.
void note_change(const interface& port);

// A port was deleted: what it was set to is not put back, whatever gets its index.
void forget_changes(if_index_t if_index);

// The ports that the last command changed, sorted; none once they were taken back.
std::vector<if_index_t> changed_ports();

// Puts the ports back to what they were before the last command that changed any, and has the source make it so. Those
// that were different were restored, or refused with a status; both are sorted. A second call returns none.
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
