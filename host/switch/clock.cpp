#include "switch/clock.h"

#include <time.h>

#include <optional>

namespace host {
namespace {

struct host_clock {
  std::optional<std::time_t> stopped_at;
  std::time_t ahead = 0;  // seconds that a running clock is ahead of the machine's
};

std::optional<timespec> recorded_time;  // in place of the machine's

host_clock& the_clock() {
  static host_clock only;
  return only;
}

// Not time(): a program may define that by this clock.
timespec machine_time() {
  if (recorded_time) return *recorded_time;
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return now;
}

}  // namespace

std::time_t clock_now() {
  const host_clock& clock = the_clock();
  return clock.stopped_at ? *clock.stopped_at : machine_time().tv_sec + clock.ahead;
}

bool clock_is_stopped() { return the_clock().stopped_at.has_value(); }

double clock_now_exactly() {
  constexpr double kSecondsPerNanosecond = 1e-9;
  const host_clock& clock = the_clock();
  if (clock.stopped_at) return static_cast<double>(*clock.stopped_at);
  const timespec now = machine_time();
  return static_cast<double>(now.tv_sec + clock.ahead) + static_cast<double>(now.tv_nsec) * kSecondsPerNanosecond;
}

void clock_set(std::time_t seconds_since_1970) { the_clock().stopped_at = seconds_since_1970; }

void clock_advance(std::time_t seconds) {
  host_clock& clock = the_clock();
  (clock.stopped_at ? *clock.stopped_at : clock.ahead) += seconds;
}

clock_course clock_course_now() {
  const host_clock& clock = the_clock();
  return {clock.stopped_at.has_value(), clock.stopped_at.value_or(clock.ahead)};
}

void clock_take_over(const clock_course& course) {
  the_clock() = course.is_stopped ? host_clock{course.seconds, 0} : host_clock{std::nullopt, course.seconds};
}

void clock_take_machine_time(unsigned long long nanoseconds_since_1970) {
  constexpr unsigned long long kNanoseconds = 1'000'000'000;
  recorded_time = timespec{static_cast<std::time_t>(nanoseconds_since_1970 / kNanoseconds),
                           static_cast<long>(nanoseconds_since_1970 % kNanoseconds)};
}

void clock_follow_machine() {
  the_clock() = {};
  recorded_time.reset();
}

}  // namespace host
