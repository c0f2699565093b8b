// How services read requests and write answers.
#pragma once

#include <cstring>
#include <optional>
#include <span>
#include <type_traits>
#include <utility>

#include "messages/fields.h"
#include "messages/messages.h"
#include "platform/port_config.h"
#include "switch/live_statistics.h"
#include "switch/model.h"
#include "switch/source.h"
#include "transport/transport.h"

namespace host {

template <typename Record>
concept wire_record = std::is_trivially_copyable_v<Record> && alignof(Record) == 1;

inline reply reject() { return {reply::kind::reject, {}}; }

// Rejects an opcode that the service does not have.
inline reply reject_opcode() { return {reply::kind::reject, {}, true}; }

template <wire_record Record>
void append_bytes(reply& to, const Record& record) {
  const auto* const bytes = reinterpret_cast<const std::byte*>(&record);
  to.payload.insert(to.payload.end(), bytes, bytes + sizeof record);
}

// An answer under construction: the head, then as many records as were appended.
class answer_writer {
 public:
  explicit answer_writer(std::size_t expected_bytes) {
    answer_.payload = transport_take_buffer();
    answer_.payload.reserve(sizeof(reply_head) + expected_bytes);
    append_bytes(answer_, reply_head{0, 0});
  }

  template <wire_record Record>
  void append(const Record& record) {
    append_bytes(answer_, record);
    ++count_;
  }

  // A record and what follows it.
  template <wire_record Record>
  void append(const Record& record, std::span<const std::byte> rest) {
    append(record);
    answer_.payload.insert(answer_.payload.end(), rest.begin(), rest.end());
  }

  reply finish() {
    const reply_head head{0, count_};
    std::memcpy(answer_.payload.data(), &head, sizeof head);
    return std::move(answer_);
  }

 private:
  reply answer_;
  uint32 count_ = 0;
};

inline reply answer_error(syserr_t error) {
  reply answer;
  append_bytes(answer, reply_head{error, 0});
  return answer;
}

// An answer of fields: those that `write` appends.
template <typename Write>
reply answer_fields(Write write) {
  reply answer{reply::kind::answer, transport_take_buffer()};
  append_bytes(answer, reply_head{0, 0});
  field_writer fields(answer.payload);
  write(fields);
  return answer;
}

template <wire_record Record>
reply answer_record(const Record& record) {
  answer_writer answer(sizeof record);
  answer.append(record);
  return answer.finish();
}

template <wire_record Record>
reply answer_records(std::span<const Record> records) {
  answer_writer answer(records.size_bytes());
  for (const Record& record : records) answer.append(record);
  return answer.finish();
}

// The request, when it has exactly its size.
template <wire_record Request>
std::optional<Request> read_request(std::span<const std::byte> bytes) {
  if (bytes.size() != sizeof(Request)) return std::nullopt;
  Request request;
  std::memcpy(&request, bytes.data(), sizeof request);
  return request;
}

// Answers a request about one interface with the record that `answer` returns for it.
template <typename Answer>
reply answer_for_interface(std::span<const std::byte> bytes, Answer answer) {
  const auto request = read_request<interface_request>(bytes);
  if (!request) return reject();
  interface* const found = the_machine().find(request->if_index);
  return found == nullptr ? answer_error(PM_ERR_NO_SUCH_INTERFACE) : answer(*found);
}

// The same, with the interface's statistics updated first.
template <typename Answer>
reply answer_with_statistics(std::span<const std::byte> bytes, Answer answer) {
  return answer_for_interface(bytes, [=](interface& it) {
    return refresh_statistics(it) ? answer(it) : answer_error(PM_ERR_NO_SUCH_INTERFACE);
  });
}

// The same, with all of its counters.
template <typename Answer>
reply answer_with_counters(std::span<const std::byte> bytes, Answer answer) {
  return answer_with_statistics(bytes, [=](interface& it) {
    the_source().complete(it, detail::counters);
    return answer(it);
  });
}

// Clears an interface's counters; the answer has no record.
inline reply answer_clear_of(interface& it) {
  return clear_statistics(it) ? answer_writer(0).finish() : answer_error(PM_ERR_NO_SUCH_INTERFACE);
}

// The interfaces of a range, or why there are none.
struct interface_run {
  syserr_t error;
  std::span<interface> interfaces;
};
interface_run find_range(const range_request& range);

// Answers a list of range_requests with a pm_port_cfg_status_t for each port of them: what `apply` returns. A range
// without any port gives one for its low end.
template <typename Apply>
reply answer_statuses(std::span<const std::byte> ranges, Apply apply) {
  if (ranges.size() % sizeof(range_request) != 0) return reject();
  answer_writer answer(ranges.size());
  for (; !ranges.empty(); ranges = ranges.subspan(sizeof(range_request))) {
    range_request range;
    std::memcpy(&range, ranges.data(), sizeof range);
    const auto [error, ports] = find_range(range);
    if (error != 0) answer.append(pm_port_cfg_status_t{range.low, static_cast<uint32>(error)});
    for (interface& port : ports) answer.append(pm_port_cfg_status_t{port.if_index, apply(port)});
  }
  return answer.finish();
}

}  // namespace host
