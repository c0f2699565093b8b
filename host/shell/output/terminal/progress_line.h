// A line at the terminal while a command runs.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string_view>
#include <thread>

namespace host {

// Shows the elapsed seconds when nothing else was shown for a second.
class progress_line {
 public:
  explicit progress_line(int terminal);
  ~progress_line();
  progress_line(const progress_line&) = delete;
  progress_line& operator=(const progress_line&) = delete;

  // Erases the line and keeps it hidden while this lives: something else is written, or the user is asked.
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

  // Ends the progress line: the terminal belongs to another program. To be called during a pause.
  void silence() { is_silent_ = true; }

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
  bool is_silent_ = false;
  std::thread worker_;
};

}  // namespace host
