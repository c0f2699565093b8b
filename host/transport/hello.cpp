#include "transport/hello.h"

#include "messages/fields.h"

namespace host {
namespace {

constexpr uint32 kHelloMark = 0x706D7368;         // "pmsh", before the version
constexpr std::size_t kMaxTextBytes = 256;        // of a name or a version
constexpr std::size_t kMaxHelloBytes = 4 * 1024;  // of the whole message

bool is_short(const std::string& text) { return text.size() <= kMaxTextBytes; }

// Reads the mark and the version that every greeting begins with. False when they are not there or it is too long.
bool read_version(field_reader& fields, std::size_t message_bytes, uint32& version) {
  const bool is_marked = fields.u32() == kHelloMark;
  version = fields.u32();
  return message_bytes <= kMaxHelloBytes && is_marked && !fields.has_failed();
}

}  // namespace

std::vector<std::byte> encode(const hello& from) {
  return fields_of([&](field_writer& to) {
    to.u32(kHelloMark);
    to.u32(from.version);
    to.text(from.program_version);
    to.text(from.terminal);
  });
}

std::vector<std::byte> encode(const welcome& from) {
  return fields_of([&](field_writer& to) {
    to.u32(kHelloMark);
    to.u32(from.version);
    to.text(from.program_version);
    to.text(from.switch_name);
    to.u32(from.process);
    to.flag(from.stopped_clock.has_value());
    to.u64(from.stopped_clock.value_or(0));
  });
}

std::optional<hello> decode_hello(std::span<const std::byte> message) {
  field_reader fields(message);
  hello read;
  if (!read_version(fields, message.size(), read.version)) return std::nullopt;
  if (read.version != kProtocolVersion) return read;
  read.program_version = fields.text();
  read.terminal = fields.text();
  if (!fields.is_complete() || !is_short(read.program_version) || !is_short(read.terminal)) return std::nullopt;
  return read;
}

std::optional<welcome> decode_welcome(std::span<const std::byte> message) {
  field_reader fields(message);
  welcome read;
  if (!read_version(fields, message.size(), read.version)) return std::nullopt;
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
