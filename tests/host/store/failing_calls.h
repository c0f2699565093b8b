// The calls of a journal, of which one fails.
#pragma once

#include <unistd.h>

#include <cerrno>

#include "store/journal_file.h"

namespace host {

// Calls are counted from 1 since reset(): the one with the number `at` fails with `error`, and those after it, too,
// when `for_ever`. A write that fails has written half of its bytes.
struct failing_calls {
  int at = 0;  // none
  int error = ENOSPC;
  bool for_ever = false;
  int count = 0;

  void fail(int number, int with, bool always = false) { *this = {number, with, always, 0}; }
  void reset() { *this = {}; }

  bool is_failing() {
    ++count;
    const bool fails = at != 0 && (count == at || (for_ever && count > at));
    if (fails) errno = error;
    return fails;
  }
};

inline failing_calls& the_failing_calls() {
  static failing_calls only;
  return only;
}

inline const file_calls& file_calls_that_fail() {
  static constexpr file_calls kCalls{
      [](int descriptor, const void* bytes, size_t size, off_t offset) -> ssize_t {
        if (!the_failing_calls().is_failing()) return pwrite(descriptor, bytes, size, offset);
        const int error = errno;
        if (pwrite(descriptor, bytes, size / 2, offset) < 0) return -1;
        errno = error;
        return -1;
      },
      [](int descriptor) { return the_failing_calls().is_failing() ? -1 : fdatasync(descriptor); },
      [](int descriptor, off_t size) { return the_failing_calls().is_failing() ? -1 : ftruncate(descriptor, size); }};
  return kCalls;
}

}  // namespace host
