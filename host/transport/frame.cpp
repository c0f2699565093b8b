#include "transport/frame.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

namespace host {
namespace {

bool is_frame_kind(uint8 number) {
  return number >= static_cast<uint8>(frame_kind::hello) && number <= static_cast<uint8>(frame_kind::news);
}

// The fault of a head by itself.
std::optional<std::string> fault_of(const frame_head_t& head) {
  if (!is_frame_kind(head.kind)) return fmt::format("unknown kind of frame: {}", head.kind);
  if ((head.flags & ~kMoreFollows) != 0) return fmt::format("unknown flags of a frame: 0x{:02x}", head.flags);
  if (head.zero != 0) return "a frame's reserved field is not 0";
  const bool has_address = head.node != 0 || head.sap != 0 || head.opcode != 0;
  const auto kind = static_cast<frame_kind>(head.kind);
  if (has_address && kind != frame_kind::request && kind != frame_kind::follow)
    return "a frame has an address and is no request";
  return std::nullopt;
}

// Whether two frames are of one message.
bool belong_together(const frame_head_t& one, const frame_head_t& other) {
  return one.kind == other.kind && one.token == other.token && one.node == other.node && one.sap == other.sap &&
         one.opcode == other.opcode;
}

}  // namespace

frame_fault frame_reader::fail(std::string text) {
  left_ = {};
  return {std::move(text)};
}

std::variant<frame_reader::frame, frame_fault> frame_reader::next() {
  frame_head_t head{};
  if (left_.size() < sizeof head)
    return fail(fmt::format("a frame of {} bytes is shorter than its head", left_.size()));
  std::memcpy(&head, left_.data(), sizeof head);
  if (std::optional<std::string> fault = fault_of(head)) return fail(std::move(*fault));
  left_ = left_.subspan(sizeof head);
  const uint32 size = head.size;
  if (size > left_.size()) return fail(fmt::format("a frame promises {} bytes and has {}", size, left_.size()));
  const frame found{head, left_.first(size)};
  left_ = left_.subspan(size);
  return found;
}

std::variant<std::monostate, frame_message, frame_fault> message_assembly::add(const frame_reader::frame& added) {
  if (is_open_ && !belong_together(begun_, added.head)) return frame_fault{"a frame comes between those of a message"};
  if (added.payload.size() > kMaxMessageBytes - payload_.size())
    return frame_fault{fmt::format("a message is longer than {} bytes", kMaxMessageBytes)};
  payload_.insert(payload_.end(), added.payload.begin(), added.payload.end());
  begun_ = added.head;
  is_open_ = (added.head.flags & kMoreFollows) != 0;
  if (is_open_ && added.payload.empty()) return frame_fault{"a frame without bytes says that more follow"};
  if (is_open_) return std::monostate();
  return frame_message{static_cast<frame_kind>(added.head.kind),
                       added.head.token,
                       {added.head.node, added.head.sap},
                       added.head.opcode,
                       std::exchange(payload_, {})};
}

int send_frames(const frame_head_t& head, std::span<const std::byte> payload, const packet_sender& send) {
  if (payload.size() > kMaxMessageBytes) return EMSGSIZE;
  int error = 0;
  do {
    const std::span<const std::byte> part = payload.first(std::min(payload.size(), kSentFrameBytes));
    payload = payload.subspan(part.size());
    frame_head_t of_part = head;
    of_part.size = static_cast<uint32>(part.size());
    of_part.flags = payload.empty() ? uint8{0} : uint8{kMoreFollows};
    error = send(std::as_bytes(std::span(&of_part, 1)), part);
  } while (error == 0 && !payload.empty());
  return error;
}

frame_head_t head_of(frame_kind kind, uint32 token, mts_addr_t to, mts_opc_t opcode) {
  frame_head_t head{};
  head.kind = static_cast<uint8>(kind);
  head.token = token;
  head.node = to.node;
  head.sap = to.sap;
  head.opcode = opcode;
  return head;
}

}  // namespace host
