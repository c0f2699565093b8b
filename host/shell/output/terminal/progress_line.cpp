#include "shell/output/terminal/progress_line.h"

#include <fmt/format.h>
#include <unistd.h>

#include <csignal>
#include <string>

namespace host {
namespace {

constexpr std::chrono::seconds kPatience{1};
constexpr std::string_view kErase = "\r\x1b[K";

// Signals are for the thread that runs the command: they end its waiting.
class blocked_signals {
 public:
  blocked_signals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~blocked_signals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  blocked_signals(const blocked_signals&) = delete;
  blocked_signals& operator=(const blocked_signals&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace

progress_line::progress_line(int terminal) : terminal_(terminal) {
  const blocked_signals in_worker;
  worker_ = std::thread([this] { work(); });
}

progress_line::~progress_line() {
  {
    const std::lock_guard lock(mutex_);
    is_done_ = true;
    erase();
  }
  changed_.notify_one();
  worker_.join();
}

void progress_line::work() {
  std::unique_lock lock(mutex_);
  for (clock::time_point next = start_ + kPatience; !changed_.wait_until(lock, next, [this] { return is_done_; });) {
    const clock::time_point now = clock::now();
    if (is_silent_ || now < last_shown_ + kPatience) {
      if (is_silent_) last_shown_ = now;
      next = last_shown_ + kPatience;
      continue;
    }
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(now - start_).count();
    write(fmt::format("{}working, {} s; Ctrl-C stops it", kErase, seconds));
    is_visible_ = true;
    next = now + kPatience;
  }
}

void progress_line::write(std::string_view text) {
  [[maybe_unused]] const ssize_t written = ::write(terminal_, text.data(), text.size());
}

void progress_line::erase() {
  if (is_visible_) write(kErase);
  is_visible_ = false;
}

progress_line::pause::pause(progress_line& of) : of_(of), lock_(of.mutex_) { of_.erase(); }

progress_line::pause::~pause() { of_.last_shown_ = clock::now(); }

}  // namespace host
