// Runs commands on a copy of the machine: their changes, creations and deletions stay in the copy.
#pragma once

#include <memory>

#include "settings/change_journal.h"
#include "switch/model.h"
#include "switch/source.h"

namespace host {

// A machine on which commands are tried, and their changes of it.
struct trial_state {
  machine model;
  change_journal journal;
};

// While it lives, the_machine(), the_source() and the journal are those of a trial: its state takes every change. The
// source reads from the real one, which is not refreshed and gets no setting, creation, deletion or clear. The end of
// the scope restores the previous ones. A trial may run within another one; they end in the reverse order.
class trial {
 public:
  // The state outlives the trial.
  explicit trial(trial_state& state);
  ~trial();
  trial(const trial&) = delete;
  trial& operator=(const trial&) = delete;

  // Whether a trial runs.
  static bool is_running();

 private:
  void swap();

  trial_state& state_;
  std::unique_ptr<switch_source> other_source_;  // the real one while the trial runs
};

}  // namespace host
