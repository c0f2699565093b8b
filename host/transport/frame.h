// Frames: how messages travel on a socket between a shell and the switch that it uses.
//
// The socket keeps the bounds of packets (SOCK_SEQPACKET). A packet is one frame or several, one after the other; a
// frame is a head and its payload. A message that is longer than a frame is several: all but the last say that more
// follows, and no other frame comes between them. Both sides read what the other one sends as if a stranger had sent
// it.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/mts.h"
#include "platform/wire.h"

namespace host {

enum class frame_kind : uint8 {
  hello = 1,    // of a shell, first: who it is (hello.h)
  welcome = 2,  // the answer: which switch it is
  refusal = 3,  // in its place: one sentence; the connection ends
  request = 4,  // to a service
  answer = 5,   // of the service, under the request's token
  reject = 6,   // the service refused the request with this token
  follow = 7,   // to a service: report once when there may be more under its cursor, which is the token
  news = 8,     // there may be more under this cursor
};

enum : uint8 { kMoreFollows = 1 };

/* Wire format, big-endian, packed. What a kind does not use is 0. */
struct frame_head_t {
  be32 size;   /* bytes of payload after this head                       */
  uint8 kind;  /* frame_kind                                             */
  uint8 flags; /* kMoreFollows; all other bits are 0                     */
  be16 zero;   /* always 0                                               */
  be32 token;  /* joins an answer to its request                         */
  be32 node;   /* request, follow: where the service is                          */
  be32 sap;    /* request, follow: its access point                              */
  be32 opcode; /* request: what is asked of it                           */
};
static_assert(sizeof(frame_head_t) == 24 && alignof(frame_head_t) == 1);
static_assert(offsetof(frame_head_t, kind) == 4 && offsetof(frame_head_t, token) == 8);
static_assert(offsetof(frame_head_t, opcode) == 20);

inline constexpr std::size_t kMaxPacketBytes = 1024 * 1024;        // larger ones end the connection
inline constexpr std::size_t kMaxMessageBytes = 16 * 1024 * 1024;  // of payload
inline constexpr std::size_t kSentFrameBytes = 60 * 1024;          // of payload: several fit into a socket's buffer

struct frame_message {
  frame_kind kind = frame_kind::request;
  uint32 token = 0;
  mts_addr_t to{};
  mts_opc_t opcode = 0;
  std::vector<std::byte> payload;
};

// Why bytes are not frames: one clause, such as "a frame of 7 bytes is shorter than its head".
struct frame_fault {
  std::string text;
};

// Takes frames from the front of a packet.
class frame_reader {
 public:
  explicit frame_reader(std::span<const std::byte> packet = {}) : left_(packet) {}

  struct frame {
    frame_head_t head;
    std::span<const std::byte> payload;
  };

  bool is_at_end() const { return left_.empty(); }

  // The next frame. After a fault nothing is left.
  std::variant<frame, frame_fault> next();

 private:
  frame_fault fail(std::string text);

  std::span<const std::byte> left_;
};

// Puts messages together from the frames of one sender.
class message_assembly {
 public:
  // Adds a frame. Returns a message when this was its last frame.
  std::variant<std::monostate, frame_message, frame_fault> add(const frame_reader::frame& added);

  // Whether a message was begun and more follows.
  bool is_open() const { return is_open_; }

 private:
  bool is_open_ = false;
  frame_head_t begun_{};
  std::vector<std::byte> payload_;
};

// Passes the frames of a message, each of them a packet, to `send`, until it returns an errno. Returns that, or 0; for
// a message above kMaxMessageBytes EMSGSIZE, and nothing is sent.
using packet_sender = std::function<int(std::span<const std::byte> head, std::span<const std::byte> payload)>;
int send_frames(const frame_head_t& head, std::span<const std::byte> payload, const packet_sender& send);

// The head of a message's frames; send_frames() sets their sizes and flags.
frame_head_t head_of(frame_kind kind, uint32 token = 0, mts_addr_t to = {}, mts_opc_t opcode = 0);

}  // namespace host
