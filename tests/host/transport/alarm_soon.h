// A signal that comes while the test waits for something else.
#pragma once

#include <signal.h>
#include <sys/time.h>

namespace host {

// Delivers SIGALRM to the given handler after 30 ms, and puts things back with its scope.
class alarm_soon {
 public:
  explicit alarm_soon(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(SIGALRM, &action, &earlier_);
    const itimerval timer{{0, 0}, {0, 30'000}};
    setitimer(ITIMER_REAL, &timer, nullptr);
  }
  ~alarm_soon() {
    const itimerval off{};
    setitimer(ITIMER_REAL, &off, nullptr);
    sigaction(SIGALRM, &earlier_, nullptr);
  }
  alarm_soon(const alarm_soon&) = delete;
  alarm_soon& operator=(const alarm_soon&) = delete;

 private:
  struct sigaction earlier_ {};
};

}  // namespace host
