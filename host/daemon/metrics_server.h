// The HTTP server that gives the metrics of the switch to whoever can connect to its address.
#pragma once

#include <microhttpd.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "daemon/event_source.h"
#include "daemon/metrics/listen_address.h"
#include "daemon/metrics/switch_metrics.h"

namespace host {

// Why there is no server: one sentence with the next step.
struct metrics_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A page is made at once when it is requested, and sent as far as its reader takes it: nothing waits for readers.
// Connections and pages are few, and each request has a deadline, so that slow and silent readers delay only readers.
class metrics_server {
 public:
  // Listens, and serves in the loop. `describe` returns what the daemon is. Throws metrics_error.
  metrics_server(sd_event* loop, const listen_address& at, std::function<daemon_facts()> describe);
  ~metrics_server();
  metrics_server(const metrics_server&) = delete;
  metrics_server& operator=(const metrics_server&) = delete;

  // Where it listens, with the port that it took.
  const listen_address& address() const { return address_; }

 private:
  struct release_server {
    void operator()(MHD_Daemon* server) const { MHD_stop_daemon(server); }
  };
  struct connection_deadline;
  struct page;

  static int handle_connection(sd_event_source*, int descriptor, uint32_t events, void* self) noexcept;
  static int handle_work(sd_event_source*, int descriptor, uint32_t events, void* self) noexcept;
  static int handle_time(sd_event_source*, uint64_t now_usec, void* self) noexcept;
  static int handle_deadline(sd_event_source*, uint64_t now_usec, void* deadline) noexcept;
  static void note_connection(void* self, MHD_Connection* connection, void** context,
                              MHD_ConnectionNotificationCode code) noexcept;
  static void note_completion(void* self, MHD_Connection* connection, void** request,
                              MHD_RequestTerminationCode code) noexcept;
  static MHD_Result handle_request(void* self, MHD_Connection* connection, const char* url, const char* method,
                                   const char* version, const char* body, size_t* body_size, void** request) noexcept;

  void listen_at(const listen_address& at);
  void start();
  void accept_reader();
  void work() noexcept;
  bool is_full() const;
  MHD_Result answer(MHD_Connection* connection, std::string_view url, std::string_view method);
  MHD_Result answer_metrics(MHD_Connection* connection);

  sd_event* loop_;
  std::function<daemon_facts()> describe_;
  listen_address address_;
  int descriptor_ = -1;
  switch_metrics metrics_;
  std::size_t pages_in_use_ = 0;  // that readers did not take yet
  bool is_switch_lost_ = false;
  bool is_short_of_descriptors_ = false;
  std::unique_ptr<MHD_Daemon, release_server> server_;
  event_source listening_, working_, timer_;
};

}  // namespace host
