#include "shell/interface_kinds.h"

#include <algorithm>
#include <iterator>

namespace host {
namespace {

using enum name_family;
using lib = command_library;
using head = table_headers;

constexpr bool kStats = true;

// clang-format off
constexpr interface_kind kKinds[] = {
    {IF_TYPE_ETHERNET,         kUsual,    0x2,        true,  &lib::show_ethernet,   &head::ethernet, kStats},
    {IF_TYPE_ETHERNET_L3,      kUsual,    0x800000,   true,  &lib::show_ethernet,   &head::ethernet, kStats},
    {IF_TYPE_SATELLITE,        kUsual,    0x10000000, true,  &lib::show_satellite,  &head::ethernet},
    {IF_TYPE_PORT_CHANNEL,     kUsual,    0x10,       false, &lib::show_ethernet,   &head::ethernet, kStats},
    {IF_TYPE_ETH_PORT_CHANNEL, kUsual,    0x100000,   false, &lib::show_ethernet,   &head::ethernet, kStats},
    {IF_TYPE_VETHERNET,        kUsual,    0x200000,   false, &lib::show_ethernet,   &head::ethernet},
    {IF_TYPE_MGMT,             kUsual,    0x80,       true,  &lib::show_management, &head::management, kStats},
    {IF_TYPE_LOOPBACK,         kUsual,    0x4000,     true,  &lib::show_loopback,   &head::loopback},
    {IF_TYPE_INBAND,           kUsual,    0x800,      true,  &lib::show_inband,     &head::inband},
    {IF_TYPE_FC,               kUsual,    0x1,        true,  nullptr,               nullptr},
    {IF_TYPE_FC,               kBay,      0x40000,    true,  nullptr,               nullptr},
    {IF_TYPE_FC,               kExternal, 0x80000,    true,  nullptr,               nullptr},
    {IF_TYPE_ISCSI,            kUsual,    0x8,        true,  nullptr,               nullptr},
    {IF_TYPE_EXTERNAL,         kUsual,    0x2000000,  true,  nullptr,               nullptr},
    {IF_TYPE_FCIP,             kUsual,    0,          false, nullptr,               nullptr},
    {IF_TYPE_GIG_ETHERNET,     kUsual,    0,          false, nullptr,               nullptr},
    {IF_TYPE_SERVER,           kUsual,    0,          false, nullptr,               nullptr},
};
// clang-format on

// Of what is no interface at all.
constexpr interface_kind kUnknown = {IF_TYPE_NONE, kUsual, 0, false, nullptr, nullptr};

}  // namespace

std::span<const interface_kind> all_kinds() { return kKinds; }

const interface_kind& kind_of(if_index_t if_index) {
  const index_fields fields = take_apart(if_index);
  const auto* const found = std::find_if(std::begin(kKinds), std::end(kKinds), [&fields](const interface_kind& kind) {
    return kind.type == fields.type && kind.family == fields.family;
  });
  return found == std::end(kKinds) ? kUnknown : *found;
}

}  // namespace host
