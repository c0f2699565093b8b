// Packets of frames, as one side of a connection reads what the other one sent.
#include "transport/frame.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "transport/hello.h"

namespace {

// A message that was read is sent and read again: it is the same.
void check_sent_again(const host::frame_message& message) {
  host::message_assembly assembly;
  bool is_same = false;
  const auto check = [&](std::span<const std::byte> head, std::span<const std::byte> part) {
    std::vector<std::byte> packet(head.begin(), head.end());
    packet.insert(packet.end(), part.begin(), part.end());
    host::frame_reader frames(packet);
    const auto read = frames.next();
    if (!std::holds_alternative<host::frame_reader::frame>(read)) std::abort();
    const auto added = assembly.add(std::get<host::frame_reader::frame>(read));
    const auto* const again = std::get_if<host::frame_message>(&added);
    if (again != nullptr) is_same = again->payload == message.payload && again->token == message.token;
    return 0;
  };
  host::send_frames(host::head_of(message.kind, message.token, message.to, message.opcode), message.payload, check);
  if (!is_same) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const std::span packet(reinterpret_cast<const std::byte*>(data), size);
  host::frame_reader frames(packet);
  host::message_assembly assembly;
  while (!frames.is_at_end()) {
    const auto read = frames.next();
    if (std::holds_alternative<host::frame_fault>(read)) break;
    auto added = assembly.add(std::get<host::frame_reader::frame>(read));
    if (std::holds_alternative<host::frame_fault>(added)) break;
    const auto* const message = std::get_if<host::frame_message>(&added);
    if (message == nullptr) continue;
    check_sent_again(*message);
    static_cast<void>(host::decode_hello(message->payload));
    static_cast<void>(host::decode_welcome(message->payload));
  }
  return 0;
}
