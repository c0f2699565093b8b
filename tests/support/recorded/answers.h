// How services hand over what is programmed for them.
#pragma once

#include <cstring>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "support/recording_platform.h"
#include "support/recording_state.h"

namespace pmcli_test {

template <typename Record>
octets bytes_of(const Record& record) {
  const auto* const bytes = reinterpret_cast<const uint8*>(&record);
  return octets(bytes, bytes + sizeof record);
}

inline void append(octets& to, const octets& more) { to.insert(to.end(), more.begin(), more.end()); }

inline void put_u32(octets& block, std::size_t offset, uint32 value) {
  const be32 number(value);
  if (block.size() < offset + sizeof number) block.resize(offset + sizeof number);
  std::memcpy(&block[offset], &number, sizeof number);
}

// Stores a copy of the block for the library to free.
template <typename Block>
void give(RecordingPlatform& platform, const char* function, const octets& bytes, Block** block) {
  *block = static_cast<Block*>(platform.hand_over(bytes.data(), bytes.size(), function));
}

// Copies the entry of an interface into the library's record; without one `unknown` is returned.
template <typename Key, typename Record>
int32 answer_from(const char* function, const std::map<Key, Record>& entries, const Key& key, Record* record,
                  int32 unknown = PM_ERR_NO_SUCH_INTERFACE) {
  if (const int32 error = platform_for(function).failure_of(function); error != 0) return error;
  const auto entry = entries.find(key);
  if (entry == entries.end()) return unknown;
  *record = entry->second;
  return 0;
}

// The records of a range of interfaces, one after the other, each with its index.
template <typename Record>
std::pair<uint32, octets> records_in(const std::map<if_index_t, Record>& entries, const if_index_range_t& range) {
  uint32 count = 0;
  octets block;
  for (auto [if_index, record] : entries) {
    if (if_index < range.low || if_index > range.high) continue;
    if (record.if_index == 0U) record.if_index = if_index;
    append(block, bytes_of(record));
    ++count;
  }
  return {count, block};
}

// A list for an interface: the odd block of the test, the list of the map, or none.
template <typename Entry, typename Block, typename Encode>
int32 give_list(const char* function, const std::optional<octets>& odd_block,
                const std::map<if_index_t, std::vector<Entry>>& lists, if_index_t if_index, Block** block,
                Encode encode) {
  RecordingPlatform& platform = platform_for(function);
  *block = nullptr;
  if (const int32 error = platform.failure_of(function); error != 0) return error;
  const auto list = lists.find(if_index);
  if (odd_block)
    give(platform, function, *odd_block, block);
  else if (list != lists.end())
    give(platform, function, encode(list->second), block);
  return 0;
}

}  // namespace pmcli_test
