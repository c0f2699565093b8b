// Tries commands without changing anything.
#pragma once

#include "platform/types.h"
#include "settings/trial.h"

namespace host {

struct shell;

// While it lives, the session's commands run on a copy of the machine.
class dry_run {
 public:
  // For the whole session, or until the configuration is left that a line in so many nested files began.
  static constexpr uint32 kWholeSession = UINT32_MAX;
  explicit dry_run(uint32 num_files);

  bool is_of_whole_session() const { return num_files_ == kWholeSession; }
  uint32 num_files() const { return num_files_; }

 private:
  trial_state state_;
  trial running_;
  uint32 num_files_;
};

// The configuration was left: ends the dry run that began with it. `configure` in a file that a dry run reads neither
// begins nor ends one.
void leave_dry_run(shell& session);

}  // namespace host
