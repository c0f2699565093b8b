// The event loop of the daemon: it accepts shells, serves them, and ends with a signal.
#pragma once

#include <sys/types.h>

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "daemon/client.h"
#include "daemon/event_source.h"
#include "daemon/kept_commits.h"
#include "daemon/metrics_server.h"

namespace host {

class daemon {
 public:
  // `listening` is a socket that accepts shells; it stays the caller's. Only members of `group` may change the switch.
  daemon(int listening, std::string switch_name, std::string program_version, std::optional<gid_t> group);
  daemon(const daemon&) = delete;
  daemon& operator=(const daemon&) = delete;

  // Gives metrics to readers there. Returns where, with the port that it took. Throws metrics_error.
  listen_address serve_metrics(const listen_address& at);

  // Reports that it is ready, and serves until SIGTERM or SIGINT.
  void run();

 private:
  static int handle_connection(sd_event_source*, int descriptor, uint32_t events, void* self) noexcept;
  static int handle_pause_end(sd_event_source*, uint64_t, void* self) noexcept;
  static int handle_signal(sd_event_source*, const signalfd_siginfo* received, void* self) noexcept;

  void accept_shell();
  void pause_accepting(int error);
  void add_client(int descriptor);
  welcome describe() const;

  event_loop loop_;
  std::string switch_name_;
  std::string program_version_;
  std::optional<gid_t> group_;
  event_source listening_, pause_;
  event_source signals_[2];
  bool is_short_of_descriptors_ = false;
  uint64 last_number_ = 0;
  std::optional<kept_commits> commits_;
  std::map<uint64, std::unique_ptr<client>> clients_;
  std::unique_ptr<metrics_server> metrics_;
};

}  // namespace host
