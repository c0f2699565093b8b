// Commands over interfaces as the shell hands them over: the first argument is the interface parameter, with its
// ranges.
#pragma once

#include <gtest/gtest.h>

#include <cctype>
#include <initializer_list>
#include <string>
#include <vector>

#include "support/recording_platform.h"

namespace pmcli_test {

inline intf_range_t interface_ranges(const std::vector<vsh_intf_mono_range_t>& pairs) {
  intf_range_t ranges{};
  ranges.size = sizeof ranges;
  for (const vsh_intf_mono_range_t& pair : pairs) ranges.range[ranges.range_count++] = pair;
  return ranges;
}

// A show command. The ranges stay the test's.
inline paraminfo_t* interface_command(RecordingPlatform& platform, uint32 command_id, interface_mask_t mask,
                                      intf_range_t* ranges) {
  paraminfo_t* const param = platform.show_command(command_id, 0);
  param->arg_list[0]->type = PARAM_TYPE_INTERFACES;
  param->arg_list[0]->interface_mask = mask;
  param->arg_list[0]->arg = ranges;
  return param;
}

// 32-bit numbers as they travel.
inline octets words(const std::vector<uint32>& numbers) {
  octets bytes;
  for (const uint32 number : numbers)
    for (const uint32 shift : {24U, 16U, 8U, 0U}) bytes.push_back(static_cast<uint8>(number >> shift));
  return bytes;
}

// A listing that tells its true count.
inline octets listing_of(std::vector<if_index_t> interfaces) {
  interfaces.insert(interfaces.begin(), static_cast<uint32>(interfaces.size()));
  return words(interfaces);
}

// The text with "[LINE]" for each number of a source line.
inline std::string without_lines(const std::string& text) {
  std::string clean;
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::size_t end = i + 1;
    while (text[i] == '[' && end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])) != 0) ++end;
    if (end > i + 1 && end < text.size() && text[end] == ']') {
      clean += "[LINE]";
      i = end;
    } else {
      clean += text[i];
    }
  }
  return clean;
}

}  // namespace pmcli_test
