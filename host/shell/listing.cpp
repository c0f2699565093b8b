#include "shell/listing.h"

#include <algorithm>
#include <cstring>

#include "platform/port_manager.h"
#include "platform/wire.h"

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

std::optional<std::vector<if_index_t>> list_interfaces(mts_q_handle_t q, std::span<const interface_word* const> words) {
  std::vector<if_index_t> found;
  for (const interface_word* const word : words) {
    for (const if_index_type_t kind : word->kinds) {
      if (kind == IF_TYPE_NONE) continue;
      received_message answer(q);
      if (pm_get_if_index_listing(kind, q, &answer.reference, kTimeoutSec) != 0) return std::nullopt;
      const std::vector<if_index_t> entries = decode_listing(answer.payload());
      found.insert(found.end(), entries.begin(), entries.end());
    }
  }
  std::sort(found.begin(), found.end());
  found.erase(std::unique(found.begin(), found.end()), found.end());
  return found;
}

std::optional<expansion> expand_spans(mts_q_handle_t q, std::span<const interface_span> spans) {
  std::vector<const interface_word*> words;
  for (const interface_span& span : spans) {
    if (std::find(words.begin(), words.end(), span.word) == words.end()) words.push_back(span.word);
  }
  const auto existing = list_interfaces(q, words);
  if (!existing) return std::nullopt;

  expansion expanded;
  const auto miss = [&expanded](const interface_word& word, const interface_number& number) {
    if (!expanded.missing.empty()) expanded.missing += ", ";
    expanded.missing += interface_text(word, number);
  };
  for (const interface_span& span : spans) {
    const span_ends ends = append_matching(span, *existing, expanded.interfaces);
    if (!ends.low_exists) miss(*span.word, span.low);
    if (!ends.high_exists && span.high != span.low) miss(*span.word, span.high);
  }
  return expanded;
}

std::optional<std::vector<if_index_t>> expand_words(mts_q_handle_t q, std::span<const interface_word* const> words) {
  std::vector<if_index_t> interfaces;
  for (const interface_word* const word : words) {
    auto found = list_interfaces(q, {&word, 1});
    if (!found) return std::nullopt;
    std::stable_sort(found->begin(), found->end(),
                     [](if_index_t left, if_index_t right) { return number_of(left) < number_of(right); });
    interfaces.insert(interfaces.end(), found->begin(), found->end());
  }
  return interfaces;
}

}  // namespace host
