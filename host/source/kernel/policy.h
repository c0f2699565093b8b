// Messages of the kernel are checked against a table of their attributes, and read through it alone.
#pragma once

#include <linux/netlink.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "platform/types.h"

namespace host {

enum class attribute_type : uint8 { unknown, number, text, bytes, nest };

// An attribute with fewer or more bytes counts as absent.
struct attribute_policy {
  uint16 number;
  attribute_type type;
  uint16 least_bytes;
  uint16 most_bytes = UINT16_MAX;
};

// The attributes of one type of message, or of one nest; others are ignored.
class message_policy {
 public:
  static constexpr std::size_t kNumbers = 64;  // attributes are numbered below

  // A number that is too large does not compile.
  constexpr message_policy(std::initializer_list<attribute_policy> rows) {
    for (const attribute_policy& row : rows) {
      if (row.number >= kNumbers) throw std::out_of_range("message_policy");
      rows_[row.number] = row;
    }
  }

  // The same for every number.
  static constexpr message_policy uniform(attribute_type type, uint16 least_bytes) {
    message_policy made({});
    for (std::size_t i = 0; i < kNumbers; ++i) made.rows_[i] = {static_cast<uint16>(i), type, least_bytes};
    return made;
  }

  constexpr attribute_type type_of(std::size_t number) const {
    return number < kNumbers ? rows_[number].type : attribute_type::unknown;
  }
  constexpr bool fits(std::size_t number, std::size_t size) const {
    return type_of(number) != attribute_type::unknown && size >= rows_[number].least_bytes &&
           size <= rows_[number].most_bytes;
  }

 private:
  std::array<attribute_policy, kNumbers> rows_{};
};

// The start of a record; what its bytes do not reach is 0.
template <typename Record>
Record record_of(std::span<const uint8> bytes) {
  static_assert(std::is_trivially_copyable_v<Record>);
  Record record{};
  if (bytes.size() >= sizeof record)
    std::memcpy(&record, bytes.data(), sizeof record);  // a fixed size is far faster
  else
    std::memcpy(&record, bytes.data(), bytes.size());
  return record;
}

// The attributes of a message or a nest that fit its policy, by number; the last one of several with the same number.
// Views of the message, which must outlive them.
class attributes {
 public:
  // Reads up to the first attribute whose length is less than its head or more than what is left.
  attributes(std::span<const uint8> list, const message_policy& policy);

  // Absent when the attribute is absent, or of another type by its policy.
  template <typename Number>
  std::optional<Number> number(uint16 number) const {
    const std::optional<std::span<const uint8>> bytes = find(number, attribute_type::number);
    if (!bytes || bytes->size() < sizeof(Number)) return std::nullopt;
    Number value{};
    std::memcpy(&value, bytes->data(), sizeof value);
    return value;
  }
  std::optional<std::string> text(uint16 number) const;  // up to its first zero
  std::optional<std::span<const uint8>> bytes(uint16 number) const { return find(number, attribute_type::bytes); }
  attributes nested(uint16 number, const message_policy& policy) const;  // without attributes when the nest is absent

  // Calls `visit` with the bytes of each attribute with this number, in the order of the message.
  template <typename Visit>
  void for_each(uint16 number, const Visit& visit) const {
    for (std::span<const uint8> left = list_; !left.empty();)
      if (const piece it = next(left); it.number == number && policy_->fits(number, it.bytes.size())) visit(it.bytes);
  }

 private:
  struct piece {
    std::size_t number = message_policy::kNumbers;
    std::span<const uint8> bytes;
  };
  // Takes the first attribute from `left`; all of it when no attribute is complete.
  static piece next(std::span<const uint8>& left) {
    const auto head = record_of<nlattr>(left);
    if (head.nla_len < sizeof head || head.nla_len > left.size()) {
      left = {};
      return {};
    }
    const piece found{static_cast<std::size_t>(head.nla_type & NLA_TYPE_MASK),
                      left.first(head.nla_len).subspan(sizeof head)};
    const auto padded = static_cast<std::size_t>(NLA_ALIGN(head.nla_len));
    left = left.subspan(padded < left.size() ? padded : left.size());
    return found;
  }
  std::optional<std::span<const uint8>> find(uint16 number, attribute_type type) const;

  std::span<const uint8> list_;
  const message_policy* policy_;
  std::array<const uint8*, message_policy::kNumbers> found_{};  // the heads of attributes
};

inline attributes parse(std::span<const uint8> list, const message_policy& policy) { return {list, policy}; }

// What follows the header of a message.
std::span<const uint8> payload_of(const nlmsghdr& message);

// A message with a head of its type, such as ifinfomsg, before its attributes.
template <typename Head>
struct parsed_message {
  Head head;
  attributes all;
};

// None when the message is shorter than its head.
template <typename Head>
std::optional<parsed_message<Head>> parse(const nlmsghdr& message, const message_policy& policy) {
  const std::span<const uint8> payload = payload_of(message);
  if (payload.size() < sizeof(Head)) return std::nullopt;
  const std::size_t head = std::size_t{NLMSG_ALIGN(sizeof(Head))};
  return parsed_message<Head>{record_of<Head>(payload),
                              parse(payload.subspan(payload.size() < head ? payload.size() : head), policy)};
}

}  // namespace host
