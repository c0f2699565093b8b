// The records of a journal, one after the other: a head and its payload.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/wire.h"

namespace host {

inline constexpr uint32 kRecordMark = 0x706D7352;  // "pmsR": where a record begins

/* Big-endian, packed. */
struct record_head_t {
  be32 mark;     /* kRecordMark                                          */
  be32 size;     /* bytes of payload after this head                     */
  be64 sequence; /* of the record in its journal, from 0                 */
  be64 checksum; /* of the size, the sequence and the payload            */
};
static_assert(sizeof(record_head_t) == 24 && alignof(record_head_t) == 1);
static_assert(offsetof(record_head_t, sequence) == 8 && offsetof(record_head_t, checksum) == 16);

// Appends a record.
void append_record(std::vector<std::byte>& to, uint64 sequence, std::span<const std::byte> payload);

// Where bytes stop being records, and why: a clause such as "the checksum is wrong".
struct record_fault {
  std::size_t at_byte = 0;
  std::string_view what;
  bool is_at_end = false;  // no record follows: the last one was not written completely
};

// The payloads of whole records, up to the end or to a fault. They are views of the bytes; their sequence is their
// place.
struct record_list {
  std::vector<std::span<const std::byte>> payloads;
  std::size_t size_bytes = 0;  // of these records with their heads
  std::optional<record_fault> fault;
};

record_list read_records(std::span<const std::byte> bytes);

}  // namespace host
