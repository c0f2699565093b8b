// Sends the request of a client function to a service and reads the answer.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <utility>

#include "messages/calls/command_account.h"
#include "messages/fields.h"
#include "platform/mts.h"
#include "platform/syserr.h"
#include "platform/types.h"

namespace host {

enum { kAnswerTimeoutSec = 60 };

// The meaning of an error that a service reports: a failure of the command, which is noted (transport/failures.h), or
// an answer: a refusal, or that there is no such value.
enum class error_is : uint8 { failure, answer };

// The address of a request, the timeout of its answer, and the meaning of an error in it.
struct call {
  mts_q_handle_t q;
  uint32 sap;
  mts_opc_t opcode;
  int32 timeout_sec = kAnswerTimeoutSec;
  error_is error = error_is::failure;
};

// The same call; an error is an answer.
inline call answered_by_errors(call to) {
  to.error = error_is::answer;
  return to;
}

// Notes an error that the service reports in an answer, if it is a failure. 0 and that there is no transceiver, or that
// it has nothing to report, are none.
void note_reported(const call& to, syserr_t error);

template <typename Record>
std::span<const std::byte> bytes_of(const Record& record) {
  return std::as_bytes(std::span(&record, 1));
}

template <typename Record>
std::span<std::byte> writable_bytes_of(Record& record) {
  return std::as_writable_bytes(std::span(&record, 1));
}

// Sends a request and waits for its answer; interrupted waits are taken up again. On success returns 0 and fills `got`,
// which the caller drops. Otherwise `got` is empty: -1 is a transport failure with the reason in mts_errno_get(),
// PM_ERR_GENERAL a rejected request.
syserr_t exchange(const call& to, std::span<const std::byte> request, mts_msg_ref_t* got);

// The payload of a received message, owned by it.
std::span<const std::byte> payload_of(const mts_msg_ref_t& got);

// The error that an answer reports, PM_ERR_GENERAL for one that is too short to say.
syserr_t reported_error(std::span<const std::byte> payload);

// The records of an answer, as many as its count says. If its payload is shorter, the error is PM_ERR_GENERAL and there
// are no records.
struct counted_records {
  syserr_t error = 0;
  uint32 count = 0;
  std::span<const std::byte> records = {};
};
counted_records records_of(std::span<const std::byte> payload, std::size_t record_size);

// Sends a request, and holds the answer's records until its scope ends.
class answer {
 public:
  answer(const call& to, std::span<const std::byte> request, std::size_t record_size);
  ~answer();
  answer(const answer&) = delete;
  answer& operator=(const answer&) = delete;

  // 0, the errors of exchange(), the error that the service reports, or PM_ERR_GENERAL for an incomplete answer.
  // Without error 0 there are no records.
  syserr_t error() const { return held_.error; }
  uint32 count() const { return held_.count; }
  std::span<const std::byte> records() const { return held_.records; }

 private:
  mts_q_handle_t q_;
  mts_msg_ref_t got_{};
  counted_records held_;
};

// Sends a request, and holds the fields of the answer, which follow its reply head, until its scope ends.
class fields_answer {
 public:
  fields_answer(const call& to, std::span<const std::byte> request);
  ~fields_answer();
  fields_answer(const fields_answer&) = delete;
  fields_answer& operator=(const fields_answer&) = delete;

  // 0, the errors of exchange(), or the error that the service reports: then there are no fields.
  syserr_t error() const { return error_; }
  field_reader fields() const { return field_reader(fields_); }

  // Notes that the answer is damaged: its fields are not those that its reader expects.
  void note_damage() const;

 private:
  mts_q_handle_t q_;
  uint32 sap_;
  mts_msg_ref_t got_{};
  syserr_t error_;
  std::span<const std::byte> fields_ = {};
};

// Asks for fields and returns what `read` makes of them. Nothing, and a failure is noted, when there is no answer, when
// the service reports an error, and when `read` does not use exactly the fields that came.
template <typename Read>
auto ask_fields(const call& to, std::span<const std::byte> request, Read read)
    -> std::optional<decltype(read(std::declval<field_reader&>()))> {
  const fields_answer answer(to, request);
  if (answer.error() != 0) return std::nullopt;
  field_reader fields = answer.fields();
  auto result = read(fields);
  if (fields.is_complete()) return result;
  answer.note_damage();
  return std::nullopt;
}

// Whether records could not be taken from an answer although the service reports no error.
bool is_damaged(std::span<const std::byte> payload, const counted_records& found);

// Copies the one record of the answer to `record`, which stays as it was on failure. Returns the answer's error, or
// PM_ERR_GENERAL for an answer without a record.
syserr_t ask_record(const call& to, std::span<const std::byte> request, std::span<std::byte> record);

// The block of a list that is passed without its length: the number of entries as 32 bits, then the entries, each
// beginning with four bytes of an interface index.
struct list_layout {
  std::size_t block_bytes;
  std::size_t count_offset;
  std::size_t first_entry;
  std::size_t entry_bytes;
};

// Asks for interface indexes. On success stores a heap block that the caller frees, zero where it is not used, with as
// many entries as there is room for. On failure stores null and returns the answer's error.
syserr_t ask_list(const call& to, std::span<const std::byte> request, const list_layout& layout, void** block);

}  // namespace host
