// What the commands of a session changed, created and deleted, to be undone in reverse order.
#pragma once

#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "switch/model.h"

namespace host {

// The changes of one command. Ports that it did not change in the end are omitted.
struct change_step {
  std::string command;
  uint32 at_sec = 0;                           // since 1970
  std::map<if_index_t, port_settings> before;  // of the ports that it changed
  std::vector<if_index_t> created;
  std::vector<interface> deleted;  // as they were

  // The ports that it changed, created or deleted, sorted.
  std::vector<if_index_t> ports() const;
};

// The steps of a session.
struct change_journal {
  std::deque<change_step> steps;  // the oldest first
  std::size_t num_ports = 0;      // of all steps but the last
  bool is_running = false;        // the last step is that of a command that began
};

// Replaces the journal that the functions below use.
void swap_journal(change_journal& other);

// A command begins. A command that changes nothing makes no step.
void begin_changes(std::string_view command);

// A new session: there are no steps.
void forget_changes();

// To be called before a port is changed.
void note_change(const interface& port);

// To be called after a port was created, and after one was deleted, with what it was.
void note_created(if_index_t if_index);
void note_deleted(interface port);

// The steps that can be undone, the oldest first. Besides the last one, steps with up to 20,000 ports in total are
// kept.
const std::deque<change_step>& change_steps(const machine& of);

// The ports of the last steps, sorted.
std::vector<if_index_t> changed_ports(const machine& of, std::size_t num_steps);

// The results of changes of several interfaces: applied, or refused with a status. Both are sorted.
struct changes_made {
  struct refusal {
    if_index_t if_index;
    uint32 status;
  };
  std::vector<if_index_t> applied;
  std::vector<refusal> refused;
};

// What was applied is refused with this status after all.
void refuse_all(changes_made& made, uint32 status);

// Undoes the last step: restores the settings of its ports, deletes interfaces that it created and creates those that
// it deleted, and has the source apply and store this. Refused changes stay in the step. Without steps nothing happens.
changes_made take_change_back(machine& of);

// The same for a commit of the session with this number that was not confirmed (switch_source::store_rollback).
changes_made roll_back_change(machine& of, uint32 commit);

}  // namespace host
