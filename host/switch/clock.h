// The clock of the host, for everything that depends on time: the model, traffic, services, times of clearing.
#pragma once

#include <ctime>

namespace host {

// Seconds since 1970: the machine's time, until the clock is set.
std::time_t clock_now();

// Whether it stays at this moment until it is moved.
bool clock_is_stopped();

// The same with its fraction, for what the machine's devices count. A stopped clock has none.
double clock_now_exactly();

// Stops the clock at this moment until it is moved, so that values that depend on time can be predicted.
void clock_set(std::time_t seconds_since_1970);

// Advances the clock; a negative number moves it back. A stopped clock stays at the new moment, a running one continues
// from it.
void clock_advance(std::time_t seconds);

// How the clock runs, so that another process of this machine can have the same time.
struct clock_course {
  bool is_stopped = false;
  std::time_t seconds = 0;  // the moment at which it is stopped, or what it is ahead of the machine's time
};
clock_course clock_course_now();
void clock_take_over(const clock_course& course);

// From now on the machine's time is this moment, in nanoseconds since 1970: that at which a recorded switch answered.
void clock_take_machine_time(unsigned long long nanoseconds_since_1970);

// Back to the machine's time.
void clock_follow_machine();

}  // namespace host
