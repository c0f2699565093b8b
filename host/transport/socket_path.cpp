#include "transport/socket_path.h"

#include <fmt/format.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <utility>

#include "transport/cancellation.h"
#include "transport/failures.h"
#include "transport/socket_place.h"

namespace host {
namespace {

constexpr uint32 kLongestSendSec = 60;
constexpr uint32 kLongestGreetingSec = 60;

int64_t milliseconds_now() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return int64_t{now.tv_sec} * 1000 + now.tv_nsec / 1'000'000;
}

int64_t after_seconds(uint32 seconds) { return milliseconds_now() + int64_t{seconds} * 1000; }

std::string_view text_of(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Equal for requests with the same answer.
std::string key_of(const mts_addr_t& to, mts_opc_t opcode, std::span<const std::byte> payload) {
  const uint32 numbers[] = {to.node, to.sap, static_cast<uint32>(opcode)};
  std::string key(reinterpret_cast<const char*>(numbers), sizeof numbers);
  return key.append(text_of(payload));
}

}  // namespace

socket_path::socket_path(std::string target, hello own, connected_handler on_connected)
    : target_(std::move(target)),
      quoted_target_(fmt::format("'{}'", target_)),
      own_(std::move(own)),
      on_connected_(std::move(on_connected)),
      lost_(fmt::format("there is no connection to the switch {}.", quoted_target_)),
      packet_(std::make_unique_for_overwrite<std::byte[]>(kMaxPacketBytes)) {}

socket_path::~socket_path() {
  if (is_connected()) close(descriptor_);
  if (lost_descriptor_ >= 0) close(lost_descriptor_);
}

std::string socket_path::sentence_of_error(const std::string& path, int error) const {
  const bool is_path = target_.find('/') != std::string::npos;
  if (error == ENOENT || error == ECONNREFUSED || error == ENOTDIR) {
    if (is_path)
      return fmt::format("no switch is running at {}: start it with 'pmshd --socket {}'.", quoted_target_, target_);
    const std::vector<std::string> known = known_switches();
    const std::string others =
        known.empty() || error == ECONNREFUSED ? "" : fmt::format(", or connect to one of {}", fmt::join(known, ", "));
    return fmt::format("no switch {} is running: start it with 'pmshd --name {}'{}.", quoted_target_, target_, others);
  }
  if (error == EACCES || error == EPERM)
    return fmt::format("permission denied for the switch {}: connect as the owner of '{}'.", quoted_target_, path);
  if (error == EPROTOTYPE || error == ENOTSOCK)
    return fmt::format("'{}' is not the socket of a switch: name that of a running 'pmshd'.", path);
  return fmt::format("cannot connect to the switch {} at '{}': {}.", quoted_target_, path, std::strerror(error));
}

// Connects to the first socket of this name that there is.
std::string socket_path::open_socket() {
  std::vector<std::string> paths;
  if (target_.find('/') != std::string::npos) {
    paths.push_back(target_);
  } else if (!is_switch_name(target_)) {
    return fmt::format("{} is not the name of a switch: expected letters, digits, '-', '_' and '.', or a path.",
                       quoted_target_);
  } else {
    for (const std::string& directory : socket_directories()) paths.push_back(socket_in(directory, target_));
  }
  std::string fault;
  for (const std::string& path : paths) {
    sockaddr_un address{};
    if (!make_address(path, address))
      return fmt::format("the path '{}' is too long for a socket: expected up to {} characters.", path,
                         sizeof address.sun_path - 1);
    descriptor_ = socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0);
    if (descriptor_ < 0) return fmt::format("cannot make a socket: {}.", std::strerror(errno));
    const timeval longest{kLongestSendSec, 0};
    setsockopt(descriptor_, SOL_SOCKET, SO_SNDTIMEO, &longest, sizeof longest);
    if (::connect(descriptor_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return {};
    const int error = errno;
    close(std::exchange(descriptor_, -1));
    fault = sentence_of_error(path, error);
    if (error != ENOENT && error != ECONNREFUSED) return fault;
  }
  return fault;
}

// Sends hello and takes the answer to it. Returns why it failed.
std::string socket_path::exchange_hello() {
  greeting_.reset();
  const std::vector<std::byte> message = encode(own_);
  const int64_t until = after_seconds(kLongestGreetingSec);
  int error = send_frames(head_of(frame_kind::hello), message,
                          [this](auto head, auto payload) { return send_packet(head, payload); });
  while (error == 0 && !greeting_ && is_connected()) {
    error = wait_for(POLLIN, until);
    if (error == 0) error = receive_packet();
  }
  if (!is_connected()) return lost_;
  if (error != 0) return fmt::format("the switch {} does not answer: {}.", quoted_target_, std::strerror(error));
  if (greeting_->kind == frame_kind::refusal) return std::string(text_of(greeting_->payload));
  const std::optional<welcome> read = decode_welcome(greeting_->payload);
  if (!read) return fmt::format("the switch {} answers with damaged frames.", quoted_target_);
  if (read->version != kProtocolVersion)
    return fmt::format(
        "the switch {} has version {} of the protocol and this shell {}: install the same version of both.",
        quoted_target_, read->version, kProtocolVersion);
  on_connected_(*read);
  return {};
}

std::string socket_path::connect() {
  if (is_connected()) close(std::exchange(descriptor_, -1));
  assembly_ = {};
  std::string fault = open_socket();
  if (fault.empty()) fault = exchange_hello();
  if (fault.empty()) return {};
  if (is_connected()) close(std::exchange(descriptor_, -1));
  return lost_ = std::move(fault);
}

// Without a connection the wait ends at once: the next request fails.
std::vector<int> socket_path::descriptors(const service& asked, uint32 cursor) {
  const frame_head_t head = head_of(frame_kind::follow, cursor, {MTS_NODE_LOCAL, asked.sap});
  if (is_connected())
    send_frames(head, {}, [this](auto of_frame, auto payload) { return send_packet(of_frame, payload); });
  if (is_connected()) return {descriptor_};
  if (lost_descriptor_ < 0) lost_descriptor_ = eventfd(1, EFD_CLOEXEC);
  return {lost_descriptor_};
}

void socket_path::renew() {
  if (is_connected()) return;
  drop_ahead();
  connect();
}

int32 socket_path::fail_disconnected() {
  note_failure({lost_, fault::disconnected});
  return ECONNRESET;
}

int32 socket_path::begin(const sent_request& request, std::optional<reply>& answer) {
  const mts_addr_t to{request.node, request.asked.sap};
  const bool is_foreseeable =
      forecast_.is_on() && request.asked.may_be_asked_ahead && forecast::is_short(request.payload);
  asked_request asked{request.token, 0, {}};
  bool was_foreseen = false;
  if (is_foreseeable) {
    asked.kept_as = key_of(to, request.opcode, request.payload);
    asked.about = forecast_.interface_of(request.payload);
    if (const reply* const known = find_known(asked.kept_as, asked.about)) {
      answer = *known;
      return 0;
    }
    if (const auto sent = ahead_.find(asked.kept_as); sent != ahead_.end()) {
      was_foreseen = true;
      asked.frame_token = sent->second;
      ahead_.erase(sent);
    }
  }
  if (!was_foreseen) {
    if (!is_connected()) return fail_disconnected();
    asked.frame_token = ++last_frame_token_;
    if (const int error = send_request(request, asked.frame_token); error != 0) return error;
    expected_[asked.frame_token];
  }
  const uint32 about = asked.about;
  asked_.push_back(std::move(asked));
  if (about != 0 && is_connected())
    send_ahead(was_foreseen ? forecast_.note_foreseen(about, to, request.opcode, request.payload)
                            : forecast_.note_new(about, to, request.opcode, request.payload));
  return 0;
}

// A command that asks the same twice gets the same answer.
const reply* socket_path::find_known(const std::string& key, uint32 about) {
  if (about != 0 && about != last_interface_) {
    known_answers_.clear();
    last_interface_ = about;
  }
  const auto& known = about == 0 ? known_constants_ : known_answers_;
  const auto found = known.find(key);
  return found == known.end() ? nullptr : &found->second;
}

// Returns 0 or an errno, which is noted.
int socket_path::send_request(const sent_request& request, uint32 frame_token) {
  const frame_head_t head =
      head_of(frame_kind::request, frame_token, {request.node, request.asked.sap}, request.opcode);
  std::size_t sent_frames = 0;
  const int error = send_frames(head, request.payload, [&](auto of_frame, auto payload) {
    const int failed = send_packet(of_frame, payload);
    if (failed == 0) ++sent_frames;
    return failed;
  });
  if (error == 0) return 0;
  if (!is_connected()) return fail_disconnected();
  // The switch would take the frames of the next request for the rest of this one.
  if (sent_frames > 0) lose(fmt::format("the connection to the switch {} ended with a half request.", quoted_target_));
  if (error != ECANCELED) note_failure({request.asked.name, fault::unanswered});
  return error;
}

// Sends requests of which each is a frame, many in a packet. What cannot be sent is asked for when it is needed.
void socket_path::send_ahead(std::span<const foreseen_request> requests) {
  std::vector<std::byte> packet;
  std::vector<std::pair<std::string, uint32>> in_packet;
  const auto send = [&] {
    if (packet.empty() || !is_connected() || send_packet(packet, {}) != 0) return false;
    for (auto& [key, frame_token] : in_packet) {
      expected_[frame_token];
      ahead_.emplace(std::move(key), frame_token);
    }
    packet.clear();
    in_packet.clear();
    return true;
  };
  for (const foreseen_request& it : requests) {
    std::string key = key_of(it.to, it.opcode, it.payload);
    if (ahead_.contains(key)) continue;
    if (packet.size() > kSentFrameBytes && !send()) return;
    frame_head_t head = head_of(frame_kind::request, ++last_frame_token_, it.to, it.opcode);
    head.size = static_cast<uint32>(it.payload.size());
    const auto bytes = std::as_bytes(std::span(&head, 1));
    packet.insert(packet.end(), bytes.begin(), bytes.end());
    packet.insert(packet.end(), it.payload.begin(), it.payload.end());
    in_packet.emplace_back(std::move(key), last_frame_token_);
  }
  send();
}

void socket_path::announce(std::string_view display, std::span<const uint32> interfaces) {
  drop_ahead();
  forecast_.begin(display, interfaces);
}

// Answers that still come are not expected.
void socket_path::drop_ahead() {
  for (const auto& [key, frame_token] : ahead_) expected_.erase(frame_token);
  ahead_.clear();
  known_answers_.clear();
  known_constants_.clear();
  last_interface_ = 0;
}

int32 socket_path::finish(mts_rr_token_t token, uint32 seconds, reply& answer) {
  const int64_t until = after_seconds(seconds);
  const auto asked = std::find_if(asked_.begin(), asked_.end(), [=](const auto& it) { return it.token == token; });
  if (asked == asked_.end()) return EAGAIN;
  const uint32 frame_token = asked->frame_token;
  for (;;) {
    if (std::optional<reply>& arrived = expected_[frame_token]) {
      answer = std::move(*arrived);
      keep(*asked, answer);
      forget(token);
      return 0;
    }
    if (!is_connected()) return fail_disconnected();
    int error = wait_for(POLLIN, until);
    if (error == ETIMEDOUT && seconds == 0) return EAGAIN;
    if (error == 0) error = receive_packet();
    if (error != 0 && is_connected()) return error;
  }
}

void socket_path::keep(const asked_request& asked, const reply& answer) {
  if (asked.kept_as.empty() || !forecast_.is_on()) return;
  if (asked.about == 0)
    known_constants_.emplace(asked.kept_as, answer);
  else if (asked.about == last_interface_)
    known_answers_.emplace(asked.kept_as, answer);
}

void socket_path::forget(mts_rr_token_t token) {
  std::erase_if(asked_, [&](const asked_request& it) {
    if (it.token != token) return false;
    expected_.erase(it.frame_token);
    return true;
  });
}

void socket_path::lose(std::string reason) {
  if (is_connected()) close(std::exchange(descriptor_, -1));
  assembly_ = {};
  lost_ = std::move(reason);
}

// Waits until the socket is ready for one of the events. Returns 0, ETIMEDOUT or ECANCELED. Signals that end no command
// do not end the wait.
int socket_path::wait_for(short events, int64_t until_ms) {
  while (!waits_are_cancelled()) {
    pollfd watched[] = {{descriptor_, events, 0}, {cancellation_descriptor(), POLLIN, 0}};
    const int64_t left = std::max<int64_t>(until_ms - milliseconds_now(), 0);
    const int ready = poll(watched, 2, static_cast<int>(std::min<int64_t>(left, 60'000)));
    if (ready > 0 && watched[0].revents != 0 && !waits_are_cancelled()) return 0;
    if (ready == 0 && milliseconds_now() >= until_ms) return ETIMEDOUT;
    if (ready < 0 && errno != EINTR) return errno;
  }
  return ECANCELED;
}

// Sends a packet. While there is no room for it, answers to earlier requests are received, so that the switch does not
// wait for this shell. Returns 0 or an errno; a lost connection is closed.
int socket_path::send_packet(std::span<const std::byte> head, std::span<const std::byte> payload) {
  iovec parts[] = {{const_cast<std::byte*>(head.data()), head.size()},
                   {const_cast<std::byte*>(payload.data()), payload.size()}};
  msghdr packet{};
  packet.msg_iov = parts;
  packet.msg_iovlen = 2;
  const int64_t until = after_seconds(kLongestSendSec);
  while (is_connected()) {
    if (sendmsg(descriptor_, &packet, MSG_NOSIGNAL | MSG_DONTWAIT) >= 0) return 0;
    const int error = errno;
    if (error == EINTR) continue;
    if (error == EAGAIN) {
      if (const int waited = wait_for(POLLOUT | POLLIN, until); waited != 0) return waited;
      if (const int received = receive_packet(); received != 0 && received != EAGAIN) return received;
      continue;
    }
    // A refusal may have come before the end.
    while (is_connected() && receive_packet() == 0) continue;
    if (is_connected()) lose(fmt::format("the connection to the switch {} was lost.", quoted_target_));
    return error;
  }
  return ECONNRESET;
}

// Takes the packet that arrived. Returns 0, EAGAIN when there is none, or another errno: then the connection is closed.
int socket_path::receive_packet() {
  ssize_t size = 0;
  for (int tries = 0; tries < 3; ++tries) {
    size = recv(descriptor_, packet_.get(), kMaxPacketBytes, MSG_DONTWAIT | MSG_TRUNC);
    // What the switch sent before it closed the socket follows ECONNRESET.
    if (size >= 0 || (errno != ECONNRESET && errno != EINTR)) break;
  }
  if (size < 0 && errno == EAGAIN) return EAGAIN;
  if (size <= 0) {
    lose(fmt::format("the connection to the switch {} was lost.", quoted_target_));
    return ECONNRESET;
  }
  if (static_cast<std::size_t>(size) > kMaxPacketBytes) {
    lose(fmt::format("the connection to the switch {} ended: it sent {} bytes at once.", quoted_target_, size));
    return EPROTO;
  }
  try {
    return take_frames({packet_.get(), static_cast<std::size_t>(size)});
  } catch (const std::bad_alloc&) {
    // Part of a message is missing.
    close(std::exchange(descriptor_, -1));
    assembly_ = {};
    throw;
  }
}

int socket_path::take_frames(std::span<const std::byte> packet) {
  const auto damaged = [this](std::string_view why) {
    lose(fmt::format("the connection to the switch {} ended: {}.", quoted_target_, why));
    return EPROTO;
  };
  frame_reader frames(packet);
  while (!frames.is_at_end()) {
    const auto read = frames.next();
    if (const auto* const fault = std::get_if<frame_fault>(&read)) return damaged(fault->text);
    auto added = assembly_.add(std::get<frame_reader::frame>(read));
    if (const auto* const fault = std::get_if<frame_fault>(&added)) return damaged(fault->text);
    auto* const message = std::get_if<frame_message>(&added);
    if (message == nullptr) continue;
    if (const int error = take_message(std::move(*message)); error != 0) return error;
  }
  return 0;
}

int socket_path::take_message(frame_message&& message) {
  switch (message.kind) {
    case frame_kind::answer:
    case frame_kind::reject:
      // An answer that is not expected any more is dropped.
      if (const auto expected = expected_.find(message.token); expected != expected_.end())
        expected->second = reply{message.kind == frame_kind::reject ? reply::kind::reject : reply::kind::answer,
                                 std::move(message.payload)};
      return 0;
    case frame_kind::news: return 0;  // whoever waits for it asks the service
    case frame_kind::welcome: greeting_ = std::move(message); return 0;
    case frame_kind::refusal: lose(std::string(text_of(message.payload))); return ECONNRESET;
    default: break;
  }
  lose(fmt::format("the connection to the switch {} ended: it sent a frame of a shell.", quoted_target_));
  return EPROTO;
}

}  // namespace host
