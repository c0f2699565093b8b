#include "shell/library/listing.h"

#include <algorithm>
#include <cstring>

#include "platform/port_manager.h"
#include "platform/wire.h"
#include "shell/library/command_queue.h"

namespace host {
namespace {

constexpr int32 kTimeoutSec = 60;

// A received message, dropped at the end of its scope.
struct received_message {
  explicit received_message(mts_q_handle_t queue) : q(queue) {}
  ~received_message() { mts_drop(q, &reference); }
  received_message(const received_message&) = delete;
  received_message& operator=(const received_message&) = delete;

  std::span<const std::byte> payload() const {
    const auto* const bytes = static_cast<const std::byte*>(mts_payload_get(&reference));
    if (bytes == nullptr || mts_is_reject(&reference) != 0) return {};
    return {bytes, mts_payload_size(&reference)};
  }

  mts_q_handle_t q;
  mts_msg_ref_t reference{};
};

uint32 read_be32(std::span<const std::byte> bytes) {
  be32 number;
  std::memcpy(&number, bytes.data(), sizeof number);
  return number;
}

}  // namespace

std::vector<if_index_t> decode_listing(std::span<const std::byte> answer) {
  std::vector<if_index_t> entries;
  if (answer.size() < sizeof(be32)) return entries;
  const std::size_t held = answer.size() / sizeof(be32) - 1;
  const std::size_t count = std::min<std::size_t>(read_be32(answer), held);
  entries.reserve(count);
  for (std::size_t i = 1; i <= count; ++i) entries.push_back(read_be32(answer.subspan(i * sizeof(be32))));
  return entries;
}

std::optional<std::vector<if_index_t>> list_kind(mts_q_handle_t q, if_index_type_t kind) {
  received_message answer(q);
  if (pm_get_if_index_listing(kind, q, &answer.reference, kTimeoutSec) != 0) return std::nullopt;
  return decode_listing(answer.payload());
}

void sort_naturally(std::vector<if_index_t>& interfaces) {
  std::stable_sort(interfaces.begin(), interfaces.end(),
                   [](if_index_t left, if_index_t right) { return number_of(left) < number_of(right); });
}

std::optional<std::vector<if_index_t>> list_word(mts_q_handle_t q, const interface_word& word) {
  std::vector<if_index_t> interfaces;
  for (const if_index_type_t kind : word.kinds) {
    if (kind == IF_TYPE_NONE) continue;
    const auto found = list_kind(q, kind);
    if (!found) return std::nullopt;
    interfaces.insert(interfaces.end(), found->begin(), found->end());
  }
  sort_naturally(interfaces);
  return interfaces;
}

std::optional<std::vector<written_number>> existing_numbers(const interface_word& word) {
  const command_queue q;
  const auto interfaces = list_word(q.handle, word);
  if (!interfaces) return std::nullopt;
  std::vector<written_number> numbers;
  for (const if_index_t if_index : *interfaces) {
    const interface_number number = number_of(if_index);
    if (number.family == word.family)
      numbers.push_back({number, interface_text(word, number).substr(word.word.size() + 1)});
  }
  return numbers;
}

}  // namespace host
