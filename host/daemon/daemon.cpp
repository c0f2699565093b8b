#include "daemon/daemon.h"

#include <fmt/format.h>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <systemd/sd-daemon.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include "daemon/access.h"
#include "daemon/log.h"
#include "switch/clock.h"

namespace host {
namespace {

constexpr uint64_t kPauseUsec = 100'000;

// Each shell needs a descriptor.
void allow_all_descriptors() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

// Signals are events.
void block_signals() {
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  sigaddset(&blocked, SIGINT);
  sigprocmask(SIG_BLOCK, &blocked, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
}

}  // namespace

void check_event(int result, const char* what) {
  if (result < 0) throw std::runtime_error(fmt::format("cannot {}: {}", what, std::strerror(-result)));
}

daemon::daemon(int listening, std::string switch_name, std::string program_version, std::optional<gid_t> group)
    : switch_name_(std::move(switch_name)), program_version_(std::move(program_version)), group_(group) {
  allow_all_descriptors();
  block_signals();
  sd_event* made = nullptr;
  check_event(sd_event_new(&made), "make an event loop");
  loop_.reset(made);
  check_event(sd_event_set_watchdog(loop_.get(), 1), "watch the event loop");
  commits_.emplace(loop_.get());

  sd_event_source* source = nullptr;
  check_event(sd_event_add_io(loop_.get(), &source, listening, EPOLLIN, handle_connection, this), "accept shells");
  listening_.reset(source);
  // The pause is made while there are descriptors for its timer.
  check_event(sd_event_add_time_relative(loop_.get(), &source, CLOCK_MONOTONIC, 0, 0, handle_pause_end, this),
              "make a timer");
  pause_.reset(source);
  check_event(sd_event_source_set_enabled(pause_.get(), SD_EVENT_OFF), "make a timer");
  int place = 0;
  for (const int signal : {SIGTERM, SIGINT}) {
    check_event(sd_event_add_signal(loop_.get(), &source, signal, handle_signal, this), "wait for signals");
    signals_[place++].reset(source);
  }
}

listen_address daemon::serve_metrics(const listen_address& at) {
  metrics_ = std::make_unique<metrics_server>(loop_.get(), at, [this] {
    return daemon_facts{switch_name_, program_version_, clients_.size()};
  });
  return metrics_->address();
}

void daemon::run() {
  sd_notify(0, fmt::format("READY=1\nSTATUS=Serves the switch {}.", switch_name_).c_str());
  check_event(sd_event_loop(loop_.get()), "wait for events");
  sd_notify(0, "STOPPING=1");
}

int daemon::handle_signal(sd_event_source* source, const signalfd_siginfo* received, void*) noexcept {
  try {
    log_line(log_level::info, fmt::format("ended by {}.", received->ssi_signo == SIGTERM ? "SIGTERM" : "SIGINT"));
  } catch (const std::exception&) {
    // It ends without a word.
  }
  return sd_event_exit(sd_event_source_get_event(source), 0);
}

int daemon::handle_connection(sd_event_source*, int, uint32_t, void* self) noexcept {
  try {
    static_cast<daemon*>(self)->accept_shell();
  } catch (const std::exception& error) {
    log_line(log_level::error, error.what());
  }
  return 0;
}

void daemon::accept_shell() {
  const int descriptor =
      accept4(sd_event_source_get_io_fd(listening_.get()), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (descriptor >= 0) return add_client(descriptor);
  const int error = errno;
  if (error == EAGAIN || error == EINTR || error == ECONNABORTED) return;
  pause_accepting(error);
}

// A shortage passes when others release something. Without a pause the loop would do nothing but fail.
void daemon::pause_accepting(int error) {
  if (!std::exchange(is_short_of_descriptors_, true))
    log_line(log_level::warning, fmt::format("no shell can be accepted: {}; they wait.", std::strerror(error)));
  check_event(sd_event_source_set_time_relative(pause_.get(), kPauseUsec), "pause accepting");
  check_event(sd_event_source_set_enabled(pause_.get(), SD_EVENT_ONESHOT), "pause accepting");
  check_event(sd_event_source_set_enabled(listening_.get(), SD_EVENT_OFF), "pause accepting");
}

int daemon::handle_pause_end(sd_event_source*, uint64_t, void* self) noexcept {
  return sd_event_source_set_enabled(static_cast<daemon*>(self)->listening_.get(), SD_EVENT_ON);
}

void daemon::add_client(int descriptor) {
  const uint64 number = ++last_number_;
  std::unique_ptr<client> added;
  try {
    added = std::make_unique<client>(
        loop_.get(), descriptor, number, *commits_, [this] { return describe(); },
        [this](client& ended) { clients_.erase(ended.number()); });
  } catch (...) {
    close(descriptor);
    throw;
  }
  added->set_rights(rights_of_peer(descriptor, group_));
  clients_.emplace(number, std::move(added));
  if (std::exchange(is_short_of_descriptors_, false)) log_line(log_level::info, "shells are accepted again.");
}

welcome daemon::describe() const {
  welcome own;
  own.program_version = program_version_;
  own.switch_name = switch_name_;
  own.process = static_cast<uint32>(getpid());
  if (clock_is_stopped()) own.stopped_clock = static_cast<uint64>(clock_now());
  return own;
}

}  // namespace host
