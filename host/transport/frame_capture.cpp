#include "transport/frame_capture.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "base/crc.h"
#include "base/replace_file.h"
#include "base/text.h"
#include "base/write_all.h"
#include "transport/hello.h"

namespace host {
namespace {

constexpr char kMark[] = "pmshfrm\n";
static_assert(sizeof kMark == sizeof capture_file_head_t::mark + 1);

uint64 nanoseconds_of(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<uint64>(now.tv_sec) * 1'000'000'000 + static_cast<uint64>(now.tv_nsec);
}

void append(std::vector<std::byte>& to, std::span<const std::byte> bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
}

template <typename Record>
void append_record(std::vector<std::byte>& to, const Record& record) {
  append(to, std::as_bytes(std::span(&record, 1)));
}

frame_capture_error error_of_file(std::string_view what, const std::string& path, std::string_view why) {
  return frame_capture_error(fmt::format("cannot {} the capture {}: {}.", what, in_quotes(path), why));
}

}  // namespace

// ---- Format ---------------------------------------------------------------------------------------------------------

void append_capture_head(std::vector<std::byte>& to) {
  capture_file_head_t head{};
  std::memcpy(head.mark, kMark, sizeof head.mark);
  head.capture_version = kFrameCaptureVersion;
  head.protocol_version = kProtocolVersion;
  append_record(to, head);
}

void append_frame(std::vector<std::byte>& to, const captured_frame& from) {
  capture_record_head_t record{};
  record.size = static_cast<uint32>(from.head.size() + from.payload.size());
  record.sender = static_cast<uint8>(from.sender);
  record.client = from.client;
  record.monotonic_ns = from.monotonic_ns;
  record.wall_ns = from.wall_ns;
  const uint32 of_heads = crc32_of(from.head, crc32_of(std::as_bytes(std::span(&record, 1))));
  record.checksum = crc32_of(from.payload, of_heads);
  append_record(to, record);
  append(to, from.head);
  append(to, from.payload);
}

bool capture_reader::begin(record_fault& fault) {
  capture_file_head_t head{};
  if (file_.size() >= sizeof head.mark) std::memcpy(head.mark, file_.data(), sizeof head.mark);
  if (std::memcmp(head.mark, kMark, sizeof head.mark) != 0)
    return fault = {0, "this is not a capture of frames"}, false;
  if (file_.size() < sizeof head) return fault = {sizeof head.mark, "the head of the file is cut"}, false;
  std::memcpy(&head, file_.data(), sizeof head);
  if (head.capture_version != kFrameCaptureVersion)
    return fault = {offsetof(capture_file_head_t, capture_version),
                    fmt::format("version {} of captures is not known, only {}", uint32{head.capture_version},
                                kFrameCaptureVersion)},
           false;
  if (head.protocol_version != kProtocolVersion)
    return fault = {offsetof(capture_file_head_t, protocol_version),
                    fmt::format("the frames have version {} of the protocol and this shell {}; replay them with the "
                                "version of pmsh that belongs to the daemon",
                                uint32{head.protocol_version}, kProtocolVersion)},
           false;
  at_ = sizeof head;
  return true;
}

std::variant<captured_frame, record_fault> capture_reader::next() {
  const auto fail = [this](std::size_t offset, std::string text) {
    return record_fault{at_ + offset, std::move(text)};
  };
  const std::span<const std::byte> left = file_.subspan(at_);
  capture_record_head_t record{};
  if (left.size() < sizeof record)
    return fail(0, fmt::format("a record of {} bytes is shorter than its head", left.size()));
  std::memcpy(&record, left.data(), sizeof record);
  const uint32 size = record.size;
  if (size > left.size() - sizeof record)
    return fail(0, fmt::format("a record promises {} bytes and has {}", size, left.size() - sizeof record));
  const std::span<const std::byte> bytes = left.subspan(sizeof record, size);
  capture_record_head_t unsigned_record = record;
  unsigned_record.checksum = 0;
  if (crc32_of(bytes, crc32_of(std::as_bytes(std::span(&unsigned_record, 1)))) != record.checksum)
    return fail(offsetof(capture_record_head_t, checksum), "the checksum of a record is not that of its bytes");
  const auto sender = static_cast<frame_sender>(record.sender);
  if (sender != frame_sender::shell && sender != frame_sender::daemon)
    return fail(offsetof(capture_record_head_t, sender), fmt::format("unknown sender: {}", record.sender));
  if (record.zero[0] != 0 || record.zero[1] != 0 || record.zero[2] != 0)
    return fail(offsetof(capture_record_head_t, zero), "a record's reserved field is not 0");
  if (record.client == 0) return fail(offsetof(capture_record_head_t, client), "a record is of no client");
  if (record.monotonic_ns < last_ns_)
    return fail(offsetof(capture_record_head_t, monotonic_ns), "a record is earlier than the one before");
  frame_reader frames(bytes);
  const auto read = frames.next();
  if (const auto* const fault = std::get_if<frame_fault>(&read)) return fail(sizeof record, fault->text);
  if (!frames.is_at_end()) return fail(sizeof record, "a record has more than one frame");
  last_ns_ = record.monotonic_ns;
  at_ += sizeof record + size;
  return captured_frame{sender,
                        record.client,
                        record.monotonic_ns,
                        record.wall_ns,
                        bytes.first(sizeof(frame_head_t)),
                        bytes.subspan(sizeof(frame_head_t))};
}

// ---- Files ----------------------------------------------------------------------------------------------------------

capture_file::capture_file(const std::string& path) {
  constexpr mode_t kForUser = 0600;
  const auto fail = [&](std::string_view why) {
    if (descriptor_ >= 0) close(descriptor_);
    return error_of_file("write", path, why);
  };
  descriptor_ = open(path.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kForUser);
  if (descriptor_ < 0) throw fail(errno == ELOOP ? "it is a symbolic link" : std::strerror(errno));
  struct stat found {};
  if (fstat(descriptor_, &found) != 0) throw fail(std::strerror(errno));
  if (!S_ISREG(found.st_mode) && !S_ISCHR(found.st_mode)) throw fail("it is not a file");
  if (flock(descriptor_, LOCK_EX | LOCK_NB) != 0) throw fail("another process writes it");
  if (S_ISREG(found.st_mode) && (fchmod(descriptor_, kForUser) != 0 || ftruncate(descriptor_, 0) != 0))
    throw fail(std::strerror(errno));
  append_capture_head(buffer_);
  if (const int error = flush(); error != 0) throw fail(std::strerror(error));
}

capture_file::~capture_file() { close(descriptor_); }

int capture_file::write(frame_sender sender, uint64 client, std::span<const std::byte> head,
                        std::span<const std::byte> payload) {
  append_frame(buffer_,
               {sender, client, nanoseconds_of(CLOCK_MONOTONIC), nanoseconds_of(CLOCK_REALTIME), head, payload});
  return flush();
}

int capture_file::flush() {
  const std::string_view text(reinterpret_cast<const char*>(buffer_.data()), buffer_.size());
  const int error = write_all(descriptor_, text);
  if (error == 0)
    size_ += static_cast<off_t>(buffer_.size());
  else if (ftruncate(descriptor_, size_) != 0)
    return error;  // a device has no size, and a reader names the byte where a file is cut
  buffer_.clear();
  return error;
}

std::vector<std::byte> read_capture_file(const std::string& path) {
  const open_file file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat found {};
  if (file.descriptor < 0 || fstat(file.descriptor, &found) != 0)
    throw error_of_file("read", path, std::strerror(errno));
  if (!S_ISREG(found.st_mode)) throw error_of_file("read", path, "it is not a file");
  std::vector<std::byte> bytes(static_cast<std::size_t>(found.st_size));
  for (std::size_t at = 0; at < bytes.size();) {
    const ssize_t size = read(file.descriptor, bytes.data() + at, bytes.size() - at);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0) throw error_of_file("read", path, std::strerror(errno));
    if (size == 0) bytes.resize(at);  // it was cut meanwhile
    at += static_cast<std::size_t>(size);
  }
  return bytes;
}

}  // namespace host
