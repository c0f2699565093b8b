// The values of settings on their way to the port manager.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "platform/bitset.h"
#include "settings/settings.h"

namespace host {

// The VLANs of a trunk, or a change of them.
enum class vlan_action : uint8 { set, add, remove };

struct allowed_vlans_value {
  uint8 action;  // vlan_action
  vlan_bitset_t vlans;
};
static_assert(sizeof(allowed_vlans_value) == 1 + 516);

// The bytes of a value: a number big-endian, a text padded with zeros, VLANs as an allowed_vlans_value.
std::vector<std::byte> octets_of(const setting& of, const setting_value& value, vlan_action action = vlan_action::set);

// The requested value of a port; nothing when the bytes are not a value of the setting.
std::optional<setting_value> value_of_octets(const setting& of, std::span<const std::byte> octets,
                                             const interface& port);

}  // namespace host
