#include "transport/cancellation.h"

#include <linux/futex.h>
#include <sys/eventfd.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <climits>

#include "transport/transport.h"

namespace host {
namespace {

// The word that sleepers watch. The kernel compares it before it puts a thread to sleep, so that a cancellation that
// comes just before the sleep is not lost.
std::atomic<uint32> cancelled_word{0};
static_assert(sizeof(cancelled_word) == sizeof(uint32) && std::atomic<uint32>::is_always_lock_free);

long futex(int operation, uint32 value, const timespec* until) {
  return syscall(SYS_futex, &cancelled_word, operation | FUTEX_PRIVATE_FLAG, value, until, nullptr,
                 FUTEX_BITSET_MATCH_ANY);
}

// For those that poll; made when the first of them asks. A signal handler may read it.
std::atomic<int> cancelled_descriptor{-1};
static_assert(std::atomic<int>::is_always_lock_free);

// Makes the descriptor readable, or not.
void mark(int descriptor, bool cancelled) {
  if (descriptor < 0) return;
  uint64 number = 1;
  const ssize_t done = cancelled ? write(descriptor, &number, sizeof number) : read(descriptor, &number, sizeof number);
  static_cast<void>(done);  // it was read already
}

}  // namespace

bool waits_are_cancelled() { return cancelled_word.load(std::memory_order_acquire) != 0; }

int cancellation_descriptor() {
  if (cancelled_descriptor < 0) {
    cancelled_descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (waits_are_cancelled()) mark(cancelled_descriptor, true);
  }
  return cancelled_descriptor;
}

int32 sleep_interruptibly(uint32 seconds) {
  timespec until{};
  clock_gettime(CLOCK_MONOTONIC, &until);
  until.tv_sec += seconds;
  while (!waits_are_cancelled()) {
    if (futex(FUTEX_WAIT_BITSET, 0, &until) == 0) continue;
    if (errno == ETIMEDOUT) return ETIMEDOUT;
    if (errno == EINTR) return waits_are_cancelled() ? ECANCELED : EINTR;
  }
  return ECANCELED;
}

void transport_cancel(bool cancelled) {
  const int error_of_interrupted_code = errno;
  cancelled_word.store(cancelled ? 1 : 0, std::memory_order_release);
  mark(cancelled_descriptor, cancelled);
  if (cancelled) futex(FUTEX_WAKE, INT_MAX, nullptr);
  errno = error_of_interrupted_code;
}

}  // namespace host
