// The differences between two machines, to be applied to a third one.
#pragma once

#include <map>
#include <vector>

#include "settings/change_journal.h"
#include "switch/model.h"

namespace host {

struct machine_changes {
  struct settings {
    port_settings before;
    port_settings after;
    bool is_for_channel = false;  // the port joined a channel meanwhile, whose settings these are: it refuses them
  };

  std::map<if_index_t, settings> changed;
  std::map<if_index_t, interface> created;   // with their settings; at_start is what they are created with
  std::map<if_index_t, interface> restored;  // interfaces that were deleted, as they were
  std::map<if_index_t, interface> deleted;   // as they were

  bool is_empty() const { return changed.empty() && created.empty() && restored.empty() && deleted.empty(); }

  // Their interfaces, sorted.
  std::vector<if_index_t> ports() const;
};

// The changes that commands made between two states of a machine.
machine_changes changes_between(const machine& from, const machine& to);

// The changes that remain to be made on a machine that has changed since they began. Ports that it no longer has stay
// among the changes; apply_changes() refuses them.
machine_changes rebased(const machine_changes& changes, const machine& now);

// The changes that revert these.
machine_changes reversed(const machine_changes& changes);

// Applies the changes to a machine, and notes them in the journal. Each interface takes all of its changes or none; the
// source has applied the accepted ones.
changes_made apply_changes(machine& of, const machine_changes& changes);

}  // namespace host
