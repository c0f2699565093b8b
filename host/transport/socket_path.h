// Requests over a socket to the switch of another process.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "transport/forecast.h"
#include "transport/frame.h"
#include "transport/hello.h"
#include "transport/request_path.h"

namespace host {

// One connection to a switch. When it is lost, every request fails at once and is noted once for each command
// (fault::disconnected), until renew() makes it again.
class socket_path final : public request_path {
 public:
  using connected_handler = std::function<void(const welcome&)>;

  // `target` is the name of a switch, or, with a '/', the path of a socket. `on_connected` is called after each
  // connection.
  socket_path(std::string target, hello own, connected_handler on_connected);
  ~socket_path() override;
  socket_path(const socket_path&) = delete;
  socket_path& operator=(const socket_path&) = delete;

  // Returns an empty text, or why there is no connection: one sentence with the next step.
  std::string connect();

  int32 begin(const sent_request& request, std::optional<reply>& answer) override;
  int32 finish(mts_rr_token_t token, uint32 seconds, reply& answer) override;
  void forget(mts_rr_token_t token) override;
  std::vector<int> descriptors(const service& asked, uint32 cursor) override;
  void announce(std::string_view display, std::span<const uint32> interfaces) override;
  void renew() override;

 private:
  // A request whose answer is waited for. One that was sent ahead has a frame's token of its own.
  struct asked_request {
    mts_rr_token_t token;
    uint32 frame_token;
    std::string kept_as;  // the key of its answer, which is kept; empty: it is not
    uint32 about = 0;     // the interface
  };
  using answers = std::unordered_map<uint32, std::optional<reply>>;  // by the frame's token; none: not yet

  bool is_connected() const { return descriptor_ >= 0; }
  std::string open_socket();
  std::string exchange_hello();
  std::string sentence_of_error(const std::string& path, int error) const;
  int32 fail_disconnected();
  int send_request(const sent_request& request, uint32 frame_token);
  void send_ahead(std::span<const foreseen_request> requests);
  const reply* find_known(const std::string& key, uint32 about);
  void keep(const asked_request& asked, const reply& answer);
  void drop_ahead();
  int send_packet(std::span<const std::byte> head, std::span<const std::byte> payload);
  int wait_for(short events, int64_t until_ms);
  int receive_packet();
  int take_frames(std::span<const std::byte> packet);
  int take_message(frame_message&& message);
  void lose(std::string reason);

  std::string target_;
  std::string quoted_target_;
  hello own_;
  connected_handler on_connected_;
  int descriptor_ = -1;
  int lost_descriptor_ = -1;  // readable, for those that wait without a connection
  std::string lost_;          // why there is no connection: one sentence
  std::unique_ptr<std::byte[]> packet_;
  message_assembly assembly_;
  uint32 last_frame_token_ = 0;
  std::vector<asked_request> asked_;
  answers expected_;
  forecast forecast_;
  // While a command asks about interfaces: the answers that it had, of requests about the last one, and about none.
  std::unordered_map<std::string, reply> known_answers_, known_constants_;
  uint32 last_interface_ = 0;
  std::unordered_map<std::string, uint32>
      ahead_;                              // requests that were sent ahead and not asked yet: their frame's token
  std::optional<frame_message> greeting_;  // the answer to hello
};

}  // namespace host
