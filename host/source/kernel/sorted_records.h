// Records that are sorted by one of their members.
#pragma once

#include <algorithm>

namespace host {

// The record with this value of the member by which they are sorted, or null.
template <auto Member, typename Records, typename Value>
auto* find_by(Records& records, const Value& value) {
  const auto found = std::lower_bound(records.begin(), records.end(), value,
                                      [](const auto& it, const Value& requested) { return it.*Member < requested; });
  return found != records.end() && (*found).*Member == value ? &*found : nullptr;
}

// Records mostly arrive sorted: then nothing is moved.
template <auto Member, typename Records>
void sort_by(Records& records) {
  const auto is_before = [](const auto& a, const auto& b) { return a.*Member < b.*Member; };
  if (!std::is_sorted(records.begin(), records.end(), is_before)) std::sort(records.begin(), records.end(), is_before);
}

}  // namespace host
