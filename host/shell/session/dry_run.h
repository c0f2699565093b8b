// Tries commands without changing anything.
#pragma once

#include "platform/types.h"

namespace host {

struct shell;

// A dry run of the session: its commands run on a copy of the switch.
struct begun_dry_run {
  // For the whole session, or until the configuration is left that a line in so many nested files began.
  static constexpr uint32 kWholeSession = UINT32_MAX;
  uint32 num_files = kWholeSession;

  bool is_of_whole_session() const { return num_files == kWholeSession; }
};

// False when the session service does not answer; without effect in a dry run.
bool begin_dry_run(shell& session, uint32 num_files);

// The configuration was left: ends the dry run that began with it. `configure` in a file that a dry run reads neither
// begins nor ends one.
void leave_dry_run(shell& session);

}  // namespace host
