// The line at a terminal that says that a command is still at work.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string_view>
#include <thread>

namespace host {

// While it lives, a line with the seconds so far stands at the terminal whenever nothing was shown for a second.
class progress_line {
 public:
  explicit progress_line(int terminal);
  ~progress_line();
  progress_line(const progress_line&) = delete;
  progress_line& operator=(const progress_line&) = delete;

  // Takes the line away and keeps it away while this lives: something else is written, or the user is asked.
  class pause {
   public:
    explicit pause(progress_line& of);
    ~pause();
    pause(const pause&) = delete;
    pause& operator=(const pause&) = delete;

   private:
    progress_line& of_;
    std::unique_lock<std::mutex> lock_;
  };

 private:
  using clock = std::chrono::steady_clock;

  void work();
  void write(std::string_view text);
  void erase();

  const int terminal_;
  const clock::time_point start_ = clock::now();
  std::mutex mutex_;
  std::condition_variable changed_;
  clock::time_point last_shown_ = start_;  // of anything else
  bool is_visible_ = false;
  bool is_done_ = false;
  std::thread worker_;
};

}  // namespace host
