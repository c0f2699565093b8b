#include "base/vsan_access.h"

#include <algorithm>
#include <iterator>

#include "platform/bitset.h"
#include "platform/port_manager.h"

namespace host {
namespace {

constexpr uint32 kTrunkingModes = PM_PORT_MODE_TE | PM_PORT_MODE_TRUNK | PM_PORT_MODE_TF | PM_PORT_MODE_TNP;

bool share_any(const vsan_bitset_t& a, const vsan_bitset_t& b) {
  return !std::equal(std::begin(a.bits), std::end(a.bits), std::begin(b.bits),
                     [](uint8 left, uint8 right) { return (left & right) == 0; });
}

}  // namespace

bool is_trunking_mode(uint32 port_mode) { return (port_mode & kTrunkingModes) != 0; }

bool is_restricted_to(const vsan_bitset_t& vsans) {
  for (uint32 vsan = kFirstVsan; vsan <= kLastVsan; ++vsan)
    if (bitset_is_set(&vsans, vsan) == 0) return true;
  return false;
}

bool may_see_port(const vsan_bitset_t& user_vsans, const port_vsans& port) {
  return bitset_is_set(&user_vsans, port.vsan) != 0 || (port.is_trunking && share_any(user_vsans, port.carried));
}

}  // namespace host
