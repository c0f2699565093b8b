#include "daemon/client.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "base/c_edge.h"
#include "daemon/frame_log.h"
#include "daemon/log.h"
#include "daemon/metrics/request_times.h"
#include "service/services.h"
#include "switch/clock.h"
#include "transport/transport.h"

namespace host {
namespace {

constexpr std::size_t kMaxQueuedBytes = 1024 * 1024;  // of answers, before the next request is served
constexpr std::size_t kKeptPacketBytes = 64 * 1024;   // of memory, between packets
constexpr int kFramesAtOnce = 64;                     // before other clients have their turn

// A packet that is being received: its size is known when it is here.
std::span<std::byte> receive_buffer() {
  static const auto buffer = std::make_unique_for_overwrite<std::byte[]>(kMaxPacketBytes);
  return {buffer.get(), kMaxPacketBytes};
}

const service* find_service(const mts_addr_t& to) {
  const bool is_local = to.node == MTS_NODE_LOCAL;
  const bool is_line_card = to.node >= 1 && to.node <= 255;
  for (const service& it : all_services())
    if (it.sap == to.sap && (it.is_on_line_cards ? is_line_card : is_local)) return &it;
  return nullptr;
}

// While it lives, a service answers a request.
class request_timer {
 public:
  explicit request_timer(const service& asked) : asked_(asked) {}
  ~request_timer() { the_request_times().note(asked_, std::chrono::steady_clock::now() - began_); }
  request_timer(const request_timer&) = delete;
  request_timer& operator=(const request_timer&) = delete;

 private:
  const service& asked_;
  std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
};

reply call_service(const service& asked, const frame_message& request) {
  const request_timer timer(asked);
  try {
    return asked.serve(request.opcode, request.payload);
  } catch (const std::exception& error) {
    log_line(log_level::error, fmt::format("the service '{}' failed: {}.", asked.name, error.what()));
    return {reply::kind::reject, {}};
  }
}

}  // namespace

session_owner owner_of_socket(int descriptor) {
  ucred peer{};
  socklen_t size = sizeof peer;
  if (getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
    throw std::runtime_error(fmt::format("the user of a shell is unknown: {}", std::strerror(errno)));
  return {name_of_user(peer.uid), peer.uid, static_cast<uint32>(peer.pid), {}, static_cast<uint32>(clock_now())};
}

client::client(sd_event* loop, int descriptor, uint64 number, kept_commits& commits, std::function<welcome()> describe,
               std::function<void(client&)> on_end)
    : loop_(loop),
      descriptor_(descriptor),
      number_(number),
      commits_(commits),
      describe_(std::move(describe)),
      on_end_(std::move(on_end)) {
  session_->set_owner(owner_of_socket(descriptor));
  sd_event_source* made = nullptr;
  check_event(sd_event_add_io(loop_, &made, descriptor_, EPOLLIN, handle_io, this), "watch a connection");
  io_.reset(made);
}

client::~client() {
  followed_.clear();
  io_.reset();
  more_.reset();
  close(descriptor_);
  no_throw(0, [this] { return commits_.take(std::move(session_)), 0; });
}

// Runs what an event causes. A client that ended is destroyed here, last.
template <typename Work>
void client::guarded(Work work) noexcept {
  try {
    try {
      work();
    } catch (const std::bad_alloc&) {
      end("out of memory");
    } catch (const std::exception& error) {
      end(error.what());
    }
  } catch (...) {
    has_ended_ = true;
  }
  if (has_ended_) std::exchange(on_end_, nullptr)(*this);
}

int client::handle_io(sd_event_source*, int, uint32_t events, void* self) noexcept {
  client& of = *static_cast<client*>(self);
  of.guarded([&of, events] {
    if ((events & EPOLLOUT) != 0) of.send_queued();
    if (of.has_ended_) return;
    const bool reads = of.queued_.empty() && of.frames_.is_at_end();
    if (reads && (events & EPOLLIN) != 0)
      of.receive();
    else if ((events & (EPOLLHUP | EPOLLERR)) != 0)
      of.has_ended_ = true;
    if (!of.has_ended_) of.work();
  });
  return 0;
}

int client::handle_more(sd_event_source*, void* self) noexcept {
  client& of = *static_cast<client*>(self);
  of.guarded([&of] { of.work(); });
  return 0;
}

void client::end(const std::string& reason) {
  if (has_ended_) return;
  flush();
  const bool is_gone = std::exchange(has_ended_, true);
  const session_owner& owner = session_->owner();
  log_line(log_level::warning, fmt::format("shell {} (user {}, process {}) is ended: {}.", session_->number(),
                                           shown_name(owner), owner.process, reason));
  const std::string sentence = fmt::format("the switch ended the connection: {}.", reason);
  // If the socket has no room, the shell finds only its end.
  if (!is_gone && queued_.empty())
    send_frames(head_of(frame_kind::refusal), std::as_bytes(std::span(sentence)), [this](auto head, auto payload) {
      capture_frame(frame_sender::daemon, number_, head, payload);
      std::vector<std::byte> packet(head.begin(), head.end());
      packet.insert(packet.end(), payload.begin(), payload.end());
      return ::send(descriptor_, packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT) < 0 ? errno : 0;
    });
}

void client::receive() {
  const std::span<std::byte> buffer = receive_buffer();
  const ssize_t size = recv(descriptor_, buffer.data(), buffer.size(), MSG_DONTWAIT | MSG_TRUNC);
  if (size < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (size <= 0) {  // the shell is gone
    has_ended_ = true;
    return;
  }
  if (static_cast<std::size_t>(size) > buffer.size())
    return end(fmt::format("a packet of {} bytes is longer than {}", size, buffer.size()));
  packet_.assign(buffer.begin(), buffer.begin() + size);
  frames_ = frame_reader(packet_);
}

// Takes the frames of the packet as far as their answers have room.
void client::work() {
  for (int left = kFramesAtOnce; !has_ended_ && !frames_.is_at_end(); --left) {
    if (left == 0 || queued_bytes_ > kMaxQueuedBytes) break;
    const auto read = frames_.next();
    if (const auto* const fault = std::get_if<frame_fault>(&read)) return end(fault->text);
    const auto& frame = std::get<frame_reader::frame>(read);
    auto added = assembly_.add(frame);
    if (const auto* const fault = std::get_if<frame_fault>(&added)) return end(fault->text);
    capture_frame(frame_sender::shell, number_, std::as_bytes(std::span(&frame.head, 1)), frame.payload);
    if (auto* const message = std::get_if<frame_message>(&added)) take(std::move(*message));
  }
  flush();
  if (has_ended_) return;
  if (frames_.is_at_end() && packet_.capacity() > kKeptPacketBytes) packet_ = {};
  wait_for_events();
}

void client::wait_for_events() {
  const bool is_full = queued_bytes_ > kMaxQueuedBytes;
  const bool has_frames = !frames_.is_at_end();
  uint32_t events = 0;
  if (!queued_.empty()) events |= EPOLLOUT;
  if (queued_.empty() && !has_frames) events |= EPOLLIN;
  check_event(sd_event_source_set_io_events(io_.get(), events), "watch a connection");
  if (!has_frames || is_full) return;
  if (more_ == nullptr) {
    sd_event_source* made = nullptr;
    check_event(sd_event_add_defer(loop_, &made, handle_more, this), "continue with a connection");
    more_.reset(made);
  }
  check_event(sd_event_source_set_enabled(more_.get(), SD_EVENT_ONESHOT), "continue with a connection");
}

void client::take(frame_message message) {
  if (!is_greeted_) {
    if (message.kind != frame_kind::hello) return end("its first frame is no hello");
    return greet(message.payload);
  }
  if (message.kind == frame_kind::follow) return follow(message);
  if (message.kind != frame_kind::request)
    return end(fmt::format("a frame of kind {} is no request", static_cast<unsigned>(message.kind)));
  serve(message);
}

void client::greet(std::span<const std::byte> payload) {
  const std::optional<hello> own = decode_hello(payload);
  if (!own) return end("its hello is damaged");
  const welcome answer = describe_();
  if (own->version != kProtocolVersion)
    return end(
        fmt::format("it has version {} of the protocol, and pmshd {} has version {}; install the same version of "
                    "pmsh and pmshd",
                    own->version, answer.program_version, kProtocolVersion));
  is_greeted_ = true;
  session_owner owner = session_->owner();
  owner.terminal = name_of_terminal(own->terminal);
  session_->set_owner(std::move(owner));
  send(head_of(frame_kind::welcome), encode(answer));
}

void client::serve(const frame_message& request) {
  const service* const asked = find_service(request.to);
  if (asked == nullptr)
    return end(fmt::format("no service has access point {} at node 0x{:x}", request.to.sap, request.to.node));
  commits_.settle();
  reply said;
  {
    const session_scope scope(*session_);
    said = call_service(*asked, request);
  }
  commits_.settle();
  if (said.is_unknown) return end(fmt::format("the service '{}' has no opcode {}", asked->name, request.opcode));
  if (said.what == reply::kind::silence) return;
  const bool is_too_long = said.payload.size() > kMaxMessageBytes;
  if (is_too_long)
    log_line(log_level::error, fmt::format("the service '{}' answers with {} bytes, more than a message holds.",
                                           asked->name, said.payload.size()));
  const bool is_rejected = is_too_long || said.what == reply::kind::reject;
  if (is_rejected) said.payload.clear();
  send(head_of(is_rejected ? frame_kind::reject : frame_kind::answer, request.token), said.payload);
}

// Watches what the service has under the cursor, until it is readable for the first time. A descriptor that is followed
// under two cursors is a duplicate for the second one: the loop watches each only once.
void client::follow(const frame_message& request) {
  const service* const asked = find_service(request.to);
  if (asked == nullptr || asked->descriptors == nullptr)
    return end(
        fmt::format("no service with cursors has access point {} at node 0x{:x}", request.to.sap, request.to.node));
  if (followed_.contains(request.token)) return;
  std::vector<int> descriptors;
  {
    const session_scope scope(*session_);
    descriptors = asked->descriptors(request.token);
  }
  std::vector<event_source>& watched = followed_[request.token];
  for (const int descriptor : descriptors) {
    const int own = fcntl(descriptor, F_DUPFD_CLOEXEC, 3);
    if (own < 0) throw std::runtime_error(fmt::format("events cannot be followed: {}", std::strerror(errno)));
    sd_event_source* made = nullptr;
    const int result = sd_event_add_io(loop_, &made, own, EPOLLIN, handle_news, this);
    if (result < 0) close(own);
    check_event(result, "watch events");
    sd_event_source_set_io_fd_own(made, 1);
    watched.emplace_back(made);
  }
  if (!watched.empty()) return;
  followed_.erase(request.token);
  send(head_of(frame_kind::news, request.token), {});  // the next request reports what is wrong with the cursor
}

int client::handle_news(sd_event_source* source, int, uint32_t, void* self) noexcept {
  client& of = *static_cast<client*>(self);
  of.guarded([&of, source] {
    const auto is_of = [source](const event_source& it) { return it.get() == source; };
    const auto found = std::find_if(of.followed_.begin(), of.followed_.end(), [&](const auto& it) {
      return std::any_of(it.second.begin(), it.second.end(), is_of);
    });
    if (found == of.followed_.end()) return;
    const uint32 cursor = found->first;
    of.followed_.erase(found);
    of.send(head_of(frame_kind::news, cursor), {});
    of.flush();
    if (!of.has_ended_) of.wait_for_events();
  });
  return 0;
}

// Gathers the frames of a message for the packet that flush() sends.
void client::send(const frame_head_t& head, std::span<const std::byte> payload) {
  send_frames(head, payload, [this](std::span<const std::byte> of_frame, std::span<const std::byte> part) {
    if (gathered_.size() + part.size() > kSentFrameBytes) flush();
    if (has_ended_) return ECONNRESET;
    capture_frame(frame_sender::daemon, number_, of_frame, part);
    gathered_.insert(gathered_.end(), of_frame.begin(), of_frame.end());
    gathered_.insert(gathered_.end(), part.begin(), part.end());
    return 0;
  });
}

// Sends the gathered frames, or queues their packet.
void client::flush() {
  if (gathered_.empty() || has_ended_) return;
  if (queued_.empty()) {
    const bool is_sent = ::send(descriptor_, gathered_.data(), gathered_.size(), MSG_NOSIGNAL | MSG_DONTWAIT) >= 0;
    if (!is_sent && errno != EAGAIN && errno != EINTR && errno != ENOBUFS) has_ended_ = true;
    if (is_sent || has_ended_) return gathered_.clear();
  }
  queued_bytes_ += gathered_.size();
  queued_.push_back(std::exchange(gathered_, {}));
}

void client::send_queued() {
  while (!queued_.empty()) {
    const std::vector<std::byte>& packet = queued_.front();
    if (::send(descriptor_, packet.data(), packet.size(), MSG_NOSIGNAL | MSG_DONTWAIT) < 0) {
      if (errno != EAGAIN && errno != EINTR && errno != ENOBUFS) has_ended_ = true;
      return;
    }
    queued_bytes_ -= packet.size();
    queued_.pop_front();
  }
}

}  // namespace host
