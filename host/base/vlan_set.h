// Sets of VLANs as people write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace host {

// Bounds included.
struct vlan_span {
  std::uint32_t first;
  std::uint32_t last;
};

// A list of VLANs such as "1-10,20"; none when it is not one, or has more than 64 items.
std::optional<std::vector<vlan_span>> parse_vlans(std::string_view text);

}  // namespace host
