// The state of the switch for one command of a session, which makes several requests.
#pragma once

#include <cstddef>
#include <memory>

#include "switch/model.h"

namespace host {

// The copies that views keep have together at most so many interfaces, or are one: the oldest are given up, and their
// views end.
constexpr std::size_t kMostKeptInterfaces = 20'000;

class command_view {
 public:
  command_view();
  ~command_view() { end(); }
  command_view(const command_view&) = delete;
  command_view& operator=(const command_view&) = delete;

  // Of the_machine() as it is now.
  void begin();
  void end();

 private:
  friend class view_scope;
  friend void keep_views(const command_view* changing);
  friend void give_up_oldest_copies();

  bool has_begun_ = false;
  std::shared_ptr<machine> kept_;  // null: the_machine() has not changed since it began
};

// To be called before the_machine() changes: views that have begun keep a copy of it, which they share. A session that
// makes the change itself sees it: its own view, `changing`, ends.
void keep_views(const command_view* changing);

// How many copies there are.
std::size_t num_kept_machines();

// While it lives, the_machine() is that of a view. It must not change but for what displays update: statistics and
// details. In a trial (settings/trial.h) the view has no effect.
class view_scope {
 public:
  explicit view_scope(command_view& view);
  ~view_scope();
  view_scope(const view_scope&) = delete;
  view_scope& operator=(const view_scope&) = delete;

 private:
  std::shared_ptr<machine> kept_;
};

}  // namespace host
