// Commits of the switch that wait for their confirmation.
#pragma once

#include <systemd/sd-event.h>

#include <memory>
#include <vector>

#include "daemon/event_source.h"
#include "settings/session.h"

namespace host {

// Rolls back the commits whose time is over, whatever became of their shells. Its end rolls back those that shells have
// left behind.
class kept_commits {
 public:
  explicit kept_commits(sd_event* loop);
  kept_commits(const kept_commits&) = delete;
  kept_commits& operator=(const kept_commits&) = delete;

  // Rolls back what is overdue now, and waits for what will be next. To be called before and after each request: the
  // first, so that it sees no overdue commit; the second, because it may have made or ended one, or moved the clock.
  void settle();

  // The shell of a session has ended: keeps the session while its commit waits.
  void take(std::unique_ptr<switch_session> left);

 private:
  static int handle_time(sd_event_source*, uint64_t, void* self) noexcept;

  void wait_for_next();

  event_source timer_;
  std::vector<std::unique_ptr<switch_session>> left_;
};

}  // namespace host
