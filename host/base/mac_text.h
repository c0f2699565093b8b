// MAC addresses as users write them.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace host {

struct mac_reading {
  std::optional<std::array<uint8, 6>> mac;
  std::size_t position = 0;  // of the fault, in the text
  std::string fault;         // part of a sentence
};

// "0200.0000.00a9", "02:00:00:00:00:a9" and "02-00-00-00-00-a9", whose leading zeros may be omitted, or twelve digits;
// in any case.
mac_reading read_mac(std::string_view text);

}  // namespace host
