#include "shell/library/interface_kinds.h"

#include <algorithm>
#include <iterator>

#include "pmcli/displays.h"

namespace host {
namespace {

using enum name_family;
using lib = command_library;
using head = table_headers;

constexpr bool kStats = true;

// clang-format off
constexpr interface_kind kKinds[] = {
    {IF_TYPE_ETHERNET,         usual,    IF_MASK_ETHERNET,         true,  &lib::show_ethernet,   &head::ethernet, kStats},
    {IF_TYPE_ETHERNET_L3,      usual,    IF_MASK_ETHERNET_L3,      true,  &lib::show_ethernet,   &head::ethernet, kStats},
    {IF_TYPE_SATELLITE,        usual,    IF_MASK_SATELLITE,        true,  &lib::show_satellite,  &head::ethernet},
    {IF_TYPE_PORT_CHANNEL,     usual,    IF_MASK_PORT_CHANNEL,     false, &lib::show_ethernet,   &head::ethernet, kStats},
    {IF_TYPE_ETH_PORT_CHANNEL, usual,    IF_MASK_ETH_PORT_CHANNEL, false, &lib::show_ethernet,   &head::ethernet, kStats},
    {IF_TYPE_VETHERNET,        usual,    IF_MASK_VETHERNET,        false, &lib::show_ethernet,   &head::ethernet},
    {IF_TYPE_MGMT,             usual,    IF_MASK_MGMT,             true,  &lib::show_management, &head::management, kStats},
    {IF_TYPE_LOOPBACK,         usual,    IF_MASK_LOOPBACK,         true,  &lib::show_loopback,   &head::loopback},
    {IF_TYPE_INBAND,           usual,    IF_MASK_INBAND,           true,  &lib::show_inband,     &head::inband},
    {IF_TYPE_FC,               usual,    IF_MASK_FC,               true,  nullptr,               nullptr},
    {IF_TYPE_FC,               bay,      IF_MASK_BAY,              true,  nullptr,               nullptr},
    {IF_TYPE_FC,               external, IF_MASK_EXTERNAL_FC,      true,  nullptr,               nullptr},
    {IF_TYPE_ISCSI,            usual,    IF_MASK_ISCSI,            true,  nullptr,               nullptr},
    {IF_TYPE_EXTERNAL,         usual,    IF_MASK_EXTERNAL,         true,  nullptr,               nullptr},
    {IF_TYPE_FCIP,             usual,    0,                        false, nullptr,               nullptr},
    {IF_TYPE_GIG_ETHERNET,     usual,    0,                        false, nullptr,               nullptr},
    {IF_TYPE_SERVER,           usual,    0,                        false, nullptr,               nullptr},
};
// clang-format on

// For an index that is not an interface.
constexpr interface_kind kUnknown = {IF_TYPE_NONE, usual, 0, false, nullptr, nullptr};

}  // namespace

std::span<const interface_kind> all_kinds() { return kKinds; }

const interface_kind& kind_of(if_index_t if_index) {
  const index_fields fields = decode_index(if_index);
  const auto* const found = std::find_if(std::begin(kKinds), std::end(kKinds), [&fields](const interface_kind& kind) {
    return kind.type == fields.type && kind.family == fields.family;
  });
  return found == std::end(kKinds) ? kUnknown : *found;
}

}  // namespace host
