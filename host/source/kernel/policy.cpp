#include "source/kernel/policy.h"

#include <algorithm>

namespace host {

attributes::attributes(std::span<const uint8> list, const message_policy& policy) : list_(list), policy_(&policy) {
  for (std::span<const uint8> left = list; !left.empty();)
    if (const piece it = next(left); policy.fits(it.number, it.bytes.size()))
      found_[it.number] = it.bytes.data() - sizeof(nlattr);
}

std::optional<std::span<const uint8>> attributes::find(uint16 number, attribute_type type) const {
  if (policy_->type_of(number) != type || found_[number] == nullptr) return std::nullopt;
  nlattr head;
  std::memcpy(&head, found_[number], sizeof head);
  return std::span(found_[number], head.nla_len).subspan(sizeof head);
}

std::optional<std::string> attributes::text(uint16 number) const {
  const auto bytes = find(number, attribute_type::text);
  if (!bytes) return std::nullopt;
  return std::string(bytes->begin(), std::find(bytes->begin(), bytes->end(), uint8{0}));
}

attributes attributes::nested(uint16 number, const message_policy& policy) const {
  return parse(find(number, attribute_type::nest).value_or(std::span<const uint8>()), policy);
}

std::span<const uint8> payload_of(const nlmsghdr& message) {
  const std::size_t size = message.nlmsg_len;
  if (size < NLMSG_HDRLEN) return {};
  return std::span(reinterpret_cast<const uint8*>(&message), size).subspan(NLMSG_HDRLEN);
}

}  // namespace host
