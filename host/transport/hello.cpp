#include "transport/hello.h"

#include "messages/fields.h"

namespace host {
namespace {

constexpr uint32 kHelloMark = 0x706D7368;         // "pmsh", before the version
constexpr std::size_t kMaxTextBytes = 256;        // of a name or a version
constexpr std::size_t kMaxHelloBytes = 4 * 1024;  // of the whole message

bool is_short(const std::string& text) { return text.size() <= kMaxTextBytes; }

}  // namespace

std::vector<std::byte> encode(const hello& from) {
  std::vector<std::byte> message;
  field_writer fields(message);
  fields.u32(kHelloMark);
  fields.u32(from.version);
  fields.text(from.program_version);
  fields.text(from.terminal);
  return message;
}

std::vector<std::byte> encode(const welcome& from) {
  std::vector<std::byte> message;
  field_writer fields(message);
  fields.u32(kHelloMark);
  fields.u32(from.version);
  fields.text(from.program_version);
  fields.text(from.switch_name);
  fields.u32(from.process);
  fields.flag(from.stopped_clock.has_value());
  fields.u64(from.stopped_clock.value_or(0));
  return message;
}

std::optional<hello> decode_hello(std::span<const std::byte> message) {
  if (message.size() > kMaxHelloBytes) return std::nullopt;
  field_reader fields(message);
  hello read;
  const bool is_marked = fields.u32() == kHelloMark;
  read.version = fields.u32();
  if (!is_marked || fields.has_failed()) return std::nullopt;
  if (read.version != kProtocolVersion) return read;
  read.program_version = fields.text();
  read.terminal = fields.text();
  if (!fields.is_complete() || !is_short(read.program_version) || !is_short(read.terminal)) return std::nullopt;
  return read;
}

std::optional<welcome> decode_welcome(std::span<const std::byte> message) {
  if (message.size() > kMaxHelloBytes) return std::nullopt;
  field_reader fields(message);
  welcome read;
  const bool is_marked = fields.u32() == kHelloMark;
  read.version = fields.u32();
  if (!is_marked || fields.has_failed()) return std::nullopt;
  if (read.version != kProtocolVersion) return read;
  read.program_version = fields.text();
  read.switch_name = fields.text();
  read.process = fields.u32();
  const bool is_stopped = fields.flag();
  const uint64 stopped_at = fields.u64();
  if (!fields.is_complete() || !is_short(read.program_version) || !is_short(read.switch_name)) return std::nullopt;
  if (is_stopped) read.stopped_clock = stopped_at;
  return read;
}

}  // namespace host
