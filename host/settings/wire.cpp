#include "settings/wire.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace host {
namespace {

using octets = std::span<const std::byte>;

std::vector<std::byte> octets_of_vlans(const std::vector<uint16>& vlans, vlan_action action) {
  allowed_vlans_value value{};
  value.action = static_cast<uint8>(action);
  value.vlans.size = BITSET_BYTES;
  for (const uint16 id : vlans) bitset_set(&value.vlans, id);
  std::vector<std::byte> bytes(sizeof value);
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

// The new list of VLANs of a port.
std::optional<setting_value> vlans_of(octets bytes, const std::vector<uint16>& now) {
  allowed_vlans_value requested;
  std::memcpy(&requested, bytes.data(), sizeof requested);
  if (requested.action > static_cast<uint8>(vlan_action::remove)) return std::nullopt;
  const auto action = static_cast<vlan_action>(requested.action);
  std::vector<uint16> vlans;
  for (const uint16 id : every_vlan()) {
    const bool was = std::binary_search(now.begin(), now.end(), id);
    const bool named = bitset_is_set(&requested.vlans, id) != 0;
    if (action == vlan_action::remove ? was && !named : named || (action == vlan_action::add && was))
      vlans.push_back(id);
  }
  return vlans;
}

uint32 number_of(octets bytes) {
  uint32 value = 0;
  for (const std::byte byte : bytes) value = value << 8 | std::to_integer<uint32>(byte);
  return value;
}

std::string text_of(octets bytes) {
  const std::string_view all(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  return std::string(all.substr(0, all.find('\0')));
}

}  // namespace

std::vector<std::byte> octets_of(const setting& of, const setting_value& value, vlan_action action) {
  if (const auto* const vlans = std::get_if<std::vector<uint16>>(&value)) return octets_of_vlans(*vlans, action);
  std::vector<std::byte> bytes(of.num_bytes);
  if (const auto* const text = std::get_if<std::string>(&value)) {
    std::memcpy(bytes.data(), text->data(), std::min(text->size(), bytes.size()));
    return bytes;
  }
  uint32 left = std::get<uint32>(value);
  for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte, left >>= 8)
    *byte = static_cast<std::byte>(left & 0xFF);
  return bytes;
}

std::optional<setting_value> value_of_octets(const setting& of, octets bytes, const interface& port) {
  if (bytes.size() != of.num_bytes) return std::nullopt;
  if (of.kind == setting_kind::vlans) return vlans_of(bytes, std::get<std::vector<uint16>>(*of.get(port.settings)));
  if (of.kind == setting_kind::text) return text_of(bytes);
  const uint32 number = number_of(bytes);
  return number == of.traits.asks_for_usual ? usual_value(of, port) : setting_value(number);
}

}  // namespace host
