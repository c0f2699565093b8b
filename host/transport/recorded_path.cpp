#include "transport/recorded_path.h"

#include <fmt/format.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

#include "base/digits.h"
#include "base/text.h"
#include "transport/failures.h"

namespace host {

recorded_path::recorded_path(std::string file, std::function<void(uint64)> on_moment)
    : recorded_path(file, read_capture_file(file), std::move(on_moment)) {}

recorded_path::recorded_path(std::string file, std::span<const std::byte> bytes, std::function<void(uint64)> on_moment)
    : file_(std::move(file)), on_moment_(std::move(on_moment)) {
  read(bytes);
  conversations_.clear();
  readable_ = eventfd(1, EFD_CLOEXEC | EFD_NONBLOCK);
  silent_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
}

recorded_path::~recorded_path() {
  if (readable_ >= 0) close(readable_);
  if (silent_ >= 0) close(silent_);
}

// ---- Reading --------------------------------------------------------------------------------------------------------

recorded_path::request_key recorded_path::key_of(mts_addr_t to, mts_opc_t opcode, std::span<const std::byte> payload) {
  const be32 head[] = {to.node, to.sap, opcode};
  request_key key(sizeof head + payload.size(), '\0');
  std::memcpy(key.data(), head, sizeof head);
  if (!payload.empty()) std::memcpy(key.data() + sizeof head, payload.data(), payload.size());
  return key;
}

void recorded_path::read(std::span<const std::byte> bytes) {
  const auto fail = [this](std::size_t at, std::string_view text) {
    return frame_capture_error(fmt::format("{}, byte {}: {}.", in_quotes(file_), at, text));
  };
  capture_reader reader(bytes);
  record_fault fault;
  if (!reader.begin(fault)) throw fail(fault.at, fault.text);
  while (!reader.is_at_end()) {
    const std::size_t at = reader.at();
    const auto record = reader.next();
    if (const auto* const bad = std::get_if<record_fault>(&record)) throw fail(bad->at, bad->text);
    const std::string text = add(std::get<captured_frame>(record));
    if (!text.empty()) throw fail(at, text);
  }
  if (!is_greeted_) throw fail(bytes.size(), "the capture has no shell that the switch greeted");
}

// Returns what is wrong with a frame; empty: nothing.
std::string recorded_path::add(const captured_frame& frame) {
  conversation& with = conversations_[frame.client];
  frame_reader::frame whole{{}, frame.payload};
  std::memcpy(&whole.head, frame.head.data(), sizeof whole.head);
  auto added = (frame.sender == frame_sender::shell ? with.of_shell : with.of_daemon).add(whole);
  if (const auto* const fault = std::get_if<frame_fault>(&added)) return fault->text;
  auto* const message = std::get_if<frame_message>(&added);
  return message == nullptr ? std::string() : add_message(with, frame, std::move(*message));
}

// A shell may send what the daemon refuses; the daemon answers only what it was asked.
std::string recorded_path::add_message(conversation& with, const captured_frame& frame, frame_message message) {
  if (frame.sender == frame_sender::shell) {
    if (message.kind == frame_kind::request)
      with.open.emplace(message.token, key_of(message.to, message.opcode, message.payload));
    return {};
  }
  switch (message.kind) {
    case frame_kind::welcome: {
      std::optional<welcome> read = decode_welcome(message.payload);
      if (!read || read->version != kProtocolVersion) return "a welcome is damaged";
      if (!std::exchange(is_greeted_, true)) greeting_ = std::move(*read);
      return {};
    }
    case frame_kind::answer:
    case frame_kind::reject: {
      const auto asked = with.open.lower_bound(message.token);
      if (asked == with.open.end() || asked->first != message.token)
        return fmt::format("an answer has the token {} of no request", message.token);
      const bool is_rejected = message.kind == frame_kind::reject;
      answers_[asked->second].in_order.push_back(
          {is_rejected ? reply::kind::reject : reply::kind::answer, std::move(message.payload), frame.wall_ns});
      with.open.erase(asked);
      return {};
    }
    case frame_kind::news: ++news_[message.token]; return {};
    case frame_kind::refusal: return {};
    default: return "the daemon sent a frame of a shell";
  }
}

// ---- Requests -------------------------------------------------------------------------------------------------------

std::string recorded_path::sentence_without_answer(const sent_request& request) const {
  constexpr std::size_t kShownBytes = 16;
  const auto shown = request.payload.first(std::min(request.payload.size(), kShownBytes));
  return fmt::format(
      "the capture {} has no answer to this request: opcode {} of the service '{}' at node 0x{:x} ({} "
      "bytes{}{}{}).",
      in_quotes(file_), request.opcode, request.asked.name, request.node, request.payload.size(),
      shown.empty() ? "" : ": ", hex_of(shown), shown.size() < request.payload.size() ? "..." : "");
}

int32 recorded_path::begin(const sent_request& request, std::optional<reply>& answer) {
  const auto found = answers_.find(key_of({request.node, request.asked.sap}, request.opcode, request.payload));
  if (found == answers_.end()) {
    note_failure({*sentences_.insert(sentence_without_answer(request)).first, fault::disconnected});
    return ECONNRESET;
  }
  answers& recorded = found->second;
  const recorded_answer& next = recorded.in_order[recorded.next];
  if (recorded.next + 1 < recorded.in_order.size()) ++recorded.next;
  on_moment_(next.wall_ns);
  answer = reply{next.what, next.payload};
  return 0;
}

int32 recorded_path::finish(mts_rr_token_t, uint32, reply&) { return EAGAIN; }

void recorded_path::forget(mts_rr_token_t) {}

std::vector<int> recorded_path::descriptors(const service&, uint32 cursor) {
  const auto found = news_.find(cursor);
  if (found == news_.end() || found->second == 0) return {silent_};
  --found->second;
  return {readable_};
}

}  // namespace host
