// Clear commands of the tests, and the listings that they meet.
#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "support/recording_platform.h"

namespace pmcli_test {

// The parameter block of a command that names these ranges behind another argument.
struct clear_command {
  clear_command(RecordingPlatform& platform, const std::vector<vsh_intf_mono_range_t>& named,
                param_type_t type = PARAM_TYPE_INTERFACES) {
    ranges.size = sizeof ranges;
    ranges.range_count = static_cast<uint32>(named.size());
    std::copy(named.begin(), named.end(), std::begin(ranges.range));
    param = platform.show_command(0, 0);
    argument = platform.add_argument(param, type, &ranges);
  }

  intf_range_t ranges{};
  paraminfo_t* param;
  param_arg_t* argument;
};

inline vsh_intf_mono_range_t only(if_index_t if_index) { return {if_index, if_index}; }

// A listing as the port manager answers it; a count of its own in place of the true one makes it lie.
inline octets listing_of(const std::vector<if_index_t>& if_indexes, uint32 count) {
  octets payload;
  const auto put = [&payload](uint32 number) {
    for (int shift = 24; shift >= 0; shift -= 8) payload.push_back(static_cast<uint8>(number >> shift));
  };
  put(count);
  for (const if_index_t if_index : if_indexes) put(if_index);
  return payload;
}

inline octets listing_of(const std::vector<if_index_t>& if_indexes) {
  return listing_of(if_indexes, static_cast<uint32>(if_indexes.size()));
}

using Cleared = std::vector<std::string>;

constexpr char kClearingFailed[] = "error: clearing counters\n";
constexpr char kNoRange[] = "error: token id list does not contain CONF_INTF\n";
constexpr char kTransportFailure[] = "<transport failure 1 110>\n";

}  // namespace pmcli_test
