#include "daemon/kept_commits.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "daemon/log.h"
#include "switch/clock.h"
#include "switch/range_text.h"

namespace host {
namespace {

constexpr uint64_t kUsecPerSec = 1'000'000;
constexpr uint64_t kAccuracyUsec = 10'000;

std::string name_of(switch_session& session) {
  return fmt::format("session {} (user {})", session.number(), shown_name(session.owner()));
}

void end_if_overdue(switch_session& session) {
  const std::string interfaces = range_text(session.unconfirmed_interfaces());
  if (session.end_overdue_commit())
    log_line(log_level::notice, fmt::format("the commit of {} was not confirmed in time: it was rolled back for {}.",
                                            name_of(session), interfaces));
}

}  // namespace

kept_commits::kept_commits(sd_event* loop) {
  sd_event_source* made = nullptr;
  check_event(sd_event_add_time(loop, &made, CLOCK_REALTIME, 0, kAccuracyUsec, handle_time, this), "make a timer");
  timer_.reset(made);
  check_event(sd_event_source_set_enabled(timer_.get(), SD_EVENT_OFF), "make a timer");
}

void kept_commits::settle() {
  const auto waiting = waiting_sessions();
  if (!waiting.empty()) {
    const std::vector<switch_session*> all(waiting.begin(), waiting.end());  // those that end leave the list
    for (switch_session* const it : all) end_if_overdue(*it);
  }
  std::erase_if(left_, [](const auto& it) { return !it->seconds_to_confirm(); });
  wait_for_next();
}

void kept_commits::take(std::unique_ptr<switch_session> left) {
  if (!left->seconds_to_confirm()) return;
  left->abandon();
  log_line(log_level::notice, fmt::format("the shell of {} has ended: its commit waits for {} seconds.", name_of(*left),
                                          *left->seconds_to_confirm()));
  left_.push_back(std::move(left));
}

// A stopped clock moves by requests. The timer follows the machine's clock when that is set.
void kept_commits::wait_for_next() {
  const std::optional<uint32> deadline = earliest_deadline();
  const clock_course course = clock_course_now();
  if (!deadline || course.is_stopped) {
    sd_event_source_set_enabled(timer_.get(), SD_EVENT_OFF);
    return;
  }
  const std::int64_t at_sec = std::max<std::int64_t>(std::int64_t{*deadline} - course.seconds, 0);
  check_event(sd_event_source_set_time(timer_.get(), static_cast<uint64_t>(at_sec) * kUsecPerSec), "set a timer");
  check_event(sd_event_source_set_enabled(timer_.get(), SD_EVENT_ONESHOT), "set a timer");
}

int kept_commits::handle_time(sd_event_source*, uint64_t, void* self) noexcept {
  try {
    static_cast<kept_commits*>(self)->settle();
  } catch (const std::exception& error) {
    log_line(log_level::error, error.what());
  }
  return 0;
}

}  // namespace host
