#include "base/vlan_set.h"

#include <charconv>
#include <cstddef>

namespace host {

std::optional<std::vector<vlan_span>> parse_vlans(std::string_view text) {
  constexpr std::uint32_t kLastVlan = 4094;
  constexpr std::size_t kMostItems = 64;
  std::vector<vlan_span> spans;
  const char* at = text.data();
  const char* const end = text.data() + text.size();
  const auto read_id = [&](std::uint32_t& id) {
    const auto [next, error] = std::from_chars(at, end, id);
    at = next;
    return error == std::errc{} && id >= 1 && id <= kLastVlan;
  };
  while (true) {
    vlan_span span{};
    if (!read_id(span.first)) return std::nullopt;
    span.last = span.first;
    if (at != end && *at == '-' && (++at == end || !read_id(span.last))) return std::nullopt;
    if (span.last < span.first || spans.size() == kMostItems) return std::nullopt;
    spans.push_back(span);
    if (at == end) return spans;
    if (*at++ != ',') return std::nullopt;
  }
}

}  // namespace host
