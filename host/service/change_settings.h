// How services change the settings of a port.
#pragma once

#include "settings/change_journal.h"
#include "switch/source.h"

namespace host {

// Changes a port by `apply`, which returns the port's status and changes nothing when it is not 0, and has the source
// apply the settings. The change is noted. A port that refuses is unchanged.
template <typename Apply>
uint32 change_settings(interface& port, Apply apply) {
  const port_settings before = port.settings;
  note_change(port);
  if (const uint32 status = apply(port); status != 0) return status;
  const uint32 refused = the_source().apply_settings(port, before);
  if (refused != 0) port.settings = before;
  return refused;
}

}  // namespace host
