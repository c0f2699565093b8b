#include "store/record.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "base/crc.h"

namespace host {
namespace {

using octets = std::span<const std::byte>;

uint64 checksum_of(const record_head_t& head, octets payload) {
  const octets bytes = std::as_bytes(std::span(&head, 1));
  constexpr std::size_t kFrom = offsetof(record_head_t, size), kTo = offsetof(record_head_t, checksum);
  return crc64_of(payload, crc64_of(bytes.subspan(kFrom, kTo - kFrom)));
}

// A record at the front of some bytes, or what is wrong with it.
struct front_record {
  record_head_t head{};
  octets payload;
  std::string_view fault;  // empty: none
};

front_record record_at_front(octets bytes) {
  front_record found;
  if (bytes.size() < sizeof found.head) return found.fault = "it ends within the head of a record", found;
  std::memcpy(&found.head, bytes.data(), sizeof found.head);
  if (found.head.mark != kRecordMark) return found.fault = "no record begins there", found;
  bytes = bytes.subspan(sizeof found.head);
  if (found.head.size > bytes.size()) return found.fault = "it ends within a record", found;
  found.payload = bytes.first(found.head.size);
  if (found.head.checksum != checksum_of(found.head, found.payload)) found.fault = "the checksum of a record is wrong";
  return found;
}

// Whether there is a whole record in some bytes, wherever it begins.
bool has_record(octets bytes) {
  const be32 mark = kRecordMark;
  const octets pattern = std::as_bytes(std::span(&mark, 1));
  while (true) {
    const auto found = std::search(bytes.begin(), bytes.end(), pattern.begin(), pattern.end());
    if (found == bytes.end()) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(found - bytes.begin()));
    if (record_at_front(bytes).fault.empty()) return true;
    bytes = bytes.subspan(1);
  }
}

}  // namespace

void append_record(std::vector<std::byte>& to, uint64 sequence, octets payload) {
  record_head_t head{kRecordMark, static_cast<uint32>(payload.size()), sequence, 0};
  head.checksum = checksum_of(head, payload);
  const octets bytes = std::as_bytes(std::span(&head, 1));
  to.insert(to.end(), bytes.begin(), bytes.end());
  to.insert(to.end(), payload.begin(), payload.end());
}

record_list read_records(octets bytes) {
  record_list read;
  while (read.size_bytes < bytes.size()) {
    const octets left = bytes.subspan(read.size_bytes);
    const front_record found = record_at_front(left);
    if (!found.fault.empty()) {
      read.fault = {read.size_bytes, found.fault, !has_record(left.subspan(1))};
      break;
    }
    if (found.head.sequence != read.payloads.size()) {
      read.fault = {read.size_bytes, "a record is missing", false};
      break;
    }
    read.payloads.push_back(found.payload);
    read.size_bytes += sizeof(record_head_t) + found.payload.size();
  }
  return read;
}

}  // namespace host
