// A shell that is connected to the daemon.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "daemon/event_source.h"
#include "daemon/kept_commits.h"
#include "settings/session.h"
#include "transport/frame.h"
#include "transport/hello.h"

namespace host {

// The user and the process at the other end of a socket, from the kernel.
session_owner owner_of_socket(int descriptor);

// Reads requests, has services answer them, and sends the answers. Answers wait in a queue while the shell does not
// read them; meanwhile no request is read, so the queue is bounded and others are not delayed.
class client {
 public:
  // `number` is for the log. `on_end` is called once, last: it destroys the client. `describe` returns what the daemon
  // reports of the switch. `commits`, which outlives the client, keeps its commit that waits.
  client(sd_event* loop, int descriptor, uint64 number, kept_commits& commits, std::function<welcome()> describe,
         std::function<void(client&)> on_end);
  ~client();
  client(const client&) = delete;
  client& operator=(const client&) = delete;

  uint64 number() const { return number_; }
  void set_rights(const session_rights& rights) { session_->set_rights(rights); }

  // Sends one sentence and ends; it is logged, too.
  void end(const std::string& reason);

 private:
  static int handle_io(sd_event_source*, int descriptor, uint32_t events, void* self) noexcept;
  static int handle_news(sd_event_source* source, int descriptor, uint32_t events, void* self) noexcept;
  static int handle_more(sd_event_source*, void* self) noexcept;

  template <typename Work>
  void guarded(Work work) noexcept;
  void receive();
  void work();
  void take(frame_message message);
  void greet(std::span<const std::byte> payload);
  void serve(const frame_message& request);
  void follow(const frame_message& request);
  void send(const frame_head_t& head, std::span<const std::byte> payload);
  void flush();
  void send_queued();
  void wait_for_events();

  sd_event* loop_;
  int descriptor_;
  uint64 number_;
  kept_commits& commits_;
  std::function<welcome()> describe_;
  std::function<void(client&)> on_end_;
  std::unique_ptr<switch_session> session_ = std::make_unique<switch_session>();
  event_source io_, more_;
  std::map<uint32, std::vector<event_source>> followed_;  // by cursor: what becomes readable
  bool is_greeted_ = false;
  bool has_ended_ = false;
  std::vector<std::byte> packet_;  // that was received last
  frame_reader frames_;            // of it, that were not read yet
  message_assembly assembly_;
  std::vector<std::byte> gathered_;            // frames of the next packet
  std::deque<std::vector<std::byte>> queued_;  // packets that the socket had no room for
  std::size_t queued_bytes_ = 0;
};

}  // namespace host
